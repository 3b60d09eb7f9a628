// The arithmetic of links, without a host.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

#include "AssertionGuard.h"
#include "QLXMapping.h"
#include "TestMemory.h"

namespace qlx::test {
namespace {

constexpr real32 kNaN = std::numeric_limits<real32>::quiet_NaN();
constexpr real32 kInfinity = std::numeric_limits<real32>::infinity();

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

using MappingChange = std::function<void(Mapping&)>;

void SetModify(Mapping& ioMapping, bool QLXModifierData::*inFlag, real32 inOperand) {
  ioMapping.fData.fModifyAdd = false;
  ioMapping.fData.*inFlag = true;
  ioMapping.fData.fModifyValue = inOperand;
}

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

TEST(QLXMapping, FeetAreDividedByTwelve) {
  EXPECT_EQ(ConvertQLXUnit(kUnitFeet, "GlbX"_id, 24), 2);
  EXPECT_EQ(ConvertQLXUnit(kUnitFeet, "XCOO"_id, 24), 2);
  EXPECT_EQ(ConvertQLXUnit(kUnitFeet, "RotX"_id, 24), 24);
}

TEST(QLXMapping, ModifyGroupTakesTheFirstThatIsOn) {
  const struct {
    const char* fLabel;
    MappingChange fChange;
    real32 fExpected;
  } rows[] = {
      {"default adds 0", [](Mapping&) {}, 8},
      {"add", [](Mapping& m) { SetModify(m, &QLXModifierData::fModifyAdd, 4); }, 12},
      {"subtract", [](Mapping& m) { SetModify(m, &QLXModifierData::fModifySubtract, 3); }, 5},
      {"multiply", [](Mapping& m) { SetModify(m, &QLXModifierData::fModifyMultiply, 4); }, 32},
      {"divide", [](Mapping& m) { SetModify(m, &QLXModifierData::fModifyDivide, 4); }, 2},
      {"divide by 0 is skipped", [](Mapping& m) { SetModify(m, &QLXModifierData::fModifyDivide, 0); }, 8},
      {"divide by -0 is skipped", [](Mapping& m) { SetModify(m, &QLXModifierData::fModifyDivide, -0.0f); }, 8},
      {"set", [](Mapping& m) { SetModify(m, &QLXModifierData::fModifySet, 4); }, 4},
      {"none", [](Mapping& m) { m.fData.fModifyAdd = false; }, 8},
      {"add wins over multiply",
       [](Mapping& m) {
         SetModify(m, &QLXModifierData::fModifyMultiply, 4);
         m.fData.fModifyAdd = true;
       },
       12},
      {"the operand has a unit",
       [](Mapping& m) {
         SetModify(m, &QLXModifierData::fModifyMultiply, 50);
         m.fData.fModifyUnit = kUnitPercent;
       },
       4},
  };
  for (const auto& row : rows) {
    Mapping mapping;
    row.fChange(mapping);
    EXPECT_EQ(mapping.Map(8), row.fExpected) << row.fLabel;
  }
}

TEST(QLXMapping, RelativeIsTheChangeSinceTheStart) {
  Mapping mapping;
  mapping.fData.fRelative = true;  // beside fAbsolute, which stays on
  EXPECT_EQ(mapping.MapAt(0, 5), 0);
  EXPECT_EQ(mapping.MapAt(100, 7), 2);
  EXPECT_EQ(MapValue(mapping.fData, mapping.fCurves, mapping.fMemory, "RotY"_id, 7, mapping.fWindow), 7)
      << "each channel has a baseline of its own, 0 until it was seen at the start";
}

TEST(QLXMapping, BaselineIsTakenOnceAndSurvivesARewind) {
  Mapping mapping;
  mapping.fData.fRelative = true;
  mapping.MapAt(0, 5);
  EXPECT_EQ(mapping.MapAt(0, 9), 4);
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
    MappingChange fChange;
    int32 fNow;
    real32 fExpected;
  } rows[] = {
      {"sine", [](Mapping&) {}, 300, 2 * std::sin(3.0f)},
      {"part of a frame does not count", [](Mapping&) {}, 399, 2 * std::sin(3.0f)},
      {"before the start", [](Mapping&) {}, -350, 2 * std::sin(-3.0f)},
      {"phase and speed",
       [](Mapping& m) {
         m.fCurves.fOscillator.fOscillatorPhase = 0.5f;
         m.fCurves.fOscillator.fOscillatorSpeed = 0.25f;
       },
       300, 2 * std::sin(3.0f * 0.25f + 0.5f)},
      {"cosine",
       [](Mapping& m) {
         m.fCurves.fOscillator.fOscillatorSine = false;
         m.fCurves.fOscillator.fOscillatorCosine = true;
       },
       300, 2 * std::cos(3.0f)},
      {"sine wins", [](Mapping& m) { m.fCurves.fOscillator.fOscillatorCosine = true; }, 300, 2 * std::sin(3.0f)},
      {"above its maximum", [](Mapping& m) { m.fCurves.fOscillator.fOscillatorMax = 0.1f; }, 300, 0.2f},
      {"below its minimum", [](Mapping& m) { m.fCurves.fOscillator.fOscillatorMin = 0.75f; }, 300, 1.5f},
      {"crossed bounds: the maximum is tested first",
       [](Mapping& m) {
         m.fCurves.fOscillator.fOscillatorMax = -3;
         m.fCurves.fOscillator.fOscillatorMin = 3;
       },
       300, -6},
      {"scale comes ahead of the bounds", [](Mapping& m) { m.fCurves.fOscillator.fOscillatorScale = 100; }, 300, 2},
  };
  for (const auto& row : rows) {
    Mapping mapping;
    mapping.fData.fOscillateOn = true;
    row.fChange(mapping);
    EXPECT_EQ(mapping.MapAt(row.fNow, 2), row.fExpected) << row.fLabel;
  }
}

TEST(QLXMapping, OscillatorWithoutAWaveIsARampUpToItsBounds) {
  Mapping mapping;
  mapping.fData.fOscillateOn = true;
  mapping.fCurves.fOscillator = {.fOscillatorSine = false, .fOscillatorScale = 0.5f, .fOscillatorMax = 2};
  EXPECT_EQ(mapping.MapAt(300, 2), 3);
  EXPECT_EQ(mapping.MapAt(900, 2), 4);
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

TEST(QLXMapping, QuadraticAndCubicDecayReachTheirEndEarly) {
  Mapping mapping;
  mapping.fData.fDecayOn = true;
  mapping.fCurves.fDecay.fDecayLinear = false;
  mapping.fCurves.fDecay.fDecayQuadratic = true;
  EXPECT_GT(mapping.MapAt(600, 1), 0);
  EXPECT_EQ(mapping.MapAt(700, 1), 0);
  mapping.fCurves.fDecay = {.fDecayLinear = false, .fDecayCubic = true};
  EXPECT_GT(mapping.MapAt(500, 1), 0);
  EXPECT_EQ(mapping.MapAt(600, 1), 0);
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
  for (const int32 frames : {std::numeric_limits<int32>::min(), std::numeric_limits<int32>::max()}) {
    mapping.fData.fDelayFrames = frames;
    EXPECT_TRUE(DelayValue(mapping.fData, mapping.fMemory, mapping.fWindow, value)) << frames;
  }
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

TEST(QLXMapping, LastTargetValueIsTheFirstThatWasSeen) {
  Mapping mapping;
  for (const int32 now : {100, 200, 300}) {
    mapping.fWindow.fNow = now;
    mapping.fMemory.fSameFrame = false;
    EXPECT_EQ(FilterTargetValue(mapping.fMemory, mapping.fKey, static_cast<real32>(now), mapping.fWindow), now);
    mapping.fMemory.fSameFrame = true;
    EXPECT_EQ(FilterTargetValue(mapping.fMemory, mapping.fKey, 7, mapping.fWindow), 100) << now;
  }
}

TEST(QLXMapping, CombineGroupTakesTheFirstThatIsOn) {
  using Flag = bool QLXModifierData::*;
  const struct {
    const char* fLabel;
    std::vector<Flag> fFlags;
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
    for (const Flag flag : row.fFlags) {
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
  const auto real32Fields = [](Mapping& m) {
    return std::vector<real32*>{&m.fData.fModifyValue,
                                &m.fData.fLowerLimit,
                                &m.fData.fUpperLimit,
                                &m.fData.fRangeMin,
                                &m.fData.fRangeMax,
                                &m.fCurves.fDecay.fDecayMax,
                                &m.fCurves.fDecay.fDecayMin,
                                &m.fCurves.fGrowth.fGrowMax,
                                &m.fCurves.fGrowth.fGrowMin,
                                &m.fCurves.fOscillator.fOscillatorPhase,
                                &m.fCurves.fOscillator.fOscillatorScale,
                                &m.fCurves.fOscillator.fOscillatorMax,
                                &m.fCurves.fOscillator.fOscillatorMin,
                                &m.fCurves.fOscillator.fOscillatorSpeed};
  };
  Mapping probe;
  for (std::size_t i = 0; i < real32Fields(probe).size(); ++i) {
    for (const real32 value : {kNaN, kInfinity, -kInfinity, 3e38f, 1e-45f}) {
      Mapping mapping;
      mapping.fData.fOscillateOn = mapping.fData.fGrowOn = mapping.fData.fRangeOn = true;
      mapping.fData.fLowerLimitOn = mapping.fData.fUpperLimitOn = mapping.fData.fDelayOn = true;
      mapping.fData.fDecayOn = i % 2 == 0;
      *real32Fields(mapping)[i] = value;
      real32 mapped = mapping.MapAt(500, 2);
      EXPECT_TRUE(DelayValue(mapping.fData, mapping.fMemory, mapping.fWindow, mapped)) << i;
      ClampToLimits(mapping.fData, mapping.fKey, ClampToRange(mapping.fData, mapped));
    }
  }
}

TEST(QLXMapping, DelayOfNoFramesGivesTheValueBack) {
  Mapping mapping;
  mapping.fData.fDelayOn = true;
  for (const int32 frames : {0, -1, -1000}) {
    mapping.fData.fDelayFrames = frames;
    real32 value = 3;
    EXPECT_TRUE(DelayValue(mapping.fData, mapping.fMemory, mapping.fWindow, value)) << frames;
    EXPECT_EQ(value, 3) << frames;
    EXPECT_TRUE(mapping.fMemory.fDelayQueue.IsEmpty()) << frames;
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
