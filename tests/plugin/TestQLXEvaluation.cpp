// Links at work in a scene of the open host.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>

#include "LinkTest.h"
#include "NotFinite.h"
#include "TestMemory.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

using host::Channel;

// A link on "B", whose rotation about y follows the one of "A" about x.
class QLXEvaluation : public testing::Test {
 protected:
  void SetRotations(real32 inSource, real32 inTarget) {
    fScene.fA.SetBase(MakeValues({}, {inSource, 0, 0}));
    fScene.fB.SetBase(MakeValues({}, {0, inTarget, 0}));
  }
  // As many radians as frames.
  void AnimateSource() { Animate(fScene.fA, Channel::kRotationX, 0, 100, 100); }
  real32 Target() const { return ValueOf(fScene.fB, Channel::kRotationY); }
  real32 Play(int32 inFrame) {
    fScene.Play(inFrame);
    return Target();
  }

  LinkScene fScene;
  QLXModifier& fLink = LinkScene::Add(fScene.fB, kRotY, fScene.fA, kRotX);
  QLXModifierData& fData = fLink.EditData();
};

TEST_F(QLXEvaluation, LinksReadAndWriteTheirOwnWay) {
  const struct {
    const char* fLabel;
    const char* fTarget;
    const char* fController;
    Channel fRead;
    real32 fExpected;
  } rows[] = {
      {"parameter from parameter", kRotY, kRotX, Channel::kRotationY, 2},
      {"own translation from own translation", kOwnY, kOwnX, Channel::kPositionY, 7},
      {"own translation from parameter", kOwnX, kRotX, Channel::kPositionX, 2},
      {"parameter from own translation", kScale, kOwnX, Channel::kUniformScale, 7},
      {"global from parameter", "GlbX", kRotX, Channel::kPositionX, -8},
      {"parameter from global", kRotX, "GlbX", Channel::kRotationX, 17},
      {"global from global", "GlbY", "GlbX", Channel::kPositionY, 17},
  };
  for (const auto& row : rows) {
    host::Element& parent = fScene.Add("Parent");
    SetPosition(parent, {10, 0, 0});
    host::Element& source = fScene->AddElement(parent, "Source");
    host::Element& target = fScene->AddElement(parent, "Target");
    source.SetBase(MakeValues({7, 0, 0}, {2, 0, 0}));
    LinkScene::Add(target, row.fTarget, source, row.fController);
    fScene.Play(1);
    EXPECT_EQ(ValueOf(target, row.fRead), row.fExpected) << row.fLabel;
  }
  EXPECT_EQ(fScene.Warnings().size(), 0U);
}

TEST_F(QLXEvaluation, WhatCannotWorkWritesNothing) {
  const auto target = [](const char* path) { return [=](QLXModifier& l) { l.SetTargetPath(TMCString31(path)); }; };
  const auto controller = [](const char* path) {
    return [=](QLXModifier& l) { l.SetControllerPath(TMCString31(path)); };
  };
  const auto window = [](std::optional<int32> start, std::optional<int32> end) {
    return [=](QLXModifier& l) {
      l.EditData().fStartOn = start.has_value();
      l.EditData().fEndOn = end.has_value();
      l.EditData().fStartFrame = start.value_or(0);
      l.EditData().fEndFrame = end.value_or(0);
    };
  };
  const struct {
    const char* fLabel;
    std::function<void(QLXModifier&)> fChange;
    bool fCloses;  // the element is told that it changed
  } rows[] = {
      {"no target", [](QLXModifier& l) { l.ExtensionDataChanged(); }, false},
      {"target is missing", target("self,none"), false},
      {"target is a group", target("self,amet,TRAN"), false},
      {"empty target", target(""), false},
      {"no mode", [](QLXModifier& l) { l.EditData().fAttributeMode = false; }, true},
      {"controller is missing", controller("self,none"), true},
      {"controller is missing, and not needed",
       [](QLXModifier& l) {
         l.SetControllerPath(TMCString31("self,none"));
         l.EditData().fModifyAdd = false;
         l.EditData().fModifySet = true;
       },
       true},
      {"controller is a row of another element", controller("aset,<A>,amet,TRAN,SCAL"), true},
      {"the window has not begun", window(6, {}), false},
      {"the window is over", window({}, 4), true},
      {"the end comes before the start", window(5, 4), true},
      {"the delay is not filled",
       [](QLXModifier& l) {
         l.EditData().fDelayOn = true;
         l.EditData().fDelayFrames = 6;
       },
       true},
      {"a value that is not finite", [](QLXModifier& l) { l.EditData().fModifyValue = kNaN; }, true},
  };
  SetRotations(2, 0.5f);
  for (const auto& row : rows) {
    fScene.fB.RemoveAllModifiers();
    row.fChange(LinkScene::Add(fScene.fB, kRotY, fScene.fA, kRotX));
    EXPECT_EQ(Play(5), 0.5f) << row.fLabel;
    EXPECT_EQ(std::ranges::count(fScene->GetTouched(), &fScene.fB), row.fCloses ? 1 : 0) << row.fLabel;
  }
}

