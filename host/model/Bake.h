// Baking: every frame of a range is evaluated, and what modifiers changed becomes values frame by frame.
#pragma once

#include <functional>
#include <vector>

#include "Scene.h"

namespace qlx::host {

struct BakeRange {
  int32 fFirst = 0;  // frames, both included
  int32 fLast = 0;
};

// The frames that the scene's time range covers at its rate.
BakeRange FramesOf(const Scene& inScene);

// An element that a modifier changed: one row of values a frame, for the channels that differ on any frame.
struct BakedElement {
  Element* fElement = nullptr;
  ChannelMask fChannels = 0;
  std::vector<ChannelValues> fFrames;  // modified values, one for each frame of the range
  std::vector<ChannelValues> fBefore;  // what curves and base values give at the same frames
};

// A value of a set that a modifier changed on any frame.
struct BakedValue {
  std::shared_ptr<ValueSet> fValues;
  std::size_t fIndex = 0;
  std::vector<ValueNumbers> fFrames;
  std::vector<ValueNumbers> fBefore;
};

struct BakeResult {
  BakeRange fRange;
  std::vector<int32> fTimes;            // ticks of each frame
  std::vector<BakedElement> fElements;  // in tree order
  std::vector<BakedValue> fValues;      // in the scene's order of sets, and in that of their values
};

// Frames are evaluated once each, in order. `inProgress(done, total)` is called after each; it may be empty. A range
// that is empty, or whose times are not strictly ascending (too long for ticks), throws `UserError`; so does a value
// that is not finite, by what has it and frame.
BakeResult Bake(Scene& inScene, BakeRange inRange, const std::function<void(int32, int32)>& inProgress = {});

}  // namespace qlx::host
