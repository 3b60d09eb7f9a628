// Rounding of an angle to a multiple of a step, in 16.16 fixed point.
//
// There are two forms: the half step that is added before the division is a division by two in one and a shift in the
// other. They differ for a negative step with an odd fixed-point value alone, by one step at the border.
//
// A step that is 0 in 16.16, NaN, or too large for it: the angle comes back as it is. So does an angle that 16.16
// cannot hold.
#pragma once

#include "MCTypes.h"

namespace qlx {

real32 SnapAngleByDivision(real32 inAngle, real32 inStep);
real32 SnapAngleByShift(real32 inAngle, real32 inStep);

}  // namespace qlx
