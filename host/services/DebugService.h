// Reports of bugs, as warnings, and the host's list of live counted objects.
#pragma once

#include <mutex>

#include "MCHostUtilities.h"
#include "model/Diagnostics.h"
#include "model/HostObject.h"

namespace qlx::host {

// Reports may come from any thread; they reach the diagnostics one at a time. A report that comes while the same
// thread is handling one goes to standard error.
class DebugService final : public HostObject<IDebugUtilities> {
 public:
  explicit DebugService(Diagnostics& inDiagnostics) : fDiagnostics(inDiagnostics) {}

  // "assertion: fRefCount <= 1 (MCObject.cpp:68)"
  void MC_CALL ReportAssertion(const char* inFile, int32 inLine, const char* inText) override;
  void MC_CALL Report(const char* inFile, int32 inLine) override;
  void MC_CALL Report2(const char* inFile, int32 inLine, int32 inValue1, int32 inValue2) override;
  void MC_CALL Report3(const char* inFile, int32 inLine, int32 inValue1, int32 inValue2, int32 inValue3) override;
  void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping& outValues) override;

 private:
  template <class MakeText>
  void Show(MakeText&& inMakeText) noexcept;

  Diagnostics& fDiagnostics;
  std::mutex fMutex;
  TMCCountedObject* fFirstObject = nullptr;
  TMCCountedObject* fLastObject = nullptr;
  int32 fSerialCounter = 0;
  int32 fLiveObjects = 0;
};

}  // namespace qlx::host
