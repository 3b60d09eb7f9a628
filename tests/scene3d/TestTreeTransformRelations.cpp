#include <gtest/gtest.h>

#include "AssertionGuard.h"
#include "RandomValues.h"
#include "Transforms.h"

namespace qlx::test {
namespace {

TreeTransform MakePlaced(const TVector3& inAngles, const TVector3& inPosition, real32 inScale, int32 inMode) {
  TreeTransform transform;
  transform.SetMode(inMode);
  transform.GetRotation().SetEuler(inAngles);
  transform.SetPosition(inPosition);
  transform.SetUniformScale(inScale);
  return transform;
}

TEST(TreeTransform, RelativeTurnsTheFirstIntoTheSecond) {
  AssertionGuard guard;
  for (const int32 mode : {kTorvane, kPoser}) {
    TreeTransform first = MakePlaced({0.3f, -0.5f, 1.1f}, {1, 2, 3}, 2, mode);
    TreeTransform second = MakePlaced({1, 0.2f, 0}, {-3, 0, 5}, 0.5f, mode);
    const TMatrix33 axes = EulerToMatrix(0, {0.4f, 0.1f, -0.7f}, false);
    for (TreeTransform* each : {&first, &second}) {
      each->SetScalingAxes(axes);
      each->SetScaling({1, 2, 3});
    }
    TreeTransform relative;
    ASSERT_TRUE(relative.MakeRelative(first, second));
    EXPECT_EQ(relative.GetScaling(), kOnesVector);
    EXPECT_EQ(relative.GetScalingAxes(), mode == kPoser ? axes : kIdentityMatrix);
    TreeTransform applied = first;
    EXPECT_TRUE(applied.ApplyRelative(relative));
    EXPECT_TRUE(applied.GetLocalToParent().IsEqual(second.GetLocalToParent(), 1e-5f)) << mode;
  }
}

TEST(TreeTransform, RelativeOfAStretchDividesTheScalings) {
  TreeTransform first;
  first.SetScaling({2, 0, 4});
  TreeTransform second;
  second.SetScaling({1, 5, 2});
  TreeTransform relative;
  ASSERT_TRUE(relative.MakeRelative(first, second));
  EXPECT_EQ(relative.GetScaling(), TVector3(0.5f, 0, 0.5f));
}

TEST(TreeTransform, RelativeThatDoesNotExistChangesNothing) {
  const TreeTransform plain = MakePlaced({0.3f, 0, 0}, {1, 2, 3}, 1, kTorvane);
  TreeTransform otherMode = plain;
  otherMode.SetMode(kPoser);
  TreeTransform otherAxes = plain;
  otherAxes.SetScalingAxes(EulerToMatrix(0, {0.01f, 0, 0}, false));
  TreeTransform tiny = plain;
  tiny.SetUniformScale(6.1e-05f);
  TreeTransform stretched = plain;
  stretched.SetScaling({1, 2, 1});
  const struct {
    const char* fLabel;
    TreeTransform fFirst, fSecond;
  } rows[] = {{"modes differ", plain, otherMode},
              {"axes differ", plain, otherAxes},
              {"uniform scale below 2^-14", tiny, plain},
              {"stretched and turned", plain, stretched}};
  for (const auto& row : rows) {
    TreeTransform relative = stretched;
    EXPECT_FALSE(relative.MakeRelative(row.fFirst, row.fSecond)) << row.fLabel;
    EXPECT_EQ(relative, stretched) << row.fLabel;
  }
  tiny.SetUniformScale(kRealEpsilon);
  EXPECT_TRUE(TreeTransform().MakeRelative(tiny, plain));
}

TEST(TreeTransform, ProductLeavesTheLeftStretchOut) {
  TreeTransform left = MakePlaced({0, 0, kRealHalfPI}, {10, 0, 0}, 2, kTorvane);
  left.SetHotPoint({1, 0, 0});
  TreeTransform right = MakePlaced({0.5f, 0, 0}, {3, 0, 0}, 3, kPoser);
  right.SetHotPoint({7, 8, 9});
  right.SetScaling({1, 2, 3});
  right.SetScalingAxes(EulerToMatrix(0, {0.4f, 0, 0}, false));
  const TreeTransform product = left * right;
  EXPECT_TRUE(product.GetPosition().IsEqual({10, 4, 0}, 1e-5f));
  EXPECT_EQ(product.GetUniformScale(), 6);
  EXPECT_EQ(product.GetHotPoint(), right.GetHotPoint());
  EXPECT_EQ(product.GetScaling(), right.GetScaling());
  EXPECT_EQ(product.GetScalingAxes(), kIdentityMatrix);
  EXPECT_EQ(product.GetMode(), kTorvane);
  EXPECT_EQ(product.GetRotation().GetMatrix(), left.GetRotation().GetMatrix() * right.GetRotation().GetMatrix());

  TreeTransform stretched = left;
  stretched.SetScaling({5, 6, 7});
  stretched.SetScalingAxes(EulerToMatrix(0, {0, 1, 0}, false));
  EXPECT_EQ(stretched * right, product);
}

TEST(TreeTransform, InterpolationBlendsEveryPart) {
  TreeTransform from = MakePlaced({0, 0, 3}, {0, 0, 0}, 1, kPoser);
  TreeTransform to = MakePlaced({0, 0, -3}, {4, 8, 0}, 3, kPoser);
  to.SetHotPoint({8, 0, 0});
  to.SetScaling({3, 1, 1});
  to.SetScalingAxes(EulerToMatrix(0, {0.8f, 0, 0}, false));
  TreeTransform blend;
  blend.Interpolate(0.25f, from, to);
  EXPECT_EQ(blend.GetPosition(), TVector3(1, 2, 0));
  EXPECT_EQ(blend.GetHotPoint(), TVector3(2, 0, 0));
  EXPECT_EQ(blend.GetScaling(), TVector3(1.5f, 1, 1));
  EXPECT_EQ(blend.GetUniformScale(), 1.5f);
  EXPECT_EQ(blend.GetMode(), kPoser);
  EXPECT_TRUE(blend.GetRotation().IsMatrixPrimary());
  // From 3 to -3 the shorter way leads through the half turn.
  const real32 angle = 3 + 0.25f * (kRealTwoPI - 6);
  EXPECT_TRUE(blend.GetRotation().GetMatrix().IsEqual(MakeAxisRotation(2, angle), 1e-5f));
  EXPECT_TRUE(blend.GetScalingAxes().IsEqual(MakeAxisRotation(0, 0.2f), 1e-5f));
}

}  // namespace
}  // namespace qlx::test
