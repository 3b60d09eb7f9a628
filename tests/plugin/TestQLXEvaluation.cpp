// Links at work in a scene of the open host.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>

#include "LinkTest.h"
#include "MCException.h"
#include "SilentReports.h"
#include "TestMemory.h"

namespace qlx::test {
namespace {

using host::Channel;

TEST(QLXEvaluation, DefaultLinkMakesTheTargetEqualItsController) {
  LinkScene scene;
  Animate(scene.fA, Channel::kRotationX, 0, 2, 10);
  LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  for (const int32 frame : {0, 3, 10}) {
    scene.Play(frame);
    EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), ValueOf(scene.fA, Channel::kRotationX)) << frame;
  }
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 2);
}

TEST(QLXEvaluation, FourLinksReadAndWriteTheirOwnWay) {
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
    LinkScene scene;
    host::Element& parent = scene.Add("Parent");
    SetPosition(parent, {10, 0, 0});
    host::Element& source = scene->AddElement(parent, "Source");
    host::Element& target = scene->AddElement(parent, "Target");
    source.SetBase(MakeValues({7, 0, 0}, {2, 0, 0}));
    LinkScene::Add(target, row.fTarget, source, row.fController);
    scene.Play(1);
    EXPECT_EQ(ValueOf(target, row.fRead), row.fExpected) << row.fLabel;
    EXPECT_EQ(scene.Warnings().size(), 0U) << row.fLabel;
  }
}

bool WasTold(const LinkScene& inScene, const host::Element& inElement) {
  const auto& touched = inScene->GetTouched();
  return std::find(touched.begin(), touched.end(), &inElement) != touched.end();
}

TEST(QLXEvaluation, WhatCannotWorkWritesNothing) {
  using Change = std::function<void(QLXModifier&)>;
  const struct {
    const char* fLabel;
    Change fChange;
    bool fCloses;  // the element is told that it changed
  } rows[] = {
      {"no target", [](QLXModifier& l) { l.ExtensionDataChanged(); }, false},
      {"target is missing", [](QLXModifier& l) { l.SetTargetPath(TMCString31("self,none")); }, false},
      {"target is a group", [](QLXModifier& l) { l.SetTargetPath(TMCString31("self,amet,TRAN")); }, false},
      {"empty target", [](QLXModifier& l) { l.SetTargetPath(TMCString31()); }, false},
      {"no mode", [](QLXModifier& l) { l.EditData().fAttributeMode = false; }, true},
      {"controller is missing", [](QLXModifier& l) { l.SetControllerPath(TMCString31("self,none")); }, true},
      {"controller is missing, and not needed",
       [](QLXModifier& l) {
         l.SetControllerPath(TMCString31("self,none"));
         l.EditData().fModifyAdd = false;
         l.EditData().fModifySet = true;
       },
       true},
      {"controller is a row of another element",
       [](QLXModifier& l) { l.SetControllerPath(TMCString63("aset,<A>,amet,TRAN,SCAL")); }, true},
      {"the window has not begun",
       [](QLXModifier& l) {
         l.EditData().fStartOn = true;
         l.EditData().fStartFrame = 6;
       },
       false},
      {"the window is over",
       [](QLXModifier& l) {
         l.EditData().fEndOn = true;
         l.EditData().fEndFrame = 4;
       },
       true},
      {"the end comes before the start",
       [](QLXModifier& l) {
         l.EditData().fStartOn = l.EditData().fEndOn = true;
         l.EditData().fStartFrame = 5;
         l.EditData().fEndFrame = 4;
       },
       true},
      {"the delay is not filled",
       [](QLXModifier& l) {
         l.EditData().fDelayOn = true;
         l.EditData().fDelayFrames = 6;
       },
       true},
      {"a value that is not finite",
       [](QLXModifier& l) { l.EditData().fModifyValue = std::numeric_limits<real32>::quiet_NaN(); }, true},
  };
  for (const auto& row : rows) {
    LinkScene scene;
    scene.fA.SetBase(MakeValues({}, {2, 0, 0}));
    scene.fB.SetBase(MakeValues({}, {0, 0.5f, 0}));
    QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
    row.fChange(link);
    scene.Play(5);
    EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 0.5f) << row.fLabel;
    EXPECT_EQ(WasTold(scene, scene.fB), row.fCloses) << row.fLabel;
  }
}

