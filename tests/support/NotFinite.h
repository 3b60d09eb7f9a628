// Reals that are no numbers, for tests of what becomes of them.
#pragma once

#include <limits>

#include "MCTypes.h"

namespace qlx::test {

inline constexpr real32 kInfinity = std::numeric_limits<real32>::infinity();
inline constexpr real32 kNaN = std::numeric_limits<real32>::quiet_NaN();

}  // namespace qlx::test
