// The arithmetic of links, without a host.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "AssertionGuard.h"
#include "NotFinite.h"
#include "QLXMapping.h"
#include "TestMemory.h"

namespace qlx::test {
namespace {

// A link and a window of ten frames, with one step to the value 2 at the rotation's channel.
struct Mapping {
  TestMemory fHost;
  QLXModifierData fData;
  QLXCurves fCurves;
  QLXMemory fMemory;
  QLXWindow fWindow{.fStart = 0, .fEnd = 1000, .fNow = 0, .fFrameTicks = 100};
  MCID fKey = "RotX"_id;

  real32 Map(real32 inValue) { return MapValue(fData, fCurves, fMemory, fKey, inValue, fWindow); }
  real32 MapAt(int32 inNow, real32 inValue) {
    fWindow.fNow = inNow;
    return Map(inValue);
  }
};

using MappingFlag = bool QLXModifierData::*;

TEST(QLXMapping, KeysHaveChannels) {
  const struct {
    MCID fKey;
    std::size_t fChannel;
  } rows[] = {{"GlbX"_id, 1},  {"GlbY"_id, 2}, {"GlbZ"_id, 3}, {"RotX"_id, 4},  {"RotY"_id, 5}, {"RotZ"_id, 6},
              {"SCAL"_id, 7},  {"ScaX"_id, 8}, {"ScaY"_id, 9}, {"ScaZ"_id, 10}, {"XCOO"_id, 0}, {"RotW"_id, 0},
              {"Rot\0"_id, 0}, {"0000"_id, 0}, {"vecX"_id, 0}, {0, 0},          {"SCAX"_id, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(GetQLXChannel(row.fKey), row.fChannel) << row.fKey;
  }
}

TEST(QLXMapping, UnitsApplyToTheirKinds) {
  const struct {
    const char* fLabel;
    int32 fUnit;
    MCID fKey;
    real32 fExpected;
  } rows[] = {
      {"no unit", -1, "GlbX"_id, 90},
      {"<none>", 0, "GlbX"_id, 90},
      {"cm", 1, "GlbX"_id, 90 * 0.3937f},
      {"cm of own translation", 1, "ZCOO"_id, 90 * 0.3937f},
      {"cm of a rotation", 1, "RotX"_id, 90},
      {"cm of another key", 1, "SCAL"_id, 90},
      {"inches", 2, "GlbX"_id, 90},
      {"feet are divided", 3, "GlbX"_id, 7.5f},
      {"feet of own translation", 3, "XCOO"_id, 7.5f},
      {"feet of a rotation", 3, "RotX"_id, 90},
      {"metres", 4, "YCOO"_id, 90 * 39.37f},
      {"metres of a rotation", 4, "RotZ"_id, 90},
      {"degrees", 5, "RotY"_id, 90 * 3.1415927f / 180.0f},
      {"degrees of a length", 5, "GlbZ"_id, 90},
      {"radians", 6, "RotY"_id, 90},
      {"percent", 7, "redV"_id, 90 * 0.01f},
      {"percent of a length", 7, "GlbZ"_id, 90 * 0.01f},
      {"past the last", 8, "GlbX"_id, 90},
      {"largest", std::numeric_limits<int32>::max(), "GlbX"_id, 90},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ConvertQLXUnit(row.fUnit, row.fKey, 90), row.fExpected) << row.fLabel;
  }
}

TEST(QLXMapping, ModifyGroupTakesTheFirstThatIsOn) {
  using D = QLXModifierData;
  const struct {
    const char* fLabel;
    std::vector<MappingFlag> fFlags;
    real32 fOperand;
    real32 fExpected;
  } rows[] = {
      {"add", {&D::fModifyAdd}, 4, 12},
      {"subtract", {&D::fModifySubtract}, 3, 5},
      {"multiply", {&D::fModifyMultiply}, 4, 32},
      {"divide", {&D::fModifyDivide}, 4, 2},
      {"divide by 0 is skipped", {&D::fModifyDivide}, 0, 8},
      {"divide by -0 is skipped", {&D::fModifyDivide}, -0.0f, 8},
      {"set", {&D::fModifySet}, 4, 4},
      {"none", {}, 4, 8},
      {"add wins over multiply", {&D::fModifyMultiply, &D::fModifyAdd}, 4, 12},
  };
  for (const auto& row : rows) {
    Mapping mapping;
    EXPECT_EQ(mapping.Map(8), 8) << "the default adds 0";
    mapping.fData.fModifyAdd = false;
    mapping.fData.fModifyValue = row.fOperand;
    for (const MappingFlag flag : row.fFlags) {
      mapping.fData.*flag = true;
    }
    EXPECT_EQ(mapping.Map(8), row.fExpected) << row.fLabel;
  }
  Mapping mapping;
  mapping.fData.fModifyValue = 50;
  mapping.fData.fModifyUnit = kUnitPercent;
  EXPECT_EQ(mapping.Map(8), 8.5f) << "the operand has a unit";
}

TEST(QLXMapping, RelativeIsTheChangeSinceTheStart) {
  Mapping mapping;
  mapping.fData.fRelative = true;  // beside fAbsolute, which stays on
  EXPECT_EQ(mapping.MapAt(0, 5), 0);
  EXPECT_EQ(mapping.MapAt(100, 7), 2);
  EXPECT_EQ(MapValue(mapping.fData, mapping.fCurves, mapping.fMemory, "RotY"_id, 7, mapping.fWindow), 7)
      << "each channel has a baseline of its own, 0 until it was seen at the start";
  EXPECT_EQ(mapping.MapAt(0, 9), 4) << "the baseline is taken once, and survives a rewind";
}

TEST(QLXMapping, OnlyPositionsAndRotationsAreInverted) {
  Mapping mapping;
  QLXModifierData& data = mapping.fData;
  data.fPositionInvertX = data.fPositionInvertY = data.fPositionInvertZ = true;
  data.fRotationInvertX = data.fRotationInvertY = data.fRotationInvertZ = true;
  EXPECT_EQ(mapping.Map(2), 2) << "not in attribute mode";
  data.fMirrorTransform = true;
  for (const MCID key : {"GlbX"_id, "GlbY"_id, "GlbZ"_id, "RotX"_id, "RotY"_id, "RotZ"_id}) {
    mapping.fKey = key;
    EXPECT_EQ(mapping.Map(2), -2) << key;
  }
  for (const MCID key : {"XCOO"_id, "SCAL"_id, "ScaX"_id, "0000"_id}) {
    mapping.fKey = key;
    EXPECT_EQ(mapping.Map(2), 2) << key;
  }
  data.fRotationInvertY = false;
  mapping.fKey = "RotY"_id;
  EXPECT_EQ(mapping.Map(2), 2);
}

TEST(QLXMapping, OscillatorMultiplies) {
  const struct {
    const char* fLabel;
    QLXOscillator fOscillator;
    int32 fNow;
    real32 fExpected;
  } rows[] = {
      {"sine", {}, 300, 2 * std::sin(3.0f)},
      {"part of a frame does not count", {}, 399, 2 * std::sin(3.0f)},
      {"before the start", {}, -350, 2 * std::sin(-3.0f)},
      {"phase and speed",
       {.fOscillatorPhase = 0.5f, .fOscillatorSpeed = 0.25f},
       300,
       2 * std::sin(3.0f * 0.25f + 0.5f)},
      {"cosine", {.fOscillatorSine = false, .fOscillatorCosine = true}, 300, 2 * std::cos(3.0f)},
      {"sine wins", {.fOscillatorCosine = true}, 300, 2 * std::sin(3.0f)},
      {"above its maximum", {.fOscillatorMax = 0.1f}, 300, 0.2f},
      {"below its minimum", {.fOscillatorMin = 0.75f}, 300, 1.5f},
      {"crossed bounds: the maximum is tested first", {.fOscillatorMax = -3, .fOscillatorMin = 3}, 300, -6},
      {"scale comes ahead of the bounds", {.fOscillatorScale = 100}, 300, 2},
      {"no wave: a ramp", {.fOscillatorSine = false, .fOscillatorScale = 0.5f, .fOscillatorMax = 2}, 300, 3},
      {"up to its bounds", {.fOscillatorSine = false, .fOscillatorScale = 0.5f, .fOscillatorMax = 2}, 900, 4},
  };
  for (const auto& row : rows) {
    Mapping mapping;
    mapping.fData.fOscillateOn = true;
    mapping.fCurves.fOscillator = row.fOscillator;
    EXPECT_EQ(mapping.MapAt(row.fNow, 2), row.fExpected) << row.fLabel;
  }
}

TEST(QLXMapping, CurvesFollowTheirFormulas) {
  constexpr real32 kP = 0.5f;
  const struct {
    const char* fLabel;
    bool QLXDecay::*fDecay;
    bool QLXGrowth::*fGrowth;
    real32 fFallen;  // the factors without bounds
    real32 fRisen;
  } rows[] = {
      {"linear", &QLXDecay::fDecayLinear, &QLXGrowth::fGrowLinear, 1 - kP, kP},
      {"quadratic only", &QLXDecay::fDecayQuadraticOnly, &QLXGrowth::fGrowQuadraticOnly, 1 - kP * kP, kP * kP},
      {"cubic only", &QLXDecay::fDecayCubicOnly, &QLXGrowth::fGrowCubicOnly, 1 - kP * kP * kP, kP * kP * kP},
      {"quadratic", &QLXDecay::fDecayQuadratic, &QLXGrowth::fGrowQuadratic, 1 - kP * kP - kP, kP * kP + kP},
      {"cubic", &QLXDecay::fDecayCubic, &QLXGrowth::fGrowCubic, 1 - kP * kP * kP - kP * kP - kP,
       kP * kP * kP + kP * kP + kP},
  };
  for (const auto& row : rows) {
    Mapping decay;
    decay.fData.fDecayOn = decay.fData.fGrowOn = true;
    decay.fCurves.fDecay.fDecayLinear = false;
    decay.fCurves.fDecay.*row.fDecay = true;
    decay.fCurves.fDecay.fDecayMin = -10;
    EXPECT_FLOAT_EQ(decay.MapAt(500, 2), 2 * (1 - (1 - row.fFallen) * 11)) << row.fLabel;
    decay.fCurves.fDecay.fDecayMin = 0.9f;
    decay.fCurves.fDecay.fDecayMax = 1;
    EXPECT_FLOAT_EQ(decay.MapAt(1500, 2), 1.8f) << row.fLabel << ": stopped by the lowest";
    decay.fCurves.fDecay.fDecayMin = 0;
    EXPECT_EQ(decay.MapAt(700, 1) == 0, row.fFallen < 0.3f) << row.fLabel << ": two of them end early";

    Mapping growth;
    growth.fData.fGrowOn = true;
    growth.fCurves.fGrowth.fGrowLinear = false;
    growth.fCurves.fGrowth.*row.fGrowth = true;
    growth.fCurves.fGrowth.fGrowMax = 11;
    growth.fCurves.fGrowth.fGrowMin = 1;
    EXPECT_FLOAT_EQ(growth.MapAt(500, 2), 2 * (1 + row.fRisen * 10)) << row.fLabel;
    EXPECT_FLOAT_EQ(growth.MapAt(1500, 2), 22) << row.fLabel << ": stopped by the highest";
  }
}

TEST(QLXMapping, DecayWinsOverGrowthEvenWithoutACurve) {
  Mapping mapping;
  mapping.fData.fDecayOn = mapping.fData.fGrowOn = true;
  mapping.fCurves.fDecay.fDecayLinear = false;
  EXPECT_EQ(mapping.MapAt(500, 2), 2);
  mapping.fData.fDecayOn = false;
  EXPECT_EQ(mapping.Map(2), 1);
}

TEST(QLXMapping, WindowOfNoLengthIsNotGuarded) {
  Mapping mapping;
  mapping.fData.fGrowOn = true;
  mapping.fWindow.fEnd = 0;
  EXPECT_TRUE(std::isnan(mapping.MapAt(0, 2))) << "0 over 0";
  EXPECT_EQ(mapping.MapAt(100, 2), 2) << "infinity, stopped by the highest";
  mapping.fData.fDecayOn = true;
  EXPECT_EQ(mapping.MapAt(100, 2), 0) << "minus infinity, stopped by the lowest";
}

TEST(QLXMapping, TimesStopAtTheEndsOfTheirRange) {
  Mapping mapping;
  mapping.fData.fGrowOn = mapping.fData.fOscillateOn = mapping.fData.fDelayOn = true;
  mapping.fCurves.fGrowth.fGrowMin = 1;
  mapping.fWindow = {.fStart = std::numeric_limits<int32>::min(),
                     .fEnd = std::numeric_limits<int32>::max(),
                     .fNow = std::numeric_limits<int32>::max(),
                     .fFrameTicks = 1};
  EXPECT_TRUE(std::isfinite(mapping.Map(2)));
  real32 value = 2;
  for (const int32 frames : {0, -1, std::numeric_limits<int32>::min(), std::numeric_limits<int32>::max()}) {
    mapping.fData.fDelayFrames = frames;
    EXPECT_TRUE(DelayValue(mapping.fData, mapping.fMemory, mapping.fWindow, value)) << frames;
    EXPECT_TRUE(frames > 0 || mapping.fMemory.fDelayQueue.IsEmpty()) << "a delay of no frames";
  }
  EXPECT_EQ(value, 2);
}

TEST(QLXMapping, TargetIsFilteredWhenAFrameIsRepeated) {
  Mapping mapping;
  const auto filter = [&](int32 now, bool isSame, real32 value) {
    mapping.fWindow.fNow = now;
    mapping.fMemory.fSameFrame = isSame;
    return FilterTargetValue(mapping.fMemory, mapping.fKey, value, mapping.fWindow);
  };
  EXPECT_EQ(filter(100, true, 1), 0) << "nothing was seen yet";
  EXPECT_EQ(filter(0, false, 2), 2);
  EXPECT_EQ(filter(0, true, 3), 2) << "the value at the start";
  EXPECT_EQ(filter(100, false, 4), 4);
  EXPECT_EQ(filter(0, false, 5), 5);
  EXPECT_EQ(filter(0, true, 6), 2) << "taken once";
}

// What was seen first stays the value of a repeated frame.
TEST(QLXMapping, TargetIsTheFirstThatWasSeen) {
  Mapping mapping;
  mapping.fWindow.fNow = 100;
  EXPECT_EQ(FilterTargetValue(mapping.fMemory, mapping.fKey, 100, mapping.fWindow), 100);
  mapping.fWindow.fNow = 200;
  EXPECT_EQ(FilterTargetValue(mapping.fMemory, mapping.fKey, 200, mapping.fWindow), 200);
  mapping.fMemory.fSameFrame = true;
  EXPECT_EQ(FilterTargetValue(mapping.fMemory, mapping.fKey, 7, mapping.fWindow), 100);
}

TEST(QLXMapping, CombineGroupTakesTheFirstThatIsOn) {
  const struct {
    const char* fLabel;
    std::vector<MappingFlag> fFlags;
    real32 fMapped;
    real32 fExpected;
  } rows[] = {
      {"replace", {&QLXModifierData::fCombineReplace, &QLXModifierData::fCombineAdd}, 4, 4},
      {"add", {&QLXModifierData::fCombineAdd, &QLXModifierData::fCombineDivide}, 4, 16},
      {"subtract", {&QLXModifierData::fCombineSubtract}, 4, 8},
      {"multiply", {&QLXModifierData::fCombineMultiply}, 4, 48},
      {"divide", {&QLXModifierData::fCombineDivide}, 4, 3},
      {"divide by 0", {&QLXModifierData::fCombineDivide}, 0, 12},
      {"self is none of these", {&QLXModifierData::fCombineSelf}, 4, 12},
      {"none", {}, 4, 12},
  };
  for (const auto& row : rows) {
    QLXModifierData data;
    data.fCombineReplace = false;
    for (const MappingFlag flag : row.fFlags) {
      data.*flag = true;
    }
    EXPECT_EQ(CombineValues(data, 12, row.fMapped), row.fExpected) << row.fLabel;
  }
}

TEST(QLXMapping, BoundsAreAppliedOneAfterTheOther) {
  const struct {
    const char* fLabel;
    real32 fLower, fUpper, fValue;
    real32 fInRange, fInLimits;
  } rows[] = {{"below", -1, 1, -2, -1, -1},        {"inside", -1, 1, 0.5f, 0.5f, 0.5f},
              {"above", -1, 1, 2, 1, 1},           {"both 0", 0, 0, 5, 0, 0},
              {"crossed", 3, -3, 0, 3, -3},        {"crossed, above", 3, -3, 9, 3, -3},
              {"infinite", -1, 1, kInfinity, 1, 1}};
  for (const auto& row : rows) {
    QLXModifierData data;
    data.fRangeOn = data.fLowerLimitOn = data.fUpperLimitOn = true;
    data.fRangeMin = data.fLowerLimit = row.fLower;
    data.fRangeMax = data.fUpperLimit = row.fUpper;
    EXPECT_EQ(ClampToRange(data, row.fValue), row.fInRange) << row.fLabel;
    EXPECT_EQ(ClampToLimits(data, "RotX"_id, row.fValue), row.fInLimits) << row.fLabel;
    EXPECT_TRUE(std::isnan(ClampToRange(data, kNaN)) && std::isnan(ClampToLimits(data, "RotX"_id, kNaN)))
        << row.fLabel << ": a NaN passes";
  }
  EXPECT_EQ(ClampToRange({}, 5), 5) << "off";
}

TEST(QLXMapping, LimitsHaveAUnit) {
  QLXModifierData data;
  data.fUpperLimitOn = true;
  data.fUpperLimit = 90;
  data.fLimitUnit = kUnitDegrees;
  EXPECT_FLOAT_EQ(ClampToLimits(data, "RotX"_id, 3), static_cast<real32>(std::numbers::pi / 2));
  EXPECT_EQ(ClampToLimits(data, "GlbX"_id, 300), 90);
}

TEST(QLXMapping, EveryFloatMayBeAnything) {
  const auto real32Fields = [](QLXModifierData& d, QLXCurves& c) {
    QLXOscillator& o = c.fOscillator;
    return std::to_array({&d.fModifyValue, &d.fLowerLimit, &d.fUpperLimit, &d.fRangeMin, &d.fRangeMax,
                          &c.fDecay.fDecayMax, &c.fDecay.fDecayMin, &c.fGrowth.fGrowMax, &c.fGrowth.fGrowMin,
                          &o.fOscillatorPhase, &o.fOscillatorScale, &o.fOscillatorMax, &o.fOscillatorMin,
                          &o.fOscillatorSpeed});
  };
  for (std::size_t i = 0; i < 14; ++i) {
    for (const real32 value : {kNaN, kInfinity, -kInfinity, 3e38f, 1e-45f}) {
      Mapping mapping;
      mapping.fData.fOscillateOn = mapping.fData.fGrowOn = mapping.fData.fRangeOn = true;
      mapping.fData.fLowerLimitOn = mapping.fData.fUpperLimitOn = mapping.fData.fDelayOn = true;
      mapping.fData.fDecayOn = i % 2 == 0;
      *real32Fields(mapping.fData, mapping.fCurves)[i] = value;
      real32 mapped = mapping.MapAt(500, 2);
      EXPECT_TRUE(DelayValue(mapping.fData, mapping.fMemory, mapping.fWindow, mapped)) << i;
      ClampToLimits(mapping.fData, mapping.fKey, ClampToRange(mapping.fData, mapped));
    }
  }
}

TEST(QLXDelayQueue, IsFirstInFirstOutThroughItsTurns) {
  const TestMemory memory;
  QLXDelayQueue queue;
  EXPECT_EQ(queue.PopFront(), 0) << "empty";
  real32 next = 0;
  real32 expected = 0;
  for (int round = 1; round < 40; ++round) {
    for (int i = 0; i < round; ++i) {
      queue.PushBack(next++);
    }
    QLXDelayQueue copy;
    ASSERT_TRUE(copy.CopyFrom(queue));
    for (int i = 0; i < round - (round > 20 ? 0 : 1); ++i) {
      EXPECT_EQ(copy.PopFront(), expected);
      EXPECT_EQ(queue.PopFront(), expected++);
    }
    EXPECT_EQ(copy.GetCount(), queue.GetCount());
  }
}

TEST(QLXDelayQueue, WithoutMemoryNothingIsReady) {
  Mapping mapping;
  mapping.fData.fDelayOn = true;
  mapping.fHost.RefuseAfter(0);
  const AssertionGuard guard({"Array allocation failed!"});
  real32 value = 3;
  EXPECT_FALSE(DelayValue(mapping.fData, mapping.fMemory, mapping.fWindow, value));
  EXPECT_TRUE(DelayValue(mapping.fData, mapping.fMemory, mapping.fWindow, value));
}

TEST(QLXDelayQueue, DelayThatNeverEndsLosesItsOldestValues) {
  const TestMemory memory;
  QLXDelayQueue queue;
  for (uint32 i = 0; i < QLXDelayQueue::kLongest + 10; ++i) {
    queue.PushBack(static_cast<real32>(i));
  }
  EXPECT_EQ(queue.GetCount(), QLXDelayQueue::kLongest);
  EXPECT_EQ(queue.PopFront(), 10);
}

}  // namespace
}  // namespace qlx::test