TEST(QLXEvaluation, SelfAndSetNeedNoController) {
  for (const bool isSelf : {true, false}) {
    LinkScene scene;
    scene.fB.SetBase(MakeValues({}, {0, 0.5f, 0}));
    QLXModifier& link = LinkScene::AddBare(scene.fB);
    link.SetTargetPath(TMCString31(kRotY));
    QLXModifierData& data = link.EditData();
    data.fAttributeMode = true;
    data.fModifyValue = 4;
    data.fModifyAdd = false;
    data.fCombineReplace = !isSelf;
    data.fCombineSelf = data.fModifyMultiply = isSelf;
    data.fModifySet = !isSelf;
    scene.Play(3);
    EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), isSelf ? 2 : 4);
  }
}

TEST(QLXEvaluation, RepeatedSelfKeepsTheTargetButNotPastItsLimits) {
  LinkScene scene;
  scene.fB.SetBase(MakeValues({}, {0, 0.5f, 0}));
  QLXModifier& link = LinkScene::AddBare(scene.fB);
  link.SetTargetPath(TMCString31(kRotY));
  QLXModifierData& data = link.EditData();
  data.fAttributeMode = data.fCombineSelf = true;
  data.fCombineReplace = false;
  data.fModifyValue = 10;
  scene.Play(0);  // the start, and by rule a repetition: the delta is 0 and the step is skipped
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 0.5f);
  data.fUpperLimitOn = true;
  data.fUpperLimit = 0.25f;
  scene.Play(0);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 0.25f);
}

TEST(QLXEvaluation, ControllerThatIsGoneIsTheModifiedElement) {
  LinkScene scene;
  scene.fB.SetBase(MakeValues({}, {3, 0, 0}));
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  ObjectReference reference;
  for (const uint32 count : {1U, 3U, 4U, 500U}) {
    reference.SetElemCount(count);
    link.SetControllerRef(reference);
    scene.Play(1);
    EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 3) << count;
  }
}

TEST(QLXEvaluation, NamesAreSearchedWhenEitherSwitchIsOn) {
  LinkScene scene;
  host::Element& named = scene.Add("C");
  named.SetBase(MakeValues({}, {7, 0, 0}));
  scene.fA.SetBase(MakeValues({}, {2, 0, 0}));
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  QLXModifierData& data = link.EditData();
  data.fControllerName = "C";
  const auto play = [&] {
    scene.Play(1);
    return ValueOf(scene.fB, Channel::kRotationY);
  };
  EXPECT_EQ(play(), 2) << "by reference";
  data.fFindSourceByName = true;
  EXPECT_EQ(play(), 7) << "the switch of the source";
  data.fControllerName = "nobody";
  EXPECT_EQ(play(), 0) << "no such name: the element itself, whose rotation is 0";
  data.fFindSourceByName = false;
  EXPECT_EQ(play(), 2);
  data.fFindControllerByName = true;
  data.fControllerName = "A";
  EXPECT_EQ(play(), 2);
  host::Element& late = scene.Add("late");
  late.SetBase(MakeValues({}, {9, 0, 0}));
  data.fControllerName = "late";
  EXPECT_EQ(play(), 9) << "an element that came later";
  data.fControllerName = std::string(255, '\xC3').c_str();
  EXPECT_EQ(play(), 0);
}

TEST(QLXEvaluation, ObjectModeMirrorsWhatIsChosen) {
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
  for (const auto& row : rows) {
    LinkScene scene;
    scene.fA.SetBase(MakeValues({1, 2, 3}, {0.4f, 0.5f, 0.6f}, {3, 4, 5}, 2));
    QLXModifier& link = LinkScene::Add(scene.fB, kRotX, scene.fA, kScale);  // attribute mode on, and not run
    link.EditData().fMirrorTransform = true;
    for (const Flag flag : row.fFlags) {
      link.EditData().*flag = true;
    }
    scene.Play(1);
    for (std::size_t i = 0; i < host::kChannelCount; ++i) {
      EXPECT_NEAR(ValueOf(scene.fB, static_cast<Channel>(i)), row.fExpected[i], 1e-6) << row.fLabel << i;
    }
  }
}

