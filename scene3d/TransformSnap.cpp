#include "TransformSnap.h"

#include <cmath>

namespace qlx {

namespace {

// False when 16.16 cannot hold the value.
bool ToFixed(real32 inValue, int32& outFixed) {
  const real64 scaled = static_cast<real64>(inValue) * 65536.0;
  if (!(std::fabs(scaled) < 2147483648.0)) {
    return false;
  }
  outFixed = static_cast<int32>(scaled);
  return true;
}

template <class Halve>
real32 Snap(real32 inAngle, real32 inStep, Halve&& inHalve) {
  int32 value = 0;
  int32 step = 0;
  if (!ToFixed(inStep, step) || step == 0 || !ToFixed(inAngle, value)) {
    return inAngle;
  }
  const int64 count = (static_cast<int64>(inHalve(step)) + value) / step;
  return static_cast<real32>(static_cast<real64>(count * step) / 65536.0);
}

}  // namespace

real32 SnapAngleByDivision(real32 inAngle, real32 inStep) {
  return Snap(inAngle, inStep, [](int32 step) { return step / 2; });
}

real32 SnapAngleByShift(real32 inAngle, real32 inStep) {
  return Snap(inAngle, inStep, [](int32 step) { return step >> 1; });
}

}  // namespace qlx
