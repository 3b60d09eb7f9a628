// What is seen of modifiers by looking at copies of them, and the order and the cycles that follow.
#include <gtest/gtest.h>

#include "ModelTest.h"
#include "model/Bake.h"
#include "model/EvaluationOrder.h"
#include "model/ParameterRows.h"

namespace qlx::host {

using test::MakeValues;
using test::TestScene;

namespace {

using Names = std::vector<std::string>;

// Which number of what: a path of the element, "GlbX" and its like for the place in the scene, "XCOO" and its like for
// the position as the transform has it.
struct End {
  Element* fElement;
  std::string fPath;
};

int GlobalAxis(const End& inEnd) {
  return inEnd.fPath.starts_with("Glb") ? inEnd.fPath[3] - 'X' : -1;
}

int LocalAxis(const End& inEnd) {
  return inEnd.fPath.size() == 4 && inEnd.fPath.ends_with("COO") ? inEnd.fPath[0] - 'X' : -1;
}

real32 ReadEnd(const End& inEnd) {
  TreeTransform transform;
  if (const int axis = GlobalAxis(inEnd); axis >= 0) {
    inEnd.fElement->GetGlobalTransform(transform);
    return transform.GetPosition()[axis];
  }
  if (const int axis = LocalAxis(inEnd); axis >= 0) {
    inEnd.fElement->GetLocalTransform(transform);
    return transform.GetPosition()[axis];
  }
  real32 value = 0;
  FindParameter(*inEnd.fElement, inEnd.fPath).fParameter->GetValueAccess()->Read(&value);
  return value;
}

void WriteEnd(const End& inEnd, real32 inValue) {
  TreeTransform transform;
  const int global = GlobalAxis(inEnd);
  const int local = LocalAxis(inEnd);
  if (global < 0 && local < 0) {
    FindParameter(*inEnd.fElement, inEnd.fPath).fParameter->GetValueAccess()->Write(&inValue);
    return;
  }
  global >= 0 ? inEnd.fElement->GetGlobalTransform(transform) : inEnd.fElement->GetLocalTransform(transform);
  TVector3 position = transform.GetPosition();
  position[global >= 0 ? global : local] = inValue;
  transform.SetPosition(position);
  if (global >= 0) {
    inEnd.fElement->SetGlobalTransform(transform, 0, 1, 0, 0, 0);
  } else {
    inEnd.fElement->SetLocalTransform(transform, 1, 0, 0, 0, 0, 1);
  }
}

// A value follows another, plus a number of its own; it counts how often it worked on the scene itself.
class Follower final : public Modifier {
 public:
  Follower(std::string inTarget, std::vector<End> inSources, real32 inAdd = 0)
      : fTarget(std::move(inTarget)), fSources(std::move(inSources)), fAdd(inAdd) {}
  void Apply(Element& inElement) override {
    ++fWorked;
    real32 sum = fAdd;
    for (const End& source : fSources) {
      sum += ReadEnd(source);
    }
    WriteEnd({&inElement, fTarget}, sum);
  }
  TMCCountedPtr<Modifier> Copy() override { return MakeHosted<Follower>(fTarget, fSources, fAdd); }
  MCID MC_CALL GetModifierClass() override { return "flow"_id; }
  void Follow(End inSource) {
    fSources = {std::move(inSource)};
    LinksChanged();
  }
  int fWorked = 0;

 private:
  std::string fTarget;
  std::vector<End> fSources;
  real32 fAdd;
};

constexpr const char* kRotX = "self,amet,TRAN,ROTA,RotX";
constexpr const char* kRotZ = "self,amet,TRAN,ROTA,RotZ";
constexpr const char* kScale = "self,amet,TRAN,SCAL";

class EvaluationOrders : public testing::Test {
 protected:
  void SetUp() override { fScene->SetTimeRange(0, 180000); }
  Follower& Link(Element& inElement, const char* inTarget, std::vector<End> inSources, real32 inAdd = 0) {
    auto link = MakeHosted<Follower>(inTarget, std::move(inSources), inAdd);
    inElement.AddModifier(*link, inElement.GetModifiers().size());
    return *link;
  }
  Names Cycles() { return fScene->FindOrder().GetCycles(); }
  // The names of the modified elements as they are evaluated, a modifier each.
  Names Order() {
    const EvaluationOrder& order = fScene->FindOrder();
    Names names;
    for (const EvaluationStep& step : order.GetSteps()) {
      names.push_back(step.fElement->GetNameText());
    }
    return names;
  }

