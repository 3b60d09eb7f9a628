// Vectors of two, three and four 32-bit reals: plain values, copied by value, zero by default.
//
// Equality has three forms under three names: `==` is exact (so NaN equals nothing), `IsEqual` allows an absolute
// difference in each component, `IsEqualRelative` a difference in proportion to the largest component of both vectors.
//
//   Operation            zero or too short             NaN or infinite component
//   Normalize(tolerance) false, vector unchanged       false, vector unchanged
//   GetMagnitude         0                             NaN, or infinity
//   GetMagnitudeSquared  0; above 1e19 infinity        NaN, or infinity
//   IsEqual*             compares                      false
//   v / 0                infinities and NaN            as arithmetic gives it
//   v[i], i out of range the last component            -
//
// Magnitudes are taken in 64 bits: no vector that 32 bits hold is too long or too short for them.
#pragma once

#include <cmath>
#include <limits>

#include "MCTypes.h"
#include "RealConstants.h"

namespace qlx {

namespace detail {

// An infinite difference is not near, however large the tolerance.
inline bool IsNear(real32 inA, real32 inB, real32 inTolerance) {
  const real32 difference = std::fabs(inA - inB);
  return difference <= inTolerance && difference <= std::numeric_limits<real32>::max();
}

constexpr real64 Square(real32 inValue) {
  return static_cast<real64>(inValue) * static_cast<real64>(inValue);
}

inline real32 LargerSize(real32 inA, real32 inB) {
  return std::fmax(std::fabs(inA), std::fabs(inB));
}

// True with `outFactor` the reciprocal of the length, when there is a finite length above the tolerance.
inline bool FindNormalizer(real64 inSquared, real32 inTolerance, real64& outFactor) {
  const real64 length = std::sqrt(inSquared);
  if (!(length > static_cast<real64>(inTolerance)) || !std::isfinite(length)) {
    return false;
  }
  outFactor = 1.0 / length;
  return true;
}

constexpr real32 Scaled(real32 inValue, real64 inFactor) {
  return static_cast<real32>(static_cast<real64>(inValue) * inFactor);
}

}  // namespace detail

struct TVector2 {
  real32 x = 0;
  real32 y = 0;

  constexpr TVector2() = default;
  constexpr TVector2(real32 inX, real32 inY) : x(inX), y(inY) {}

  constexpr real32& operator[](int inIndex) { return inIndex == 0 ? x : y; }
  constexpr const real32& operator[](int inIndex) const { return inIndex == 0 ? x : y; }

  constexpr TVector2 operator-() const { return {-x, -y}; }
  constexpr TVector2& operator+=(const TVector2& inV) { return *this = *this + inV; }
  constexpr TVector2& operator-=(const TVector2& inV) { return *this = *this - inV; }
  constexpr TVector2& operator*=(real32 inFactor) { return *this = *this * inFactor; }
  constexpr TVector2& operator/=(real32 inDivisor) { return *this = *this / inDivisor; }

  friend constexpr TVector2 operator+(const TVector2& inA, const TVector2& inB) {
    return {inA.x + inB.x, inA.y + inB.y};
  }
  friend constexpr TVector2 operator-(const TVector2& inA, const TVector2& inB) {
    return {inA.x - inB.x, inA.y - inB.y};
  }
  friend constexpr TVector2 operator*(const TVector2& inV, real32 inFactor) {
    return {inV.x * inFactor, inV.y * inFactor};
  }
  friend constexpr TVector2 operator*(real32 inFactor, const TVector2& inV) { return inV * inFactor; }
  friend constexpr TVector2 operator/(const TVector2& inV, real32 inDivisor) {
    return {inV.x / inDivisor, inV.y / inDivisor};
  }
  friend constexpr bool operator==(const TVector2&, const TVector2&) = default;

  real32 GetMagnitude() const { return static_cast<real32>(std::sqrt(detail::Square(x) + detail::Square(y))); }
  constexpr real32 GetMagnitudeSquared() const { return x * x + y * y; }

  // False, with the vector as it was, when its length is not above the tolerance or not finite.
  bool Normalize(real32 inTolerance = kReal_SmallValue) {
    real64 factor = 0;
    if (!detail::FindNormalizer(detail::Square(x) + detail::Square(y), inTolerance, factor)) {
      return false;
    }
    *this = {detail::Scaled(x, factor), detail::Scaled(y, factor)};
    return true;
  }

  real32 GetLargestSize() const { return detail::LargerSize(x, y); }
  bool IsFinite() const { return std::isfinite(x) && std::isfinite(y); }

