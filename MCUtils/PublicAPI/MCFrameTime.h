// Scene time: ticks, 180000 to the second. Host and plug-in take the time of a frame from here, so that a window that
// starts at a frame is hit exactly.
#pragma once

#include <cmath>
#include <limits>

#include "MCTypes.h"

namespace qlx {

inline constexpr int32 kTicksPerSecond = 180000;

// A frame rate that times can be computed with: finite, above 0, at most one frame a tick.
inline bool IsValidFrameRate(real32 inRate) {
  return inRate > 0.0f && inRate <= static_cast<real32>(kTicksPerSecond);
}

// Truncated towards zero; what does not fit is the nearest number that does, and NaN is 0.
inline int32 TruncateToInt32(real64 inValue) {
  if (std::isnan(inValue)) {
    return 0;
  }
  if (inValue >= 2147483647.0) {
    return std::numeric_limits<int32>::max();
  }
  return inValue <= -2147483648.0 ? std::numeric_limits<int32>::min() : static_cast<int32>(inValue);
}

// The tick of a frame: the frame times 180000 as a 32-bit real, over the rate, truncated. At some rates this differs
// from the frame times the ticks of one frame. The rate must be valid.
inline int32 FrameToTicks(int32 inFrame, real32 inRate) {
  const real32 ticks = static_cast<real32>(inFrame) * static_cast<real32>(kTicksPerSecond);
  return TruncateToInt32(static_cast<real64>(ticks / inRate));
}

// The ticks of one frame: 180000.0 over the rate, truncated. The rate must be valid.
inline int32 TicksPerFrame(real32 inRate) {
  return TruncateToInt32(static_cast<real64>(kTicksPerSecond) / static_cast<real64>(inRate));
}

}  // namespace qlx
