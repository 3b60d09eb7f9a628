#include "MCAssert.h"

#include <cstdio>

#include "MCHostUtilities.h"

namespace qlx {

void MCRuntimeAssert(const char* inFile, int32 inLine, const char* inExpression) noexcept {
  const char* text = inExpression ? inExpression : "";
  if (inFile) {
    std::fprintf(stderr, "Assertion: %s (%s:%ld)\n", text, inFile, static_cast<long>(inLine));
  } else {
    std::fprintf(stderr, "Assertion: %s\n", text);
  }
}

void MCAssert(const char* inFile, int32 inLine, const char* inExpression) noexcept {
  if (gDebugUtilities) {
    try {
      gDebugUtilities->ReportAssertion(inFile, inLine, inExpression);
      return;
    } catch (...) {
      // A host that throws from here has not shown the report.
    }
  }
  MCRuntimeAssert(inFile, inLine, inExpression);
}

}  // namespace qlx
