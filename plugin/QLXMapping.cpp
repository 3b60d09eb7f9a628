#include "QLXMapping.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qlx {

namespace {

// Delays up to here have room for all their values at once; longer ones make room as they go.
constexpr int32 kCommonDelay = 1024;
constexpr uint32 kMostLinks = 10;  // of object mode, which share the queue

int32 Saturate(int64 inTicks) {
  return static_cast<int32>(
      std::clamp<int64>(inTicks, std::numeric_limits<int32>::min(), std::numeric_limits<int32>::max()));
}

int32 Since(int32 inTime, int32 inStart) {
  return Saturate(int64{inTime} - inStart);
}

// One of three values by the last character of a key that ends in X, Y or Z; -1 for other ends.
int AxisOf(MCID inKey) {
  const int axis = static_cast<int>(inKey & 0xFF) - 'X';
  return axis >= 0 && axis < 3 ? axis : -1;
}

constexpr MCID kAxisByte = 0xFF;

bool IsKeyOf(MCID inKey, MCID inFamily) {
  return (inKey & ~kAxisByte) == (inFamily & ~kAxisByte);
}

bool IsRotationKey(MCID inKey) {
  return IsKeyOf(inKey, "RotX"_id) && AxisOf(inKey) >= 0;
}

bool IsInverted(const QLXModifierData& inData, MCID inKey) {
  switch (inKey) {
    case "GlbX"_id:
      return inData.fPositionInvertX;
    case "GlbY"_id:
      return inData.fPositionInvertY;
    case "GlbZ"_id:
      return inData.fPositionInvertZ;
    case "RotX"_id:
      return inData.fRotationInvertX;
    case "RotY"_id:
      return inData.fRotationInvertY;
    case "RotZ"_id:
      return inData.fRotationInvertZ;
    default:
      return false;
  }
}

real32 ModifyValue(const QLXModifierData& inData, MCID inKey, real32 inValue) {
  const real32 operand = ConvertQLXUnit(inData.fModifyUnit, inKey, inData.fModifyValue);
  if (inData.fModifyAdd) {
    return operand + inValue;
  }
  if (inData.fModifySubtract) {
    return static_cast<real32>(static_cast<real64>(inValue) - static_cast<real64>(operand));
  }
  if (inData.fModifyMultiply) {
    return operand * inValue;
  }
  if (inData.fModifyDivide) {
    return operand == 0.0f ? inValue : inValue / operand;
  }
  return inData.fModifySet ? operand : inValue;
}

// With neither wave the phase itself swings the value: a ramp up to the bounds.
real32 GetSwing(const QLXOscillator& inOscillator, const QLXWindow& inWindow) {
  const int32 frames = Since(inWindow.fNow, inWindow.fStart) / inWindow.fFrameTicks;
  real32 swing = static_cast<real32>(frames) * inOscillator.fOscillatorSpeed + inOscillator.fOscillatorPhase;
  if (inOscillator.fOscillatorSine) {
    swing = std::sin(swing);
  } else if (inOscillator.fOscillatorCosine) {
    swing = std::cos(swing);
  }
  swing = inOscillator.fOscillatorScale * swing;
  if (swing > inOscillator.fOscillatorMax) {
    return inOscillator.fOscillatorMax;
  }
  return swing < inOscillator.fOscillatorMin ? inOscillator.fOscillatorMin : swing;
}

// How far the window has run, to the first, second and third power.
struct Progress {
  explicit Progress(const QLXWindow& inWindow) {
    const auto d = static_cast<real32>(Since(inWindow.fNow, inWindow.fStart));
    const auto n = static_cast<real32>(Since(inWindow.fEnd, inWindow.fStart));
    fLinear = d / n;
    fSquare = (d * d) / (n * n);
    fCube = (d * d * d) / (n * n * n);
  }
  real32 fLinear;
  real32 fSquare;
  real32 fCube;
};

// The quadratic and cubic curves are sums of powers on purpose, not single powers: they reach their bound early, and
// the bound is what stops them.
real32 Decay(const QLXDecay& inDecay, const QLXWindow& inWindow, real32 inValue) {
  const Progress at(inWindow);
  const real32 range = inDecay.fDecayMax - inDecay.fDecayMin;
  real32 factor = 0;
  if (inDecay.fDecayLinear) {
    factor = inDecay.fDecayMax - at.fLinear * range;
  } else if (inDecay.fDecayQuadraticOnly) {
    factor = inDecay.fDecayMax - at.fSquare * range;
  } else if (inDecay.fDecayCubicOnly) {
    factor = inDecay.fDecayMax - at.fCube * range;
  } else if (inDecay.fDecayQuadratic) {
    factor = (inDecay.fDecayMax - at.fSquare * range) - at.fLinear * range;
  } else if (inDecay.fDecayCubic) {
    factor = ((inDecay.fDecayMax - at.fCube * range) - at.fSquare * range) - at.fLinear * range;
  } else {
    return inValue;
  }
  return inValue * (factor < inDecay.fDecayMin ? inDecay.fDecayMin : factor);
}

real32 Grow(const QLXGrowth& inGrowth, const QLXWindow& inWindow, real32 inValue) {
  const Progress at(inWindow);
  const real32 range = inGrowth.fGrowMax - inGrowth.fGrowMin;
  real32 factor = 0;
  if (inGrowth.fGrowLinear) {
    factor = at.fLinear * range + inGrowth.fGrowMin;
  } else if (inGrowth.fGrowQuadraticOnly) {
    factor = at.fSquare * range + inGrowth.fGrowMin;
  } else if (inGrowth.fGrowCubicOnly) {
    factor = at.fCube * range + inGrowth.fGrowMin;
  } else if (inGrowth.fGrowQuadratic) {
    factor = (inGrowth.fGrowMin + at.fSquare * range) + at.fLinear * range;
  } else if (inGrowth.fGrowCubic) {
    factor = (inGrowth.fGrowMin + at.fCube * range + at.fSquare * range) + at.fLinear * range;
  } else {
    return inValue;
  }
  return inValue * (factor > inGrowth.fGrowMax ? inGrowth.fGrowMax : factor);
}

}  // namespace

