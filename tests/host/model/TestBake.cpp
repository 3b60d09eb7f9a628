#include <gtest/gtest.h>

#include "ModelTest.h"
#include "ProblemOf.h"
#include "model/Bake.h"

namespace qlx::host {

using test::ProblemOf;
using test::SetPosition;
using test::TestScene;

TEST(Bake, RowsHoldWhatModifiersChangedOnAnyFrame) {
  TestScene scene;
  scene->SetFrameRate(30);
  Element& late = scene.Add("Late");
  Element& same = scene.Add("Same");
  Element& early = scene.Add("Early");
  Element& child = scene.Add(late, "Child");
  late.GetOrMakeCurve(Channel::kPositionX).SetKey({.fTime = 0, .fValue = 0});
  late.GetOrMakeCurve(Channel::kPositionX).SetKey({.fTime = 60000, .fValue = 10});
  // Changes Y from the third frame on, after the element of a later place in the tree had its first change.
  TestScene::Modify(late, [&](Element& element) {
    if (scene->GetTime() >= 12000) {
      SetPosition(element, {element.GetValue(Channel::kPositionX), 5, 0});
    }
  });
  TestScene::Modify(same, [](Element& element) { SetPosition(element, {0, 0, 0}); });
  TestScene::Modify(early, [](Element& element) { element.SetValue(Channel::kScaleZ, 2); });
  TestScene::Modify(child, [](Element& element) { element.TransformChanged(0); });

  std::vector<int32> progress;
  const BakeResult result = Bake(*scene, {0, 4}, [&](int32 done, int32 total) {
    EXPECT_EQ(total, 5);
    progress.push_back(done);
  });
  EXPECT_EQ(progress, (std::vector<int32>{1, 2, 3, 4, 5}));
  EXPECT_EQ(result.fTimes, (std::vector<int32>{0, 6000, 12000, 18000, 24000}));
  ASSERT_EQ(result.fElements.size(), 2U) << "writing the same values, or only notifying, changes nothing";

  const BakedElement& first = result.fElements[0];
  EXPECT_EQ(first.fElement, &late) << "in tree order";
  EXPECT_EQ(first.fChannels, MaskOf(Channel::kPositionY));
  ASSERT_EQ(first.fFrames.size(), 5U);
  for (std::size_t frame = 0; frame < 5; ++frame) {
    EXPECT_FLOAT_EQ(first.fFrames[frame].GetPosition().x, static_cast<real32>(frame)) << frame;
    EXPECT_EQ(first.fFrames[frame].GetPosition().y, frame >= 2 ? 5 : 0) << frame;
    EXPECT_FLOAT_EQ(first.fBefore[frame].GetPosition().x, static_cast<real32>(frame)) << frame;
    EXPECT_EQ(first.fBefore[frame].GetPosition().y, 0) << frame;
  }
  EXPECT_EQ(result.fElements[1].fElement, &early);
  EXPECT_EQ(result.fElements[1].fChannels, MaskOf(Channel::kScaleZ));
}

TEST(Bake, FramesThatHaveNoTimesOfTheirOwnAreRefused) {
  const struct {
    const char* label;
    real32 rate;
    BakeRange range;
    bool isGood;
  } rows[] = {
      {"one frame", 24, {7, 7}, true},
      {"before zero", 24, {-3, 2}, true},
      {"empty", 24, {5, 4}, false},
      {"beyond the last tick", 1, {0, 2000000000}, false},
      {"beyond the first tick", 1, {-2000000000, 0}, false},
      {"one frame a tick", 180000, {0, 100}, true},
      // Ticks are taken in 32-bit reals: so far out, frames of a tick fall together.
      {"too fine to tell apart", 180000, {100000000, 100000100}, false},
  };
  for (const auto& row : rows) {
    TestScene scene;
    scene->SetFrameRate(row.rate);
    EXPECT_EQ(ProblemOf([&] { Bake(*scene, row.range); }).empty(), row.isGood) << row.label;
  }
}

TEST(Bake, AValueThatIsNotFiniteIsNamed) {
  TestScene scene;
  Element& element = scene.Add("Wild");
  Curve& curve = element.GetOrMakeCurve(Channel::kPositionY);
  // A spline whose tangents carry it past the largest number between two finite keys.
  curve.SetKey({.fTime = 0, .fValue = 3e38f, .fOutTangent = 3e38f, .fInterpolation = Interpolation::kCubicSpline});
  curve.SetKey({.fTime = 1800000, .fValue = 3e38f});
  const std::string problem = ProblemOf([&] { Bake(*scene, {0, 5}); });
  for (const char* const part : {"Wild", "Position Y", "frame 4"}) {
    EXPECT_NE(problem.find(part), std::string::npos) << part << " in: " << problem;
  }
}

TEST(Bake, TheRangeCoversTheAnimation) {
  const struct {
    real32 rate;
    int32 start;
    int32 end;
    int32 first;
    int32 last;
  } rows[] = {
      {30, 0, 360000, 0, 60},
      {30, 1, 359999, 0, 60},          // within a tick of a frame
      {30, 3000, 357000, 0, 60},       // between two frames: both ends are covered
      {23.976f, 7507, 180180, 1, 24},  // frames of a length that is no whole number of ticks
      {24, 0, 0, 0, 0},
  };
  for (const auto& row : rows) {
    TestScene scene;
    scene->SetFrameRate(row.rate);
    scene->SetTimeRange(row.start, row.end);
    const BakeRange range = FramesOf(*scene);
    EXPECT_EQ(range.fFirst, row.first) << row.rate << " " << row.start;
    EXPECT_EQ(range.fLast, row.last) << row.rate << " " << row.end;
  }
}

}  // namespace qlx::host
