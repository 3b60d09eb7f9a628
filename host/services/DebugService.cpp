#include "DebugService.h"

#include <fmt/format.h>

#include <string>

#include "MCAssert.h"

namespace qlx::host {

namespace {

std::string PlaceOf(const char* inFile, int32 inLine) {
  return inFile ? fmt::format(" ({}:{})", inFile, inLine) : std::string();
}

thread_local bool sReporting = false;

struct ReportingScope {
  ReportingScope() { sReporting = true; }
  ~ReportingScope() { sReporting = false; }
};

}  // namespace

// The caller is in the middle of something that must go on: what fails here ends here.
template <class MakeText>
void DebugService::Show(MakeText&& inMakeText) noexcept {
  try {
    const std::string text = inMakeText();
    if (sReporting) {
      MCRuntimeAssert(nullptr, 0, text.c_str());
      return;
    }
    const ReportingScope scope;
    const std::lock_guard lock(fMutex);
    fDiagnostics.Warn(text);
  } catch (...) {
    MCRuntimeAssert("DebugService", 0, "a report could not be shown");
  }
}

void DebugService::ReportAssertion(const char* inFile, int32 inLine, const char* inText) {
  Show([&] { return fmt::format("assertion: {}{}", inText ? inText : "", PlaceOf(inFile, inLine)); });
}

void DebugService::Report(const char* inFile, int32 inLine) {
  Show([&] { return fmt::format("report{}", PlaceOf(inFile, inLine)); });
}

void DebugService::Report2(const char* inFile, int32 inLine, int32 inValue1, int32 inValue2) {
  Show([&] { return fmt::format("report: {}, {}{}", inValue1, inValue2, PlaceOf(inFile, inLine)); });
}

void DebugService::Report3(const char* inFile, int32 inLine, int32 inValue1, int32 inValue2, int32 inValue3) {
  Show([&] { return fmt::format("report: {}, {}, {}{}", inValue1, inValue2, inValue3, PlaceOf(inFile, inLine)); });
}

void DebugService::GetCountedObjectBookkeeping(CountedObjectBookkeeping& outValues) {
  outValues = {.fHead = &fFirstObject,
               .fTail = &fLastObject,
               .fUnused1 = nullptr,
               .fUnused2 = nullptr,
               .fSerialCounter = &fSerialCounter,
               .fLiveCount = &fLiveObjects};
}

}  // namespace qlx::host
