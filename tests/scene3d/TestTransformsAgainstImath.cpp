// Imath as an independent witness: the same rotations, Euler angles, quaternions and singular values from the same
// inputs. Built where its library is: on the native 64-bit target.
#ifdef QLX_HAVE_IMATH

#include <Imath/ImathEuler.h>
#include <Imath/ImathMatrixAlgo.h>
#include <Imath/ImathQuat.h>
#include <gtest/gtest.h>

#include <cmath>

#include "SingularValues.h"
#include "TransformInputs.h"

namespace qlx::test {
namespace {

constexpr Imath::Eulerf::Order kImathOrders[kOrderCount] = {Imath::Eulerf::XYZ, Imath::Eulerf::XZY, Imath::Eulerf::YXZ,
                                                            Imath::Eulerf::YZX, Imath::Eulerf::ZYX, Imath::Eulerf::ZXY};

// Imath multiplies row vectors from the left, so its matrices are ours transposed.
TMatrix33 FromImath(const Imath::M33f& inM) {
  TMatrix33 result;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      result(j, i) = inM[i][j];
    }
  }
  return result;
}

Imath::M33f ToImath(const TMatrix33& inM) {
  Imath::M33f result;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      result[j][i] = inM(i, j);
    }
  }
  return result;
}

Imath::Quatf ToImath(const TQuaternion& inQ) {
  return {inQ.w, inQ.x, inQ.y, inQ.z};
}

class AgainstImath : public testing::TestWithParam<int32> {};

TEST_P(AgainstImath, EulerToMatrixAndBack) {
  const int32 order = GetParam();
  RandomValues random(200);
  for (int n = 0; n < kInputCount; ++n) {
    const TVector3 angles = MakeTestAngles(random);
    const TMatrix33 matrix = EulerToMatrix(order, angles, false);
    Imath::Eulerf euler(Imath::V3f(angles.x, angles.y, angles.z), kImathOrders[order], Imath::Eulerf::XYZLayout);
    ASSERT_TRUE(matrix.IsEqual(FromImath(euler.toMatrix33()), 1e-6f)) << "input " << n;
    if (std::fabs(std::cos(angles[GetOrderAxes(order)[1]])) < 0.01f) {
      continue;  // near a pole the two choose angles of their own
    }
    TVector3 ours;
    bool isFlipped = false;
    MatrixToEuler(order, matrix, ours, isFlipped);
    euler.extract(ToImath(matrix));
    const Imath::V3f theirs = euler.toXYZVector();
    const TVector3 nearest = NearestEquivalentEuler(order, {theirs.x, theirs.y, theirs.z}, ours);
    ASSERT_TRUE(nearest.IsEqual(ours, 5e-5f))
        << "input " << n << ": " << angles.x << " " << angles.y << " " << angles.z;
  }
}

INSTANTIATE_TEST_SUITE_P(Orders, AgainstImath, testing::Range(0, 6));

TEST(AgainstImath, Quaternions) {
  RandomValues random(201);
  for (int n = 0; n < kInputCount; ++n) {
    const TQuaternion a = random.Quaternion();
    const TQuaternion b = random.Quaternion();
    const real32 t = random.Between(0, 1);
    ASSERT_TRUE(a.GetMatrix().IsEqual(FromImath(ToImath(a).toMatrix33()), 1e-6f)) << "input " << n;
    const TMatrix33 product = (a * b).GetMatrix();
    ASSERT_TRUE(product.IsEqual(FromImath((ToImath(a) * ToImath(b)).toMatrix33()), 1e-6f)) << "input " << n;
    if (std::fabs(Dot(a, b)) > 0.01f) {  // where both ways are as long, either may be taken
      const TMatrix33 blend = SphericalInterpolate(t, a, b).GetMatrix();
      const Imath::Quatf theirs = Imath::slerpShortestArc(ToImath(a), ToImath(b), t);
      ASSERT_TRUE(blend.IsEqual(FromImath(theirs.toMatrix33()), 5e-6f)) << "input " << n;
    }
  }
}

TEST(AgainstImath, InverseAndSingularValues) {
  RandomValues random(202);
  for (int n = 0; n < kInputCount; ++n) {
    const TMatrix33 matrix = MakeTestTransform(random, 0).GetLocalToParent().fMatrix;
    TMatrix33 inverse;
    ASSERT_TRUE(matrix.GetInverse(inverse)) << "input " << n;
    ASSERT_TRUE(inverse.IsEqualRelative(FromImath(ToImath(matrix).inverse()), 1e-4f)) << "input " << n;
    SingularValues33 ours;
    ASSERT_TRUE(ComputeSingularValues(matrix, ours));
    Imath::M33d u;
    Imath::V3d values;
    Imath::M33d v;
    Imath::jacobiSVD(Imath::M33d(ToImath(matrix)), u, values, v);
    for (int i = 0; i < 3; ++i) {
      ASSERT_NEAR(ours.fValues[i], values[i], 1e-9) << "input " << n;
    }
  }
}

}  // namespace
}  // namespace qlx::test

#endif
