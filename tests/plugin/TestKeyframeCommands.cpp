// Commands that remove and move keys.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <map>

#include "CommandTest.h"
#include "DeleteKeyframes.h"
#include "RandomValues.h"
#include "RemoveDupKeyframes.h"
#include "ThrownBy.h"
#include "TreeElementIterator.h"
#include "WiggleKeyframes.h"
#include "WildLine.h"

namespace qlx::test {
namespace {

// On which elements they work, and what is left of their keys: see TestKeyframesOfRandomScenes.cpp.
using KeyframeTest = CommandTest;

TEST_F(KeyframeTest, NothingIsDoneWhenCancelled) {
  host::Curve& curve = fScene.fA.GetOrMakeCurve(host::Channel::kRotationX);
  for (const int32 time : {0, 1, 2}) {
    curve.SetKey({.fTime = time, .fValue = 1});
  }
  fScene->Evaluate(1);
  fHost.Select({&fScene.fA});
  for (const int32 number : {158, 165}) {
    for (const bool isOk : {false, true}) {
      fServices.fDialogs.Add(number, [isOk](FakeControl&) { return isOk; });
      EXPECT_TRUE(number == 165 ? Run<DeleteKeyframesCommand>() : Run<RemoveDupKeyframesCommand>());
      EXPECT_EQ(fServices.fDialogs[number].fCloses, 1);
      EXPECT_EQ(curve.GetKeys().size(), isOk ? 2U : 3U);
    }
    curve.SetKey({.fTime = 1, .fValue = 1});
  }
  EXPECT_EQ(fHost.fScene.fRefreshes, 4);
}

TEST_F(KeyframeTest, DuplicatesAreEqualToTheLastBitButForTheSignOfZero) {
  const real32 next = std::nextafter(1.0f, 2.0f);
  host::Curve& curve = fScene.fA.GetOrMakeCurve(host::Channel::kRotationX);
  fHost.Select({&fScene.fA});
  fServices.fDialogs.Add(158, [](FakeControl&) { return true; });
  for (const auto& [values, left] :
       {std::pair(std::vector<real32>{1, next, 1}, 3U), {{0, -0.0f, 0, 5, 5, 5}, 4U}, {{}, 0U}}) {
    curve.Clear();
    for (std::size_t i = 0; i < values.size(); ++i) {
      curve.SetKey({.fTime = static_cast<int32>(i), .fValue = values[i]});
    }
    Run<RemoveDupKeyframesCommand>();
    EXPECT_EQ(curve.GetKeys().size(), left);
  }
}

TEST_F(KeyframeTest, WalksStayBelowTheirRoot) {
  const auto walk = [](TTreeElementIterator inWalk) {
    std::string names;
    while (TreeElement* const element = inWalk.Next()) {
      names += TextOf(element->GetName()) + " ";
    }
    return names;
  };
  host::Element& body = fScene.Add("Body");
  host::Element& hip = fScene->AddElement(body, "Hip");
  fScene->AddElement(hip, "Leg");
  host::Element& foot = fScene->AddElement(hip, "Foot");
  EXPECT_EQ(walk(TTreeElementIterator(body)), "Body Hip Leg Foot ");
  EXPECT_EQ(walk(TTreeElementIterator(body, TTreeElementIterator::Start::kAfterRoot)), "Hip Leg Foot ");
  EXPECT_EQ(walk(TTreeElementIterator(foot, TTreeElementIterator::Start::kAfterRoot)), "");
  EXPECT_EQ(FindFigureRoot(nullptr), nullptr);
  EXPECT_EQ(FindFigureRoot(&foot), nullptr);
}

class WildKeyTest : public CommandTest {
 protected:
  void Select(WildLine& inLine) {
    Attach(inLine, fElement);
    fHost.Select({&fElement});
    fHost.fScene.fSelected = {nullptr, &fElement, &fScene.fA};
  }
  // A command about to wiggle the keys of a line.
  TMCCountedPtr<WiggleKeyframesCommand> Prepare(WildLine& inLine, WigglePublicData inBounds, real32 inRate) {
    Select(inLine);
    fHost.fScene.fRate = inRate;
    auto command = MCAdopt(new WiggleKeyframesCommand);
    command->Init(&fHost);
    command->Prepare();
    std::memcpy(command->GetExtensionDataBuffer(), &inBounds, sizeof inBounds);
    return command;
  }
  static std::vector<int32> TimesOf(const WildLine& inLine) {
    std::vector<int32> times;
    for (const WildKey& key : inLine.fKeys) {
      times.push_back(key.fTime);
    }
    return times;
  }
  PlainElement fElement{fScene.fB, fScene.fB.GetScene()};
};

TEST_F(WildKeyTest, DuplicatesAreEqualBytesOfOneType) {
  static constexpr real32 kNan = std::numeric_limits<real32>::quiet_NaN();
  using Change = std::function<void(WildLine&)>;
  const struct {
    const char* fLabel;
    Change fChange;
    bool fIsRemoved;
  } rows[] = {
      {"the same bytes", [](WildLine&) {}, true},
      {"the last byte differs", [](WildLine& l) { l.fKeys[1].fBytes[63] = 1; }, false},
      {"the last byte of the next differs", [](WildLine& l) { l.fKeys[2].fBytes[63] = 1; }, false},
      {"NaN, the same bits",
       [](WildLine& l) {
         for (WildKey& key : l.fKeys) {
           key.fType = "qfix"_id;
           std::memcpy(key.fBytes, &kNan, sizeof kNan);
         }
       },
       false},
      {"another type", [](WildLine& l) { l.fKeys[2].fType = "long"_id; }, false},
      {"no value", [](WildLine& l) { l.fKeys[0].fHasValue = false; }, false},
      {"more bytes than values have", [](WildLine& l) { l.fKeys[0].fSize = 65; }, false},
      {"far more", [](WildLine& l) { l.fKeys[0].fSize = 0xFFFFFFFF; }, false},
  };
  FakeControl& dialog = fServices.fDialogs.Add(158, [](FakeControl&) { return true; });
  dialog.Add("selo"_id, true);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    WildLine line(3);
    for (WildKey& key : line.fKeys) {
      key.fType = "blob"_id;
      key.fSize = 64;
    }
    row.fChange(line);
    Select(line);
    Run<RemoveDupKeyframesCommand>();
    EXPECT_EQ(line.fDeleted, row.fIsRemoved ? (std::vector<int32>{100037, 100037}) : std::vector<int32>{});
  }
}

// Each key is asked for once, and there is one request for memory at most.
TEST_F(WildKeyTest, DuplicatesAreFoundInOneGo) {
  WildLine line(5000);
  Select(line);
  fServices.fDialogs.Add(158, [](FakeControl&) { return true; });
  const auto command = MCAdopt(new RemoveDupKeyframesCommand);
  command->Init(&fHost);
  command->Prepare();
  const auto& memory = static_cast<const TestMemory&>(*gMemoryUtilities);
  const int requests = memory.GetRequests();
  command->Do();
  EXPECT_EQ(line.fAsked, 10000) << "two visits";
  EXPECT_EQ(line.fDeleted.size(), 2U * 4998U);
  EXPECT_LE(memory.GetRequests() - requests, 2);
}

// The formula of a move, told once more.
int32 ExpectedMove(const WildKey& inKey, int32 inTime, WigglePublicData inBounds, real32 inTicks, bool& outForward) {
  auto* const address = const_cast<ITimeLineKey*>(static_cast<const ITimeLineKey*>(&inKey));
  uint32 state = static_cast<uint32>(reinterpret_cast<std::uintptr_t>(address)) + static_cast<uint32>(inTime);
  const auto draw = [&state] { return static_cast<int32>((state = state * 214013 + 2531011) >> 16 & 32767); };
  outForward = draw() % 2 == 1;
  const int32 number = draw();
  const int32 frames = outForward ? std::max(number % (inBounds.fMaxFrames + 1), inBounds.fMinFrames)
                                  : std::min(-(number % (inBounds.fMinFrames + 1)), inBounds.fMaxFrames);
  return static_cast<int32>(static_cast<real32>(frames) * inTicks);
}

TEST_F(WildKeyTest, EachWiggleBeginsWithItsDefaultsAndMovesSelectedKeysAtEachVisit) {
  WildLine line(200);
  for (std::size_t i = 0; i < line.fKeys.size(); i += 3) {
    line.fKeys[i].fIsSelected = false;
  }
  const auto command = Prepare(line, {99, 99}, 30);
  command->Init(&fHost);
  const auto bounds = *static_cast<const WigglePublicData*>(command->GetExtensionDataBuffer());
  EXPECT_TRUE(bounds.fMinFrames == -3 && bounds.fMaxFrames == 3);
  std::vector<int32> expected = TimesOf(line);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    bool isForward = false;
    for (int visit = 0; visit < 2 && line.fKeys[i].fIsSelected; ++visit) {
      expected[i] += ExpectedMove(line.fKeys[i], expected[i], bounds, 6000, isForward);
    }
  }
  EXPECT_TRUE(command->Do());
  EXPECT_EQ(TimesOf(line), expected);
  EXPECT_EQ(fHost.fScene.fRefreshes, 1);
}

