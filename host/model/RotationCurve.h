// A rotation over time as unit quaternions: how a glTF scene animates one. It rules an element's rotation until a
// person edits one of the Euler tracks; then the tracks do.
#pragma once

#include <array>
#include <vector>

#include "Curve.h"

namespace qlx::host {

// x, y, z, w, as glTF has them.
using QuaternionValue = std::array<real64, 4>;

struct RotationKey {
  int32 fTime = 0;
  QuaternionValue fValue{0, 0, 0, 1};
  QuaternionValue fInTangent{};  // cubic spline alone, a second
  QuaternionValue fOutTangent{};
};

// Keys in strictly ascending time order, finite values, one interpolation for all, as in a glTF sampler.
class RotationCurve {
 public:
  RotationCurve(Interpolation inInterpolation, std::vector<RotationKey> inKeys);

  // Of unit length; the identity where the keys give none (no key, a zero quaternion). Step holds; linear is
  // spherical, the short way round; cubic spline is the Hermite form, normalised.
  QuaternionValue Sample(int32 inTime, std::size_t& ioHint) const;

  const std::vector<RotationKey>& GetKeys() const { return fKeys; }
  Interpolation GetInterpolation() const { return fInterpolation; }

 private:
  Interpolation fInterpolation;
  std::vector<RotationKey> fKeys;
};

}  // namespace qlx::host
