// Takes all reports while it lives and forgets them: for work on bad input, which may report what it likes.
#pragma once

#include <utility>

#include "MCHostUtilities.h"

namespace qlx::test {

class SilentReports : public IDebugUtilities {
 public:
  SilentReports() : fEarlier(std::exchange(gDebugUtilities, this)) {}
  virtual ~SilentReports() { gDebugUtilities = fEarlier; }
  SilentReports(const SilentReports&) = delete;
  SilentReports& operator=(const SilentReports&) = delete;
  MCResult MC_CALL QueryInterface(const MCGuid&, void**) override { return MC_E_NOINTERFACE; }
  uint32 MC_CALL AddRef() override { return 1; }
  uint32 MC_CALL Release() override { return 1; }
  void MC_CALL ReportAssertion(const char*, int32, const char*) override {}
  void MC_CALL Report(const char*, int32) override {}
  void MC_CALL Report2(const char*, int32, int32, int32) override {}
  void MC_CALL Report3(const char*, int32, int32, int32, int32) override {}
  void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping&) override {}

 private:
  IDebugUtilities* fEarlier;
};

}  // namespace qlx::test
