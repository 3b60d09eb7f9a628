// The ground of most tests: the host's memory, of which nothing may be left, and a host that hears of nothing but what
// an `AssertionGuard` of the test expects.
#pragma once

#include <gtest/gtest.h>

#include "AssertionGuard.h"
#include "TestMemory.h"

namespace qlx::test {

class HostedTest : public testing::Test {
 protected:
  TestMemory fMemory;
  AssertionGuard fSilence;
};

}  // namespace qlx::test