// To the last bit; with the defaults a quarter of the moves in each direction is by each number that the remainders
// leave.
TEST_F(WildKeyTest, WiggleMovesByItsFormulaWhateverItsBounds) {
  constexpr WigglePublicData kBounds[] = {{-3, 3},       {0, 0},   {-2, 0},   {2, 5},      {5, 2},
                                          {-1000, 1000}, {-3, -2}, {100, -5}, {-7, 40000}, {-40000, 7}};
  RandomValues random(34);
  for (const real32 rate : {24.0f, 29.97f, 1000.0f}) {
    const auto ticks = static_cast<real32>(180000.0 / static_cast<real64>(rate));
    for (const WigglePublicData& bounds : kBounds) {
      SCOPED_TRACE(testing::Message() << bounds.fMinFrames << ' ' << bounds.fMaxFrames << ' ' << rate);
      WildLine line(4000);
      line.fVisits = 1;
      std::vector<int32> expected;
      std::map<std::pair<bool, int32>, int> counts;
      for (WildKey& key : line.fKeys) {
        key.fTime = static_cast<int32>(random.Bits() >> 2);
        bool isForward = false;
        const int32 move = ExpectedMove(key, key.fTime, bounds, ticks, isForward);
        ++counts[{isForward, move}];
        expected.push_back(key.fTime + move);
      }
      EXPECT_TRUE(Prepare(line, bounds, rate)->Do());
      ASSERT_EQ(TimesOf(line), expected);
      if (&bounds == kBounds) {
        ASSERT_EQ(counts.size(), 6U) << "0 to 3 forward, 0 and 1 back";
        for (const auto& [way, count] : counts) {
          EXPECT_NEAR(count, way.first ? 500 : 1000, 150) << way.second;
        }
      }
    }
  }
}

