// A scene beside an earlier state of it.
#include <gtest/gtest.h>

#include "ModelTest.h"
#include "model/SceneChanges.h"
#include "model/ValueSet.h"

namespace qlx::host {

using test::TestScene;

namespace {

// "5 -> 7 (1 -> 2)": times and first numbers; a dash for a key that is not there.
std::string TextOfChange(const KeyChange& inChange) {
  const auto time = [](const auto& key) { return key ? std::to_string(key->fTime) : "-"; };
  const auto value = [](const auto& key) { return key ? std::to_string(static_cast<int>(key->fNumbers[0])) : "-"; };
  return time(inChange.fBefore) + " -> " + time(inChange.fAfter) + " (" + value(inChange.fBefore) + " -> " +
         value(inChange.fAfter) + ")";
}

std::vector<std::string> TextsOfTrack(const SceneChanges& inChanges, std::size_t inTrack = 0) {
  std::vector<std::string> texts;
  for (const KeyChange& key : inChanges.fTracks.at(inTrack).fKeys) {
    texts.push_back(TextOfChange(key));
  }
  return texts;
}

void FillWithKeys(Curve& outCurve, std::initializer_list<real32> inValues) {
  int32 time = 0;
  for (const real32 value : inValues) {
    outCurve.SetKey({.fTime = time += 10, .fValue = value});
  }
}

}  // namespace

TEST(SceneChanges, TellWhatBecameOfEachKey) {
  const struct {
    const char* fLabel;
    std::function<void(Curve&)> fEdit;
    std::vector<std::string> fChanges;
  } rows[] = {
      {"nothing", [](Curve&) {}, {}},
      {"selected", [](Curve& curve) { curve.SelectKey(20, true); }, {}},
      {"set anew as it was", [](Curve& curve) { curve.SetKey({.fTime = 20, .fValue = 2}); }, {}},
      {"removed", [](Curve& curve) { curve.DeleteKeyAt(20); }, {"20 -> - (2 -> -)"}},
      {"added", [](Curve& curve) { curve.SetKey({.fTime = 15, .fValue = 9}); }, {"- -> 15 (- -> 9)"}},
      {"another value", [](Curve& curve) { curve.SetKey({.fTime = 20, .fValue = 9}); }, {"20 -> 20 (2 -> 9)"}},
      {"another tangent",
       [](Curve& curve) { curve.SetKey({.fTime = 20, .fValue = 2, .fOutTangent = 1}); },
       {"20 -> 20 (2 -> 2)"}},
      {"moved past another",
       [](Curve& curve) { curve.MoveKey(curve.GetKeys()[0].fSerial, 25); },
       {"10 -> 25 (1 -> 1)"}},
      {"moved onto another",
       [](Curve& curve) { curve.MoveKey(curve.GetKeys()[0].fSerial, 20); },
       {"10 -> 20 (1 -> 1)", "20 -> - (2 -> -)"}},
      {"all gone", [](Curve& curve) { curve.Clear(); }, {"10 -> - (1 -> -)", "20 -> - (2 -> -)", "30 -> - (3 -> -)"}},
  };
  for (const auto& row : rows) {
    TestScene scene;
    Element& element = scene.Add("Arm");
    FillWithKeys(element.GetOrMakeCurve(Channel::kRotationY), {1, 2, 3});
    const SceneCopy before(*scene);
    element.EditCurve(Channel::kRotationY, row.fEdit);
    const SceneChanges changes = before.FindChanges();
    EXPECT_EQ(changes.IsEmpty(), row.fChanges.empty()) << row.fLabel;
    if (!row.fChanges.empty()) {
      EXPECT_EQ(TextsOfTrack(changes), row.fChanges) << row.fLabel;
      EXPECT_EQ(changes.fTracks[0].fPlace.fOwner + ":" + changes.fTracks[0].fPlace.fPath,
                "Arm:self,amet,TRAN,ROTA,RotY");
      EXPECT_EQ(changes.fTracks[0].fKeysBefore, 3U) << row.fLabel;
    }
  }
}

TEST(SceneChanges, StandInTheOrderOfTheScene) {
  TestScene scene;
  Element& arm = scene.Add("Arm");
  Element& hand = scene.Add(arm, "Hand");
  const auto paint = scene->AddValues("paint");
  paint->Add({"Base"_id, "Base colour", "colo"_id}, {1, 1, 1, 1});
  TestScene::Modify(hand, [](Element&) {});
  const TMCCountedPtr<Modifier> gone = hand.GetModifiers()[0];
  const SceneCopy before(*scene);
  paint->Write(0, {1, 0.5f, 1, 1});
  hand.SetValue(Channel::kUniformScale, 2);
  hand.SetValue(Channel::kPositionX, 3);
  hand.RemoveModifier(0);
  TestScene::Modify(arm, [](Element&) {});
  const SceneChanges changes = before.FindChanges();
  std::string text;
  for (const TrackChange& track : changes.fTracks) {
    EXPECT_TRUE(track.fIsBaseChanged && track.fKeys.empty());
    text += track.fPlace.fOwner + ":" + track.fPlace.fPath + " ";
  }
  EXPECT_EQ(text, "Hand:self,amet,TRAN,OFFS,XCOO Hand:self,amet,TRAN,SCAL paint:Base colour ");
  EXPECT_EQ(changes.fTracks[2].fBaseAfter[1], 0.5f);
  ASSERT_EQ(changes.fModifiers.size(), 2U);
  EXPECT_TRUE(changes.fModifiers[0].fElement == &arm && changes.fModifiers[0].fIsAdded);
  EXPECT_TRUE(changes.fModifiers[1].fModifier.Get() == gone.Get() && !changes.fModifiers[1].fIsAdded);
}

TEST(SceneChanges, MotionIsWhatKeysGive) {
  TestScene scene;
  scene->SetFrameRate(30);
  scene->SetTimeRange(0, 60000);
  Element& line = scene.Add("Line");
  Element& spline = scene.Add("Spline");
  FillWithKeys(line.GetOrMakeCurve(Channel::kPositionX), {1, 1, 1});
  // Equal keys with slopes between them: the way goes up and down, the most half way.
  Curve& curve = spline.GetOrMakeCurve(Channel::kPositionX);
  for (const int32 time : {0, 30000, 60000}) {
    curve.SetKey({.fTime = time,
                  .fValue = 1,
                  .fInTangent = -12,
                  .fOutTangent = 12,
                  .fInterpolation = Interpolation::kCubicSpline});
  }
  const SceneCopy before(*scene);
  const auto remove = [](int32 time) { return [time](Curve& edited) { edited.DeleteKeyAt(time); }; };
  line.EditCurve(Channel::kPositionX, remove(20));
  EXPECT_TRUE(before.FindMotion().empty());
  spline.EditCurve(Channel::kPositionX, remove(30000));
  const std::vector<MotionChange> motions = before.FindMotion();
  ASSERT_EQ(motions.size(), 1U);
  EXPECT_EQ(motions[0].fPlace.fOwner, "Spline");
  // Of a stretch of T seconds with slopes of 12 and -12 the middle is 3 T above its ends.
  EXPECT_EQ(motions[0].fTime, 30000);
  EXPECT_FLOAT_EQ(motions[0].fMost, 3.0f * 60000 / 180000);
  // It looked at the scene of before, and left that of now.
  EXPECT_EQ(spline.GetCurve(Channel::kPositionX)->GetKeys().size(), 2U);
  EXPECT_EQ(before.FindChanges().fTracks.size(), 2U);
}

// The first edit of an angle drops the quaternions, and with them the way of the other angles.
TEST(SceneChanges, MotionOfATurnIsThatOfAllItsAngles) {
  TestScene scene;
  scene->SetTimeRange(0, 180000);
  Element& element = scene.Add("Arm");
  FillWithKeys(element.GetOrMakeCurve(Channel::kRotationX), {0, 0, 0});
  FillWithKeys(element.GetOrMakeCurve(Channel::kRotationZ), {0, 0, 0});
  element.SetRotationCurve(std::make_unique<RotationCurve>(
      Interpolation::kLinear, std::vector<RotationKey>{{0, {0, 0, 0, 1}, {}, {}}, {180000, {0, 0, 1, 0}, {}, {}}}));
  const SceneCopy before(*scene);
  element.EditCurve(Channel::kRotationX, [](Curve& curve) { curve.DeleteKeyAt(20); });
  const std::vector<MotionChange> motions = before.FindMotion();
  ASSERT_FALSE(motions.empty());
  EXPECT_EQ(motions.back().fPlace.fPath, "self,amet,TRAN,ROTA,RotZ");
  EXPECT_EQ(motions.back().fTime, 180000);
  EXPECT_EQ(element.GetRotationCurve(), nullptr);
}

}  // namespace qlx::host