  bool IsEqual(const TVector2& inOther, real32 inTolerance) const {
    return detail::IsNear(x, inOther.x, inTolerance) && detail::IsNear(y, inOther.y, inTolerance);
  }
  bool IsEqualRelative(const TVector2& inOther, real32 inTolerance) const {
    return IsEqual(inOther, inTolerance * detail::LargerSize(GetLargestSize(), inOther.GetLargestSize()));
  }
};

struct TVector3 {
  real32 x = 0;
  real32 y = 0;
  real32 z = 0;

  constexpr TVector3() = default;
  constexpr TVector3(real32 inX, real32 inY, real32 inZ) : x(inX), y(inY), z(inZ) {}

  constexpr real32& operator[](int inIndex) { return inIndex == 0 ? x : (inIndex == 1 ? y : z); }
  constexpr const real32& operator[](int inIndex) const { return inIndex == 0 ? x : (inIndex == 1 ? y : z); }

  constexpr TVector3 operator-() const { return {-x, -y, -z}; }
  constexpr TVector3& operator+=(const TVector3& inV) { return *this = *this + inV; }
  constexpr TVector3& operator-=(const TVector3& inV) { return *this = *this - inV; }
  constexpr TVector3& operator*=(real32 inFactor) { return *this = *this * inFactor; }
  constexpr TVector3& operator/=(real32 inDivisor) { return *this = *this / inDivisor; }

  friend constexpr TVector3 operator+(const TVector3& inA, const TVector3& inB) {
    return {inA.x + inB.x, inA.y + inB.y, inA.z + inB.z};
  }
  friend constexpr TVector3 operator-(const TVector3& inA, const TVector3& inB) {
    return {inA.x - inB.x, inA.y - inB.y, inA.z - inB.z};
  }
  friend constexpr TVector3 operator*(const TVector3& inV, real32 inFactor) {
    return {inV.x * inFactor, inV.y * inFactor, inV.z * inFactor};
  }
  friend constexpr TVector3 operator*(real32 inFactor, const TVector3& inV) { return inV * inFactor; }
  friend constexpr TVector3 operator/(const TVector3& inV, real32 inDivisor) {
    return {inV.x / inDivisor, inV.y / inDivisor, inV.z / inDivisor};
  }
  friend constexpr bool operator==(const TVector3&, const TVector3&) = default;

  real32 GetMagnitude() const {
    return static_cast<real32>(std::sqrt(detail::Square(x) + detail::Square(y) + detail::Square(z)));
  }
  constexpr real32 GetMagnitudeSquared() const { return x * x + y * y + z * z; }

  // False, with the vector as it was, when its length is not above the tolerance or not finite.
  bool Normalize(real32 inTolerance = kReal_SmallValue) {
    real64 factor = 0;
    if (!detail::FindNormalizer(detail::Square(x) + detail::Square(y) + detail::Square(z), inTolerance, factor)) {
      return false;
    }
    *this = {detail::Scaled(x, factor), detail::Scaled(y, factor), detail::Scaled(z, factor)};
    return true;
  }

  real32 GetLargestSize() const { return std::fmax(detail::LargerSize(x, y), std::fabs(z)); }
  bool IsFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }

  bool IsEqual(const TVector3& inOther, real32 inTolerance) const {
    return detail::IsNear(x, inOther.x, inTolerance) && detail::IsNear(y, inOther.y, inTolerance) &&
           detail::IsNear(z, inOther.z, inTolerance);
  }
  bool IsEqualRelative(const TVector3& inOther, real32 inTolerance) const {
    return IsEqual(inOther, inTolerance * detail::LargerSize(GetLargestSize(), inOther.GetLargestSize()));
  }
};

struct TVector4 {
  real32 x = 0;
  real32 y = 0;
  real32 z = 0;
  real32 w = 0;

  constexpr TVector4() = default;
  constexpr TVector4(real32 inX, real32 inY, real32 inZ, real32 inW) : x(inX), y(inY), z(inZ), w(inW) {}

  constexpr real32& operator[](int inIndex) { return inIndex == 0 ? x : (inIndex == 1 ? y : (inIndex == 2 ? z : w)); }
  constexpr const real32& operator[](int inIndex) const {
    return inIndex == 0 ? x : (inIndex == 1 ? y : (inIndex == 2 ? z : w));
  }