TEST_F(QLXEvaluation, SelfAndSetNeedNoController) {
  for (const bool isSelf : {true, false}) {
    fScene.fB.RemoveAllModifiers();
    SetRotations(0, 0.5f);
    QLXModifier& link = LinkScene::AddBare(fScene.fB);
    link.SetTargetPath(TMCString31(kRotY));
    QLXModifierData& data = link.EditData();
    data.fAttributeMode = true;
    data.fModifyValue = 4;
    data.fModifyAdd = false;
    data.fCombineReplace = !isSelf;
    data.fCombineSelf = data.fModifyMultiply = isSelf;
    data.fModifySet = !isSelf;
    EXPECT_EQ(Play(3), isSelf ? 2 : 4);
  }
}

TEST_F(QLXEvaluation, RepeatedSelfKeepsTheTargetButNotPastItsLimits) {
  SetRotations(0, 0.5f);
  fData.fCombineSelf = true;
  fData.fCombineReplace = false;
  fData.fModifyValue = 10;
  EXPECT_EQ(Play(0), 0.5f) << "the start, and by rule a repetition: the delta is 0 and the step is skipped";
  fData.fUpperLimitOn = true;
  fData.fUpperLimit = 0.25f;
  EXPECT_EQ(Play(0), 0.25f);
}

TEST_F(QLXEvaluation, ControllerThatIsGoneIsTheModifiedElement) {
  fScene.fB.SetBase(MakeValues({}, {3, 0, 0}));
  ObjectReference reference;
  for (const uint32 count : {1U, 3U, 4U, 500U}) {
    reference.SetElemCount(count);
    fLink.SetControllerRef(reference);
    EXPECT_EQ(Play(1), 3) << count;
  }
}

TEST_F(QLXEvaluation, NamesAreSearchedWhenEitherSwitchIsOn) {
  fScene.Add("C").SetBase(MakeValues({}, {7, 0, 0}));
  SetRotations(2, 0);
  fData.fControllerName = "C";
  EXPECT_EQ(Play(1), 2) << "by reference";
  fData.fFindSourceByName = true;
  EXPECT_EQ(Play(1), 7) << "the switch of the source";
  fData.fControllerName = "nobody";
  EXPECT_EQ(Play(1), 0) << "no such name: the element itself, whose rotation is 0";
  fData.fFindSourceByName = false;
  EXPECT_EQ(Play(1), 2);
  fData.fFindControllerByName = true;
  fData.fControllerName = "A";
  EXPECT_EQ(Play(1), 2);
  fScene.Add("late").SetBase(MakeValues({}, {9, 0, 0}));
  fData.fControllerName = "late";
  EXPECT_EQ(Play(1), 9) << "an element that came later";
  fData.fControllerName = std::string(255, '\xC3').c_str();
  EXPECT_EQ(Play(1), 0);
}

