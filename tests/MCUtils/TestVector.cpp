#include <gtest/gtest.h>

#include <tuple>

#include "MCVector.h"
#include "NotFinite.h"

namespace qlx::test {
namespace {

TEST(Vector, NormalizeLeavesWhatHasNoDirection) {
  const std::tuple<const char*, TVector3, real32, bool> rows[] = {
      {"zero", {0, 0, 0}, 0, false},
      {"at the tolerance", {kReal_SmallValue, 0, 0}, kReal_SmallValue, false},
      {"above the tolerance", {1.1e-6f, 0, 0}, kReal_SmallValue, true},
      {"smallest number, no tolerance", {0, 1e-45f, 0}, 0, true},
      {"squares overflow", {1e30f, -1e30f, 1e30f}, kReal_SmallValue, true},
      {"infinite", {kInfinity, 0, 0}, 0, false},
      {"not a number", {0, kNaN, 0}, 0, false},
  };
  for (const auto& [label, vector, tolerance, hasDirection] : rows) {
    SCOPED_TRACE(label);
    TVector3 v = vector;
    EXPECT_EQ(v.Normalize(tolerance), hasDirection);
    if (hasDirection) {
      EXPECT_NEAR(v.GetMagnitude(), 1, 1e-7);
    } else {
      for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(v[i] == vector[i] || std::isnan(vector[i]));
      }
    }
  }
}

TEST(Vector, EqualityHasThreeForms) {
  const TVector3 a{1000, 0, 0};
  const TVector3 b{1000.5f, 0.5f, 0};
  EXPECT_FALSE(a == b);
  EXPECT_TRUE(a.IsEqual(b, 0.5f));
  EXPECT_FALSE(a.IsEqual(b, 0.49f));
  EXPECT_TRUE(a.IsEqualRelative(b, 1e-3f));
  EXPECT_FALSE(a.IsEqualRelative(b, 1e-4f));
  EXPECT_TRUE(TVector3().IsEqualRelative(TVector3(), 0));
  EXPECT_FALSE(TVector3(kNaN, 0, 0).IsEqual(TVector3(kNaN, 0, 0), 1));
  EXPECT_FALSE(TVector3(kInfinity, 0, 0).IsEqualRelative(TVector3(), 1e-4f));
  EXPECT_FALSE(TVector4(0, 0, 0, 1) == TVector4(0, 0, 0, 2));
}

TEST(Vector, CrossFollowsTheRightHand) {
  EXPECT_EQ(Cross(kUnitX, kUnitY), kUnitZ);
  EXPECT_EQ(Cross(kUnitY, kUnitZ), kUnitX);
}

}  // namespace
}  // namespace qlx::test
