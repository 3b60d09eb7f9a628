// There and back over 100,000 seeded inputs for each order: a failure prints its input.
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

#include "AssertionGuard.h"
#include "TransformInputs.h"

namespace qlx {

void PrintTo(const TVector3& inV, std::ostream* outStream) {
  outStream->precision(9);
  *outStream << "(" << inV.x << ", " << inV.y << ", " << inV.z << ")";
}

}  // namespace qlx

namespace qlx::test {
namespace {

real32 Difference(const TMatrix33& inA, const TMatrix33& inB) {
  real32 largest = 0;
  for (int i = 0; i < 3; ++i) {
    largest = std::fmax(largest, (inA.GetRow(i) - inB.GetRow(i)).GetLargestSize());
  }
  return largest;
}

// Of two unit quaternions as rotations: the sine of half the angle between them.
real32 Difference(const TQuaternion& inA, const TQuaternion& inB) {
  const TQuaternion difference = inA.GetConjugate() * inB;
  return TVector3(difference.x, difference.y, difference.z).GetMagnitude();
}

class TransformRoundTrip : public testing::TestWithParam<int32> {};

TEST_P(TransformRoundTrip, MatrixThroughEuler) {
  AssertionGuard guard;
  RandomValues random(100);
  for (int n = 0; n < kInputCount; ++n) {
    const TVector3 angles = MakeTestAngles(random);
    const bool flip = random.Coin();
    const TMatrix33 matrix = EulerToMatrix(GetParam(), angles, flip);
    TVector3 back;
    bool isFlipped = false;
    MatrixToEuler(GetParam(), matrix, back, isFlipped);
    ASSERT_EQ(isFlipped, flip) << testing::PrintToString(angles);
    // Beside the poles the first and third angle come from elements that are small.
    ASSERT_LE(Difference(EulerToMatrix(GetParam(), back, flip), matrix), 1e-5f)
        << testing::PrintToString(angles) << " flipped " << flip;
  }
}

TEST_P(TransformRoundTrip, QuaternionThroughEuler) {
  RandomValues random(101);
  for (int n = 0; n < kInputCount; ++n) {
    const TVector3 angles = MakeTestAngles(random);
    const TQuaternion quaternion = EulerToQuaternion(GetParam(), angles);
    ASSERT_LE(Difference(quaternion.GetMatrix(), EulerToMatrix(GetParam(), angles, false)), 1e-6f)
        << testing::PrintToString(angles);
    // Beginning at angles that are not far, as a track does.
    const TVector3 reference = angles + random.Vector(-0.5f, 0.5f);
    const TVector3 back = QuaternionToEuler(GetParam(), quaternion, reference);
    ASSERT_LE(Difference(EulerToQuaternion(GetParam(), back), quaternion), 1e-6f)
        << testing::PrintToString(angles) << " near " << testing::PrintToString(reference);
    if (std::fabs(std::cos(angles[GetOrderAxes(GetParam())[1]])) > 0.3f) {
      ASSERT_LE((back - angles).GetLargestSize(), 2e-6f)
          << testing::PrintToString(angles) << " near " << testing::PrintToString(reference);
    }
  }
}

TEST_P(TransformRoundTrip, AnglesThroughNearestEquivalent) {
  AssertionGuard guard;
  RandomValues random(102);
  for (int n = 0; n < kInputCount; ++n) {
    TransformRotation rotation = MakeTestRotation(random, GetParam());
    const TMatrix33 matrix = rotation.GetMatrix();
    const TVector3 angles = rotation.GetEuler();
    const TVector3 reference = angles + random.Vector(-20, 20);
    rotation.SetMatrix(matrix);
    rotation.SetNearestEquivalentEuler(reference);
    ASSERT_LE(Difference(rotation.GetMatrix(), matrix), 1e-5f)
        << testing::PrintToString(angles) << " near " << testing::PrintToString(reference);
    ASSERT_LE((rotation.GetEuler() - reference).GetLargestSize(), kRealPI + 1e-4f) << testing::PrintToString(angles);
  }
}

TEST_P(TransformRoundTrip, PointsThroughTheParentAndModes) {
  AssertionGuard guard;
  RandomValues random(103);
  for (int n = 0; n < kInputCount; ++n) {
    TreeTransform transform = MakeTestTransform(random, GetParam());
    const TVector3 angles = transform.GetRotation().GetEuler();
    const TVector3 point = random.Vector(-10, 10);
    ASSERT_LE((transform.ParentToLocal(transform.LocalToParent(point)) - point).GetLargestSize(), 2e-4f)
        << testing::PrintToString(angles);
    const TOffsetMatrix33 placement = transform.GetLocalToParent();
    ASSERT_LE(Difference((transform.GetParentToLocal() * placement).fMatrix, kIdentityMatrix), 1e-5f)
        << testing::PrintToString(angles);
    // In Euler form the nearest solution of orders 2 and 3 may be another rotation, which has a test of its own.
    if (GetParam() == 2 || GetParam() == 3) {
      transform.GetRotation().SetMatrix(transform.GetRotation().GetMatrix());
    }
    transform.SetMode(transform.GetMode() == kPoser ? kTorvane : kPoser);
    const TOffsetMatrix33 changed = transform.GetLocalToParent();
    ASSERT_LE(Difference(changed.fMatrix, placement.fMatrix), 1e-3f) << testing::PrintToString(angles);
    ASSERT_LE((changed.fOffset - placement.fOffset).GetLargestSize(), 1e-3f) << testing::PrintToString(angles);
  }
}

INSTANTIATE_TEST_SUITE_P(Orders, TransformRoundTrip, testing::Range(0, 6));

}  // namespace
}  // namespace qlx::test
