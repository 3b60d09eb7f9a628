#include <gtest/gtest.h>

#include <limits>

#include "MCArray.h"
#include "ModelTest.h"
#include "model/KeySelection.h"

namespace qlx::host {

using test::TestScene;

namespace {

class Collector final : public IForEachTimeLineCallback {
 public:
  void MC_CALL Visit(ITimeLine* inTimeLine, void*) override { fTimeLines.push_back(MCShare(inTimeLine)); }
  std::vector<TMCCountedPtr<ITimeLine>> fTimeLines;
};

std::vector<TMCCountedPtr<ITimeLine>> TimeLinesOf(Element& inElement) {
  Collector collector;
  MCQuery<I3DShAnimated>(&inElement)->GetTimeLineOwner()->ForEachTimeLine(&collector);
  return collector.fTimeLines;
}

constexpr MCID kTrackType = "qfix"_id;

MCResult Insert(ITimeLine& inTimeLine, int32 inTime, real32 inValue, MCID inType = kTrackType) {
  return inTimeLine.InsertKey(inTime, &inValue, inType);
}

real32 ValueOf(ITimeLineKey* inKey) {
  real32 value = -1;
  bool scratch = false;
  EXPECT_EQ(inKey->GetValue()->ReadValue(&value, "qfix"_id, scratch), MC_S_OK);
  return value;
}

}  // namespace

TEST(TimeLines, AllTenAreVisitedEmptyOnesToo) {
  TestScene scene;
  const auto timeLines = TimeLinesOf(scene.Add("Element"));
  ASSERT_EQ(timeLines.size(), kChannelCount);
  for (std::size_t i = 0; i < kChannelCount; ++i) {
    EXPECT_EQ(timeLines[i]->GetAttribute()->GetAttributeId(), kChannels[i].fID);
    EXPECT_EQ(timeLines[i]->GetKeyCount(), 0U);
    EXPECT_EQ(timeLines[i]->GetKey(0), nullptr);
  }
}

TEST(TimeLines, PositionsAreInTwelfths) {
  TestScene scene;
  Element& element = scene.Add("Element");
  const auto timeLines = TimeLinesOf(element);
  const struct {
    std::size_t track;
    real32 stored;
  } rows[] = {{0, 24}, {1, 24}, {2, 24}, {3, 2}, {6, 2}, {9, 2}};
  for (const auto& row : rows) {
    ASSERT_EQ(Insert(*timeLines[row.track], 500, 2), MC_S_OK);
    EXPECT_EQ(element.GetCurve(kChannels[row.track].fChannel)->GetKeys()[0].fValue, row.stored) << row.track;
    EXPECT_EQ(element.GetCurve(kChannels[row.track].fChannel)->GetKeys()[0].fInterpolation, Interpolation::kLinear);
    EXPECT_EQ(ValueOf(timeLines[row.track]->GetKey(0)), 2) << row.track;
    EXPECT_EQ(element.GetValue(kChannels[row.track].fChannel), row.stored) << "shows at once";
  }
}

TEST(TimeLines, RefuseWhatATrackCannotHold) {
  TestScene scene;
  Element& element = scene.Add("Element");
  const auto timeLines = TimeLinesOf(element);
  const real32 inf = std::numeric_limits<real32>::infinity();
  EXPECT_EQ(Insert(*timeLines[0], 0, 1, "re32"_id), MC_S_OK);
  EXPECT_NE(Insert(*timeLines[0], 1, 1, "in32"_id), MC_S_OK);
  EXPECT_NE(Insert(*timeLines[0], 1, 1, 0), MC_S_OK);
  EXPECT_NE(Insert(*timeLines[0], 1, inf), MC_S_OK);
  EXPECT_NE(Insert(*timeLines[0], 1, std::numeric_limits<real32>::max()), MC_S_OK) << "twelve times that is not finite";
  EXPECT_NE(timeLines[0]->InsertKey(1, nullptr, "qfix"_id), MC_S_OK);
  EXPECT_EQ(timeLines[0]->GetKeyCount(), 1U);
  real32 buffer = 42;
  bool scratch = false;
  EXPECT_NE(timeLines[0]->GetKey(0)->GetValue()->ReadValue(&buffer, "vec3"_id, scratch), MC_S_OK);
  EXPECT_EQ(buffer, 42);
}

TEST(TimeLines, AKeyIsOneObjectThatFollowsItsKey) {
  TestScene scene;
  Element& element = scene.Add("Element");
  const auto timeLine = TimeLinesOf(element)[3];
  for (int32 i = 0; i < 5; ++i) {
    Insert(*timeLine, i * 100, static_cast<real32>(i));
  }
  const auto key = MCShare(timeLine->GetKey(1));
  EXPECT_EQ(timeLine->GetKey(1), key.Get());
  key->SetTime(350);
  EXPECT_EQ(timeLine->GetKey(3), key.Get());
  EXPECT_EQ(key->GetTime(), 350);
  EXPECT_EQ(ValueOf(key.Get()), 1);
  EXPECT_FALSE(key->IsSelected());
  EXPECT_EQ(SelectKeys(element, 350, 400), 2U);
  EXPECT_TRUE(key->IsSelected());
  EXPECT_EQ(SelectKeys(element, 0, 300), 3U);
  EXPECT_FALSE(key->IsSelected());

  SceneTime time;
  TMCCountedPtr<ITimeLineKey> neighbour;
  timeLine->FindKeyAfter(300, time, neighbour.WriteInto());
  EXPECT_EQ(neighbour, key.Get());
  EXPECT_EQ(time.fTicks, 350);
  timeLine->FindKeyBefore(400, neighbour.WriteInto(), 0);
  EXPECT_EQ(neighbour, key.Get());
  timeLine->FindKeyAfter(400, time, neighbour.WriteInto());
  EXPECT_FALSE(neighbour);

  element.ClearEditedChannels();
  timeLine->DeleteKeyAt(351);
  key->SetTime(350);
  EXPECT_EQ(element.GetEditedChannels(), 0) << "no key went or moved";
  timeLine->DeleteKeyAt(350);
  EXPECT_NE(element.GetEditedChannels(), 0);
  const uint32 left = timeLine->GetKeyCount();
  key->SetTime(900);
  EXPECT_EQ(timeLine->GetKeyCount(), left) << "a deleted key changes nothing";
  real32 value = 42;
  bool scratch = false;
  EXPECT_NE(key->GetValue()->ReadValue(&value, "qfix"_id, scratch), MC_S_OK);
  EXPECT_EQ(value, 42);
}

// A walk over all keys that moves each, and one that compares neighbours, as the keyframe commands do.
TEST(TimeLines, LongTracksAreWalkedInLinearTime) {
  constexpr int32 kKeys = 20000;
  TestScene scene;
  Element& element = scene.Add("Element");
  for (int32 i = 0; i < kKeys; ++i) {
    element.GetOrMakeCurve(Channel::kRotationX).SetKey({.fTime = i * 10, .fValue = static_cast<real32>(i % 7)});
  }
  const auto timeLine = TimeLinesOf(element)[3];
  real64 sum = 0;
  for (uint32 i = 1; i + 1 < timeLine->GetKeyCount(); ++i) {
    const auto previous = MCShare(timeLine->GetKey(i - 1));
    const auto next = MCShare(timeLine->GetKey(i + 1));
    sum += static_cast<real64>(ValueOf(previous.Get()) - ValueOf(next.Get()));
    timeLine->GetKey(i)->SetTime(timeLine->GetKey(i)->GetTime() + 1);
  }
  EXPECT_EQ(timeLine->GetKeyCount(), static_cast<uint32>(kKeys));
  EXPECT_EQ(timeLine->GetKey(5)->GetTime(), 51);
  EXPECT_LT(std::abs(sum), 10);
}

TEST(TimeLines, MayBeHeldLongerThanTheirElement) {
  TMCCountedPtr<ITimeLine> timeLine;
  TMCCountedPtr<ITimeLineKey> key;
  {
    TestScene scene;
    Element& element = scene.Add("Element");
    timeLine = TimeLinesOf(element)[0];
    Insert(*timeLine, 100, 1);
    key = MCShare(timeLine->GetKey(0));
  }
  EXPECT_EQ(timeLine->GetKeyCount(), 0U);
  EXPECT_EQ(timeLine->GetKey(0), nullptr);
  key->SetTime(5);
  timeLine->DeleteKeyAt(100);
  EXPECT_NE(Insert(*timeLine, 7, 1), MC_S_OK);
  EXPECT_EQ(timeLine->GetKeyCount(), 0U);
  EXPECT_EQ(timeLine->GetAttribute()->GetAttributeId(), "XCOO"_id);
}

}  // namespace qlx::host
