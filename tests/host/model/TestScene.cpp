#include <gtest/gtest.h>

#include <limits>

#include "ModelTest.h"
#include "TreeElementIterator.h"

namespace qlx::host {

using test::TestScene;

TEST(Scene, NamesAreUniqueStableAndShortEnough) {
  TestScene scene;
  const std::string longest(255, 'x');
  std::string letters;  // 300 bytes of two-byte characters
  for (int i = 0; i < 150; ++i) {
    letters += "\xC3\xA4";
  }
  const struct {
    const char* label;
    std::string given;
    std::string name;
  } rows[] = {
      {"plain", "Arm", "Arm"},
      {"twin", "Arm", "Arm.2"},
      {"third", "Arm", "Arm.3"},
      {"a suffix that is a person's", "Leg.2", "Leg.2"},
      {"plain again", "Leg", "Leg"},
      {"twin of a name whose suffix is taken", "Leg", "Leg.3"},
      {"empty", "", "Element8"},
      {"as long as it may be", longest, longest},
      {"its twin", longest, longest.substr(0, 253) + ".2"},
      {"cut between characters", letters, letters.substr(0, 254)},
      {"up to a NUL", std::string("Nul\0tail", 8), "Nul"},
      {"the scene's own", "[scene]", "[scene].2"},
  };
  for (const auto& row : rows) {
    const Element& element = scene->AddElement(scene->GetRootElement(), row.given);
    EXPECT_EQ(element.GetNameText(), row.name) << row.label;
    EXPECT_EQ(scene->FindByName(row.name), &element) << row.label;
  }
}

TEST(Scene, IdsAreUniqueAndLastThroughPathsAndReferences) {
  TestScene scene;
  Element& first = scene->AddElement(scene->GetRootElement(), "First", 2);
  Element& second = scene->AddElement(first, "Second");
  EXPECT_NE(second.GetUniqueID(), 2U) << "a free id is given";
  Element& third = scene->AddElement(second, "Third", 0xFEDCBA98);
  EXPECT_THROW(scene->AddElement(first, "Twin", 2), UserError);
  EXPECT_THROW(scene->AddElement(first, "Twin", 1), UserError) << "the root's";
  EXPECT_EQ(first.GetChildren().size(), 1U) << "nothing was added";

  TreePath path;
  third.GetTreePath(path);
  ASSERT_EQ(path.GetElemCount(), 3U);
  EXPECT_EQ(path[0], 2U);
  EXPECT_EQ(path[2], 0xFEDCBA98);
  ObjectReference reference;
  third.GetObjectReference(reference);
  ASSERT_EQ(reference.GetElemCount(), 4U);
  EXPECT_EQ(reference[0], 0x98) << "low byte first on every system";

  TMCCountedPtr<TreeElement> found;
  scene->FindElementByTreePath(found.WriteInto(), path);
  EXPECT_EQ(found.Get(), &third);
  scene->FindElementByRef(found.WriteInto(), reference);
  EXPECT_EQ(found.Get(), &third);
  scene->FindElementByTreePath(found.WriteInto(), TreePath());
  EXPECT_EQ(found.Get(), &scene->GetRootElement());
  reference[3] = 0;
  scene->FindElementByRef(found.WriteInto(), reference);
  EXPECT_FALSE(found);
  scene->FindElementByRef(found.WriteInto(), ObjectReference());
  EXPECT_FALSE(found);
}

TEST(Scene, WalksDepthFirst) {
  TestScene scene;
  Element& a = scene.Add("a");
  Element& b = scene.Add("b");
  Element& a1 = scene.Add(a, "a1");
  Element& a2 = scene.Add(a, "a2");
  Element& a11 = scene.Add(a1, "a11");
  Element& root = scene->GetRootElement();
  EXPECT_EQ(scene->GetTreeOrder(), (std::vector<Element*>{&root, &a, &a1, &a11, &a2, &b}));
  EXPECT_EQ(a.GetFirstChild(), &a1);
  EXPECT_EQ(a1.GetNextSibling(), &a2);
  EXPECT_EQ(a2.GetNextSibling(), nullptr);
  EXPECT_EQ(root.GetNextSibling(), nullptr);
  EXPECT_EQ(root.GetParentRaw(), nullptr);
  EXPECT_TRUE(a11.IsAtOrBelow(&a));
  EXPECT_TRUE(a11.IsAtOrBelow(&a11));
  EXPECT_FALSE(a.IsAtOrBelow(&a11));
  EXPECT_FALSE(a11.IsAtOrBelow(nullptr));
}

TEST(Scene, RefusesRatesAndRangesThatCannotBe) {
  TestScene scene;
  for (const real32 rate :
       {0.0f, -24.0f, 180001.0f, std::numeric_limits<real32>::quiet_NaN(), std::numeric_limits<real32>::infinity()}) {
    EXPECT_THROW(scene->SetFrameRate(rate), UserError) << rate;
    EXPECT_EQ(scene->GetFrameRate(), 24);
  }
  scene->SetFrameRate(180000);
  TMCCountedPtr<ITimeRange> range;
  scene->GetTimeRange(range.WriteInto());
  EXPECT_FALSE(range) << "no animation, no range";
  EXPECT_THROW(scene->SetTimeRange(10, 9), UserError);
  scene->SetTimeRange(10, 10);
  scene->GetTimeRange(range.WriteInto());
  EXPECT_EQ(range->GetEndTime(), 10);
}

TEST(Scene, FiguresAreFoundFromTheirJoints) {
  TestScene scene;
  Element& body = scene.Add("Body");
  Element& hip = scene.Add(body, "Hip");
  Element& helper = scene.Add(hip, "Helper");  // no joint itself
  Element& knee = scene.Add(helper, "Knee");
  scene->AddFigure("Skin", body, {&knee, &hip});

  EXPECT_TRUE(MCQuery<I3DShFigure>(&body));
  EXPECT_FALSE(MCQuery<I3DShFigure>(&hip));
  EXPECT_FALSE(MCQuery<I3DShFigureMember>(&helper));
  EXPECT_FALSE(MCQuery<I3DShFigureMember>(&body));
  for (Element* const joint : {&hip, &knee}) {
    const auto member = MCQuery<I3DShFigureMember>(joint);
    ASSERT_TRUE(member);
    EXPECT_EQ(member->GetFigureOwner()->GetOwnerElement(), &hip);
    EXPECT_EQ(member->GetFigureOwner()->GetOwnerElement()->GetParentRaw(), &body);
  }

  // A first joint below an element that is none itself: the way up ends at the figure all the same.
  Element& socket = scene.Add(body, "Socket");
  Element& eye = scene.Add(socket, "Eye");
  Element& jaw = scene.Add(body, "Jaw");
  scene->AddFigure("Face", body, {&eye, &jaw});
  EXPECT_EQ(FindFigureRoot(&eye), &body);
  EXPECT_EQ(FindFigureRoot(&jaw), &body);
}

TEST(Scene, ElementsAnswerForWhatTheyShow) {
  TestScene scene;
  Element& bare = scene.Add("Bare");
  Element& first = scene.Add("First");
  Element& second = scene.Add("Second");
  EXPECT_FALSE(MCQuery<I3DShInstance>(&bare));
  SceneObject& object = scene->AddObject("Cube");
  Shader& red = scene->AddShader("Red");
  object.SetShaders({&red});
  second.SetShownObject(&object);
  EXPECT_EQ(object.GetInstance(0), &second);
  first.SetShownObject(&object);
  EXPECT_EQ(object.GetInstance(0), &first) << "in tree order, after a change too";
  EXPECT_EQ(object.GetInstance(1), &second);
  EXPECT_EQ(object.GetInstance(2), nullptr);
  EXPECT_EQ(red.GetUser(1), &second);
  const auto instance = MCQuery<I3DShInstance>(&first);
  EXPECT_EQ(instance->GetShader(0), &red);
  EXPECT_EQ(instance->GetShader(1), nullptr);

  TMCCountedPtr<IMCUnknown> data;
  object.GetObjectData(data.WriteInto());
  EXPECT_FALSE(data) << "no morphs";
  object.AddMorphGroup("Face", {"Smile", "Frown"}, {0.5f});
  object.GetObjectData(data.WriteInto());
  const auto morphs = MCQuery<I3DShMorphData>(data);
  ASSERT_TRUE(morphs);
  EXPECT_EQ(morphs->GetMorphCount(0), 2U);
  EXPECT_STREQ(morphs->GetGroupName(0)->CStr(), "Face");
}

TEST(Scene, ModifiersMoveBetweenElementsOnlyThroughNone) {
  TestScene scene;
  Element& first = scene.Add("First");
  Element& second = scene.Add("Second");
  TestScene::Modify(first, [](Element&) {});
  const TMCCountedPtr<Modifier> modifier = first.GetModifiers()[0];
  EXPECT_EQ(second.InsertModifier(modifier.Get(), 0), MC_E_NOTVALID);
  first.RemoveModifier(0);
  EXPECT_EQ(modifier->GetOwnerElement(), nullptr);
  EXPECT_EQ(second.InsertModifier(modifier.Get(), 5), MC_S_OK);
  EXPECT_EQ(second.GetModifierCount(1), 1U);
  EXPECT_EQ(second.InsertModifier(nullptr, 0), MC_E_INVALIDARG);
  TMCCountedPtr<TreeElement> element;
  modifier->GetModifiedElement(element.WriteInto());
  EXPECT_EQ(element.Get(), &second);
}

TEST(Scene, ClosingBreaksTheCirclesAndWhatIsHeldStaysHarmless) {
  const int before = test::gLiveModifiers;
  TMCCountedPtr<Element> held;
  TMCCountedPtr<SceneObject> object;
  TMCCountedPtr<I3DShOwned> owner;
  {
    TestScene scene;
    Element* element = &scene->GetRootElement();
    for (int i = 0; i < 100000; ++i) {  // deep: an end by recursion would not fit the stack
      element = &scene.Add(*element, "Link");
    }
    held = MCShare(element);
    object = MCShare(&scene->AddObject("Cube"));
    held->SetShownObject(object.Get());
    scene->AddFigure("Skin", scene->GetRootElement(), {element});
    owner = MCShare(held->GetFigureOwner());
    for (int i = 0; i < 3; ++i) {
      TestScene::Modify(*held, [](Element&) {});
    }
    held->AddModifier(*held->GetModifiers()[0]->Copy(), 0);
    scene->Evaluate(0);
    EXPECT_EQ(test::gLiveModifiers, before + 4);
  }
  EXPECT_EQ(test::gLiveModifiers, before);
  EXPECT_EQ(held->GetScene(), nullptr);
  EXPECT_EQ(held->GetParentRaw(), nullptr);
  EXPECT_EQ(held->GetNextSibling(), nullptr);
  EXPECT_EQ(object->GetScene(), nullptr);
  EXPECT_EQ(object->GetInstance(0), nullptr);
  EXPECT_EQ(owner->GetOwnerElement(), nullptr);
  EXPECT_FALSE(held->SetValue(Channel::kPositionX, 1));
  EXPECT_EQ(held->SetLocalTransform(TreeTransform(), 1, 0, 0, 0, 0, 1), MC_E_NOTVALID);
  held->TransformChanged(0);
}

}  // namespace qlx::host
