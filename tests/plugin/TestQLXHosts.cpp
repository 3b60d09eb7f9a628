// Links in hosts that lack things, and what each evaluation asks and tells a host.
#include <gtest/gtest.h>

#include "LinkServices.h"
#include "LinkTest.h"
#include "PlainScene.h"
#include "Transforms.h"

namespace qlx::test {
namespace {

struct PlainHost {
  PlainHost() {
    fModels.fA.SetBase(MakeValues({4, 0, 0}, {2, 0, 0}));
    fLink->EditData().fAttributeMode = true;
    fLink->SetTargetPath(TMCString31(kRotY));
    fLink->SetControllerPath(TMCString31(kRotX));
    LinkScene::Follow(*fLink, fModels.fA);
  }
  ~PlainHost() { fLink.Clear(); }

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

TEST(QLXHosts, WithoutAStructureVersionEverythingIsLookedUpAnew) {
  PlainHost host;
  EXPECT_EQ(host.Evaluate(1), 2);
  EXPECT_EQ(host.Evaluate(2), 2);
  EXPECT_EQ(host.fScene.fLookups, 2);
  EXPECT_EQ(host.fElement.fCount, 2) << "held as the target's element alone";
  EXPECT_EQ(host.fElement.fInvalidated, 2);
  host.fLink->EditData().fFindControllerByName = true;
  host.fLink->EditData().fControllerName = "A";
  EXPECT_EQ(host.Evaluate(3), 2);
  host.fScene.fHasRoot = false;
  EXPECT_EQ(host.Evaluate(4), 0) << "found nowhere: the element itself";
}

TEST(QLXHosts, WhatAHostLacksEndsTheEvaluationOrTheLink) {
  using Change = std::function<void(PlainHost&)>;
  const struct {
    const char* fLabel;
    Change fChange;
    bool fCloses;
  } rows[] = {
      {"no scene", [](PlainHost& h) { h.fElement.fScene = nullptr; }, false},
      {"no time range", [](PlainHost& h) { h.fScene.fHasRange = false; }, false},
      {"no frame rate", [](PlainHost& h) { h.fScene.fRate = 0; }, false},
      {"a frame rate below 0", [](PlainHost& h) { h.fScene.fRate = -24; }, false},
      {"a frame rate that is none", [](PlainHost& h) { h.fScene.fRate = std::numeric_limits<real32>::quiet_NaN(); },
       false},
      {"more frames than ticks", [](PlainHost& h) { h.fScene.fRate = 200000; }, false},
      {"no parameter of the target", [](PlainHost& h) { h.fLink->SetTargetPath(TMCString31("self,amet,none")); },
       false},
      {"a transform that cannot be read",
       [](PlainHost& h) {
         h.fLink->SetTargetPath(TMCString31("GlbY"));
         h.fElement.fHasTransform = false;
       },
       true},
      {"an own translation that cannot be read",
       [](PlainHost& h) {
         h.fLink->SetTargetPath(TMCString31(kOwnX));
         h.fElement.fHasTransform = false;
       },
       true},
  };
  for (const auto& row : rows) {
    PlainHost host;
    row.fChange(host);
    EXPECT_EQ(host.Evaluate(1), 0) << row.fLabel;
    EXPECT_EQ(host.fElement.fInvalidated, row.fCloses ? 1 : 0) << row.fLabel;
    EXPECT_EQ(ValueOf(host.fModels.fB, host::Channel::kPositionY), 0) << row.fLabel;
  }
  PlainHost host;
  EXPECT_EQ(host.fLink->SetTreeElement(nullptr), MC_S_OK);
}

TEST(QLXHosts, ElementThatRefusesItsAttributesHasNoTarget) {
  PlainHost host;
  host.fElement.fHasParameters = false;
  const SilentReports silence;  // the path says what is wrong to whoever debugs
  EXPECT_EQ(host.Evaluate(1), 0);
  EXPECT_EQ(host.fElement.fInvalidated, 0);
}

TEST(QLXHosts, OwnTranslationIsWrittenWithItsArguments) {
  PlainHost host;
  host.fLink->SetTargetPath(TMCString31(kOwnX));
  host.Evaluate(1);
  EXPECT_EQ(host.fElement.fArguments, (std::vector<int32>{1, 0, 0, 0, 0, 1}));
  EXPECT_EQ(ValueOf(host.fModels.fB, host::Channel::kPositionX), 2);
}

TEST(QLXHosts, EvaluationInsideAnEvaluationDoesNothing) {
  PlainHost host;
  host.fModels.fA.SetBase(MakeValues({}, {2, 3, 0}));
  host.fElement.fReentrant = host.fLink.Get();
  EXPECT_EQ(host.Evaluate(1), 2);
  EXPECT_EQ(host.fElement.fInvalidated, 1);
  EXPECT_EQ(host.Evaluate(2), 3) << "what was changed inside counts from the next one on";
}

TEST(QLXHosts, UpdateServiceIsTold) {
  const TestMemory memory;
  LinkServices services;
  PlainHost host;
  host.Evaluate(1);
  EXPECT_EQ(services.fUpdates.fUpdated, std::vector<TreeElement*>{&host.fElement});
  EXPECT_EQ(services.fUpdates.fLastScene, host.fModels.operator->());
  host.fScene.fHasMaster = false;
  host.Evaluate(2);
  EXPECT_EQ(services.fUpdates.fUpdated.size(), 1U) << "without a notifier there is nobody to pass";
}

TEST(QLXHosts, MovedModifierLooksUpAnew) {
  LinkScene scene;
  host::Element& other = scene.Add("Other");
  scene.fA.SetBase(MakeValues({}, {2, 0, 0}));
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  scene.Play(1);
  const auto carrier = scene.fB.GetModifiers()[0];
  scene.fB.RemoveModifier(0);
  other.AddModifier(*carrier, 0);
  scene.Play(2);
  EXPECT_EQ(ValueOf(other, host::Channel::kRotationY), 2);
  EXPECT_EQ(ValueOf(scene.fB, host::Channel::kRotationY), 0);
  EXPECT_EQ(link.GetPrivateData().fControllerRef.GetElemCount(), 4U);
}

TEST(QLXHosts, MorphsAreToldAfterTheirWeightWasWritten) {
  for (const bool isMorph : {true, false}) {
    PlainMorphs morphs;
    PlainHost host;
    host.fElement.fMorphs = &morphs;
    host::SceneObject& face = host.fModels->AddObject("Face");
    face.AddMorphGroup("Mouth", {"Smile", "Frown"}, {0, 0.5f});
    host.fModels.fB.SetShownObject(&face);
    host.fLink->SetTargetPath(TMCString31(isMorph ? "RMPH,0,1" : kRotY));
    host.Evaluate(1);
    EXPECT_EQ(morphs.fChanged, isMorph ? 1 : 0);
    EXPECT_EQ(face.GetValues()->GetEvaluated(1)[0], isMorph ? 2 : 0.5f);
    host.Evaluate(2);
    EXPECT_EQ(morphs.fChanged, isMorph ? 2 : 0);
    EXPECT_EQ(morphs.fCount, 1) << "fetched once, and held";
    host.fLink.Clear();
    EXPECT_EQ(morphs.fCount, 0);
  }
}

}  // namespace
}  // namespace qlx::test