  constexpr TVector4 operator-() const { return {-x, -y, -z, -w}; }
  constexpr TVector4& operator+=(const TVector4& inV) { return *this = *this + inV; }
  constexpr TVector4& operator-=(const TVector4& inV) { return *this = *this - inV; }
  constexpr TVector4& operator*=(real32 inFactor) { return *this = *this * inFactor; }
  constexpr TVector4& operator/=(real32 inDivisor) { return *this = *this / inDivisor; }

  friend constexpr TVector4 operator+(const TVector4& inA, const TVector4& inB) {
    return {inA.x + inB.x, inA.y + inB.y, inA.z + inB.z, inA.w + inB.w};
  }
  friend constexpr TVector4 operator-(const TVector4& inA, const TVector4& inB) {
    return {inA.x - inB.x, inA.y - inB.y, inA.z - inB.z, inA.w - inB.w};
  }
  friend constexpr TVector4 operator*(const TVector4& inV, real32 inFactor) {
    return {inV.x * inFactor, inV.y * inFactor, inV.z * inFactor, inV.w * inFactor};
  }
  friend constexpr TVector4 operator*(real32 inFactor, const TVector4& inV) { return inV * inFactor; }
  friend constexpr TVector4 operator/(const TVector4& inV, real32 inDivisor) {
    return {inV.x / inDivisor, inV.y / inDivisor, inV.z / inDivisor, inV.w / inDivisor};
  }
  friend constexpr bool operator==(const TVector4&, const TVector4&) = default;

  real32 GetMagnitude() const {
    return static_cast<real32>(
        std::sqrt(detail::Square(x) + detail::Square(y) + detail::Square(z) + detail::Square(w)));
  }
  constexpr real32 GetMagnitudeSquared() const { return x * x + y * y + z * z + w * w; }

  // False, with the vector as it was, when its length is not above the tolerance or not finite.
  bool Normalize(real32 inTolerance = kReal_SmallValue) {
    real64 factor = 0;
    if (!detail::FindNormalizer(detail::Square(x) + detail::Square(y) + detail::Square(z) + detail::Square(w),
                                inTolerance, factor)) {
      return false;
    }
    *this = {detail::Scaled(x, factor), detail::Scaled(y, factor), detail::Scaled(z, factor),
             detail::Scaled(w, factor)};
    return true;
  }

  real32 GetLargestSize() const { return std::fmax(detail::LargerSize(x, y), detail::LargerSize(z, w)); }
  bool IsFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z) && std::isfinite(w); }

  bool IsEqual(const TVector4& inOther, real32 inTolerance) const {
    return detail::IsNear(x, inOther.x, inTolerance) && detail::IsNear(y, inOther.y, inTolerance) &&
           detail::IsNear(z, inOther.z, inTolerance) && detail::IsNear(w, inOther.w, inTolerance);
  }
  bool IsEqualRelative(const TVector4& inOther, real32 inTolerance) const {
    return IsEqual(inOther, inTolerance * detail::LargerSize(GetLargestSize(), inOther.GetLargestSize()));
  }
};

static_assert(sizeof(TVector2) == 8 && sizeof(TVector3) == 12 && sizeof(TVector4) == 16);

constexpr real32 Dot(const TVector2& inA, const TVector2& inB) {
  return inA.x * inB.x + inA.y * inB.y;
}

constexpr real32 Dot(const TVector3& inA, const TVector3& inB) {
  return inA.x * inB.x + inA.y * inB.y + inA.z * inB.z;
}

constexpr real32 Dot(const TVector4& inA, const TVector4& inB) {
  return inA.x * inB.x + inA.y * inB.y + inA.z * inB.z + inA.w * inB.w;
}

constexpr TVector3 Cross(const TVector3& inA, const TVector3& inB) {
  return {inA.y * inB.z - inA.z * inB.y, inA.z * inB.x - inA.x * inB.z, inA.x * inB.y - inA.y * inB.x};
}

// Component by component.
constexpr TVector3 Scale(const TVector3& inA, const TVector3& inB) {
  return {inA.x * inB.x, inA.y * inB.y, inA.z * inB.z};
}

// (1 - t) of the first and t of the second: exact at both ends.
constexpr TVector3 Lerp(real32 inT, const TVector3& inFrom, const TVector3& inTo) {
  return inFrom * (1.0f - inT) + inTo * inT;
}

inline constexpr TVector3 kZeroVector{0, 0, 0};
inline constexpr TVector3 kUnitX{1, 0, 0};
inline constexpr TVector3 kUnitY{0, 1, 0};
inline constexpr TVector3 kUnitZ{0, 0, 1};
inline constexpr TVector3 kOnesVector{1, 1, 1};

}  // namespace qlx
