// Random operations on every form beside a plain model. QLX_STRING_OPERATIONS sets their number, QLX_STRING_SEED the
// sequence:
//
//   QLX_STRING_OPERATIONS=10000000 build/release/bin/test_mccore --gtest_filter=MCStringModel.*
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "StringSteps.h"
#include "TestMemory.h"

namespace qlx {

namespace {

// Reports are part of what random operations do.
class SilentReports final : public IDebugUtilities {
 public:
  SilentReports() : fEarlier(std::exchange(gDebugUtilities, this)) {}
  ~SilentReports() { gDebugUtilities = fEarlier; }
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

uint32 FromEnvironment(const char* inName, uint32 inDefault) {
  const char* const text = std::getenv(inName);
  return text ? static_cast<uint32>(std::strtoul(text, nullptr, 10)) : inDefault;
}

}  // namespace

TEST(MCStringModel, EveryFormDoesWhatTheModelDoes) {
  const uint32 operations = FromEnvironment("QLX_STRING_OPERATIONS", 100000);
  const uint32 seed = FromEnvironment("QLX_STRING_SEED", 1);
  test::TestMemory memory;
  const SilentReports reports;
  std::mt19937 engine(seed);
  test::StringSteps steps([&] { return static_cast<uint8>(engine() >> 24); });
  for (uint32 i = 0; i < operations; ++i) {
    const std::string difference = steps.Step();
    ASSERT_EQ(difference, "") << "operation " << i << " of seed " << seed;
  }
}

}  // namespace qlx
