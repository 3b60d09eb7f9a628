// The same bits on every target: a hash over a million results of the operations that need no more than the four
// arithmetic operations and the square root, which are exact by their standard. Our own sine and arc tangent are made
// of these. Left out is what calls the C library's pow or hypot (SetFromMatrix, singular values) and its sin and cos
// (angles above a million): the libraries differ in the last bit.
#include <gtest/gtest.h>

#include <bit>

#include "OrthonormalBasis.h"
#include "TransformInputs.h"

namespace qlx::test {
namespace {

// FNV-1a over the bits.
class Hash {
 public:
  void Add(uint64 inBits) { fValue = (fValue ^ inBits) * 1099511628211u; }
  void Add(real32 inValue) { Add(uint64{std::bit_cast<uint32>(inValue)}); }
  void Add(const TVector3& inV) {
    Add(inV.x);
    Add(inV.y);
    Add(inV.z);
  }
  void Add(const TMatrix33& inM) {
    for (int i = 0; i < 3; ++i) {
      Add(inM.GetRow(i));
    }
  }
  uint64 GetValue() const { return fValue; }

 private:
  uint64 fValue = 14695981039346656037u;
};

void AddResults(RandomValues& ioRandom, Hash& ioHash) {
  const TQuaternion q = ioRandom.Quaternion();
  const TMatrix33 rotation = q.GetMatrix();
  const TVector3 stretch = ioRandom.Vector(0.5f, 2);
  const TMatrix33 axes = ioRandom.Quaternion().GetMatrix();
  const TMatrix33 matrix = rotation * TMatrix33::FromDiagonal(stretch) * axes;
  TreeTransform transform;
  transform.SetMode(ioRandom.Coin() ? kPoser : kTorvane);
  transform.SetScalingAxes(axes);
  transform.GetRotation().SetMatrix(rotation);
  transform.SetHotPoint(ioRandom.Vector(-10, 10));
  transform.SetPosition(ioRandom.Vector(-10, 10));
  transform.SetScaling(ioRandom.Vector(0.5f, 2));
  const TVector3 point = ioRandom.Vector(-10, 10);
  ioHash.Add(transform.LocalToParent(point));
  ioHash.Add(transform.ParentToLocal(point));
  ioHash.Add((transform * transform).GetLocalToParent().fOffset);
  TMatrix33 result;
  EXPECT_TRUE(matrix.GetInverse(result));
  ioHash.Add(result);
  result = matrix;
  EXPECT_TRUE(result.MakeOrthonormal(1));
  ioHash.Add(result);
  const TQuaternion back = TQuaternion::FromMatrix(rotation);
  ioHash.Add(TVector3(back.x, back.y, back.z));
  const TVector3 angles = ioRandom.Vector(-7, 7);
  const auto order = static_cast<int32>(ioRandom.Below(6));
  const TMatrix33 turned = EulerToMatrix(order, angles, false);
  ioHash.Add(turned);
  TVector3 read;
  bool isFlipped = false;
  MatrixToEuler(order, turned, read, isFlipped);
  ioHash.Add(read);
  ioHash.Add(QuaternionToEuler(order, q, angles));
  const TQuaternion blend = SphericalInterpolate(0.3f, q, EulerToQuaternion(order, angles));
  ioHash.Add(TVector3(blend.x, blend.y, blend.z));
  TVector3 x, y, z;
  FormOrthonormalBasisAboutZAxis(point, x, y, z);
  ioHash.Add(TMatrix33::FromAxes(x, y, z));
}

TEST(TransformBits, AreTheSameOnEveryTarget) {
  RandomValues random(300);
  Hash hash;
  for (int n = 0; n < 30000; ++n) {  // 57 numbers each
    AddResults(random, hash);
  }
  EXPECT_EQ(hash.GetValue(), 3650965868435048586u);
}

}  // namespace
}  // namespace qlx::test
