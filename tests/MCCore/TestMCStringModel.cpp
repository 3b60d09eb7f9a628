// Random operations on every form beside a plain model. QLX_STRING_OPERATIONS sets their number, QLX_STRING_SEED the
// sequence:
//
//   QLX_STRING_OPERATIONS=10000000 build/release/bin/test_mccore --gtest_filter=MCStringModel.*
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "SilentReports.h"
#include "StringSteps.h"
#include "TestMemory.h"

namespace qlx {

namespace {

uint32 FromEnvironment(const char* inName, uint32 inDefault) {
  const char* const text = std::getenv(inName);
  return text ? static_cast<uint32>(std::strtoul(text, nullptr, 10)) : inDefault;
}

}  // namespace

TEST(MCStringModel, EveryFormDoesWhatTheModelDoes) {
  const uint32 operations = FromEnvironment("QLX_STRING_OPERATIONS", 100000);
  const uint32 seed = FromEnvironment("QLX_STRING_SEED", 1);
  test::TestMemory memory;
  const test::SilentReports reports;
  std::mt19937 engine(seed);
  test::StringSteps steps([&] { return static_cast<uint8>(engine() >> 24); });
  for (uint32 i = 0; i < operations; ++i) {
    const std::string difference = steps.Step();
    ASSERT_EQ(difference, "") << "operation " << i << " of seed " << seed;
  }
}

}  // namespace qlx
