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
    OpenExample(name)->Write(fFolder / "saved.glb");
    const auto first = OpenExample(name);
    const auto second = Open("saved.glb");
    const auto frames = Play(first->GetScene());
    EXPECT_GT(frames.size(), 24u) << name;
    EXPECT_EQ(frames, Play(second->GetScene())) << name;
  }
}

// Links that replace their target's value and do not wait remember nothing that shows.
TEST_F(GltfExamples, WithoutMemoryGiveAFrameTheSameValuesWheneverItIsEvaluated) {
  for (const char* const name : {"cart", "clock", "face", "growth", "pendulum", "pinned_arm"}) {
    const auto played = OpenExample(name);
    const auto frames = Play(played->GetScene());
    const auto scrubbed = OpenExample(name);
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

}  // namespace qlx::host