TEST_F(QLXEvaluation, ObjectModeMirrorsWhatIsChosen) {
  using Flag = bool QLXModifierData::*;
  using D = QLXModifierData;
  const struct {
    const char* fLabel;
    std::vector<Flag> fFlags;
    std::vector<real32> fExpected;  // position, rotation, uniform scale, scale
  } rows[] = {
      {"nothing", {}, {0, 0, 0, 0, 0, 0, 1, 1, 1, 1}},
      {"all positions", {&D::fPositionAll}, {1, 2, 3, 0, 0, 0, 1, 1, 1, 1}},
      {"axes without custom", {&D::fPositionX, &D::fRotationX}, {0, 0, 0, 0, 0, 0, 1, 1, 1, 1}},
      {"custom axes",
       {&D::fPositionCustom, &D::fPositionX, &D::fPositionZ, &D::fRotationCustom, &D::fRotationY},
       {1, 0, 3, 0, 0.5f, 0, 1, 1, 1, 1}},
      {"inverted",
       {&D::fPositionAll, &D::fPositionInvertY, &D::fRotationAll, &D::fRotationInvertZ},
       {1, -2, 3, 0.4f, 0.5f, -0.6f, 1, 1, 1, 1}},
      {"uniform scale", {&D::fScaleUniform}, {0, 0, 0, 0, 0, 0, 2, 1, 1, 1}},
      {"scale by axis", {&D::fScaleX, &D::fScaleZ}, {0, 0, 0, 0, 0, 0, 1, 3, 1, 5}},
  };
  fScene.fA.SetBase(MakeValues({1, 2, 3}, {0.4f, 0.5f, 0.6f}, {3, 4, 5}, 2));
  for (const auto& row : rows) {
    fScene.fB.RemoveAllModifiers();
    QLXModifier& link = LinkScene::Add(fScene.fB, kRotX, fScene.fA, kScale);  // attribute mode on, and not run
    link.EditData().fMirrorTransform = true;
    for (const Flag flag : row.fFlags) {
      link.EditData().*flag = true;
    }
    fScene.Play(1);
    for (std::size_t i = 0; i < host::kChannelCount; ++i) {
      EXPECT_NEAR(ValueOf(fScene.fB, static_cast<Channel>(i)), row.fExpected[i], 1e-6) << row.fLabel << i;
    }
  }
}

TEST_F(QLXEvaluation, LinksOfObjectModeShareOneQueueInTheirOrder) {
  Animate(fScene.fA, Channel::kPositionX, 0, 100, 100);
  Animate(fScene.fA, Channel::kRotationZ, 0, 1, 100);
  fData.fAttributeMode = false;
  fData.fMirrorTransform = fData.fPositionAll = fData.fRotationAll = fData.fDelayOn = true;
  fData.fDelayFrames = 3;
  for (int32 step = 0; step < 20; ++step) {
    const int32 frame = step % 10;  // the second time the queue begins anew
    fScene.Play(frame);
    const auto expected = static_cast<real32>(std::max(0, frame - 3));
    EXPECT_EQ(ValueOf(fScene.fB, Channel::kPositionX), expected) << step;
    EXPECT_FLOAT_EQ(ValueOf(fScene.fB, Channel::kRotationZ), expected / 100) << step;
    EXPECT_EQ(ValueOf(fScene.fB, Channel::kPositionY), 0) << step;
  }
}

TEST_F(QLXEvaluation, WindowTakesBothItsEnds) {
  AnimateSource();
  fData.fStartOn = fData.fEndOn = true;
  fData.fStartFrame = 3;
  fData.fEndFrame = 5;
  const real32 expected[] = {0, 0, 0, 3, 4, 5, 0, 0};
  for (int32 frame = 0; frame < 8; ++frame) {
    EXPECT_FLOAT_EQ(Play(frame), expected[frame]) << frame;
  }
}

TEST_F(QLXEvaluation, DelayFollowsFramesLaterAndRestartsAtTheStart) {
  AnimateSource();
  fScene.fB.SetBase(MakeValues({}, {0, 7, 0}));
  fData.fDelayOn = true;
  fData.fDelayFrames = 5;
  for (int round = 0; round < 2; ++round) {
    for (int32 frame = 0; frame < 30; ++frame) {
      EXPECT_FLOAT_EQ(Play(frame), frame < 5 ? 7 : static_cast<real32>(frame - 5)) << frame;
    }
  }
}

// The queue counts evaluations, not times: this is what a delay that a person scrubs through does.
TEST_F(QLXEvaluation, RepeatedFrameMovesTheDelayOn) {
  AnimateSource();
  fData.fDelayOn = true;
  fData.fDelayFrames = 1;
  for (const int32 frame : {0, 1, 1, 1}) {
    Play(frame);
  }
  EXPECT_FLOAT_EQ(Target(), 1);
}