TEST(QLXEvaluation, LinksOfObjectModeShareOneQueueInTheirOrder) {
  LinkScene scene;
  Animate(scene.fA, Channel::kPositionX, 0, 100, 100);
  Animate(scene.fA, Channel::kRotationZ, 0, 1, 100);
  QLXModifier& link = LinkScene::AddBare(scene.fB);
  LinkScene::Follow(link, scene.fA);
  QLXModifierData& data = link.EditData();
  data.fMirrorTransform = data.fPositionAll = data.fRotationAll = data.fDelayOn = true;
  data.fDelayFrames = 3;
  for (int32 frame = 0; frame < 10; ++frame) {
    scene.Play(frame);
    const auto expected = static_cast<real32>(std::max(0, frame - 3));
    EXPECT_EQ(ValueOf(scene.fB, Channel::kPositionX), expected) << frame;
    EXPECT_FLOAT_EQ(ValueOf(scene.fB, Channel::kRotationZ), expected / 100) << frame;
    EXPECT_EQ(ValueOf(scene.fB, Channel::kPositionY), 0) << frame;
  }
}

TEST(QLXEvaluation, WindowTakesBothItsEnds) {
  LinkScene scene;
  Animate(scene.fA, Channel::kRotationX, 0, 100, 100);
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  link.EditData().fStartOn = link.EditData().fEndOn = true;
  link.EditData().fStartFrame = 3;
  link.EditData().fEndFrame = 5;
  const real32 expected[] = {0, 0, 0, 3, 4, 5, 0, 0};
  for (int32 frame = 0; frame < 8; ++frame) {
    scene.Play(frame);
    EXPECT_FLOAT_EQ(ValueOf(scene.fB, Channel::kRotationY), expected[frame]) << frame;
  }
}

TEST(QLXEvaluation, DelayFollowsFramesLaterAndRestartsAtTheStart) {
  LinkScene scene;
  Animate(scene.fA, Channel::kRotationX, 0, 100, 100);
  scene.fB.SetBase(MakeValues({}, {0, 7, 0}));
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  link.EditData().fDelayOn = true;
  link.EditData().fDelayFrames = 5;
  for (int round = 0; round < 2; ++round) {
    for (int32 frame = 0; frame < 30; ++frame) {
      scene.Play(frame);
      EXPECT_FLOAT_EQ(ValueOf(scene.fB, Channel::kRotationY), frame < 5 ? 7 : static_cast<real32>(frame - 5)) << frame;
    }
  }
}

// The queue counts evaluations, not times: this is what a delay that a person scrubs through does.
TEST(QLXEvaluation, RepeatedFrameMovesTheDelayOn) {
  LinkScene scene;
  Animate(scene.fA, Channel::kRotationX, 0, 100, 100);
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  link.EditData().fDelayOn = true;
  link.EditData().fDelayFrames = 1;
  for (const int32 frame : {0, 1, 1, 1}) {
    scene.Play(frame);
  }
  EXPECT_FLOAT_EQ(ValueOf(scene.fB, Channel::kRotationY), 1);
}

