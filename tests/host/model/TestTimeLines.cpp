#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <set>
#include <stdexcept>

#include "MCArray.h"
#include "ModelTest.h"
#include "model/KeySelection.h"

namespace qlx::host {

using test::TestScene;
using test::TimeLinesOf;

namespace {

constexpr std::size_t kTurn = 3;  // the time line of the rotation about X

// Does something with that one while it is visited.
void VisitTurn(Element& ioElement, const std::function<void(ITimeLine&)>& inWork) {
  test::VisitTimeLines(ioElement, [&](ITimeLine& line) {
    if (line.GetAttribute()->GetAttributeId() == kChannels[kTurn].fID) {
      inWork(line);
    }
  });
}

// Ten keys at 0, 10, 20...
Element& AddTurning(TestScene& ioScene) {
  Element& element = ioScene.Add("Element");
  element.EditCurve(kChannels[kTurn].fChannel, [](Curve& curve) {
    for (int32 i = 0; i < 10; ++i) {
      curve.SetKey({.fTime = i * 10, .fValue = static_cast<real32>(i)});
    }
  });
  return element;
}

std::vector<int32> TurnTimes(const Element& inElement) {
  std::vector<int32> times;
  for (const CurveKey& key : inElement.GetCurve(kChannels[kTurn].fChannel)->GetKeys()) {
    times.push_back(key.fTime);
  }
  return times;
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

TEST(TimeLines, AllTenAreVisitedAndPositionsAreInTwelfths) {
  TestScene scene;
  Element& element = scene.Add("Element");
  const auto timeLines = TimeLinesOf(element);
  ASSERT_EQ(timeLines.size(), kChannelCount);
  for (std::size_t i = 0; i < kChannelCount; ++i) {
    EXPECT_EQ(timeLines[i]->GetAttribute()->GetAttributeId(), kChannels[i].fID);
    EXPECT_EQ(timeLines[i]->GetKeyCount(), 0U);
    EXPECT_EQ(timeLines[i]->GetKey(0), nullptr);
    ASSERT_EQ(Insert(*timeLines[i], 500, 2), MC_S_OK);
    const real32 stored = i < 3 ? 24 : 2;
    EXPECT_EQ(element.GetCurve(kChannels[i].fChannel)->GetKeys()[0].fValue, stored) << i;
    EXPECT_EQ(element.GetCurve(kChannels[i].fChannel)->GetKeys()[0].fInterpolation, Interpolation::kLinear);
    EXPECT_EQ(ValueOf(timeLines[i]->GetKey(0)), 2) << i;
    EXPECT_EQ(element.GetValue(kChannels[i].fChannel), stored) << "shows at once";
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

// Whatever the order, and whatever is asked for between: the time line itself never shows a key that was deleted.
TEST(TimeLines, KeysThatAVisitDeletesGoTogether) {
  using Times = std::vector<int32>;
  TMCCountedPtr<ITimeLineKey> key;
  const struct {
    const char* fLabel;
    std::function<void(ITimeLine&)> fWork;
    Times fLeft;
  } rows[] = {
      {"in order, and again",
       [](ITimeLine& line) {
         for (const int32 time : {0, 10, 10, 30, 50, 60, 70, 80, 90}) {
           line.DeleteKeyAt(time);
         }
       },
       {20, 40}},
      {"in no order",
       [](ITimeLine& line) {
         for (const int32 time : {90, 0, 50, -1, 55, 1000, 10, 80}) {
           line.DeleteKeyAt(time);
         }
         EXPECT_EQ(line.GetKeyCount(), 5U);
       },
       {20, 30, 40, 60, 70}},
      {"a new key at the time of one that went",
       [](ITimeLine& line) {
         line.DeleteKeyAt(0);
         line.DeleteKeyAt(10);
         EXPECT_EQ(Insert(line, 0, 7), MC_S_OK);
       },
       {0, 20, 30, 40, 50, 60, 70, 80, 90}},
      {"a key that moves to the time of one that went, and goes itself",
       [&](ITimeLine& line) {
         key = MCShare(line.GetKey(2));
         line.DeleteKeyAt(0);
         key->SetTime(0);
         EXPECT_EQ(line.GetKey(0), key.Get());
         line.DeleteKeyAt(0);
         EXPECT_EQ(key->GetTime(), 0) << "of none";
         line.DeleteKeyAt(20);
       },
       {10, 30, 40, 50, 60, 70, 80, 90}},
      {"neighbours",
       [&](ITimeLine& line) {
         line.DeleteKeyAt(20);
         line.FindKeyBefore(30, key.WriteInto(), 0);
         EXPECT_EQ(key->GetTime(), 10);
         line.DeleteKeyAt(10);
         SceneTime time;
         line.FindKeyAfter(0, time, key.WriteInto());
         EXPECT_EQ(time.fTicks, 30);
       },
       {0, 30, 40, 50, 60, 70, 80, 90}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    TestScene scene;
    Element& element = AddTurning(scene);
    VisitTurn(element, row.fWork);
    EXPECT_EQ(TurnTimes(element), row.fLeft);
    key.Clear();
  }
}

TEST(TimeLines, AVisitThatFailsOrIsOneOfTwoLosesNoDeletion) {
  TestScene scene;
  Element& element = AddTurning(scene);
  EXPECT_THROW(VisitTurn(element,
                         [](ITimeLine& line) {
                           line.DeleteKeyAt(10);
                           throw std::runtime_error("odd");
                         }),
               std::runtime_error);
  EXPECT_EQ(TurnTimes(element).size(), 9U);
  VisitTurn(element, [&](ITimeLine& line) {
    line.DeleteKeyAt(20);
    VisitTurn(element, [](ITimeLine& inner) { inner.DeleteKeyAt(30); });
    line.DeleteKeyAt(40);
  });
  EXPECT_EQ(TurnTimes(element), (std::vector<int32>{0, 50, 60, 70, 80, 90}));
  element.ClearEditedChannels();
  VisitTurn(element, [](ITimeLine& line) { line.DeleteKeyAt(10); });
  EXPECT_EQ(element.GetEditedChannels(), 0) << "no key went";
  const auto timeLine = TimeLinesOf(element)[kTurn];
  timeLine->DeleteKeyAt(50);
  EXPECT_EQ(TurnTimes(element).size(), 5U) << "outside of a visit at once";
}

// However many keys there are, those that nobody holds need a few objects; each that is held is one of its own.
TEST(TimeLines, KeysThatAreHeldKeepTheirObjects) {
  constexpr uint32 kKeys = 3000;
  TestScene scene;
  Element& element = scene.Add("Element");
  for (uint32 i = 0; i < kKeys; ++i) {
    element.GetOrMakeCurve(kChannels[kTurn].fChannel).SetKey({.fTime = static_cast<int32>(i)});
  }
  const auto timeLine = TimeLinesOf(element)[kTurn];
  std::set<ITimeLineKey*> objects;
  for (uint32 i = 0; i < kKeys; ++i) {
    const auto key = MCShare(timeLine->GetKey(i));
    EXPECT_EQ(key->GetTime(), static_cast<int32>(i));
    objects.insert(key.Get());
  }
  EXPECT_LE(objects.size(), 16U);
  std::vector<TMCCountedPtr<ITimeLineKey>> held;
  for (uint32 i = 0; i < kKeys; i += 3) {
    held.push_back(MCShare(timeLine->GetKey(i)));
  }
  for (int round = 0; round < 2; ++round) {
    for (uint32 i = 0; i < kKeys; ++i) {
      ITimeLineKey* const key = timeLine->GetKey(i);
      EXPECT_EQ(key->GetTime(), static_cast<int32>(i));
      EXPECT_TRUE(i % 3 != 0 || key == held[i / 3].Get()) << i;
    }
  }
  for (uint32 i = 0; i < held.size(); ++i) {
    EXPECT_EQ(held[i]->GetTime(), static_cast<int32>(3 * i));
    timeLine->DeleteKeyAt(static_cast<int32>(3 * i));
    held[i]->SetTime(1);
  }
  EXPECT_EQ(timeLine->GetKeyCount(), 2 * kKeys / 3);
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
