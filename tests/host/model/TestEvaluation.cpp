#include <gtest/gtest.h>

#include <limits>

#include "ModelTest.h"

namespace qlx::host {

using test::MakeValues;
using test::SetGlobalPosition;
using test::SetPosition;
using test::TestScene;

namespace {

void AnimatePositionX(Element& inElement, real32 inFrom, real32 inTo) {
  Curve& curve = inElement.GetOrMakeCurve(Channel::kPositionX);
  curve.SetKey({.fTime = 0, .fValue = inFrom});
  curve.SetKey({.fTime = 1000, .fValue = inTo});
}

real32 X(const Element& inElement) {
  return inElement.GetValue(Channel::kPositionX);
}

}  // namespace

TEST(Evaluation, TakesAllValuesThenRunsModifiersParentsFirst) {
  TestScene scene;
  Element& first = scene.Add("A");
  Element& second = scene.Add("B");
  Element& child = scene.Add(first, "A1");
  AnimatePositionX(second, 5, 15);
  std::string order;
  const auto note = [&order](const char* name) { return [&order, name](Element&) { order += name; }; };
  TestScene::Modify(child, note("child "));
  TestScene::Modify(second, note("second "));
  TestScene::Modify(first, [&](Element&) {
    order += "first ";
    EXPECT_EQ(X(second), 10) << "values of later elements are there before the first modifier runs";
    EXPECT_TRUE(scene->IsEvaluating());
  });
  TestScene::Modify(first, note("first-again "));
  TestScene::Modify(first, note("switched-off "));
  first.GetModifiers()[2]->SetEnabled(false);
  scene->Evaluate(500);
  EXPECT_EQ(order, "first first-again child second ");
  EXPECT_FALSE(scene->IsEvaluating());
}

TEST(Evaluation, WritesOfAModifierLastUntilTheNextEvaluation) {
  TestScene scene;
  Element& still = scene.Add("Still");
  Element& moving = scene.Add("Moving");
  still.SetBase(MakeValues({1, 2, 3}));
  AnimatePositionX(moving, 0, 10);
  bool isOn = true;
  for (Element* const element : {&still, &moving}) {
    element->ClearEditedChannels();
    TestScene::Modify(*element, [&isOn](Element& e) {
      if (isOn) {
        SetPosition(e, {100, 2, 3});
      }
    });
  }
  scene->Evaluate(500);
  EXPECT_EQ(X(still), 100);
  EXPECT_EQ(X(moving), 100);
  EXPECT_EQ(still.GetModifiedChannels(), MaskOf(Channel::kPositionX)) << "Y and Z were written as they were";
  EXPECT_EQ(still.GetUnmodified().GetPosition(), TVector3(1, 2, 3));
  EXPECT_EQ(scene->GetTouched(), (std::vector<Element*>{&still, &moving}));
  for (const Element* const element : {&still, &moving}) {
    EXPECT_EQ(element->GetEditedChannels(), 0) << "an evaluation edits nothing";
  }
  EXPECT_EQ(still.GetBase().GetPosition().x, 1);
  EXPECT_EQ(moving.GetCurve(Channel::kPositionX)->GetKeys().size(), 2U);

  isOn = false;
  scene->Evaluate(500);
  EXPECT_EQ(X(still), 1);
  EXPECT_EQ(X(moving), 5);
  EXPECT_EQ(still.GetModifiedChannels(), 0);
  EXPECT_TRUE(scene->GetTouched().empty());
}

// What a bake compares with: the values before modifiers wrote, whatever an edit has made of base and keys since.
TEST(Evaluation, EditsLeaveWhatItBeganWith) {
  enum class When : uint8 { kNever, kBeforeTheWrite, kAfterTheWrite, kAfterTheEvaluation };
  for (const When when : {When::kNever, When::kBeforeTheWrite, When::kAfterTheWrite, When::kAfterTheEvaluation}) {
    for (const bool isAnimated : {false, true}) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(when) << (isAnimated ? " animated" : " still"));
      TestScene scene;
      Element& element = scene.Add("Element");
      element.SetBase(MakeValues({1, 2, 3}));
      if (isAnimated) {
        AnimatePositionX(element, 1, 1);
      }
      bool isFirst = true;
      const auto edit = [&] { element.SetBase(MakeValues({1, 2, 30})); };
      TestScene::Modify(element, [&](Element& e) {
        if (isFirst && when == When::kBeforeTheWrite) {
          edit();
        }
        e.SetValue(Channel::kPositionX, 0);
        if (isFirst && when == When::kAfterTheWrite) {
          edit();
        }
        isFirst = false;
      });
      scene->Evaluate(0);
      if (when == When::kAfterTheEvaluation) {
        edit();
      }
      const bool showsAtOnce = when == When::kAfterTheEvaluation;
      EXPECT_EQ(element.GetUnmodified().GetPosition(), TVector3(1, 2, showsAtOnce ? 30 : 3));
      EXPECT_EQ(element.GetModifiedChannels(), MaskOf(Channel::kPositionX));
      const real32 edited = when == When::kNever ? 3 : 30;
      EXPECT_EQ(element.GetBase()[Channel::kPositionZ], edited);
      scene->Evaluate(1);
      EXPECT_EQ(element.GetUnmodified().GetPosition(), TVector3(1, 2, edited));
      EXPECT_EQ(element.GetModifiedChannels(), MaskOf(Channel::kPositionX));
    }
  }
}

