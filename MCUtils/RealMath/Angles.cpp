#include "Angles.h"

#include <cmath>

#include "MCAssert.h"

namespace qlx {

real32 Angle(real32 inY, real32 inX) {
  MC_ASSERT_TEXT(inY != 0 || inX != 0, "(valueY != 0.0) || (valueX != 0.0)");
  return std::atan2(inY, inX);
}

real32 ShiftByWholeTurns(real32 inAngle, real32 inReference) {
  constexpr real64 kHalf = kRealPI;
  constexpr real64 kTurn = kRealTwoPI;
  const real64 angle = inAngle;
  const real64 difference = angle - static_cast<real64>(inReference);
  if (!std::isfinite(difference) || std::fabs(difference) <= kHalf) {
    return inAngle;
  }
  const real64 turns = std::floor((std::fabs(difference) - kHalf) / kTurn + 1) * kTurn;
  const real64 shifted = difference > 0 ? difference - turns : difference + turns;
  if (std::fabs(shifted) <= kHalf + 1e-3) {
    return static_cast<real32>(difference > 0 ? angle - turns : angle + turns);
  }
  // So many turns that their sum was rounded: the remainder is exact.
  return static_cast<real32>(static_cast<real64>(inReference) + std::remainder(difference, kTurn));
}

real32 NormalizeAngle(real32 inAngle) {
  const real32 x = ShiftByWholeTurns(inAngle, 0);
  MC_ASSERT(x <= kRealPI);
  MC_ASSERT(x >= -kRealPI);
  return x;
}

}  // namespace qlx
