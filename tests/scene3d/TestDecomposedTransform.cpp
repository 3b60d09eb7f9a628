#include <gtest/gtest.h>

#include <limits>

#include "AssertionGuard.h"
#include "RandomValues.h"
#include "Transforms.h"

namespace qlx::test {
namespace {

TEST(DecomposedTransform, PerpendicularAxesNeedNoAxesOfTheirOwn) {
  AssertionGuard guard;
  const TMatrix33 rotation = EulerToMatrix(0, {0.3f, -0.5f, 1.1f}, true);
  const TOffsetMatrix33 input{rotation * TMatrix33::FromDiagonal({1, 2, 3}), {4, 5, 6}};
  const DecomposedTransform parts(input);
  EXPECT_FALSE(parts.HasScalingAxes());
  EXPECT_EQ(parts.GetScalingAxes(), kIdentityMatrix);
  EXPECT_TRUE(parts.GetScaling().IsEqual({1, 2, 3}, 1e-6f));
  EXPECT_TRUE(parts.GetRotation().GetMatrix().IsEqual(rotation, 1e-6f));
  EXPECT_EQ(parts.GetPosition(), input.fOffset);
}

TEST(DecomposedTransform, AnyShearIsRebuilt) {
  AssertionGuard guard;
  RandomValues random(21);
  for (int n = 0; n < 1000; ++n) {
    const TVector3 scaling = random.Vector(0.1f, 4);
    const TMatrix33 stretch =
        TMatrix33::FromDiagonal(n % 2 == 0 ? scaling : -scaling) * random.Quaternion().GetMatrix();
    const TOffsetMatrix33 input{random.Quaternion().GetMatrix() * stretch, random.Vector(-9, 9)};
    const DecomposedTransform parts(input);
    ASSERT_TRUE(parts.GetMatrix().IsEqualRelative(input, 2e-6f)) << "input " << n;
    ASSERT_TRUE(parts.GetRotation().IsDirect()) << "input " << n;
    ASSERT_GT(parts.GetScaling().z, 0) << "input " << n;
    TreeTransform placed;
    placed.SetRotation(parts.GetRotation());
    placed.SetScaling(parts.GetScaling());
    placed.SetScalingAxes(parts.GetScalingAxes());
    placed.SetPosition(parts.GetPosition());
    ASSERT_TRUE(placed.GetLocalToParent().IsEqualRelative(input, 2e-6f)) << "input " << n;
  }
}

TEST(DecomposedTransform, DegenerateMatricesReport) {
  const std::string check = "check.IsEqualRelative(transform, 1e-4f)";
  AssertionGuard guard({check, "transform.IsFinite()", "fScaling[i] > 0"});
  const DecomposedTransform zero(TOffsetMatrix33{TMatrix33::FromDiagonal(kZeroVector), kOnesVector});
  EXPECT_EQ(zero.GetScaling(), kZeroVector);
  const DecomposedTransform small(TOffsetMatrix33{TMatrix33::FromDiagonal({0.005f, 0.005f, 0.005f}), {}});
  EXPECT_EQ(small.GetScaling(), kZeroVector);
  const DecomposedTransform refused(
      TOffsetMatrix33{TMatrix33::FromDiagonal({1, std::numeric_limits<real32>::infinity(), 1}), kOnesVector});
  EXPECT_EQ(refused.GetMatrix(), TOffsetMatrix33());
  const DecomposedTransform flat(TOffsetMatrix33{TMatrix33(1, 1, 0, 0, 0, 0, 0, 0, 1), {}});
  EXPECT_EQ(flat.GetScaling().z, 0);
}

}  // namespace
}  // namespace qlx::test
