// An evaluation that works has made its room in the first one: later ones allocate nothing, neither from the host nor
// by operator new, which this program counts. And how much of the room one works on.
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <iterator>
#include <set>
#include <span>

#include "CountedNew.h"
#include "LinkTest.h"

namespace qlx::test {
namespace {

// What frames of a scene that was played twice allocate: whether by operator new, and requests to the host.
std::pair<bool, int> CountAllocations(LinkScene& ioScene, int32 inFrames) {
  ioScene.Play(0);
  ioScene.Play(1);  // the host's own lists
  const auto& memory = static_cast<const TestMemory&>(*gMemoryUtilities);
  const uint64 news = bench::GetNewCount();
  const int requests = memory.GetRequests();
  for (int32 frame = 2; frame < inFrames; ++frame) {
    ioScene.Play(frame);
  }
  return {bench::GetNewCount() != news, memory.GetRequests() - requests};
}

// As many links as are planned ahead.
TEST(QLXAllocations, LaterEvaluationsOfManyLinksMakeNone) {
  LinkScene scene;
  Animate(scene.fA, host::Channel::kRotationX, 0, 100, 1000);
  for (int i = 0; i < 300; ++i) {
    LinkScene::Add(scene.Add("Follower"), kRotY, scene.fA, kRotX);
  }
  EXPECT_EQ(CountAllocations(scene, 20), std::pair(false, 0));
}

TEST(QLXAllocations, LaterEvaluationsMakeNone) {
  using Change = std::function<void(QLXModifier&)>;
  const struct {
    const char* fLabel;
    Change fChange;
    bool fAllocates;
  } rows[] = {
      {"plain", [](QLXModifier&) {}, false},
      {"by name",
       [](QLXModifier& l) {
         l.EditData().fFindControllerByName = true;
         l.EditData().fControllerName = "A";
       },
       false},
      {"position in the scene", [](QLXModifier& l) { l.SetTargetPath(TMCString31("GlbX")); }, false},
      {"own translation", [](QLXModifier& l) { l.SetTargetPath(TMCString31(kOwnX)); }, false},
      {"a target that is missing", [](QLXModifier& l) { l.SetTargetPath(TMCString31("self,none")); }, false},
      {"a controller that is missing", [](QLXModifier& l) { l.SetControllerPath(TMCString31("self,none")); }, false},
      {"everything",
       [](QLXModifier& l) {
         QLXModifierData& d = l.EditData();
         d.fRelative = d.fOscillateOn = d.fGrowOn = d.fRangeOn = d.fLowerLimitOn = d.fUpperLimitOn = true;
         d.fDelayOn = true;
         d.fDelayFrames = 5;
       },
       false},
      {"object mode",
       [](QLXModifier& l) {
         QLXModifierData& d = l.EditData();
         d.fMirrorTransform = d.fPositionAll = d.fRotationAll = d.fScaleUniform = d.fScaleX = d.fDelayOn = true;
         d.fDelayFrames = 700;
       },
       false},
      {"the count sees keys being made",
       [](QLXModifier& l) {
         l.EditData().fBakeKeyframes = true;
         l.EditData().fOscillateOn = true;
       },
       true},
  };
  for (const auto& row : rows) {
    LinkScene scene;
    Animate(scene.fA, host::Channel::kRotationX, 0, 100, 1000);
    row.fChange(LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX));
    EXPECT_EQ(CountAllocations(scene, 100), std::pair(row.fAllocates, 0)) << row.fLabel;
  }
}

// Of many links, the memory that each touches is what it costs: a member that moves must not bring another line.
TEST(QLXAllocations, APlainLinkWorksOnSixCacheLines) {
  if constexpr (sizeof(void*) != 8) {
    GTEST_SKIP() << "the members are ordered for 64-bit targets";
  }
  LinkScene scene;
  QLXModifier& link = LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  scene.Play(0);
  scene.Play(1);
  WorkMemory ranges[16];
  const uint32 count = link.ListWorkMemory(ranges, std::size(ranges));
  std::set<std::ptrdiff_t> lines;  // as if the object began with one
  for (const WorkMemory& range : std::span(ranges, count)) {
    const std::ptrdiff_t start =
        static_cast<const std::byte*>(range.fStart) - reinterpret_cast<const std::byte*>(&link);
    for (MCSize byte = 0; byte < range.fBytes; ++byte) {
      lines.insert((start + static_cast<std::ptrdiff_t>(byte)) / 64);
    }
  }
  EXPECT_EQ(lines.size(), 6U);
}

}  // namespace
}  // namespace qlx::test