TEST(QLXEvaluation, CloneInMidDelayGoesOn) {
  LinkScene scene;
  Animate(scene.fA, Channel::kRotationX, 0, 100, 100);
  host::Element& other = scene.Add("Other");
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  link.EditData().fDelayOn = link.EditData().fRelative = true;
  link.EditData().fDelayFrames = 5;
  for (int32 frame = 0; frame < 8; ++frame) {
    scene.Play(frame);
  }
  TMCCountedPtr<IExDataExchanger> clone;
  link.Clone(clone.WriteInto(), nullptr);
  QLXModifier& twin = LinkScene::AddBare(other);
  twin.EditData() = MCQuery<QLXModifier>(clone)->EditData();
  clone->CopyDataTo(&twin);
  for (int32 frame = 8; frame < 20; ++frame) {
    scene.Play(frame);
    EXPECT_FLOAT_EQ(ValueOf(scene.fB, Channel::kRotationY), static_cast<real32>(frame - 5)) << frame;
    EXPECT_EQ(ValueOf(other, Channel::kRotationY), ValueOf(scene.fB, Channel::kRotationY)) << frame;
  }
}

TEST(QLXEvaluation, CloneWithoutMemoryForTheDelayIsNone) {
  LinkScene scene;
  const SilentReports silence;
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  link.EditData().fDelayOn = true;
  link.EditData().fDelayFrames = 5;
  for (int32 frame = 0; frame < 8; ++frame) {
    scene.Play(frame);
  }
  auto& memory = static_cast<TestMemory&>(*gMemoryUtilities);
  TMCCountedPtr<IExDataExchanger> clone;
  for (int requests = 0; !clone; ++requests) {
    memory.RefuseAfter(requests);
    try {
      link.Clone(clone.WriteInto(), nullptr);
      EXPECT_FALSE(memory.HasRefused()) << requests;
    } catch (const TMCException& exception) {
      EXPECT_EQ(exception.GetCode(), MC_E_OUTOFMEMORY);
    }
    memory.RefuseNothing();
  }
}

TEST(QLXEvaluation, RepeatedAdditionStaysWhereTheFirstLeftIt) {
  LinkScene scene;
  scene.fA.SetBase(MakeValues({}, {2, 0, 0}));
  scene.fB.SetBase(MakeValues({}, {0, 1, 0}));
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  link.EditData().fCombineReplace = false;
  link.EditData().fCombineAdd = true;
  TestScene::Modify(scene.fA, [](host::Element&) {});
  for (int i = 0; i < 3; ++i) {
    scene.Play(4);
    EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 3) << i;
  }
  scene.fB.SetBase(MakeValues({}, {0, 10, 0}));
  scene.Play(4);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 3) << "the first value that was seen";
  scene.Play(5);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 12);
}

TEST(QLXEvaluation, FirstEvaluationAtTimeZeroCountsAsRepeated) {
  LinkScene scene;
  scene->SetTimeRange(-kFrameTicks, 100 * kFrameTicks);
  scene.fA.SetBase(MakeValues({}, {2, 0, 0}));
  scene.fB.SetBase(MakeValues({}, {0, 1, 0}));
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  link.EditData().fCombineReplace = false;
  link.EditData().fCombineAdd = true;
  scene.Play(0);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 2) << "nothing was seen of the target yet, so it counts as 0";
}

TEST(QLXEvaluation, RelativeLinkReadsKeysAndNotWhatModifiersMade) {
  LinkScene scene;
  Animate(scene.fA, Channel::kRotationX, 1, 11, 10);
  TestScene::Modify(scene.fA, [](host::Element& element) { element.SetValue(Channel::kRotationX, 50); });
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  scene.Play(0);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 50);
  link.EditData().fRelative = true;
  scene.Play(3);
  EXPECT_NEAR(ValueOf(scene.fB, Channel::kRotationY), 4 - 50, 1e-5) << "the baseline was taken live";
}

