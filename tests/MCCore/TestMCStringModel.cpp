// Random operations on every form beside a plain model. QLX_STRING_OPERATIONS sets their number, QLX_STRING_SEED the
// sequence:
//
//   QLX_STRING_OPERATIONS=10000000 build/release/bin/test_mccore --gtest_filter=MCStringModel.*
#include <cstdlib>
#include <random>

#include "HostedTest.h"
#include "SilentReports.h"
#include "StringSteps.h"

namespace qlx::test {
namespace {

using MCStringModel = HostedTest;

uint32 FromEnvironment(const char* inName, uint32 inDefault) {
  const char* const text = std::getenv(inName);
  return text ? static_cast<uint32>(std::strtoul(text, nullptr, 10)) : inDefault;
}

TEST_F(MCStringModel, EveryFormDoesWhatTheModelDoes) {
  const uint32 operations = FromEnvironment("QLX_STRING_OPERATIONS", 100000);
  const uint32 seed = FromEnvironment("QLX_STRING_SEED", 1);
  const SilentReports reports;
  std::mt19937 engine(seed);
  StringSteps steps([&] { return static_cast<uint8>(engine() >> 24); });
  for (uint32 i = 0; i < operations; ++i) {
    const std::string difference = steps.Step();
    ASSERT_EQ(difference, "") << "operation " << i << " of seed " << seed;
  }
}

}  // namespace
}  // namespace qlx::test