TEST(Evaluation, OutsideItAWriteEditsAKeyOrTheBaseValue) {
  TestScene scene;
  Element& element = scene.Add("Element");
  AnimatePositionX(element, 0, 10);
  scene->Evaluate(500);
  SetPosition(element, {7, 8, 0});
  EXPECT_EQ(element.GetEvaluated().GetPosition(), TVector3(7, 8, 0)) << "shows at once";
  const auto& keys = element.GetCurve(Channel::kPositionX)->GetKeys();
  ASSERT_EQ(keys.size(), 3U);
  EXPECT_EQ(keys[1].fTime, 500);
  EXPECT_EQ(keys[1].fValue, 7);
  EXPECT_EQ(keys[1].fInterpolation, Interpolation::kLinear);
  EXPECT_EQ(element.GetBase().GetPosition(), TVector3(0, 8, 0)) << "Y has no keys; Z was not changed";
  EXPECT_TRUE(element.GetCurve(Channel::kPositionY)->IsEmpty());
  EXPECT_EQ(element.GetEditedChannels(), MaskOf(Channel::kPositionX) | MaskOf(Channel::kPositionY));

  EXPECT_FALSE(element.SetValue(Channel::kPositionX, std::numeric_limits<real32>::infinity()));
  EXPECT_EQ(X(element), 7);
}

TEST(Evaluation, NotificationsAndNestedCallsOnlyMark) {
  TestScene scene;
  Element& element = scene.Add("Element");
  Element& other = scene.Add("Other");
  int runs = 0;
  TestScene::Modify(element, [&](Element& e) {
    ++runs;
    scene->Evaluate(999);
    scene->RefreshAfterCommand();
    other.InvalidateElement(1);
    e.TransformChanged(0);
    e.InvalidateElement(1);
  });
  scene->Evaluate(500);
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(scene->GetTime(), 500);
  EXPECT_EQ(scene->GetTouched(), (std::vector<Element*>{&other, &element}));
  scene->Evaluate(0);
  element.TransformChanged(0);
  EXPECT_EQ(scene->GetTouched().size(), 2U) << "outside an evaluation there is nothing to mark";
}

TEST(Evaluation, KeysSetMeanwhileShowNextTime) {
  TestScene scene;
  Element& element = scene.Add("Element");
  bool isFirst = true;
  TestScene::Modify(element, [&](Element& e) {
    if (isFirst) {
      e.EditCurve(Channel::kPositionX, [](Curve& curve) { curve.SetKey({.fTime = 500, .fValue = 9}); });
      EXPECT_EQ(X(e), 0);
    }
    isFirst = false;
  });
  scene->Evaluate(500);
  EXPECT_EQ(X(element), 0);
  scene->Evaluate(500);
  EXPECT_EQ(X(element), 9);
}

// The steps of the order say which modifiers work: what one of them switches meanwhile counts all the same.
TEST(Evaluation, AModifierMaySwitchThoseThatFollow) {
  TestScene scene;
  Element& element = scene.Add("Element");
  std::string order;
  TestScene::Modify(element, [&](Element& e) {
    order += " a";
    e.GetModifiers()[1]->SetEnabled(!e.GetModifiers()[1]->IsEnabled());
    e.GetModifiers()[2]->SetEnabled(!e.GetModifiers()[2]->IsEnabled());
  });
  TestScene::Modify(element, [&](Element&) { order += "b"; });
  TestScene::Modify(element, [&](Element&) { order += "c"; });
  element.GetModifiers()[2]->SetEnabled(false);
  for (int32 time = 0; time < 3; ++time) {
    scene->Evaluate(time);
  }
  EXPECT_EQ(order, " ac ab ac");
}

