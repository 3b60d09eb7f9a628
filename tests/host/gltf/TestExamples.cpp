// The scenes of the examples as a person uses them: saved and read again, played and scrubbed.
#include "MCFrameTime.h"
#include "RandomValues.h"
#include "SceneText.h"
#include "model/Bake.h"

namespace qlx::host {

namespace {

class GltfExamples : public GltfTest {
 protected:
  void SetUp() override { LoadPlugin(); }

  std::unique_ptr<GltfDocument> OpenExample(const std::string& inName) {
    return GltfDocument::Read(std::filesystem::path(QLX_EXAMPLES) / inName, {}, fHost);
  }
};

// Every value of the scene as it was evaluated last.
std::vector<real32> ValuesOf(const Scene& inScene) {
  std::vector<real32> values;
  for (const Element* const element : inScene.GetTreeOrder()) {
    for (std::size_t i = 0; i < kChannelCount; ++i) {
      values.push_back(element->GetValue(static_cast<Channel>(i)));
    }
  }
  for (const auto& set : inScene.GetValueSets()) {
    for (std::size_t i = 0; i < set->GetCount(); ++i) {
      values.insert(values.end(), set->GetEvaluated(i).begin(), set->GetEvaluated(i).end());
    }
  }
  return values;
}

std::vector<real32> EvaluateFrame(Scene& ioScene, int32 inFrame) {
  ioScene.Evaluate(FrameToTicks(inFrame, ioScene.GetFrameRate()));
  return ValuesOf(ioScene);
}

std::vector<std::vector<real32>> Play(Scene& ioScene) {
  const BakeRange range = FramesOf(ioScene);
  std::vector<std::vector<real32>> frames;
  for (int32 frame = range.fFirst; frame <= range.fLast; ++frame) {
    frames.push_back(EvaluateFrame(ioScene, frame));
  }
  return frames;
}

}  // namespace

TEST_F(GltfExamples, PlayTheSameAfterTheyWereSaved) {
  for (const char* const name :
       {"cart", "clock", "face", "followers", "growth", "lamp", "pendulum", "pinned_arm", "tentacle", "walk"}) {
    OpenExample(std::string(name) + ".gltf")->Write(fFolder / "saved.glb");
    const auto first = OpenExample(std::string(name) + ".gltf");
    const auto second = Open("saved.glb");
    const auto frames = Play(first->GetScene());
    EXPECT_GT(frames.size(), 24u) << name;
    EXPECT_EQ(frames, Play(second->GetScene())) << name;
  }
}

// Links that replace their target's value and do not wait remember nothing that shows.
TEST_F(GltfExamples, WithoutMemoryGiveAFrameTheSameValuesWheneverItIsEvaluated) {
  for (const char* const name : {"cart", "clock", "face", "growth", "pendulum", "pinned_arm"}) {
    const auto played = OpenExample(std::string(name) + ".gltf");
    const auto frames = Play(played->GetScene());
    const auto scrubbed = OpenExample(std::string(name) + ".gltf");
    Scene& scene = scrubbed->GetScene();
    test::RandomValues random(7);
    for (int i = 0; i < 100; ++i) {
      const auto frame = static_cast<std::size_t>(random.Below(static_cast<int>(frames.size())));
      const int32 number = FramesOf(scene).fFirst + static_cast<int32>(frame);
      EXPECT_EQ(EvaluateFrame(scene, number), frames[frame]) << name << ", frame " << number;
      EXPECT_EQ(EvaluateFrame(scene, number), frames[frame]) << name << ", frame " << number << " again";
    }
  }
}

// The walk without the keys that say nothing: each joint is where it was, on every frame and between them.
TEST_F(GltfExamples, AWalkMovesTheSameWithoutItsDuplicateKeys) {
  const auto whole = OpenExample("walk.gltf");
  const auto clean = OpenExample("walk_clean.gltf");
  std::size_t keys[2] = {0, 0};
  real64 most = 0;
  for (int32 time = 0; time <= whole->GetScene().GetEnd(); time += 1875) {
    whole->GetScene().Evaluate(time);
    clean->GetScene().Evaluate(time);
    const auto& joints = clean->GetScene().GetTreeOrder();
    ASSERT_EQ(joints.size(), 14u);
    for (Element* const joint : joints) {
      TreeTransform places[2];
      ASSERT_EQ(whole->GetScene().FindByName(joint->GetNameText())->GetGlobalTransform(places[0]), MC_S_OK);
      ASSERT_EQ(joint->GetGlobalTransform(places[1]), MC_S_OK);
      for (int axis = 0; axis < 3; ++axis) {
        most = std::max(most, std::abs(static_cast<real64>(places[0].GetPosition()[axis]) -
                                       static_cast<real64>(places[1].GetPosition()[axis])));
      }
    }
  }
  EXPECT_LE(most, 1e-5);
  const Scene* const scenes[] = {&whole->GetScene(), &clean->GetScene()};
  for (int i = 0; i < 2; ++i) {
    for (const Element* const joint : scenes[i]->GetTreeOrder()) {
      for (const ChannelInfo& info : kChannels) {
        const Curve* const curve = joint->GetCurve(info.fChannel);
        keys[i] += curve == nullptr ? 0 : curve->GetKeys().size();
      }
    }
  }
  EXPECT_EQ(keys[0], 13u * 9u * 25u);
  EXPECT_LT(3 * keys[1], keys[0]);
}

}  // namespace qlx::host
