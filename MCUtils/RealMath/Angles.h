// Angles in radians, 32-bit reals.
//
//   Function                  huge finite angle            NaN or infinite argument
//   NormalizeAngle(x)         the exact remainder          reports, x unchanged
//   ShiftByWholeTurns(x, r)   nearest that 32 bits hold    x unchanged
//   Angle(0, 0)               reports, 0                   as atan2 gives it
//
// Nothing here loops over turns, so no argument takes longer than another.
#pragma once

#include "RealConstants.h"

namespace qlx {

// The two-argument arc tangent, -pi to pi.
real32 Angle(real32 inY, real32 inX);

// The angle that differs from `inAngle` by whole turns and lies within half a turn of `inReference`. An angle that
// already does comes back as it is.
real32 ShiftByWholeTurns(real32 inAngle, real32 inReference);

// Brings the angle into the interval from -kRealPI to kRealPI by whole turns.
real32 NormalizeAngle(real32 inAngle);

}  // namespace qlx
