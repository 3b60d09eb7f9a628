// The root of a host that offers a test's services, beside the memory and the reports that the test has.
#pragma once

#include <utility>
#include <vector>

#include "COMSafeUtilities.h"
#include "MCCountedPtr.h"
#include "SilentReports.h"

namespace qlx::test {

// Serves while it lives. Make it after that memory, and before an `AssertionGuard`.
class FakeRoot final : public IMCUnknown {
 public:
  explicit FakeRoot(std::vector<IMCUnknown*> inServices) : fServices(std::move(inServices)) {
    const SilentReports silence;  // most services are missing
    fServices.push_back(fMemory);
    StartUtilities(this);
  }
  ~FakeRoot() {
    EndUtilities();
    gMemoryUtilities = fMemory;
    gDebugUtilities = fDebug;
  }
  FakeRoot(const FakeRoot&) = delete;
  FakeRoot& operator=(const FakeRoot&) = delete;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    for (IMCUnknown* const service : fServices) {
      if (service->QueryInterface(inID, outObject) == MC_S_OK) {
        return MC_S_OK;
      }
    }
    return MCStoreNone(outObject);
  }
  uint32 MC_CALL AddRef() override { return 1; }
  uint32 MC_CALL Release() override { return 1; }

 private:
  std::vector<IMCUnknown*> fServices;
  IMemoryUtilities* fMemory = gMemoryUtilities;
  IDebugUtilities* fDebug = gDebugUtilities;
};

}  // namespace qlx::test
