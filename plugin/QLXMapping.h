// The arithmetic of a link: plain functions from a link's data, its memory and a value to a value. They call no host
// and fail on nothing; a NaN passes through them.
//
// All is computed in 32-bit reals in exactly the forms that stand in the source. Times are ticks; differences of times
// stop at the ends of their range.
#pragma once

#include "QLXMemory.h"
#include "QLXModifierData.h"

namespace qlx {

// The window of a link, the present time, and the ticks of one frame (above 0). The end belongs to the window.
struct QLXWindow {
  int32 fStart = 0;
  int32 fEnd = 0;
  int32 fNow = 0;
  int32 fFrameTicks = 1;
};

// The channel of a key: its place in `QLXMemory::fChannels`.
std::size_t GetQLXChannel(MCID inKey);

// 0, 1 or 2 for 'GlbX', 'GlbY', 'GlbZ', which mean the position in the scene; -1 for any other key.
int GetGlobalAxis(MCID inKey);
// The same for 'XCOO', 'YCOO', 'ZCOO': the element's own translation.
int GetOwnAxis(MCID inKey);

// A value that was entered in a unit, as the scene has it. A unit that does not apply to the key leaves it alone.
real32 ConvertQLXUnit(int32 inUnit, MCID inKey, real32 inValue);

// Baseline, inversion, the step of arithmetic, oscillator, and decay or growth. A window of no length is not guarded:
// its curves are what a division by 0 gives.
real32 MapValue(const QLXModifierData& inData, const QLXCurves& inCurves, QLXMemory& ioMemory, MCID inKey,
                real32 inValue, const QLXWindow& inWindow);

// The way of a value from the baseline.
real32 GetChange(const QLXMemory& inMemory, MCID inKey, real32 inValue);

// Keeps a link from feeding on its own output when a frame is evaluated again.
real32 FilterTargetValue(QLXMemory& ioMemory, MCID inKey, real32 inValue, const QLXWindow& inWindow);

// Puts a value into the queue and takes the one whose time has come. False while there is none.
bool DelayValue(const QLXModifierData& inData, QLXMemory& ioMemory, const QLXWindow& inWindow, real32& ioValue);

// The target's value and the mapped one, by the combine group.
real32 CombineValues(const QLXModifierData& inData, real32 inTarget, real32 inMapped);

real32 ClampToRange(const QLXModifierData& inData, real32 inValue);
real32 ClampToLimits(const QLXModifierData& inData, MCID inKey, real32 inValue);

}  // namespace qlx