// Neighbours are looked up by the offset alone, not by where the key goes; a move that reaches one ends a frame short.
TEST_F(WildKeyTest, WiggleLooksForNeighboursOfTheOffset) {
  WildLine line(60);
  line.fHasNeighbour = true;  // at 0, which every move reaches
  line.fVisits = 1;
  std::vector<int32> lookedUp, times;
  for (const WildKey& key : line.fKeys) {
    bool isForward = false;
    lookedUp.push_back(ExpectedMove(key, key.fTime, {}, 6000, isForward));
    times.push_back(key.fTime + (isForward ? -6000 : 6000));
  }
  Prepare(line, {}, 30)->Do();
  EXPECT_EQ(line.fLookedUp, lookedUp);
  EXPECT_EQ(TimesOf(line), times);
}

// A bound of -1 divides by 0: the keys before the first that needs it have moved, the rest have not.
TEST_F(WildKeyTest, ABoundOfMinusOneFaults) {
  for (const bool isForward : {true, false}) {
    WildLine line(100);
    std::vector<int32> expected;
    bool hasFaulted = false;
    for (const WildKey& key : line.fKeys) {
      bool goesForward = false;
      const int32 move = ExpectedMove(key, key.fTime, {}, kFrameTicks, goesForward);
      hasFaulted = hasFaulted || goesForward == isForward;
      // Clamped by the other bound, which is -1.
      const int32 moved = isForward ? std::min(move, -kFrameTicks) : std::max(move, -kFrameTicks);
      expected.push_back(hasFaulted ? key.fTime : key.fTime + moved);
    }
    EXPECT_TRUE(hasFaulted);
    const auto command = Prepare(line, isForward ? WigglePublicData{-3, -1} : WigglePublicData{-1, 3}, kRate);
    EXPECT_EQ(ThrownBy([&] { command->Do(); }).fCode, MC_E_FAULT);
    EXPECT_EQ(TimesOf(line), expected);
    EXPECT_EQ(fHost.fScene.fRefreshes, 0);
  }
}

TEST_F(WildKeyTest, WiggleStaysInTheRangeOfTicks) {
  constexpr int32 kMost = std::numeric_limits<int32>::max();
  constexpr int32 kLeast = std::numeric_limits<int32>::min();
  for (const WigglePublicData& given :
       {WigglePublicData{kMost, kMost}, {kLeast, kLeast}, {kLeast, kMost}, {kMost, kLeast}}) {
    for (const real32 rate : {24.0f, 0.0001f, 0.0f, std::numeric_limits<real32>::quiet_NaN()}) {
      WildLine line(40);
      for (std::size_t i = 0; i < line.fKeys.size(); ++i) {
        line.fKeys[i].fTime = i % 2 == 0 ? kMost : kLeast;
      }
      EXPECT_TRUE(Prepare(line, given, rate)->Do());
    }
  }
}

}  // namespace
}  // namespace qlx::test