TEST_F(QLXEvaluation, CloneInMidDelayGoesOn) {
  AnimateSource();
  host::Element& other = fScene.Add("Other");
  fData.fDelayOn = fData.fRelative = true;
  fData.fDelayFrames = 5;
  for (int32 frame = 0; frame < 8; ++frame) {
    Play(frame);
  }
  TMCCountedPtr<IExDataExchanger> clone;
  fLink.Clone(clone.WriteInto(), nullptr);
  QLXModifier& twin = LinkScene::AddBare(other);
  twin.EditData() = MCQuery<QLXModifier>(clone)->EditData();
  clone->CopyDataTo(&twin);
  for (int32 frame = 8; frame < 20; ++frame) {
    EXPECT_FLOAT_EQ(Play(frame), static_cast<real32>(frame - 5)) << frame;
    EXPECT_EQ(ValueOf(other, Channel::kRotationY), Target()) << frame;
  }
}

TEST_F(QLXEvaluation, CloneWithoutMemoryForTheDelayIsNone) {
  fData.fDelayOn = true;
  fData.fDelayFrames = 5;
  for (int32 frame = 0; frame < 8; ++frame) {
    Play(frame);
  }
  auto& memory = static_cast<TestMemory&>(*gMemoryUtilities);
  TMCCountedPtr<IExDataExchanger> clone;
  for (int requests = 0; !clone; ++requests) {
    memory.RefuseAfter(requests);
    const MCResult code = CodeOf([&] { fLink.Clone(clone.WriteInto(), nullptr); });
    EXPECT_EQ(code, memory.HasRefused() ? MC_E_OUTOFMEMORY : MC_S_OK) << requests;
    memory.RefuseNothing();
  }
}

TEST_F(QLXEvaluation, RepeatedAdditionStaysWhereTheFirstLeftIt) {
  SetRotations(2, 1);
  fData.fCombineReplace = false;
  fData.fCombineAdd = true;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Play(4), 3) << i;
  }
  SetRotations(2, 10);
  EXPECT_EQ(Play(4), 3) << "the first value that was seen";
  EXPECT_EQ(Play(5), 12);
}

TEST_F(QLXEvaluation, FirstEvaluationAtTimeZeroCountsAsRepeated) {
  fScene->SetTimeRange(-kFrameTicks, 100 * kFrameTicks);
  SetRotations(2, 1);
  fData.fCombineReplace = false;
  fData.fCombineAdd = true;
  EXPECT_EQ(Play(0), 2) << "nothing was seen of the target yet, so it counts as 0";
}

TEST_F(QLXEvaluation, RelativeLinkReadsKeysAndNotWhatModifiersMade) {
  Animate(fScene.fA, Channel::kRotationX, 1, 11, 10);
  TestScene::Modify(fScene.fA, [](host::Element& element) { element.SetValue(Channel::kRotationX, 50); });
  EXPECT_EQ(Play(0), 50);
  fData.fRelative = true;
  EXPECT_NEAR(Play(3), 4 - 50, 1e-5) << "the baseline was taken live";
}

TEST_F(QLXEvaluation, ValuesOfShadersGoByTheGeneralChannel) {
  host::Shader& shader = fScene->AddShader("Paint");
  shader.GetValues()->Add({.fID = "RotX"_id, .fName = "Odd", .fType = "qfix"_id}, {0.5f});
  shader.GetValues()->Add({.fID = "DIFF"_id, .fName = "Colour", .fType = "colo"_id}, {0.1f, 0.2f, 0.3f, 1});
  host::SceneObject& object = fScene->AddObject("Box");
  object.SetShaders({&shader});
  fScene.fB.SetShownObject(&object);
  SetRotations(0.75f, 0);
  LinkScene::Add(fScene.fB, "shdr,0000,DIFF,grnV", fScene.fA, kRotX);
  fLink.SetTargetPath(TMCString31("shdr,0000,RotX"));
  fData.fRelative = true;
  fData.fModifyValue = 90;
  fData.fModifyUnit = kUnitDegrees;  // no rotation for a shader: 90 stays 90
  fData.fLimitUnit = kUnitDegrees;   // but its limits go by the key that is written
  fData.fUpperLimitOn = true;
  fData.fUpperLimit = 180;
  fScene.Play(0);
  EXPECT_EQ(shader.GetValues()->GetEvaluated(1), (host::ValueNumbers{0.1f, 0.75f, 0.3f, 1}));
  EXPECT_FLOAT_EQ(shader.GetValues()->GetEvaluated(0)[0], 3.1415927f);
}

