// Rotation as a quaternion of four 32-bit reals, components in the order x, y, z, w: (x, y, z) the vector part, w the
// real part. The identity, which is the default, is (0, 0, 0, 1). The product follows that of matrices: the matrix of
// a * b is the matrix of a times the matrix of b, so b acts first. q and -q are the same rotation.
//
//   Operation               zero quaternion, singular matrix         NaN or infinite component
//   Normalize()             false, unchanged                         false, unchanged
//   GetMatrix               identity                                 identity
//   FromMatrix              of a singular matrix: some unit one      identity
//   FromAxisAngle           of an axis without direction: identity   identity
//   SphericalInterpolate    the first of the two                     the first of the two
//
// Conversions compute in 64 bits and round once.
#pragma once

#include "MCMatrix.h"

namespace qlx {

struct TQuaternion {
  real32 x = 0;
  real32 y = 0;
  real32 z = 0;
  real32 w = 1;

  constexpr TQuaternion() = default;
  constexpr TQuaternion(real32 inX, real32 inY, real32 inZ, real32 inW) : x(inX), y(inY), z(inZ), w(inW) {}

  // Of a rotation matrix (determinant 1), near any angle as exact as elsewhere.
  static TQuaternion FromMatrix(const TMatrix33& inMatrix);
  // A turn about the axis, of any length, by the right-hand rule.
  static TQuaternion FromAxisAngle(const TVector3& inAxis, real32 inAngle);

  // Need not be of unit length.
  TMatrix33 GetMatrix() const;

  constexpr TQuaternion GetConjugate() const { return {-x, -y, -z, w}; }
  constexpr TQuaternion operator-() const { return {-x, -y, -z, -w}; }
  // Any length that is not zero has a direction.
  bool Normalize();

  // The same four numbers within the tolerance. Two of opposite sign are not equal here, though the same rotation.
  bool IsEqual(const TQuaternion& inOther, real32 inTolerance) const;
  friend constexpr bool operator==(const TQuaternion&, const TQuaternion&) = default;
};

static_assert(sizeof(TQuaternion) == 16);

constexpr real32 Dot(const TQuaternion& inA, const TQuaternion& inB) {
  return inA.x * inB.x + inA.y * inB.y + inA.z * inB.z + inA.w * inB.w;
}

constexpr TQuaternion operator*(const TQuaternion& inA, const TQuaternion& inB) {
  return {inA.w * inB.x + inA.x * inB.w + inA.y * inB.z - inA.z * inB.y,
          inA.w * inB.y - inA.x * inB.z + inA.y * inB.w + inA.z * inB.x,
          inA.w * inB.z + inA.x * inB.y - inA.y * inB.x + inA.z * inB.w,
          inA.w * inB.w - inA.x * inB.x - inA.y * inB.y - inA.z * inB.z};
}

// From the first (t = 0) to the second (t = 1) on the shorter way, at even speed; the result has unit length and, at
// t = 1, may be minus the second.
TQuaternion SphericalInterpolate(real32 inT, const TQuaternion& inFrom, const TQuaternion& inTo);

}  // namespace qlx
