#include <gtest/gtest.h>

#include "AssertionGuard.h"
#include "MatrixQuaternion.h"
#include "NotFinite.h"
#include "RandomValues.h"
#include "RealConstants.h"

namespace qlx::test {
namespace {

// How far apart two rotations are, as the sine of half the angle between them.
real32 RotationError(const TQuaternion& inA, const TQuaternion& inB) {
  const TQuaternion difference = inA.GetConjugate() * inB;
  return TVector3(difference.x, difference.y, difference.z).GetMagnitude();
}

TEST(Quaternion, GoesThroughItsMatrixAtEveryAngle) {
  RandomValues random(11);
  for (int n = 0; n < 100000; ++n) {
    TQuaternion q = random.Quaternion();
    if (n % 2 == 0) {
      // Near the half turns, where the real part vanishes, and near the identity.
      const real32 base = n % 4 == 0 ? kRealPI : 0;
      q = TQuaternion::FromAxisAngle({q.x, q.y, q.z}, base + random.Between(-1e-3f, 1e-3f));
    }
    const real32 error = RotationError(q, TQuaternion::FromMatrix(q.GetMatrix()));
    ASSERT_LE(error, 3e-7f) << "input " << n << ": " << q.x << " " << q.y << " " << q.z << " " << q.w;
  }
}

TEST(Quaternion, ProductFollowsTheMatrices) {
  RandomValues random(12);
  for (int n = 0; n < 1000; ++n) {
    const TQuaternion a = random.Quaternion();
    const TQuaternion b = random.Quaternion();
    ASSERT_TRUE((a * b).GetMatrix().IsEqual(a.GetMatrix() * b.GetMatrix(), 1e-6f)) << "input " << n;
  }
}

TEST(Quaternion, TurnsByTheRightHand) {
  const TMatrix33 turn = TQuaternion::FromAxisAngle({0, 0, 5}, kRealHalfPI).GetMatrix();
  EXPECT_TRUE((turn * kUnitX).IsEqual(kUnitY, 1e-6f));
}

TEST(Quaternion, InterpolatesEvenlyOnTheShorterWay) {
  const TVector3 axis{1, 2, 2};
  const TQuaternion from = TQuaternion::FromAxisAngle(axis, 0.25f);
  for (const real32 angle : {1e-5f, 1e-3f, 0.5f, 2.0f, 3.1f}) {
    for (const real32 t : {0.0f, 0.3f, 0.5f, 1.0f}) {
      const TQuaternion to = TQuaternion::FromAxisAngle(axis, 0.25f + angle);
      const TQuaternion expected = TQuaternion::FromAxisAngle(axis, 0.25f + t * angle);
      EXPECT_LE(RotationError(SphericalInterpolate(t, from, to), expected), 2e-7f) << angle << " at " << t;
      EXPECT_LE(RotationError(SphericalInterpolate(t, from, -to), expected), 2e-7f) << angle << " at " << t;
    }
  }
}

TEST(Quaternion, WhatHasNoDirectionIsTheIdentity) {
  for (const TQuaternion& q : {TQuaternion(0, 0, 0, 0), TQuaternion(kNaN, 0, 0, 1), TQuaternion(0, kInfinity, 0, 1)}) {
    EXPECT_EQ(q.GetMatrix(), kIdentityMatrix);
    TQuaternion copy = q;
    EXPECT_FALSE(copy.Normalize());
    EXPECT_EQ(SphericalInterpolate(0.5f, TQuaternion(1, 0, 0, 0), q), TQuaternion(1, 0, 0, 0));
  }
  EXPECT_EQ(TQuaternion::FromAxisAngle(kZeroVector, 1), TQuaternion());
  EXPECT_EQ(TQuaternion::FromAxisAngle(kUnitX, kInfinity), TQuaternion());
  EXPECT_EQ(TQuaternion::FromMatrix(TMatrix33::FromDiagonal({kNaN, 1, 1})), TQuaternion());
}

TEST(MatrixQuaternion, StartsWithTheMatrixAlone) {
  const MatrixQuaternion value;
  EXPECT_TRUE(value.IsMatrixValid());
  EXPECT_FALSE(value.IsQuaternionValid());
  EXPECT_EQ(value.GetQuaternion(), TQuaternion());
  EXPECT_TRUE(value.IsQuaternionValid());
}

TEST(MatrixQuaternion, FlippedHasTheThirdRowNegated) {
  const TQuaternion q = TQuaternion::FromAxisAngle({1, 2, 3}, 1);
  const TMatrix33 plain = q.GetMatrix();
  const MatrixQuaternion flipped(q, true);
  EXPECT_EQ(flipped.GetMatrix(), TMatrix33::FromRows(plain.GetRow(0), plain.GetRow(1), -plain.GetRow(2)));
  const MatrixQuaternion back(flipped.GetMatrix());
  EXPECT_TRUE(back.IsFlipped());
  EXPECT_LE(RotationError(back.GetQuaternion(), q), 2e-7f);
}

TEST(MatrixQuaternion, ProductAgreesWithTheMatricesForEveryFlip) {
  RandomValues random(13);
  AssertionGuard guard;
  for (int n = 0; n < 1000; ++n) {
    const bool isFirstFlipped = random.Coin();
    const bool isSecondFlipped = random.Coin();
    const MatrixQuaternion a(random.Quaternion(), isFirstFlipped);
    const MatrixQuaternion b(random.Quaternion(), isSecondFlipped);
    const MatrixQuaternion product = a * b;
    ASSERT_EQ(product.IsFlipped(), isFirstFlipped != isSecondFlipped) << "input " << n;
    ASSERT_TRUE(product.GetMatrix().IsEqual(a.GetMatrix() * b.GetMatrix(), 1e-6f)) << "input " << n;
  }
}

TEST(MatrixQuaternion, BlendAndDifferenceTakeTheFirstFlip) {
  const MatrixQuaternion a(TQuaternion(0.6f, 0, 0, 0.8f), true);
  const MatrixQuaternion b(TQuaternion(0, 0, 0, 1), false);
  EXPECT_TRUE(SphericalInterpolate(0.5f, a, b).IsFlipped());
  EXPECT_FALSE(SphericalInterpolate(0.5f, b, a).IsFlipped());
  const MatrixQuaternion difference = ScaledDifference(a, b, 10);
  EXPECT_TRUE(difference.IsFlipped());
  EXPECT_TRUE(difference.GetQuaternion().IsEqual({6, 0, 0, -2}, 1e-6f));
}

}  // namespace
}  // namespace qlx::test
