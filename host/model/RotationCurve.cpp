#include "RotationCurve.h"

#include <cmath>

#include "KeySearch.h"

namespace qlx::host {

namespace {

QuaternionValue Normalized(const QuaternionValue& inValue) {
  const real64 length =
      std::sqrt(inValue[0] * inValue[0] + inValue[1] * inValue[1] + inValue[2] * inValue[2] + inValue[3] * inValue[3]);
  if (!(length > 0) || !std::isfinite(length)) {
    return {0, 0, 0, 1};
  }
  return {inValue[0] / length, inValue[1] / length, inValue[2] / length, inValue[3] / length};
}

QuaternionValue Blend(real64 inWeightA, const QuaternionValue& inA, real64 inWeightB, const QuaternionValue& inB) {
  QuaternionValue blend;
  for (std::size_t i = 0; i < blend.size(); ++i) {
    blend[i] = inWeightA * inA[i] + inWeightB * inB[i];
  }
  return blend;
}

// The short way round. Nearly equal rotations are blended: the angle between them is too small to divide by.
QuaternionValue Slerp(real64 inPart, const QuaternionValue& inA, const QuaternionValue& inB) {
  constexpr real64 kNearlyEqual = 1.0 - 1e-12;
  const real64 dot = inA[0] * inB[0] + inA[1] * inB[1] + inA[2] * inB[2] + inA[3] * inB[3];
  const real64 side = dot < 0 ? -1.0 : 1.0;
  if (side * dot > kNearlyEqual) {
    return Normalized(Blend(1 - inPart, inA, side * inPart, inB));
  }
  const real64 angle = std::acos(side * dot);
  const real64 sine = std::sin(angle);
  return Normalized(Blend(std::sin((1 - inPart) * angle) / sine, inA, side * std::sin(inPart * angle) / sine, inB));
}

QuaternionValue Hermite(const KeyStretch& inStretch, const RotationKey& inFrom, const RotationKey& inTo) {
  const HermiteWeights weights = GetHermiteWeights(inStretch);
  QuaternionValue value;
  for (std::size_t i = 0; i < value.size(); ++i) {
    value[i] = weights.fFrom * inFrom.fValue[i] + weights.fFromTangent * inFrom.fOutTangent[i] +
               weights.fToTangent * inTo.fInTangent[i] + weights.fTo * inTo.fValue[i];
  }
  return Normalized(value);
}

}  // namespace

RotationCurve::RotationCurve(Interpolation inInterpolation, std::vector<RotationKey> inKeys)
    : fInterpolation(inInterpolation), fKeys(std::move(inKeys)) {}

QuaternionValue RotationCurve::Sample(int32 inTime, std::size_t& ioHint) const {
  if (fKeys.empty()) {
    return {0, 0, 0, 1};
  }
  if (inTime <= fKeys.front().fTime) {
    return Normalized(fKeys.front().fValue);
  }
  const std::size_t at = FindKeyAtOrBefore(fKeys, inTime, ioHint);
  const RotationKey& from = fKeys[at];
  if (from.fTime == inTime || at + 1 == fKeys.size() || fInterpolation == Interpolation::kStep) {
    return Normalized(from.fValue);
  }
  const RotationKey& to = fKeys[at + 1];
  const KeyStretch stretch = MeasureStretch(from.fTime, to.fTime, inTime);
  if (fInterpolation == Interpolation::kCubicSpline) {
    return Hermite(stretch, from, to);
  }
  return Slerp(stretch.fPart, Normalized(from.fValue), Normalized(to.fValue));
}

}  // namespace qlx::host
