#include <gtest/gtest.h>

#include <cstring>

#include "AssertionGuard.h"
#include "Transforms.h"

namespace qlx::test {
namespace {

const TOffsetMatrix33 kParent{EulerToMatrix(0, {0.2f, 0.4f, -0.6f}, false) * TMatrix33::FromDiagonal({2, 1, -1}),
                              {5, 0, -5}};

TEST(GlobalTreeTransform, TheHotPointMovesInAnElementThatStays) {
  AssertionGuard guard;
  for (const int32 mode : {kTorvane, kPoser}) {
    TreeTransform base;
    base.SetMode(mode);
    base.GetRotation().SetEuler({0.3f, -0.5f, 1.1f});
    base.SetPosition({1, 2, 3});
    base.SetScaling({1, 2, 1});
    GlobalTreeTransform transform(base, kParent);
    const TVector3 target{1, -1, 2};
    transform.SetHotPointInGlobal(target);
    EXPECT_TRUE(transform.GetHotPointInGlobal().IsEqual(target, 1e-5f)) << mode;
    EXPECT_TRUE(transform.GetLocalToParent().IsEqual(base.GetLocalToParent(), 1e-5f)) << mode;
  }
}

TEST(GlobalTreeTransform, ANewParentRenewsWhatWasKept) {
  GlobalTreeTransform transform;
  EXPECT_EQ(transform.GetGlobalToParent(), TOffsetMatrix33());
  transform.SetParentToGlobal(kParent);
  EXPECT_TRUE((transform.GetGlobalToParent() * kParent).IsEqual(TOffsetMatrix33(), 1e-5f));
  EXPECT_EQ(transform.GetHotPointInGlobal(), kParent.fOffset);
  AssertionGuard guard({"success"});
  transform.SetParentToGlobal({TMatrix33::FromDiagonal({1, 0, 1}), {}});
  EXPECT_EQ(transform.GetGlobalToParent(), TOffsetMatrix33());
}

TEST(GlobalTreeTransform, RotationKeepsTheMainAxis) {
  AssertionGuard guard;
  const TMatrix33 wanted = EulerToMatrix(0, {0.3f, -0.5f, 1.1f}, false);
  GlobalTreeTransform transform;
  transform.SetScaling({2, 3, 4});
  transform.GetRotation().SetEuler({6.5f, 0, 0});
  transform.SetRotationKeepingAxis(wanted * transform.GetScalingMatrix(false), 1, true);
  EXPECT_TRUE(transform.GetRotation().GetMatrix().IsEqual(wanted, 1e-5f));
  EXPECT_FALSE(transform.GetRotation().IsMatrixPrimary());
  EXPECT_TRUE(transform.GetRotation().GetEuler().IsEqual({0.3f + kRealTwoPI, -0.5f, 1.1f}, 1e-5f));

  // Sheared: the axis named stays, and the rest gives way.
  const TMatrix33 sheared = TMatrix33::FromAxes({1, 0.5f, 0}, kUnitY, {0, 0.3f, 1});
  GlobalTreeTransform kept;
  kept.SetRotationKeepingAxis(sheared, 2, false);
  TVector3 axis = sheared.GetAxis(2);
  axis.Normalize();
  EXPECT_TRUE(kept.GetRotation().GetMatrix().GetAxis(2).IsEqual(axis, 1e-6f));
  EXPECT_TRUE(kept.GetRotation().IsMatrixPrimary());
}

TEST(GlobalTreeTransform, RotationOfAFlatMatrixTakesTheFirstAxisWithADirection) {
  AssertionGuard guard({"mainAxis >= 0 && mainAxis < 3"});
  GlobalTreeTransform transform;
  transform.SetRotationKeepingAxis(TMatrix33::FromAxes({0.01f, 0, 0}, {0, 0, 2}, kZeroVector), 0, false);
  const TMatrix33 matrix = transform.GetRotation().GetMatrix();
  EXPECT_EQ(matrix.GetAxis(1), kUnitZ);
  EXPECT_TRUE((matrix * matrix.GetTranspose()).IsEqual(kIdentityMatrix, 1e-6f));
  EXPECT_GT(matrix.GetDeterminant(), 0);
  transform.SetScaling({1, 0, 1});
  transform.SetRotationKeepingAxis(TMatrix33::FromDiagonal(kZeroVector), 3, false);
  EXPECT_EQ(transform.GetRotation().GetMatrix(), kIdentityMatrix);
}

TEST(GlobalTreeTransform, RotationInAnUnknownModeChangesNothing) {
  AssertionGuard guard({"Unknown tree transform mode"});
  TreeTransform base;
  const int32 mode = 2;
  std::memcpy(static_cast<void*>(&base), &mode, sizeof(mode));
  GlobalTreeTransform transform(base);
  transform.SetRotationKeepingAxis(EulerToMatrix(0, {1, 0, 0}, false), 0, false);
  EXPECT_TRUE(transform == base);
}

}  // namespace
}  // namespace qlx::test