std::size_t GetQLXChannel(MCID inKey) {
  const int axis = AxisOf(inKey);
  if (axis < 0) {
    return inKey == "SCAL"_id ? 7 : 0;
  }
  switch (inKey & ~kAxisByte) {
    case "GlbX"_id & ~kAxisByte:
      return 1 + static_cast<std::size_t>(axis);
    case "RotX"_id & ~kAxisByte:
      return 4 + static_cast<std::size_t>(axis);
    case "ScaX"_id & ~kAxisByte:
      return 8 + static_cast<std::size_t>(axis);
    default:
      return 0;
  }
}

int GetGlobalAxis(MCID inKey) {
  return IsKeyOf(inKey, "GlbX"_id) ? AxisOf(inKey) : -1;
}

int GetOwnAxis(MCID inKey) {
  switch (inKey) {
    case "XCOO"_id:
      return 0;
    case "YCOO"_id:
      return 1;
    case "ZCOO"_id:
      return 2;
    default:
      return -1;
  }
}

// Feet are divided by 12 where inches to a foot would have them multiplied: saved scenes rely on it.
real32 ConvertQLXUnit(int32 inUnit, MCID inKey, real32 inValue) {
  const auto isLength = [inKey] { return GetGlobalAxis(inKey) >= 0 || GetOwnAxis(inKey) >= 0; };
  switch (inUnit) {
    case kUnitCentimetres:
      return isLength() ? inValue * 0.3937f : inValue;
    case kUnitFeet:
      return isLength() ? inValue / 12.0f : inValue;
    case kUnitMetres:
      return isLength() ? inValue * 39.37f : inValue;
    case kUnitDegrees:
      return IsRotationKey(inKey) ? inValue * 3.1415927f / 180.0f : inValue;
    case kUnitPercent:
      return inValue * 0.01f;
    default:
      return inValue;
  }
}

