// The 32-bit constants that all angle and tolerance rules share.
#pragma once

#include "MCTypes.h"

namespace qlx {

inline constexpr real32 kRealPI = 3.1415927f;
inline constexpr real32 kRealTwoPI = 6.2831855f;
inline constexpr real32 kRealHalfPI = 1.5707964f;

inline constexpr real32 kRealEpsilon = 6.1035156e-05f;  // 2^-14: what is nearer than this counts as the same
inline constexpr real32 kReal_SmallValue = 1e-06f;      // a length not above this has no direction

}  // namespace qlx
