#include "AssertionGuard.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace qlx::test {

AssertionGuard::AssertionGuard(std::vector<std::string> inExpected)
    : fEarlier(std::exchange(gDebugUtilities, this)), fExpected(std::move(inExpected)) {}

AssertionGuard::~AssertionGuard() {
  gDebugUtilities = fEarlier;
  std::vector<std::string> texts;
  for (const Entry& report : fReports) {
    texts.push_back(report.fText);
  }
  EXPECT_EQ(texts, fExpected) << "reports made under the guard, and those expected";
}

MCResult MC_CALL AssertionGuard::QueryInterface(const MCGuid& inID, void** outObject) {
  const bool known = inID == IMCUnknown::kInterfaceID || inID == IDebugUtilities::kInterfaceID;
  *outObject = known ? static_cast<IDebugUtilities*>(this) : nullptr;
  return known ? MC_S_OK : MC_E_NOINTERFACE;
}

void MC_CALL AssertionGuard::ReportAssertion(const char* inFile, int32 inLine, const char* inText) {
  fReports.push_back({inFile ? inFile : "", inLine, inText ? inText : ""});
  if (fThrows) {
    throw std::runtime_error("a host that throws");
  }
}

}  // namespace qlx::test