real32 MapValue(const QLXModifierData& inData, const QLXCurves& inCurves, QLXMemory& ioMemory, MCID inKey,
                real32 inValue, const QLXWindow& inWindow) {
  const std::size_t channel = GetQLXChannel(inKey);
  if (inWindow.fNow == inWindow.fStart && ioMemory.fBaselinePending.Take(channel)) {
    ioMemory.fChannels[channel].fBaseline = inValue;
  }
  real32 value = inData.fRelative ? GetChange(ioMemory, inKey, inValue) : inValue;
  if (inData.fMirrorTransform && IsInverted(inData, inKey)) {
    value = -value;
  }
  value = ModifyValue(inData, inKey, value);
  if (inData.fOscillateOn) {
    value = value * GetSwing(inCurves.fOscillator, inWindow);
  }
  if (inData.fDecayOn) {
    value = Decay(inCurves.fDecay, inWindow, value);  // with both on, growth is never applied
  } else if (inData.fGrowOn) {
    value = Grow(inCurves.fGrowth, inWindow, value);
  }
  return value;
}

real32 GetChange(const QLXMemory& inMemory, MCID inKey, real32 inValue) {
  return inValue - inMemory.fChannels[GetQLXChannel(inKey)].fBaseline;
}

real32 FilterTargetValue(QLXMemory& ioMemory, MCID inKey, real32 inValue, const QLXWindow& inWindow) {
  const std::size_t number = GetQLXChannel(inKey);
  QLXChannelMemory& channel = ioMemory.fChannels[number];
  const bool isAtStart = inWindow.fNow == inWindow.fStart;
  if (isAtStart && ioMemory.fTargetStartPending.Take(number)) {
    channel.fTargetStart = inValue;
  }
  if (ioMemory.fSameFrame) {
    return isAtStart ? channel.fTargetStart : channel.fTargetLast;
  }
  if (ioMemory.fTargetLastPending.Take(number)) {
    channel.fTargetLast = inValue;
  }
  return inValue;
}

bool DelayValue(const QLXModifierData& inData, QLXMemory& ioMemory, const QLXWindow& inWindow, real32& ioValue) {
  if (!inData.fDelayOn) {
    return true;
  }
  QLXDelayQueue& queue = ioMemory.fDelayQueue;
  if (queue.IsEmpty() && inData.fDelayFrames > 0 && inData.fDelayFrames < kCommonDelay) {
    queue.Reserve((static_cast<uint32>(inData.fDelayFrames) + 1) * (inData.fMirrorTransform ? kMostLinks : 1));
  }
  queue.PushBack(ioValue);
  const int32 due = Saturate(inWindow.fStart + int64{inData.fDelayFrames} * inWindow.fFrameTicks);
  if (inWindow.fNow < due || queue.IsEmpty()) {
    return false;  // empty: there was no memory
  }
  ioValue = queue.PopFront();
  return true;
}

real32 CombineValues(const QLXModifierData& inData, real32 inTarget, real32 inMapped) {
  if (inData.fCombineReplace) {
    return inMapped;
  }
  if (inData.fCombineAdd) {
    return inMapped + inTarget;
  }
  if (inData.fCombineSubtract) {
    return inTarget - inMapped;
  }
  if (inData.fCombineMultiply) {
    return inMapped * inTarget;
  }
  if (inData.fCombineDivide) {
    return inMapped == 0.0f ? inTarget : inTarget / inMapped;
  }
  return inTarget;
}

// Written as they are, one bound after the other: of crossed bounds the later one wins.
real32 ClampToRange(const QLXModifierData& inData, real32 inValue) {
  real32 value = inValue;
  if (inData.fRangeOn) {
    value = value > inData.fRangeMax ? inData.fRangeMax : value;
    value = value < inData.fRangeMin ? inData.fRangeMin : value;
  }
  return value;
}

real32 ClampToLimits(const QLXModifierData& inData, MCID inKey, real32 inValue) {
  real32 value = inValue;
  if (inData.fLowerLimitOn) {
    const real32 lower = ConvertQLXUnit(inData.fLimitUnit, inKey, inData.fLowerLimit);
    value = value < lower ? lower : value;
  }
  if (inData.fUpperLimitOn) {
    const real32 upper = ConvertQLXUnit(inData.fLimitUnit, inKey, inData.fUpperLimit);
    value = value > upper ? upper : value;
  }
  return value;
}

}  // namespace qlx
