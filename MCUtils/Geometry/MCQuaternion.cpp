#include "MCQuaternion.h"

#include "Trigonometry.h"

namespace qlx {

namespace {

// Rounds to a unit quaternion, or the identity when there is no direction.
TQuaternion ToUnit(real64 inX, real64 inY, real64 inZ, real64 inW) {
  const real64 squared = inX * inX + inY * inY + inZ * inZ + inW * inW;
  // Next to 1 the first step of an iteration for the reciprocal root is as good as the root: 3/8 of the difference
  // squared is left.
  real64 factor = 1.5 - 0.5 * squared;
  if (!(std::fabs(squared - 1) < 1e-5)) {
    const real64 length = std::sqrt(squared);
    if (!(length > 0) || !std::isfinite(length)) {
      return {};
    }
    factor = 1.0 / length;
  }
  return {static_cast<real32>(inX * factor), static_cast<real32>(inY * factor), static_cast<real32>(inZ * factor),
          static_cast<real32>(inW * factor)};
}

real64 Dot64(const TQuaternion& inA, const TQuaternion& inB) {
  const auto product = [](real32 inX, real32 inY) { return static_cast<real64>(inX) * static_cast<real64>(inY); };
  return product(inA.x, inB.x) + product(inA.y, inB.y) + product(inA.z, inB.z) + product(inA.w, inB.w);
}

// What is a unit quaternion but for rounding stays as it is.
bool MakeNearlyUnit(TQuaternion& ioQuaternion) {
  return std::fabs(Dot64(ioQuaternion, ioQuaternion) - 1) < 1e-6 || ioQuaternion.Normalize();
}

}  // namespace

TQuaternion TQuaternion::FromMatrix(const TMatrix33& inMatrix) {
  const auto m = [&inMatrix](int i, int j) { return static_cast<real64>(inMatrix(i, j)); };
  const real64 trace = m(0, 0) + m(1, 1) + m(2, 2);
  // Starts from the largest of the four components, so that the divisor is never small.
  int largest = 0;
  for (int i = 1; i < 3; ++i) {
    if (m(i, i) > m(largest, largest)) {
      largest = i;
    }
  }
  if (trace >= m(largest, largest)) {
    return ToUnit(m(2, 1) - m(1, 2), m(0, 2) - m(2, 0), m(1, 0) - m(0, 1), 1 + trace);
  }
  const int i = largest;
  const int j = (i + 1) % 3;
  const int k = (i + 2) % 3;
  real64 vector[3];
  vector[i] = 1 + m(i, i) - m(j, j) - m(k, k);
  vector[j] = m(i, j) + m(j, i);
  vector[k] = m(i, k) + m(k, i);
  return ToUnit(vector[0], vector[1], vector[2], m(k, j) - m(j, k));
}

TQuaternion TQuaternion::FromAxisAngle(const TVector3& inAxis, real32 inAngle) {
  TVector3 axis = inAxis;
  if (!axis.Normalize(0) || !std::isfinite(inAngle)) {
    return {};
  }
  const real64 half = 0.5 * static_cast<real64>(inAngle);
  const real64 s = std::sin(half);
  return ToUnit(static_cast<real64>(axis.x) * s, static_cast<real64>(axis.y) * s, static_cast<real64>(axis.z) * s,
                std::cos(half));
}

TMatrix33 TQuaternion::GetMatrix() const {
  const real64 qx = x;
  const real64 qy = y;
  const real64 qz = z;
  const real64 qw = w;
  const real64 squared = qx * qx + qy * qy + qz * qz + qw * qw;
  if (!(squared > 0) || !std::isfinite(squared)) {
    return {};
  }
  const real64 s = 2.0 / squared;
  const auto real = [](real64 inValue) { return static_cast<real32>(inValue); };
  return {real(1 - s * (qy * qy + qz * qz)), real(s * (qx * qy - qw * qz)),     real(s * (qx * qz + qw * qy)),
          real(s * (qx * qy + qw * qz)),     real(1 - s * (qx * qx + qz * qz)), real(s * (qy * qz - qw * qx)),
          real(s * (qx * qz - qw * qy)),     real(s * (qy * qz + qw * qx)),     real(1 - s * (qx * qx + qy * qy))};
}

bool TQuaternion::Normalize() {
  TVector4 values{x, y, z, w};
  if (!values.Normalize(0)) {
    return false;
  }
  *this = {values.x, values.y, values.z, values.w};
  return true;
}

bool TQuaternion::IsEqual(const TQuaternion& inOther, real32 inTolerance) const {
  return TVector4(x, y, z, w).IsEqual({inOther.x, inOther.y, inOther.z, inOther.w}, inTolerance);
}

TQuaternion SphericalInterpolate(real32 inT, const TQuaternion& inFrom, const TQuaternion& inTo) {
  TQuaternion from = inFrom;
  TQuaternion to = inTo;
  if (!MakeNearlyUnit(from) || !MakeNearlyUnit(to) || !std::isfinite(inT)) {
    return inFrom;
  }
  real64 cosine = Dot64(from, to);
  if (cosine < 0) {
    to = -to;
    cosine = -cosine;
  }
  const real64 t = inT;
  real64 weightFrom = 1 - t;
  real64 weightTo = t;
  const real64 sineSquared = 1 - cosine * cosine;
  // For smaller angles rounding leaves nothing of the sine, and the plain blend is as exact as 32 bits.
  if (sineSquared > 1e-7) {
    const real64 sine = std::sqrt(sineSquared);
    const TSineCosine part = SineCosine(t * ArcTangent(sine, cosine));
    weightTo = part.fSine / sine;
    weightFrom = part.fCosine - cosine * weightTo;
  }
  const auto blend = [weightFrom, weightTo](real32 inA, real32 inB) {
    return static_cast<real64>(inA) * weightFrom + static_cast<real64>(inB) * weightTo;
  };
  return ToUnit(blend(from.x, to.x), blend(from.y, to.y), blend(from.z, to.z), blend(from.w, to.w));
}

}  // namespace qlx
