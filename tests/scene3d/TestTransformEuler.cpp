#include <gtest/gtest.h>

#include <cmath>

#include "AssertionGuard.h"
#include "NotFinite.h"
#include "RealConstants.h"
#include "TransformEuler.h"

namespace qlx::test {
namespace {

TEST(TransformOrder, AxesActInTheOrderOfTheirTriple) {
  const TVector3 angles{0.3f, -0.5f, 1.1f};
  for (int32 order = 0; order < kOrderCount; ++order) {
    const OrderAxes axes = GetOrderAxes(order);
    const TMatrix33 expected = MakeAxisRotation(axes[2], angles[axes[2]]) * MakeAxisRotation(axes[1], angles[axes[1]]) *
                               MakeAxisRotation(axes[0], angles[axes[0]]);
    EXPECT_TRUE(EulerToMatrix(order, angles, false).IsEqual(expected, 1e-6f)) << order;
    const TMatrix33 flipped = TMatrix33::FromDiagonal({1, 1, -1}) * expected;
    EXPECT_TRUE(EulerToMatrix(order, angles, true).IsEqual(flipped, 1e-6f)) << order;
  }
}

TEST(TransformOrder, MiddleIndexIsATableOfItsOwn) {
  const int expected[kOrderCount] = {1, 2, 2, 0, 1, 0};
  for (int32 order = 0; order < kOrderCount; ++order) {
    EXPECT_EQ(GetMiddleIndex(order), expected[order]) << order;
    EXPECT_EQ(GetMiddleIndex(order) == GetOrderAxes(order)[1], order != 2 && order != 3) << order;
  }
}

TEST(TransformOrder, AnUnknownOrderReports) {
  AssertionGuard guard(
      {"invalid joint order", "Should not be called !!!", "wrong axis", "inOrder >= 0 && inOrder < 6"});
  EXPECT_EQ(GetOrderAxes(6)[2], 2);
  EXPECT_EQ(GetMiddleIndex(-1), 0);
  EXPECT_EQ(MakeAxisRotation(3, 1), kIdentityMatrix);
  TVector3 angles;
  bool isFlipped = true;
  MatrixToEuler(6, kIdentityMatrix, angles, isFlipped);
  EXPECT_FALSE(isFlipped);
}

TEST(TransformEuler, DistanceShiftsByWholeTurnsAndSums) {
  TVector3 angles{7, 0.5f, -20};
  const TVector3 reference{0, 0, 0};
  const real32 distance = GetEulerDistance(angles, reference);
  EXPECT_TRUE(angles.IsEqual({7 - kRealTwoPI, 0.5f, -20 + 3 * kRealTwoPI}, 1e-5f));
  EXPECT_FLOAT_EQ(distance, std::fabs(angles.x) + 0.5f + std::fabs(angles.z));
}

TEST(TransformEuler, NormalizeBringsTheMiddleAngleIntoAQuarterTurn) {
  AssertionGuard guard;
  TVector3 angles{0.25f, 2, -0.5f};
  NormalizeEuler(0, angles);
  EXPECT_TRUE(angles.IsEqual({0.25f - kRealPI, kRealPI - 2, kRealPI - 0.5f}, 1e-5f));
  TVector3 others{-2, 0.1f, 10};
  NormalizeEuler(5, others);
  EXPECT_TRUE(others.IsEqual({2 - kRealPI, 0.1f - kRealPI, 10 - 3 * kRealPI}, 1e-5f));
}

TEST(TransformEuler, ATrackAcrossAPoleDoesNotJump) {
  // Straight through the pole: the second angle of the order rises past a quarter turn.
  for (int32 order = 0; order < kOrderCount; ++order) {
    const OrderAxes axes = GetOrderAxes(order);
    TVector3 previous;
    previous[axes[0]] = 0.4f;
    previous[axes[2]] = -0.9f;
    for (int frame = 0; frame <= 64; ++frame) {
      TVector3 expected;
      expected[axes[0]] = 0.4f;
      expected[axes[1]] = static_cast<real32>(frame) * kRealPI / 64;  // the pole is met exactly
      expected[axes[2]] = -0.9f;
      previous = QuaternionToEuler(order, EulerToQuaternion(order, expected), previous);
      EXPECT_TRUE(previous.IsEqual(expected, 2e-5f)) << "order " << order << ", frame " << frame;
    }
  }
}

TEST(TransformEuler, WhatIsNotFiniteEnds) {
  const TVector3 reference{1, 2, 3};
  EXPECT_EQ(EulerToQuaternion(0, {kInfinity, 0, 0}), TQuaternion());
  EXPECT_EQ(QuaternionToEuler(0, TQuaternion(kNaN, 0, 0, 1), reference), reference);
  EXPECT_EQ(QuaternionToEuler(0, TQuaternion(0, 0, 0, 0), {}), TVector3());
  EXPECT_EQ(NearestEquivalentEuler(0, reference, {kInfinity, 0, 0}), reference);
  const std::string determinant = "fabs(1.0 - fabs(det)) < kRealEpsilon";
  const std::string rebuilt = "matrix.IsEqual(inRotation, 1e-3f)";
  AssertionGuard guard({determinant, rebuilt, determinant, rebuilt});
  TVector3 angles;
  bool isFlipped = false;
  MatrixToEuler(0, TMatrix33::FromDiagonal({kNaN, kInfinity, 1}), angles, isFlipped);
  MatrixToEuler(0, TMatrix33::FromDiagonal(kZeroVector), angles, isFlipped);
  EXPECT_TRUE(angles.IsFinite());
}

}  // namespace
}  // namespace qlx::test
