// There and back over 100,000 seeded inputs for each order: the worst error is printed, a failure prints its input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
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

// Keeps the worst error of one order and prints it at the end.
class Worst {
 public:
  Worst(const char* inName, int32 inOrder, real32 inTolerance)
      : fName(inName), fOrder(inOrder), fTolerance(inTolerance) {}
  ~Worst() {
    std::printf("%-28s order %d  worst %.3g  allowed %.3g\n", fName, static_cast<int>(fOrder),
                static_cast<double>(fWorst), static_cast<double>(fTolerance));
  }
  bool Allows(real32 inError) {
    fWorst = std::fmax(fWorst, inError);
    return inError <= fTolerance;
  }

 private:
  const char* fName;
  int32 fOrder;
  real32 fTolerance;
  real32 fWorst = 0;
};

class TransformRoundTrip : public testing::TestWithParam<int32> {};

TEST_P(TransformRoundTrip, MatrixThroughEuler) {
  AssertionGuard guard;
  RandomValues random(100);
  // Beside the poles the first and third angle come from elements that are small.
  Worst worst("matrix through Euler", GetParam(), 1e-5f);
  for (int n = 0; n < kInputCount; ++n) {
    const TVector3 angles = MakeTestAngles(random);
    const bool flip = random.Coin();
    const TMatrix33 matrix = EulerToMatrix(GetParam(), angles, flip);
    TVector3 back;
    bool isFlipped = false;
    MatrixToEuler(GetParam(), matrix, back, isFlipped);
    ASSERT_EQ(isFlipped, flip) << testing::PrintToString(angles);
    ASSERT_TRUE(worst.Allows(Difference(EulerToMatrix(GetParam(), back, flip), matrix)))
        << testing::PrintToString(angles) << " flipped " << flip;
  }
}

TEST_P(TransformRoundTrip, QuaternionThroughEuler) {
  RandomValues random(101);
  Worst worst("quaternion through Euler", GetParam(), 1e-6f);
  Worst worstAngle("angles through quaternion", GetParam(), 2e-6f);
  for (int n = 0; n < kInputCount; ++n) {
    const TVector3 angles = MakeTestAngles(random);
    const TQuaternion quaternion = EulerToQuaternion(GetParam(), angles);
    ASSERT_LE(Difference(quaternion.GetMatrix(), EulerToMatrix(GetParam(), angles, false)), 1e-6f)
        << testing::PrintToString(angles);
    // Beginning at angles that are not far, as a track does.
    const TVector3 reference = angles + random.Vector(-0.5f, 0.5f);
    const TVector3 back = QuaternionToEuler(GetParam(), quaternion, reference);
    ASSERT_TRUE(worst.Allows(Difference(EulerToQuaternion(GetParam(), back), quaternion)))
        << testing::PrintToString(angles) << " near " << testing::PrintToString(reference);
    if (std::fabs(std::cos(angles[GetOrderAxes(GetParam())[1]])) > 0.3f) {
      ASSERT_TRUE(worstAngle.Allows((back - angles).GetLargestSize()))
          << testing::PrintToString(angles) << " near " << testing::PrintToString(reference);
    }
  }
}

TEST_P(TransformRoundTrip, AnglesThroughNearestEquivalent) {
  AssertionGuard guard;
  RandomValues random(102);
  Worst worst("rotation, nearest solution", GetParam(), 1e-5f);
  for (int n = 0; n < kInputCount; ++n) {
    TransformRotation rotation = MakeTestRotation(random, GetParam());
    const TMatrix33 matrix = rotation.GetMatrix();
    const TVector3 angles = rotation.GetEuler();
    const TVector3 reference = angles + random.Vector(-20, 20);
    rotation.SetMatrix(matrix);
    rotation.SetNearestEquivalentEuler(reference);
    ASSERT_TRUE(worst.Allows(Difference(rotation.GetMatrix(), matrix)))
        << testing::PrintToString(angles) << " near " << testing::PrintToString(reference);
    ASSERT_LE((rotation.GetEuler() - reference).GetLargestSize(), kRealPI + 1e-4f) << testing::PrintToString(angles);
  }
}

TEST_P(TransformRoundTrip, PointsThroughTheParentAndModes) {
  AssertionGuard guard;
  RandomValues random(103);
  Worst worstPoint("point through parent", GetParam(), 2e-4f);
  Worst worstMatrix("local to parent to local", GetParam(), 1e-5f);
  Worst worstMode("placement through modes", GetParam(), 1e-3f);
  for (int n = 0; n < kInputCount; ++n) {
    TreeTransform transform = MakeTestTransform(random, GetParam());
    const TVector3 angles = transform.GetRotation().GetEuler();
    const TVector3 point = random.Vector(-10, 10);
    ASSERT_TRUE(worstPoint.Allows((transform.ParentToLocal(transform.LocalToParent(point)) - point).GetLargestSize()))
        << "input " << n << ", angles " << testing::PrintToString(angles);
    const TOffsetMatrix33 placement = transform.GetLocalToParent();
    ASSERT_TRUE(worstMatrix.Allows(Difference((transform.GetParentToLocal() * placement).fMatrix, kIdentityMatrix)))
        << "input " << n << ", angles " << testing::PrintToString(angles);
    // In Euler form the nearest solution of orders 2 and 3 may be another rotation, which has a test of its own.
    if (GetParam() == 2 || GetParam() == 3) {
      transform.GetRotation().SetMatrix(transform.GetRotation().GetMatrix());
    }
    transform.SetMode(transform.GetMode() == kPoser ? kTorvane : kPoser);
    const TOffsetMatrix33 changed = transform.GetLocalToParent();
    ASSERT_TRUE(worstMode.Allows(std::fmax(Difference(changed.fMatrix, placement.fMatrix),
                                           (changed.fOffset - placement.fOffset).GetLargestSize())))
        << "input " << n << ", angles " << testing::PrintToString(angles);
  }
}

INSTANTIATE_TEST_SUITE_P(Orders, TransformRoundTrip, testing::Range(0, 6));

}  // namespace
}  // namespace qlx::test
