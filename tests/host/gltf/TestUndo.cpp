// Steps of a person taken back and brought again: the file that is saved is the one from before or after, byte for
// byte.
#include "AssertionGuard.h"
#include "SceneText.h"
#include "model/UndoHistory.h"
#include "services/PluginModifier.h"

namespace qlx::host {

namespace {

class Undo : public GltfTest {
 protected:
  void SetUp() override { LoadPlugin(); }

  std::string Saved(const GltfDocument& inDocument) {
    inDocument.Write(fFolder / "saved.glb");
    return ReadFile(fFolder / "saved.glb");
  }
};

Element& FirstWithModifiers(Scene& inScene) {
  const auto& elements = inScene.GetTreeOrder();
  return **std::find_if(elements.begin(), elements.end(), [](Element* e) { return !e->GetModifiers().empty(); });
}

Element& FirstWithKeys(Scene& inScene, Channel& outChannel) {
  for (Element* const element : inScene.GetTreeOrder()) {
    for (const ChannelInfo& info : kChannels) {
      if (element->GetCurve(info.fChannel) && !element->GetCurve(info.fChannel)->IsEmpty()) {
        outChannel = info.fChannel;
        return *element;
      }
    }
  }
  ADD_FAILURE() << "no keys";
  return inScene.GetRootElement();
}

PluginModifier& FirstModifier(Scene& inScene) {
  return dynamic_cast<PluginModifier&>(*FirstWithModifiers(inScene).GetModifiers()[0]);
}

void EditKeys(Scene& ioScene, const std::function<void(Curve&)>& inEdit) {
  Channel channel = Channel::kPositionX;
  Element& element = FirstWithKeys(ioScene, channel);
  element.EditCurve(channel, inEdit);
}

void SetLinkName(Scene& ioScene) {
  PluginModifier& link = FirstModifier(ioScene);
  const ParameterField* const name = link.GetParameterMap()->Find("fName");
  ASSERT_TRUE(link.SetField(*name, std::string("Ren\xC3\xA4med")));
}

void SetLinkPaths(Scene& ioScene) {
  const auto problem = FirstModifier(ioScene).ReadPrivate(
      "cpsl \"self,amet,TRAN,OFFS,XCOO\"\r\nsobj \"07000000\"\r\ngrow {\r\nglin 0\r\ngqua 1\r\ngcub 0\r\ngqut 0\r\n"
      "gcut 0\r\ngmax 0.3\r\ngmin 0.1\r\n}\r\n");
  ASSERT_FALSE(problem) << *problem;
}

struct Action {
  const char* fName;
  const char* fScene;
  std::function<void(Scene&, Host&)> fDo;
};

std::vector<Action> MakeActions() {
  return {
      {"a base value", "pinned_arm",
       [](Scene& scene, Host&) { scene.GetTreeOrder().back()->SetValue(Channel::kPositionX, 1.25F); }},
      {"the base of a value with keys", "cart",
       [](Scene& scene, Host&) {
         Channel channel = Channel::kPositionX;
         Element& element = FirstWithKeys(scene, channel);
         ChannelValues values = element.GetBase();
         values[channel] += 3;
         element.SetBase(values);
       }},
      {"a key set", "cart",
       [](Scene& scene, Host&) { EditKeys(scene, [](Curve& curve) { curve.SetKey({.fTime = 4321, .fValue = 2}); }); }},
      {"keys moved, deleted and set", "lamp",
       [](Scene& scene, Host&) {
         EditKeys(scene, [](Curve& curve) {
           curve.MoveKey(curve.GetKeys().back().fSerial, 999);
           curve.DeleteKeyAt(0);
           curve.SetKey({.fTime = 0, .fValue = 1, .fInterpolation = Interpolation::kStep});
           curve.SetKey({.fTime = 90000, .fValue = -1});
         });
       }},
      {"keys where none were", "pendulum",
       [](Scene& scene, Host&) {
         scene.GetTreeOrder().back()->EditCurve(Channel::kScaleY,
                                                [](Curve& curve) { curve.SetKey({.fTime = 0, .fValue = 2}); });
       }},
      {"a rotation of quaternions", "pinned_arm",
       [](Scene& scene, Host&) {
         for (Element* const element : scene.GetTreeOrder()) {
           if (element->GetRotationCurve() != nullptr) {
             element->SetValue(Channel::kRotationY, 0.5F);
           }
         }
       }},
      {"values of a material", "lamp",
       [](Scene& scene, Host&) {
         const auto& set = scene.GetValueSets()[0];
         ASSERT_TRUE(set->SetBase(0, {0.25F, 0.5F, 0.125F, 1}));
       }},
      {"keys of a material", "lamp",
       [](Scene& scene, Host&) {
         ASSERT_TRUE(scene.GetValueSets()[0]->EditCurves(0, [](Curve& curve, uint32 number) {
           curve.SetKey({.fTime = 0, .fValue = 0.1F * static_cast<real32>(number)});
           curve.SetKey({.fTime = 180000, .fValue = 0.5F});
         }));
       }},
      {"a modifier added", "pinned_arm",
       [](Scene& scene, Host& host) {
         const auto pin = host.CreateModifier("fPIN"_id);
         ASSERT_TRUE(pin);
         scene.GetTreeOrder()[1]->AddModifier(*pin, 0);
         FirstWithModifiers(scene).AddModifier(*host.CreateModifier("fQLX"_id), 0);
       }},
      {"a modifier removed", "followers", [](Scene& scene, Host&) { FirstWithModifiers(scene).RemoveModifier(0); }},
      {"modifiers in another order", "followers",
       [](Scene& scene, Host&) {
         Element& element = FirstWithModifiers(scene);
         const TMCCountedPtr<Modifier> first = element.GetModifiers()[0];
         element.RemoveModifier(0);
         element.AddModifier(*first, 99);
       }},
      {"a modifier moved to another element", "followers",
       [](Scene& scene, Host&) {
         Element& element = FirstWithModifiers(scene);
         const TMCCountedPtr<Modifier> first = element.GetModifiers()[0];
         element.RemoveModifier(0);
         scene.GetTreeOrder().back()->AddModifier(*first, 0);
       }},
      {"a modifier switched off", "clock", [](Scene& scene, Host&) { FirstModifier(scene).SetEnabled(false); }},
      {"a link's fields", "clock", [](Scene& scene, Host&) { SetLinkName(scene); }},
      {"a link's private text", "growth", [](Scene& scene, Host&) { SetLinkPaths(scene); }},
      {"a link changed and removed", "clock",
       [](Scene& scene, Host&) {
         SetLinkName(scene);
         SetLinkPaths(scene);
         FirstWithModifiers(scene).RemoveModifier(0);
       }},
  };
}

}  // namespace

TEST_F(Undo, GivesTheFileFromBeforeAndRedoTheFileFromAfter) {
  for (const Action& action : MakeActions()) {
    SCOPED_TRACE(action.fName);
    const auto document = OpenExample(action.fScene);
    Scene& scene = document->GetScene();
    UndoHistory history(scene);
    const std::string before = Saved(*document);
    history.BeginStep(action.fName);
    action.fDo(scene, fHost);
    ASSERT_TRUE(history.EndStep());
    const std::string after = Saved(*document);
    EXPECT_NE(before, after) << "the action changed nothing";
    for (int turn = 0; turn < 2; ++turn) {
      EXPECT_EQ(history.GetUndoName(), action.fName);
      ASSERT_TRUE(history.Undo());
      EXPECT_EQ(Saved(*document), before);
      scene.Evaluate(90000);
      EXPECT_EQ(history.GetRedoName(), action.fName);
      ASSERT_TRUE(history.Redo());
      EXPECT_EQ(Saved(*document), after);
      scene.Evaluate(0);
    }
  }
}

TEST_F(Undo, StepsAreTakenBackOneByOne) {
  const auto document = OpenExample("followers");
  Scene& scene = document->GetScene();
  UndoHistory history(scene);
  std::vector<std::string> files{Saved(*document)};
  const auto step = [&](const char* name, const std::function<void()>& edit) {
    history.BeginStep(name);
    edit();
    ASSERT_TRUE(history.EndStep());
    files.push_back(Saved(*document));
  };
  step("rename", [&] { SetLinkName(scene); });
  step("remove", [&] { FirstWithModifiers(scene).RemoveModifier(0); });
  step("move", [&] { scene.GetTreeOrder()[1]->SetBase({}); });
  step("clear", [&] {
    for (Element* const element : scene.GetTreeOrder()) {
      element->RemoveAllModifiers();
    }
  });
  EXPECT_EQ(history.GetNames(), (std::vector<std::string>{"rename", "remove", "move", "clear"}));
  for (std::size_t i = files.size() - 1; i > 0; --i) {
    ASSERT_TRUE(history.Undo());
    EXPECT_EQ(Saved(*document), files[i - 1]) << i;
  }
  EXPECT_FALSE(history.Undo());
  for (std::size_t i = 1; i < files.size(); ++i) {
    ASSERT_TRUE(history.Redo());
    EXPECT_EQ(Saved(*document), files[i]) << i;
  }
  EXPECT_FALSE(history.Redo());
  history.Undo();
  history.Undo();
  step("other", [&] { SetLinkPaths(scene); });
  EXPECT_FALSE(history.CanRedo()) << "another way was gone";
  EXPECT_EQ(history.GetNames(), (std::vector<std::string>{"rename", "remove", "other"}));
  EXPECT_EQ(history.GetDoneCount(), 3U);
}

TEST_F(Undo, KeepsModifiersAndKeysThatOthersHold) {
  const auto document = OpenExample("clock");
  Scene& scene = document->GetScene();
  UndoHistory history(scene);
  Element& element = FirstWithModifiers(scene);
  const Modifier* const link = element.GetModifiers()[0].Get();
  history.BeginStep("remove");
  element.RemoveModifier(0);
  EditKeys(scene, [](Curve& curve) { curve.Clear(); });
  history.EndStep();
  Channel channel = Channel::kPositionX;
  history.Undo();
  const Element& keyed = FirstWithKeys(scene, channel);
  EXPECT_EQ(element.GetModifiers()[0].Get(), link) << "the same object";
  const uint32 serial = keyed.GetCurve(channel)->GetKeys()[0].fSerial;
  history.Redo();
  history.Undo();
  EXPECT_EQ(keyed.GetCurve(channel)->GetKeys()[0].fSerial, serial);
  uint32 given = 0;
  history.BeginStep("key");
  EditKeys(scene, [&](Curve& curve) { given = curve.SetKey({.fTime = 77, .fValue = 1}); });
  history.EndStep();
  history.Undo();
  EditKeys(scene,
           [&](Curve& curve) { EXPECT_GT(curve.SetKey({.fTime = 78, .fValue = 1}), given) << "not given again"; });
  scene.Evaluate(0);
}

TEST_F(Undo, ModifiersWorkAsTheyDidBefore) {
  for (const char* const name : {"clock", "cart", "lamp", "pinned_arm", "growth"}) {
    SCOPED_TRACE(name);
    const auto document = OpenExample(name);
    Scene& scene = document->GetScene();
    const auto values = [&] {
      scene.Evaluate(0);
      scene.Evaluate(90000);
      std::vector<ChannelValues> all;
      for (const Element* const element : scene.GetTreeOrder()) {
        all.push_back(element->GetEvaluated());
      }
      return all;
    };
    const auto differ = [](const std::vector<ChannelValues>& a, const std::vector<ChannelValues>& b) {
      return !std::equal(a.begin(), a.end(), b.begin(), b.end(),
                         [](const ChannelValues& x, const ChannelValues& y) { return DifferentChannels(x, y) == 0; });
    };
    const auto before = values();
    UndoHistory history(scene);
    history.BeginStep("edit");
    PluginModifier& modifier = FirstModifier(scene);
    for (const ParameterField& field : modifier.GetParameterMap()->GetFields()) {
      ParameterValue value = modifier.GetField(field);
      if (auto* const number = std::get_if<real32>(&value)) {
        *number += 0.5F;
      } else if (auto* const text = std::get_if<std::string>(&value)) {
        *text += " 2";
      } else if (auto* const place = std::get_if<std::array<real32, 3>>(&value)) {
        (*place)[1] += 5;
      }
      modifier.SetField(field, value);
    }
    scene.GetTreeOrder()[1]->SetValue(Channel::kScaleY, 3);
    ASSERT_TRUE(history.EndStep());
    const auto after = values();
    EXPECT_TRUE(differ(before, after));
    history.Undo();
    EXPECT_FALSE(differ(before, values()));
    history.Redo();
    EXPECT_FALSE(differ(after, values()));
  }
}

TEST_F(Undo, StepsOfNothingAreNotKeptAndInnerStepsBelongToTheOuterOne) {
  const auto document = OpenExample("clock");
  Scene& scene = document->GetScene();
  UndoHistory history(scene);
  FirstModifier(scene).SetEnabled(false);  // outside of any step
  history.BeginStep("nothing");
  scene.Evaluate(180000);
  EXPECT_FALSE(history.EndStep());
  history.BeginStep("outer");
  history.BeginStep("inner");
  FirstModifier(scene).SetEnabled(true);
  EXPECT_FALSE(history.EndStep());
  EXPECT_FALSE(history.CanUndo() || history.Undo()) << "a step is under way";
  SetLinkName(scene);
  EXPECT_TRUE(history.EndStep());
  EXPECT_EQ(history.GetNames(), std::vector<std::string>{"outer"});
  const std::string file = Saved(*document);
  history.BeginStep("outer");
  history.BeginStep("given up");
  SetLinkPaths(scene);
  history.CancelStep();
  EXPECT_TRUE(history.IsInStep());
  EXPECT_FALSE(history.EndStep());
  EXPECT_EQ(Saved(*document), file);
  history.Undo();
  EXPECT_FALSE(FirstModifier(scene).IsEnabled());
  const test::AssertionGuard guard({"a step ends that was not begun"});
  EXPECT_FALSE(history.EndStep());
}

TEST_F(Undo, ForgetsTheOldestStepsAtItsLimits) {
  const auto document = OpenExample("clock");
  Scene& scene = document->GetScene();
  const auto run = [&](UndoHistory& history) {
    for (int i = 0; i < 20; ++i) {
      history.BeginStep(std::to_string(i));
      scene.GetTreeOrder()[1]->SetValue(Channel::kScaleX, static_cast<real32>(i) + 2);
      FirstModifier(scene).SetEnabled(i % 2 == 0);
      ASSERT_TRUE(history.EndStep());
    }
  };
  UndoHistory few(scene, {.fSteps = 3, .fBytes = std::size_t{1} << 30});
  run(few);
  EXPECT_EQ(few.GetNames(), (std::vector<std::string>{"17", "18", "19"}));
  const std::size_t one = few.GetSize() / 3;
  UndoHistory small(scene, {.fSteps = 100, .fBytes = 5 * one});
  run(small);
  EXPECT_LE(small.GetSize(), 5 * one);
  EXPECT_GE(small.GetNames().size(), 3U);
  UndoHistory none(scene, {.fSteps = 0, .fBytes = 0});
  run(none);
  EXPECT_EQ(none.GetNames(), std::vector<std::string>{"19"}) << "the last one is always kept";
  EXPECT_TRUE(none.Undo());
}

}  // namespace qlx::host