TEST(QLXEvaluation, ValuesOfShadersGoByTheGeneralChannel) {
  LinkScene scene;
  host::Shader& shader = scene->AddShader("Paint");
  shader.GetValues()->Add({.fID = "RotX"_id, .fName = "Odd", .fType = "qfix"_id}, {0.5f});
  shader.GetValues()->Add({.fID = "DIFF"_id, .fName = "Colour", .fType = "colo"_id}, {0.1f, 0.2f, 0.3f, 1});
  host::SceneObject& object = scene->AddObject("Box");
  object.SetShaders({&shader});
  scene.fB.SetShownObject(&object);
  scene.fA.SetBase(MakeValues({}, {0.75f, 0, 0}));
  LinkScene::Add(scene.fB, "shdr,0000,DIFF,grnV", scene.fA, kRotX);
  QLXModifier& odd = LinkScene::Add(scene.fB, "shdr,0000,RotX", scene.fA, kRotX);
  odd.EditData().fRelative = true;
  odd.EditData().fModifyValue = 90;
  odd.EditData().fModifyUnit = kUnitDegrees;  // no rotation for a shader: 90 stays 90
  odd.EditData().fLimitUnit = kUnitDegrees;   // but its limits go by the key that is written
  odd.EditData().fUpperLimitOn = true;
  odd.EditData().fUpperLimit = 180;
  scene.Play(0);
  EXPECT_EQ(shader.GetValues()->GetEvaluated(1), (host::ValueNumbers{0.1f, 0.75f, 0.3f, 1}));
  EXPECT_FLOAT_EQ(shader.GetValues()->GetEvaluated(0)[0], 3.1415927f);
}

TEST(QLXEvaluation, BakingMakesAKeyWhereTheValueChanges) {
  LinkScene scene;
  host::Curve& source = scene.fA.GetOrMakeCurve(Channel::kRotationX);
  for (const auto& [frame, value] : {std::pair(0, 1.0f), {3, 2.0f}, {5, 2.0f}, {6, 4.0f}}) {
    source.SetKey({.fTime = frame * kFrameTicks, .fValue = value, .fInterpolation = host::Interpolation::kStep});
  }
  host::Curve& target = scene.fB.GetOrMakeCurve(Channel::kPositionX);
  target.SetKey({.fTime = 7 * kFrameTicks, .fValue = 99});
  target.SetKey({.fTime = 7 * kFrameTicks + 1, .fValue = 98});
  QLXModifier& link = LinkScene::Add(scene.fB, kOwnX, scene.fA, kRotX);
  link.EditData().fBakeKeyframes = true;
  for (int32 frame = 0; frame < 10; ++frame) {
    scene.Play(frame);
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

TEST(QLXEvaluation, PositionInTheSceneIsNotBaked) {
  LinkScene scene;
  QLXModifier& link = LinkScene::Add(scene.fB, "GlbX", scene.fA, kScale);
  link.EditData().fBakeKeyframes = true;
  scene.Play(0);
  scene.Play(1);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kPositionX), 1);
  EXPECT_FALSE(scene.fB.IsAnimated());
}

TEST(QLXEvaluation, EndlessWindowsEnd) {
  for (const real32 rate : {24.0f, 180000.0f, 0.001f}) {
    LinkScene scene;
    scene->SetFrameRate(rate);
    QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kScale);
    QLXModifierData& data = link.EditData();
    data.fBakeKeyframes = data.fStartOn = data.fEndOn = data.fDelayOn = data.fDecayOn = true;
    data.fStartFrame = std::numeric_limits<int32>::min();
    data.fEndFrame = std::numeric_limits<int32>::max();
    data.fDelayFrames = std::numeric_limits<int32>::min();
    scene->Evaluate(std::numeric_limits<int32>::min());
    EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 1) << rate;
    scene->Evaluate(std::numeric_limits<int32>::max());
    data.fDelayFrames = std::numeric_limits<int32>::max();
    scene->Evaluate(std::numeric_limits<int32>::max());
  }
}

TEST(QLXEvaluation, ChangedPathsAndReferencesAreFollowedAtOnce) {
  LinkScene scene;
  scene.fA.SetBase(MakeValues({}, {2, 3, 0}));
  host::Element& other = scene.Add("Other");
  other.SetBase(MakeValues({}, {5, 0, 0}));
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  scene.Play(1);
  link.SetControllerPath(TMCString31(kRotY));
  scene.Play(2);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 3);
  LinkScene::Follow(link, other);
  link.SetControllerPath(TMCString31(kRotX));
  link.SetTargetPath(TMCString31(kScale));
  scene.Play(3);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kUniformScale), 5);
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 0);
}

}  // namespace
}  // namespace qlx::test