TEST_F(QLXEvaluation, BakingMakesAKeyWhereTheValueChanges) {
  host::Curve& source = fScene.fA.GetOrMakeCurve(Channel::kRotationX);
  for (const auto& [frame, value] : {std::pair(0, 1.0f), {3, 2.0f}, {5, 2.0f}, {6, 4.0f}}) {
    source.SetKey({.fTime = frame * kFrameTicks, .fValue = value, .fInterpolation = host::Interpolation::kStep});
  }
  host::Curve& target = fScene.fB.GetOrMakeCurve(Channel::kPositionX);
  target.SetKey({.fTime = 7 * kFrameTicks, .fValue = 99});
  target.SetKey({.fTime = 7 * kFrameTicks + 1, .fValue = 98});
  fLink.SetTargetPath(TMCString31(kOwnX));
  fData.fBakeKeyframes = true;
  for (int32 frame = 0; frame < 10; ++frame) {
    fScene.Play(frame);
  }
  std::vector<std::pair<int32, real32>> keys;
  for (const host::CurveKey& key : target.GetKeys()) {
    keys.emplace_back(key.fTime, key.fValue);
  }
  EXPECT_EQ(keys, (std::vector<std::pair<int32, real32>>{{0, 1.0f},
                                                         {3 * kFrameTicks, 2.0f},
                                                         {6 * kFrameTicks, 4.0f},
                                                         {7 * kFrameTicks + 1, 98.0f},
                                                         {9 * kFrameTicks, 4.0f}}))
      << "keys at frames of the window were cleared at its start; one between frames stays, and differs";
}

TEST_F(QLXEvaluation, PositionInTheSceneIsNotBaked) {
  fLink.SetTargetPath(TMCString31("GlbX"));
  fLink.SetControllerPath(TMCString31(kScale));
  fData.fBakeKeyframes = true;
  fScene.Play(0);
  fScene.Play(1);
  EXPECT_EQ(ValueOf(fScene.fB, Channel::kPositionX), 1);
  EXPECT_FALSE(fScene.fB.IsAnimated());
}

TEST_F(QLXEvaluation, EndlessWindowsEnd) {
  constexpr int32 kLeast = std::numeric_limits<int32>::min();
  constexpr int32 kMost = std::numeric_limits<int32>::max();
  fLink.SetControllerPath(TMCString31(kScale));
  fData.fBakeKeyframes = fData.fStartOn = fData.fEndOn = fData.fDelayOn = fData.fDecayOn = true;
  fData.fStartFrame = kLeast;
  fData.fEndFrame = kMost;
  for (const real32 rate : {24.0f, 180000.0f, 0.001f}) {
    fScene->SetFrameRate(rate);
    fData.fDelayFrames = kLeast;
    fScene->Evaluate(kLeast);
    EXPECT_EQ(Target(), 1) << rate;
    fScene->Evaluate(kMost);
    fData.fDelayFrames = kMost;
    fScene->Evaluate(kMost);
  }
}

TEST_F(QLXEvaluation, ChangedPathsAndReferencesAreFollowedAtOnce) {
  fScene.fA.SetBase(MakeValues({}, {2, 3, 0}));
  host::Element& other = fScene.Add("Other");
  other.SetBase(MakeValues({}, {5, 0, 0}));
  EXPECT_EQ(Play(1), 2);
  fLink.SetControllerPath(TMCString31(kRotY));
  EXPECT_EQ(Play(2), 3);
  LinkScene::Follow(fLink, other);
  fLink.SetControllerPath(TMCString31(kRotX));
  fLink.SetTargetPath(TMCString31(kScale));
  EXPECT_EQ(Play(3), 0);
  EXPECT_EQ(ValueOf(fScene.fB, Channel::kUniformScale), 5);
}

}  // namespace
}  // namespace qlx::test