TEST(Evaluation, AModifierMayChangeTheListItStandsIn) {
  TestScene scene;
  Element& element = scene.Add("Element");
  std::string order;
  TestScene::Modify(element, [&](Element& e) {
    order += "a";
    e.RemoveModifier(0);
    TestScene::Modify(e, [&order](Element&) { order += "c"; });
  });
  TestScene::Modify(element, [&](Element&) { order += "b"; });
  scene->Evaluate(0);
  scene->Evaluate(0);
  EXPECT_EQ(order, "abbc") << "the one that came to it ran from the next evaluation on";
}

TEST(Evaluation, AQuaternionRotationRulesUntilItIsEdited) {
  TestScene scene;
  Element& element = scene.Add("Joint");
  // A whole turn about Z in four keys; the tracks hold the unrolled angle.
  std::vector<RotationKey> keys;
  for (int32 i = 0; i <= 4; ++i) {
    const real64 half = i * 0.5 * static_cast<real64>(kRealHalfPI);
    keys.push_back({.fTime = i * 1000, .fValue = {0, 0, std::sin(half), std::cos(half)}});
    element.GetOrMakeCurve(Channel::kRotationZ)
        .SetKey({.fTime = i * 1000, .fValue = static_cast<real32>(i) * kRealHalfPI});
  }
  element.SetRotationCurve(std::make_unique<RotationCurve>(Interpolation::kLinear, keys));
  for (int32 time = 0; time <= 4000; time += 125) {
    scene->Evaluate(time);
    EXPECT_NEAR(element.GetValue(Channel::kRotationZ), static_cast<real32>(time) / 1000 * kRealHalfPI, 1e-5) << time;
  }
  scene->Evaluate(1500);
  EXPECT_TRUE(element.HasKeys(Channel::kRotationX)) << "no curve of its own, but the rotation is animated";
  const TVector3 pose = element.GetEvaluated().GetRotation();
  EXPECT_TRUE(element.SetValue(Channel::kRotationX, 0.25f));
  EXPECT_EQ(element.GetRotationCurve(), nullptr);
  EXPECT_EQ(element.GetEditedChannels(), kRotationMask);
  EXPECT_EQ(element.GetCurve(Channel::kRotationX)->GetKeys().size(), 1U);
  EXPECT_EQ(element.GetCurve(Channel::kRotationZ)->GetKeys().size(), 6U) << "the pose was keyed with it";
  scene->Evaluate(1500);
  EXPECT_TRUE(element.GetEvaluated().GetRotation().IsEqual({0.25f, pose.y, pose.z}, 1e-6f));
}

// More steps than a scene that fits into the caches has, and more memory of one element than is fetched for a step.
TEST(Evaluation, AnElementMayHaveVeryManyModifiers) {
  constexpr int kCount = 5000;
  TestScene scene;
  Element& few = scene.Add("Few");
  Element& many = scene.Add("Many");
  const auto count = [](Element& element) { element.SetValue(Channel::kPositionX, X(element) + 1); };
  for (int i = 0; i < kCount; ++i) {
    TestScene::Modify(many, count);
  }
  TestScene::Modify(few, count);
  for (int32 time = 0; time < 4; ++time) {
    scene->Evaluate(time);
    EXPECT_EQ(X(many), static_cast<real32>(many.GetModifiers().size()));
    EXPECT_EQ(X(few), 1);
    many.RemoveModifier(0);
  }
}

TEST(Evaluation, GoesThroughDeepChainsAndWideTrees) {
  constexpr int kCount = 100000;
  TestScene scene;
  Element* deep = &scene->GetRootElement();
  Element& wide = scene.Add("Wide");
  const auto pin = [](Element& element) { SetGlobalPosition(element, {1, 2, 3}); };
  for (int i = 0; i < kCount; ++i) {
    deep = &scene.Add(*deep, "Deep");
    TestScene::Modify(*deep, pin);
    // Each child moves its parent and asks for its own place: the wide parent is invalidated again and again.
    TestScene::Modify(scene.Add(wide, "Leaf"), [&wide](Element& element) {
      SetPosition(wide, {X(wide) + 1, 0, 0});
      element.GetGlobalMatrix();
    });
  }
  scene->Evaluate(0);
  EXPECT_TRUE(deep->GetGlobalMatrix().fOffset.IsEqual({1, 2, 3}, 1e-4f));
  EXPECT_EQ(X(wide), static_cast<real32>(kCount));
  scene->Evaluate(1);
  EXPECT_EQ(scene->GetTouched().size(), kCount + 1U);
}

}  // namespace qlx::host
