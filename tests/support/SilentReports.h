// Takes all reports while it lives and forgets them: for work on bad input, which may report what it likes.
#pragma once

#include <utility>

#include "FakeObject.h"
#include "MCHostUtilities.h"

namespace qlx::test {

class SilentReports : public FakeObject<IDebugUtilities> {
 public:
  SilentReports() : fEarlier(std::exchange(gDebugUtilities, this)) {}
  ~SilentReports() override { gDebugUtilities = fEarlier; }
  SilentReports(const SilentReports&) = delete;
  SilentReports& operator=(const SilentReports&) = delete;
  void MC_CALL ReportAssertion(const char*, int32, const char*) override {}
  void MC_CALL Report(const char*, int32) override {}
  void MC_CALL Report2(const char*, int32, int32, int32) override {}
  void MC_CALL Report3(const char*, int32, int32, int32, int32) override {}
  void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping&) override {}

 private:
  IDebugUtilities* fEarlier;
};

}  // namespace qlx::test
