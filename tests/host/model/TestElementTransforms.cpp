#include <gtest/gtest.h>

#include <cmath>

#include "ModelTest.h"
#include "NotFinite.h"
#include "RandomValues.h"

namespace qlx::host {

using test::MakeValues;
using test::SetGlobalPosition;
using test::SetPosition;
using test::TestScene;

namespace {

using test::kInfinity;
using test::kNaN;

ChannelMask ChangedBy(Element& inElement, const std::function<void()>& inWrite) {
  const ChannelValues before = inElement.GetEvaluated();
  inWrite();
  return DifferentChannels(before, inElement.GetEvaluated());
}

}  // namespace

TEST(ElementTransforms, AWriteOfThePositionAloneLeavesTheRestToTheLastBit) {
  test::RandomValues random(20);
  for (int round = 0; round < 500; ++round) {
    TestScene scene;
    Element* element = &scene->GetRootElement();
    for (int depth = 0; depth < 3; ++depth) {
      element = &scene.Add(*element, "Bone");
      element->SetBase(
          MakeValues(random.Vector(-50, 50), random.Vector(-9, 9), random.Vector(0.2f, 3), random.Between(0.3f, 2)));
      if (random.Coin()) {
        element->SetMode(kPoser);
        element->SetHotPoint(random.Vector(-5, 5));
      }
    }
    const TVector3 target = random.Vector(-100, 100);
    EXPECT_EQ(ChangedBy(*element, [&] { SetPosition(*element, target); }) & ~kPositionMask, 0);
    EXPECT_EQ(element->GetEvaluated().GetPosition(), target);

    EXPECT_EQ(ChangedBy(*element, [&] { SetGlobalPosition(*element, target); }) & ~kPositionMask, 0);
    TreeTransform placed;
    element->GetGlobalTransform(placed);
    EXPECT_TRUE(placed.GetPosition().IsEqualRelative(target, 1e-5f)) << "round " << round;

    EXPECT_EQ(ChangedBy(*element,
                        [&] {
                          element->GetGlobalTransform(placed);
                          element->SetGlobalTransform(placed, 0, 1, 0, 0, 0);
                        }),
              0)
        << "a transform written back as it was read";
  }
}

TEST(ElementTransforms, AnyWrittenTransformIsMet) {
  test::RandomValues random(21);
  for (int round = 0; round < 500; ++round) {
    TestScene scene;
    Element& parent = scene.Add("Parent");
    // A uniform scale above: what is written below it can be held without a shear.
    parent.SetBase(MakeValues(random.Vector(-50, 50), random.Vector(-4, 4), {1, 1, 1}, random.Between(0.3f, 2)));
    Element& element = scene.Add(parent, "Element");
    element.SetBase(MakeValues(random.Vector(-50, 50), random.Vector(-4, 4), random.Vector(0.5f, 2)));
    element.SetMode(random.Coin() ? kPoser : kTorvane);
    element.SetHotPoint(random.Vector(-5, 5));

    TreeTransform given;
    given.SetMode(random.Coin() ? kPoser : kTorvane);
    given.SetHotPoint(random.Vector(-5, 5));
    given.SetPosition(random.Vector(-20, 20));
    given.SetScaling(random.Vector(0.5f, 2));
    given.SetUniformScale(random.Between(0.5f, 2));
    TMatrix33 rotation = random.Quaternion().GetMatrix();
    if (round % 3 == 0) {
      rotation.SetAxis(0, -rotation.GetAxis(0));  // a mirror
    }
    given.GetRotation().SetMatrix(rotation);

    ASSERT_EQ(element.SetLocalTransform(given, 1, 0, 0, 0, 0, 1), MC_S_OK);
    EXPECT_TRUE(element.GetLocal().GetLocalToParent().IsEqualRelative(given.GetLocalToParent(), 1e-5f)) << round;
    ASSERT_EQ(element.SetGlobalTransform(given, 0, 1, 0, 0, 0), MC_S_OK);
    EXPECT_TRUE(element.GetGlobalMatrix().IsEqualRelative(given.GetLocalToParent(), 1e-4f)) << round;
    EXPECT_EQ(element.GetHotPoint(), element.GetLocal().GetHotPoint());
  }
}

TEST(ElementTransforms, AnglesStayNearTheOnesThatWereThere) {
  TestScene scene;
  Element& element = scene.Add("Element");
  const real32 turns = 4 * kRealPI;
  element.SetBase(MakeValues({}, {turns + 0.1f, 0.2f, 0.3f}));
  TreeTransform transform;
  element.GetLocalTransform(transform);
  transform.GetRotation().SetMatrix(MakeAxisRotation(0, 0.15f));
  element.SetLocalTransform(transform, 1, 0, 0, 0, 0, 1);
  EXPECT_TRUE(element.GetEvaluated().GetRotation().IsEqual({turns + 0.15f, 0, 0}, 1e-5f)) << "from a matrix: nearest";

  const TVector3 wound{0.1f, -7, 20};
  transform.GetRotation().SetEuler(wound);
  element.SetLocalTransform(transform, 1, 0, 0, 0, 0, 1);
  EXPECT_EQ(element.GetEvaluated().GetRotation(), wound) << "from angles: as they are given";
}

TEST(ElementTransforms, AGlobalTurnKeepsTheScaleToTheLastBit) {
  TestScene scene;
  Element& parent = scene.Add("Parent");
  parent.SetBase(MakeValues({1, 2, 3}, {0.3f, 0.1f, -2}, {1, 1, 1}, 0.7f));
  Element& element = scene.Add(parent, "Element");
  element.SetBase(MakeValues({4, 5, 6}, {1, 0.2f, 0.3f}, {1.5f, 0.8f, 1.1f}, 1.3f));
  TreeTransform transform;
  element.GetGlobalTransform(transform);
  transform.GetRotation().SetMatrix(MakeAxisRotation(2, 0.5f));
  const ChannelMask changed = ChangedBy(element, [&] { element.SetGlobalTransform(transform, 0, 1, 0, 0, 0); });
  EXPECT_EQ(changed & kScaleMask, 0);
  EXPECT_EQ(changed & kRotationMask, kRotationMask);
}

TEST(ElementTransforms, WhatIsNotFiniteIsRefused) {
  const struct {
    const char* label;
    std::function<void(TreeTransform&)> spoil;
  } rows[] = {
      {"position", [](TreeTransform& t) { t.SetPosition(TVector3(0, kNaN, 0)); }},
      {"scale", [](TreeTransform& t) { t.SetScaling(TVector3(1, 1, kInfinity)); }},
      {"uniform scale", [](TreeTransform& t) { t.SetUniformScale(kNaN); }},
      {"hot point", [](TreeTransform& t) { t.SetHotPoint(TVector3(kNaN, 0, 0)); }},
      {"angles", [](TreeTransform& t) { t.GetRotation().SetEuler(TVector3(kNaN, 0, 0)); }},
  };
  for (const auto& row : rows) {
    TestScene scene;
    Element& element = scene.Add("Spoiled");
    TreeTransform transform;
    row.spoil(transform);
    EXPECT_EQ(ChangedBy(element,
                        [&] {
                          EXPECT_NE(element.SetLocalTransform(transform, 1, 0, 0, 0, 0, 1), MC_S_OK) << row.label;
                          EXPECT_NE(element.SetGlobalTransform(transform, 0, 1, 0, 0, 0), MC_S_OK) << row.label;
                        }),
              0)
        << row.label;
    ASSERT_EQ(scene.Warnings().size(), 1U) << row.label << ": told once";
    EXPECT_NE(scene.Warnings()[0].find("Spoiled"), std::string::npos) << row.label;
  }
}

TEST(ElementTransforms, AGlobalWriteThatCannotBeHeldChangesNothingAndIsReported) {
  const struct {
    const char* label;
    ChannelValues parent;
    TVector3 target;
  } rows[] = {
      {"one axis of the parent is zero", MakeValues({1, 2, 3}, {}, {1, 0, 1}), {5, 5, 5}},
      {"all are", MakeValues({}, {}, {1, 1, 1}, 0), {5, 5, 5}},
      {"the result does not fit", MakeValues({}, {}, {1, 1, 1}, 1e-9f), {1e38f, 0, 0}},
  };
  for (const auto& row : rows) {
    TestScene scene;
    Element& parent = scene.Add("Parent");
    parent.SetBase(row.parent);
    Element& element = scene.Add(parent, "Child");
    element.SetBase(MakeValues({7, 8, 9}, {0.1f, 0.2f, 0.3f}));
    EXPECT_EQ(ChangedBy(element, [&] { EXPECT_NE(SetGlobalPosition(element, row.target), MC_S_OK) << row.label; }), 0);
    ASSERT_EQ(scene.Warnings().size(), 1U) << row.label;
    EXPECT_NE(scene.Warnings()[0].find("Child"), std::string::npos) << row.label;
  }
}

TEST(ElementTransforms, AnElementWithoutSizeCanBeMoved) {
  TestScene scene;
  Element& element = scene.Add("Flat");
  element.SetBase(MakeValues({1, 2, 3}, {0.5f, 0, 0}, {0, 0, 0}));
  EXPECT_EQ(SetGlobalPosition(element, {4, 5, 6}), MC_S_OK);
  EXPECT_EQ(DifferentChannels(element.GetEvaluated(), MakeValues({4, 5, 6}, {0.5f, 0, 0}, {0, 0, 0})), 0);
}

TEST(ElementTransforms, TheChainGivesThePlaceOfTheHotPoint) {
  TestScene scene;
  Element& parent = scene.Add("Parent");
  parent.SetBase(MakeValues({10, 0, 0}, {0, 0, kRealHalfPI}));
  for (const int32 mode : {kTorvane, kPoser}) {
    Element& element = scene.Add(parent, "Element");
    element.SetBase(MakeValues({1, 2, 3}, {0.3f, 0.4f, 0.5f}));
    element.SetMode(mode);
    element.SetHotPoint({2, 3, 4});
    TTreeChainTransform chain;
    ASSERT_EQ(element.GetGlobalTransformChain(chain), MC_S_OK);
    EXPECT_EQ(chain.GetPivot(), mode == kPoser ? TVector3(2, 3, 4) : kZeroVector);
    EXPECT_TRUE(chain.GetScenePosition().IsEqual(element.GetGlobalMatrix().MapPoint({2, 3, 4}), 1e-5f)) << mode;
  }
}

// Every change of every kind, anywhere in a random tree, against matrices made from scratch.
TEST(ElementTransforms, GlobalMatricesAreNeverStale) {
  test::RandomValues random(22);
  TestScene scene;
  std::vector<Element*> elements{&scene->GetRootElement()};
  for (int i = 0; i < 60; ++i) {
    elements.push_back(&scene.Add(*elements[static_cast<std::size_t>(random.Below(i + 1))], "Element"));
  }
  const auto fromScratch = [](const Element& element) {
    TOffsetMatrix33 matrix;
    for (const Element* at = &element; at != nullptr; at = at->GetParentElement()) {
      const PoseFrame frame{at->GetMode(), at->GetHotPoint()};
      matrix = MakeLocalMatrix(MakeLocalTransform(at->GetEvaluated(), frame)) * matrix;
    }
    return matrix;
  };
  for (int step = 0; step < 5000; ++step) {
    Element& element = *elements[static_cast<std::size_t>(random.Below(static_cast<int>(elements.size())))];
    switch (random.Below(5)) {
      case 0:
        element.SetBase(MakeValues(random.Vector(-5, 5), random.Vector(-3, 3)));
        break;
      case 1:
        SetPosition(element, random.Vector(-5, 5));
        break;
      case 2:
        element.SetMode(random.Below(2));
        break;
      default: {
        const TOffsetMatrix33 expected = fromScratch(element);
        ASSERT_TRUE(element.GetGlobalMatrix().fMatrix.IsEqual(expected.fMatrix, 1e-4f)) << "step " << step;
        ASSERT_TRUE(element.GetGlobalMatrix().fOffset.IsEqual(expected.fOffset, 1e-2f)) << "step " << step;
      }
    }
  }
}

}  // namespace qlx::host