  TestScene fScene;
  Element& fA = fScene.Add("A");
  Element& fB = fScene.Add("B");
  Element& fC = fScene.Add("C");
};

}  // namespace

TEST_F(EvaluationOrders, SourcesComeFirstAndTheRestKeepsTheTreeOrder) {
  Element& d = fScene.Add("D");
  Link(fA, kRotX, {{&fB, kRotX}}, 1);
  Link(fB, kRotX, {{&fC, kRotX}}, 1);
  Link(fC, kRotX, {}, 5);
  Link(d, kRotX, {{&fA, kRotX}}, 1);
  EXPECT_EQ(Order(), (Names{"C", "B", "A", "D"}));
  fScene->Evaluate(0);
  EXPECT_EQ(d.GetValue(Channel::kRotationX), 8) << "in one evaluation";
  fScene->SetOrdering(LinkOrdering::kTree);
  fScene->Evaluate(0);
  EXPECT_EQ(fA.GetValue(Channel::kRotationX), 1) << "plain: B had not worked yet";
  EXPECT_EQ(Order(), (Names{"A", "B", "C", "D"}));
}

TEST_F(EvaluationOrders, IsTheTreeOrderWhereThatWillDo) {
  Link(fA, kRotX, {}, 1);
  Link(fB, kRotX, {{&fA, kRotX}});
  Link(fB, kRotX, {{&fB, kRotX}}, 10);  // what a link does to its own target is no tie to itself
  Link(fC, kRotX, {{&fB, kRotX}});
  EXPECT_EQ(Order(), (Names{"A", "B", "B", "C"}));
  EXPECT_EQ(Cycles(), Names());
  Link(fA, kRotZ, {{&fB, kRotX}});
  EXPECT_EQ(Order(), (Names{"A", "B", "B", "A", "C"})) << "readers come behind all writers of a value";
  fScene->Evaluate(0);
  EXPECT_EQ(fC.GetValue(Channel::kRotationX), 11);
  EXPECT_EQ(fA.GetValue(Channel::kRotationZ), 11);
}

TEST_F(EvaluationOrders, TellsWhichComponentOfATransformIsFollowed) {
  Element& child = fScene.Add(fA, "Child");
  Element& turned = fScene.Add("Turned");
  Element& below = fScene.Add(turned, "Below");
  turned.SetBase(MakeValues({0, 0, 0}, {0, 0, 0.5f}));
  const auto use = [&](Element& on, const char* target, const End& source) {
    auto link = MakeHosted<Follower>(target, std::vector<End>{source}, 0.0f);
    on.AddModifier(*link, 0);
    fScene->FindOrder();
    const LinkTrace trace = link->GetLinkState().fTrace;
    on.RemoveModifier(0);
    std::string text;
    for (const LinkUse& write : trace.fWrites) {
      text += TextOfLinkValue(write.fValue) + " ";
    }
    text += "<-";
    for (const LinkUse& read : trace.fReads) {
      text += " " + TextOfLinkValue(read.fValue);
    }
    return text;
  };
  EXPECT_EQ(use(fB, kRotZ, {&fA, "GlbX"}), "B RotZ <- A GlbX");
  EXPECT_EQ(use(fB, "YCOO", {&fA, "ZCOO"}), "B YCOO <- A ZCOO");
  EXPECT_EQ(use(fB, "GlbZ", {&child, "GlbY"}), "B GlbZ <- Child GlbY");
  EXPECT_EQ(use(fB, "GlbY", {&fB, "XCOO"}), "B GlbY <- B XCOO");
  EXPECT_EQ(use(fB, "XCOO", {&fA, kScale}), "B XCOO <- A SCAL") << "though the value is there already";
  EXPECT_EQ(use(below, "GlbX", {&fA, "GlbX"}), "Below GlbX <- A GlbX");
}

TEST_F(EvaluationOrders, WhatCannotBeToldCountsWhole) {
  // Twice a component is none of them.
  Link(fA, kRotZ, {{&fB, "GlbX"}, {&fB, "GlbX"}});
  Link(fB, kRotZ, {{&fA, kRotZ}});
  EXPECT_EQ(Cycles(), (Names{"A RotZ <- B RotZ <- A RotZ"}));
}

TEST_F(EvaluationOrders, FindsCyclesOfValuesAndNoOthers) {
  Element& child = fScene.Add(fA, "Child");
  struct Tie {
    Element* fElement;
    const char* fTarget;
    End fSource;
  };
  const struct {
    const char* fLabel;
    std::vector<Tie> fTies;
    Names fCycles;
  } rows[] = {
      {"two that follow each other",
       {{&fA, kRotX, {&fB, kRotX}}, {&fB, kRotX, {&fA, kRotX}}},
       {"A RotX <- B RotX <- A RotX"}},
      {"two values of one element", {{&fA, kRotX, {&fB, kRotX}}, {&fB, kRotX, {&fA, kRotZ}}}, {}},
      {"a place, and the value that makes it",
       {{&fA, kRotZ, {&fB, "GlbX"}}, {&fB, "XCOO", {&fA, "XCOO"}}, {&fA, "XCOO", {&fA, kRotZ}}},
       {"A RotZ <- B GlbX <- B XCOO <- A XCOO <- A RotZ"}},
      {"a place that is written and read",
       {{&fA, kRotZ, {&fB, "GlbX"}}, {&fB, "GlbX", {&fA, kRotZ}}},
       {"A RotZ <- B GlbX <- A RotZ"}},
      {"a place along another axis", {{&fA, kRotZ, {&fB, "GlbX"}}, {&fB, "YCOO", {&fA, kRotZ}}}, {}},
      {"the place of a child moves with its parent",
       {{&fA, "XCOO", {&child, "GlbX"}}},
       {}},  // a modifier on its own is no cycle
      {"through a parent",
       {{&fA, "XCOO", {&fB, kRotX}}, {&fB, kRotX, {&child, "GlbX"}}},
       {"A XCOO <- B RotX <- Child GlbX <- A XCOO"}},
      {"a parent that moves along another axis", {{&fA, "YCOO", {&fB, kRotX}}, {&fB, kRotX, {&child, "GlbX"}}}, {}},
      {"a parent that turns",
       {{&fA, kRotZ, {&fB, kRotX}}, {&fB, kRotX, {&child, "GlbX"}}},
       {"A RotZ <- B RotX <- Child GlbX <- A RotZ"}},
      {"a parent that turns about the axis", {{&fA, kRotX, {&fB, kRotX}}, {&fB, kRotX, {&child, "GlbX"}}}, {}},
      {"an element that rolls by its own place", {{&fA, kRotZ, {&fA, "GlbX"}}, {&fA, "XCOO", {&fB, "XCOO"}}}, {}},
  };
  for (const auto& row : rows) {
    for (const Tie& tie : row.fTies) {
      Link(*tie.fElement, tie.fTarget, {tie.fSource});
    }
    EXPECT_EQ(Cycles(), row.fCycles) << row.fLabel;
    for (Element* const element : {&fA, &fB}) {
      element->RemoveAllModifiers();
    }
  }
}

TEST_F(EvaluationOrders, AxesOfATurnedParentLeadElsewhere) {
  Element& child = fScene.Add(fA, "Child");
  Link(child, "YCOO", {{&fB, kRotX}});
  Link(fB, kRotX, {{&child, "GlbX"}});
  EXPECT_EQ(Cycles(), Names());
  fA.SetBase(MakeValues({0, 0, 0}, {0, 0, 1.5707964f}));
  fScene->Evaluate(0);
  EXPECT_EQ(Cycles(), (Names{"Child YCOO <- B RotX <- Child GlbX <- Child YCOO"})) << "seen without a new structure";
  fA.SetBase(MakeValues({0, 0, 0}));
  EXPECT_EQ(Cycles(), Names());
  fA.GetOrMakeCurve(Channel::kRotationZ).SetKey({.fTime = 0, .fValue = 0});
  EXPECT_EQ(Cycles().size(), 1U) << "it may turn in time";
}

TEST_F(EvaluationOrders, CyclesAreWarnedAboutOnceAndWorkInTreeOrder) {
  Link(fA, kRotX, {{&fB, kRotX}}, 1);
  Link(fB, kRotX, {{&fA, kRotX}}, 1);
  Follower& late = Link(fC, kRotX, {{&fA, kRotX}});
  for (int time = 0; time < 3; ++time) {
    fScene->Evaluate(time);
    EXPECT_EQ(fA.GetValue(Channel::kRotationX), 1);
    EXPECT_EQ(fB.GetValue(Channel::kRotationX), 2);
    EXPECT_EQ(fC.GetValue(Channel::kRotationX), 1);
  }
  EXPECT_EQ(fScene.Warnings(), (Names{"links in a circle, evaluated in tree order: A RotX <- B RotX <- A RotX"}));
  EXPECT_TRUE(fA.GetModifiers()[0]->GetLinkState().fIsInCycle);
  EXPECT_FALSE(late.GetLinkState().fIsInCycle);
}

TEST_F(EvaluationOrders, IsFoundAgainAfterChanges) {
  Follower& first = Link(fA, kRotX, {{&fB, kRotX}});
  Link(fB, kRotX, {}, 3);
  EXPECT_EQ(Order(), (Names{"B", "A"}));
  first.Follow({&fC, kRotX});
  EXPECT_EQ(Order(), (Names{"A", "B"})) << "an edit of a modifier";
  Link(fC, kRotX, {}, 4);
  EXPECT_EQ(Order(), (Names{"B", "C", "A"})) << "a modifier more";
  fC.GetModifiers()[0]->SetEnabled(false);
  EXPECT_EQ(Order(), (Names{"A", "B", "C"})) << "one that is switched off";
  fC.GetModifiers()[0]->SetEnabled(true);
  fScene->Evaluate(0);
  EXPECT_EQ(fA.GetValue(Channel::kRotationX), 4);
  fC.RemoveModifier(0);
  fScene->Evaluate(0);
  EXPECT_EQ(fA.GetValue(Channel::kRotationX), 0);
}

TEST_F(EvaluationOrders, LookingChangesNothing) {
  fB.SetBase(MakeValues({1, 2, 3}));
  fB.ClearEditedChannels();
  Follower& link = Link(fA, "GlbX", {{&fB, "GlbY"}}, 1);
  fScene->FindOrder();
  EXPECT_EQ(link.fWorked, 0) << "a copy worked";
  EXPECT_EQ(fA.GetValue(Channel::kPositionX), 0);
  EXPECT_EQ(fA.GetEditedChannels(), 0);
  EXPECT_TRUE(fScene->GetTouched().empty());
  EXPECT_FALSE(fScene->IsEvaluating());
  EXPECT_EQ(fScene->GetLook(), nullptr);
  WriteEnd({&fA, "XCOO"}, 7);
  EXPECT_EQ(fA.GetBase().GetPosition().x, 7) << "edits work again";
}

TEST_F(EvaluationOrders, OrdersAHundredThousandLinksFast) {
  constexpr int kLinks = 100000;
  Element* last = &fA;
  std::vector<Element*> elements;
  for (int i = 0; i < kLinks; ++i) {
    elements.push_back(&fScene.Add("E"));
  }
  for (Element* const element : elements) {
    Link(*element, kRotX, {{last, kRotX}});
    last = element;
  }
  Link(*elements.front(), kRotX, {{elements[1], kRotZ}}, 1);
  const std::vector<EvaluationStep>& steps = fScene->FindOrder().GetSteps();
  ASSERT_EQ(steps.size(), elements.size() + 1);
  EXPECT_EQ(steps.front().fElement, elements.front());
  EXPECT_EQ(steps.back().fElement, last);
  Link(fA, kRotX, {{last, kRotX}});
  ASSERT_EQ(Cycles().size(), 1U);
  EXPECT_NE(Cycles().front().find("more)"), std::string::npos) << "a long way is cut";
  EXPECT_LT(Cycles().front().size(), 10000U);
}

}  // namespace qlx::host
