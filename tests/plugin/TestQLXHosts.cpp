// Links in hosts that lack things, and what each evaluation asks and tells a host.
#include <gtest/gtest.h>

#include "LinkServices.h"
#include "LinkTest.h"
#include "NotFinite.h"
#include "PlainScene.h"
#include "Transforms.h"

namespace qlx::test {
namespace {

// A link on an element of another host.
class QLXHosts : public testing::Test {
 protected:
  QLXHosts() {
    fModels.fA.SetBase(MakeValues({4, 0, 0}, {2, 0, 0}));
    fLink->EditData().fAttributeMode = true;
    fLink->SetTargetPath(TMCString31(kRotY));
    fLink->SetControllerPath(TMCString31(kRotX));
    LinkScene::Follow(*fLink, fModels.fA);
  }
  ~QLXHosts() override { fLink.Clear(); }

  real32 Evaluate(int32 inFrame) {
    fModels.Play(inFrame);
    EXPECT_EQ(fLink->SetTreeElement(&fElement), MC_S_OK);
    return ValueOf(fModels.fB, host::Channel::kRotationY);
  }

  LinkScene fModels;
  PlainScene fScene{*fModels.operator->()};
  PlainElement fElement{fModels.fB, &fScene};
  TMCCountedPtr<QLXModifier> fLink = MCAdopt(new QLXModifier);
};

TEST_F(QLXHosts, WithoutAStructureVersionEverythingIsLookedUpAnew) {
  EXPECT_EQ(Evaluate(1), 2);
  EXPECT_EQ(Evaluate(2), 2);
  EXPECT_EQ(fScene.fLookups, 2);
  EXPECT_EQ(fElement.fCount, 2) << "held as the target's element alone";
  EXPECT_EQ(fElement.fInvalidated, 2);
  fLink->EditData().fFindControllerByName = true;
  fLink->EditData().fControllerName = "A";
  EXPECT_EQ(Evaluate(3), 2);
  fScene.fHasRoot = false;
  EXPECT_EQ(Evaluate(4), 0) << "found nowhere: the element itself";
}

TEST_F(QLXHosts, WhatAHostLacksEndsTheEvaluationOrTheLink) {
  const auto expectNothing = [this](const char* label, bool closes = false) {
    fElement.fInvalidated = 0;
    EXPECT_EQ(Evaluate(1), 0) << label;
    EXPECT_EQ(fElement.fInvalidated, closes ? 1 : 0) << label;
    EXPECT_EQ(ValueOf(fModels.fB, host::Channel::kPositionY), 0) << label;
  };
  fElement.fScene = nullptr;
  expectNothing("no scene");
  fElement.fScene = &fScene;
  fScene.fHasRange = false;
  expectNothing("no time range");
  fScene.fHasRange = true;
  for (const real32 rate : {0.0f, -24.0f, kNaN, 200000.0f}) {
    fScene.fRate = rate;
    expectNothing("no frame rate, or more frames than ticks");
  }
  fScene.fRate = kRate;
  fLink->SetTargetPath(TMCString31("self,amet,none"));
  expectNothing("no parameter of the target");
  fElement.fHasTransform = false;
  fLink->SetTargetPath(TMCString31("GlbY"));
  expectNothing("a transform that cannot be read", true);
  fLink->SetTargetPath(TMCString31(kOwnX));
  expectNothing("an own translation that cannot be read", true);
  EXPECT_EQ(fLink->SetTreeElement(nullptr), MC_S_OK);
}

TEST_F(QLXHosts, ElementThatRefusesItsAttributesHasNoTarget) {
  fElement.fHasParameters = false;
  const SilentReports silence;  // the path says what is wrong to whoever debugs
  EXPECT_EQ(Evaluate(1), 0);
  EXPECT_EQ(fElement.fInvalidated, 0);
}

TEST_F(QLXHosts, OwnTranslationIsWrittenWithItsArguments) {
  fLink->SetTargetPath(TMCString31(kOwnX));
  Evaluate(1);
  EXPECT_EQ(fElement.fArguments, (std::vector<int32>{1, 0, 0, 0, 0, 1}));
  EXPECT_EQ(ValueOf(fModels.fB, host::Channel::kPositionX), 2);
}

TEST_F(QLXHosts, EvaluationInsideAnEvaluationDoesNothing) {
  fModels.fA.SetBase(MakeValues({}, {2, 3, 0}));
  fElement.fOnInvalidate = [this] {
    EXPECT_EQ(fLink->SetTreeElement(&fElement), MC_S_OK);
    fLink->SetControllerPath(TMCString31(kRotY));
  };
  EXPECT_EQ(Evaluate(1), 2);
  EXPECT_EQ(fElement.fInvalidated, 1);
  EXPECT_EQ(Evaluate(2), 3) << "what was changed inside counts from the next one on";
}

TEST_F(QLXHosts, UpdateServiceIsTold) {
  LinkServices services;
  Evaluate(1);
  EXPECT_EQ(services.fUpdates.fUpdated, std::vector<TreeElement*>{&fElement});
  EXPECT_EQ(services.fUpdates.fLastScene, fModels.operator->());
  fScene.fHasMaster = false;
  Evaluate(2);
  EXPECT_EQ(services.fUpdates.fUpdated.size(), 1U) << "without a notifier there is nobody to pass";
}

TEST_F(QLXHosts, MorphsAreToldAfterTheirWeightWasWritten) {
  PlainMorphs morphs;
  fElement.fMorphs = &morphs;
  host::SceneObject& face = fModels->AddObject("Face");
  face.AddMorphGroup("Mouth", {"Smile", "Frown"}, {0, 0.5f});
  fModels.fB.SetShownObject(&face);
  for (const int32 frame : {1, 2}) {
    Evaluate(frame);
    EXPECT_EQ(morphs.fChanged, 0) << "another value";
  }
  fLink->SetTargetPath(TMCString31("RMPH,0,1"));
  for (const int32 frame : {3, 4}) {
    Evaluate(frame);
    EXPECT_EQ(morphs.fChanged, frame - 2);
    EXPECT_EQ(face.GetValues()->GetEvaluated(1)[0], 2);
    EXPECT_EQ(morphs.fCount, 1) << "fetched once, and held";
  }
  fLink.Clear();
  EXPECT_EQ(morphs.fCount, 0);
}

TEST_F(QLXHosts, MovedModifierLooksUpAnew) {
  host::Element& first = fModels.Add("First");
  host::Element& second = fModels.Add("Second");
  LinkScene::Add(first, kRotY, fModels.fA, kRotX);
  fModels.Play(1);
  const auto carrier = first.GetModifiers()[0];
  first.RemoveModifier(0);
  second.AddModifier(*carrier, 0);
  fModels.Play(2);
  EXPECT_EQ(ValueOf(second, host::Channel::kRotationY), 2);
  EXPECT_EQ(ValueOf(first, host::Channel::kRotationY), 0);
}

}  // namespace
}  // namespace qlx::test
