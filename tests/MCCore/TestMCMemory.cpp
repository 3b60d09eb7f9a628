#include "MCMemory.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "HostedTest.h"

namespace qlx::test {
namespace {

using Memory = HostedTest;

TEST_F(Memory, WithoutAnAllocatorRequestsFailAndFreeIsQuiet) {
  IMemoryUtilities* const earlier = std::exchange(gMemoryUtilities, nullptr);
  testing::internal::CaptureStderr();
  int local = 0;
  EXPECT_EQ(MCmalloc(8), nullptr);
  EXPECT_EQ(MCrealloc(&local, 8), nullptr);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  testing::internal::CaptureStderr();
  MCfree(&local);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  gMemoryUtilities = earlier;
}

#if SIZE_MAX > UINT32_MAX
TEST_F(Memory, ASizeBeyond32BitsIsReported) {
  fMemory.RefuseAfter(0);
  AssertionGuard guard({"(size) <= static_cast<MCSize>(std::numeric_limits<uint32>::max())"});
  EXPECT_EQ(MCmalloc(MCSize{1} << 32), nullptr);
}
#endif

TEST_F(Memory, CopiesAreTheSameWithAndWithoutTheProcessorFeature) {
  std::vector<uint8> source(200);
  std::iota(source.begin(), source.end(), uint8{1});
  for (const uint8 feature : {uint8{0}, uint8{1}}) {
    gProcessorFeatures.fBytes[0] = feature;
    for (MCSize count = 0; count <= 132; ++count) {
      std::vector<uint8> dest(200, 0xEE);
      MCMemoryCopy(dest.data() + 1, source.data() + 3, count);
      std::vector<uint8> expected(200, 0xEE);
      std::copy_n(source.begin() + 3, count, expected.begin() + 1);
      ASSERT_EQ(dest, expected) << count << " bytes, feature " << int{feature};
    }
  }
  gProcessorFeatures = {};
  MCMemoryCopy(nullptr, nullptr, 0);
  MCMemoryMove(nullptr, nullptr, 0);
  MCMemoryFill(1, nullptr, 0);
}

TEST_F(Memory, MoveTakesOverlappingRegions) {
  char text[] = "abcdef";
  MCMemoryMove(text + 1, text, 5);
  EXPECT_STREQ(text, "aabcde");
  MCMemoryMove(text, text + 1, 5);
  EXPECT_STREQ(text, "abcdee");
}

}  // namespace
}  // namespace qlx::test
