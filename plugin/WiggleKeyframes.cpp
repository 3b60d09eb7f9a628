#include "WiggleKeyframes.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "HostTimeLines.h"
#include "MCFrameTime.h"

namespace qlx {

namespace {

class WiggleCommandIsSelectionNonEmpty final : public ContextMenuCallBack {};

// A congruential generator with numbers from 0 to 32767.
class WiggleRandom {
 public:
  explicit WiggleRandom(uint32 inSeed) : fState(inSeed) {}
  int32 Draw() {
    fState = fState * 214013U + 2531011U;
    return static_cast<int32>(fState >> 16 & 0x7FFFU);
  }

 private:
  uint32 fState;
};

// What is left of a draw by one more than a bound, which is not -1.
int32 RemainderBy(int32 inDraw, int32 inBound) {
  return static_cast<int32>(inDraw % (static_cast<int64>(inBound) + 1));
}

// The sum of two ticks, at the ends of their range where it lies past them.
int32 AddTicks(int32 inA, int32 inB) {
  return static_cast<int32>(std::clamp<int64>(static_cast<int64>(inA) + inB, std::numeric_limits<int32>::min(),
                                              std::numeric_limits<int32>::max()));
}

// The remainders, the clamps and what the neighbours are looked up by are as they are meant: with the default bounds
// keys move up to three frames forward, but one frame back at most.
class WiggleTimelineCallback final : public IForEachTimeLineCallback {
 public:
  WiggleTimelineCallback(const WigglePublicData& inData, real32 inTicksPerFrame)
      : fMinFrames(inData.fMinFrames), fMaxFrames(inData.fMaxFrames), fTicksPerFrame(inTicksPerFrame) {}

  void MC_CALL Visit(ITimeLine* inTimeLine, void* /*inOther*/) override {
    // The count is taken once, and keys by their number while times change: a key that another one passes is not
    // followed.
    const uint32 count = inTimeLine->GetKeyCount();
    for (uint32 i = 0; i < count && !fHasFailed; ++i) {
      const auto key = MCShare(inTimeLine->GetKey(i));
      if (key && key->IsSelected()) {
        Move(*inTimeLine, *key);
      }
    }
  }

  // A key could not be moved, and no other one was from there on: nothing is thrown through the host's walk.
  bool HasFailed() const { return fHasFailed; }

 private:
  // A seed of its own for each key and run: the key's address and time. A bound of -1 makes the divisor of its
  // direction 0, and nothing but the fault guards against that.
  void Move(ITimeLine& inTimeLine, ITimeLineKey& inKey) {
    const int32 time = inKey.GetTime();
    WiggleRandom random(static_cast<uint32>(reinterpret_cast<std::uintptr_t>(&inKey)) + static_cast<uint32>(time));
    const bool isForward = random.Draw() % 2 != 0;
    const int32 draw = random.Draw();
    fHasFailed = (isForward ? fMaxFrames : fMinFrames) == -1;
    if (!fHasFailed) {
      inKey.SetTime(AddTicks(time, isForward ? Forward(inTimeLine, draw) : Backward(inTimeLine, draw)));
    }
  }

  // The neighbour is the one behind the offset alone, and not behind the key's new time. Backward likewise.
  int32 Forward(ITimeLine& inTimeLine, int32 inDraw) const {
    const int32 delta = ToTicks(std::max(RemainderBy(inDraw, fMaxFrames), fMinFrames));
    SceneTime time;
    TMCCountedPtr<ITimeLineKey> neighbour;
    inTimeLine.FindKeyAfter(delta, time, neighbour.WriteInto());
    const bool reaches = neighbour && delta >= time.fTicks;
    return reaches ? Truncate(static_cast<real32>(time.fTicks) - fTicksPerFrame) : delta;
  }

  int32 Backward(ITimeLine& inTimeLine, int32 inDraw) const {
    const int32 delta = ToTicks(std::min(-RemainderBy(inDraw, fMinFrames), fMaxFrames));
    TMCCountedPtr<ITimeLineKey> neighbour;
    inTimeLine.FindKeyBefore(delta, neighbour.WriteInto(), 0);
    const int32 time = neighbour ? neighbour->GetTime() : 0;
    const bool reaches = neighbour && delta <= time;
    return reaches ? Truncate(static_cast<real32>(time) + fTicksPerFrame) : delta;
  }

  int32 ToTicks(int32 inFrames) const { return Truncate(static_cast<real32>(inFrames) * fTicksPerFrame); }
  static int32 Truncate(real32 inTicks) { return TruncateToInt32(static_cast<real64>(inTicks)); }

  int32 fMinFrames;
  int32 fMaxFrames;
  real32 fTicksPerFrame;
  bool fHasFailed = false;
};

}  // namespace

void WiggleKeyframesCommand::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<WiggleCommandIsSelectionNonEmpty>(outCallBack);
}

MCResult WiggleKeyframesCommand::Init(ISceneCommandContext* inContext) {
  fData = {};
  fContext.Share(inContext);
  return MC_S_OK;
}

MCResult WiggleKeyframesCommand::Prepare() {
  if (fContext) {
    fContext->GetScene(fScene.WriteInto());
  }
  return MC_S_OK;
}

bool WiggleKeyframesCommand::Do() {
  return RunCommand([&] {
    if (!fScene) {
      return;
    }
    for (uint32 i = 0; i < fScene->GetSelectedElementCount(); ++i) {
      if (const auto element = MCShare(fScene->GetSelectedElement(i))) {
        WiggleElement(*element);
      }
    }
    fScene->RefreshAfterCommand();
  });
}

void WiggleKeyframesCommand::WiggleElement(TreeElement& inElement) const {
  const auto animated = MCQuery<I3DShAnimated>(&inElement);
  const auto owner = MCShare(animated ? animated->GetTimeLineOwner() : nullptr);
  const real32 rate = fScene->GetFrameRate();
  if (!owner || !IsValidFrameRate(rate)) {
    return;
  }
  WiggleTimelineCallback callback(
      fData, static_cast<real32>(static_cast<real64>(kTicksPerSecond) / static_cast<real64>(rate)));
  owner->ForEachTimeLine(&callback);
  if (callback.HasFailed()) {
    throw TMCException(MC_E_FAULT, "WiggleKeyframes", __LINE__);
  }
}

}  // namespace qlx
