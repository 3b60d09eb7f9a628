// What evaluations of a link leave behind for later ones.
#pragma once

#include <array>

#include "HostScene.h"
#include "MCCountedPtr.h"
#include "QLXDelayQueue.h"

namespace qlx {

// Channels by the key of a value: 0 for every other key, 1 to 3 'GlbX' 'GlbY' 'GlbZ', 4 to 6 'RotX' 'RotY' 'RotZ',
// 7 'SCAL', 8 to 10 'ScaX' 'ScaY' 'ScaZ'. The last is never used.
inline constexpr std::size_t kQLXChannelCount = 12;

// What one channel remembers. Each number is taken once in the object's life: a rewind does not take it anew.
struct QLXChannelMemory {
  real32 fBaseline = 0;     // the controller's value at the first visit of the window's start
  real32 fTargetLast = 0;   // the target's value at the first evaluation that was no repetition
  real32 fTargetStart = 0;  // the target's value at the first visit of the window's start
  bool fBaselinePending = true;
  bool fTargetLastPending = true;
  bool fTargetStartPending = true;
};

struct QLXMemory {
  TMCCountedPtr<TreeElement> fTargetElement;  // the first element that was seen
  TMCCountedPtr<I3DShMorphTarget> fMorphNotifier;
  int32 fLastTime = 0;        // of the last evaluation; so a first one at time 0 counts as a repetition
  uint32 fLastTimeExtra = 0;  // the second word of a scene time
  bool fSameFrame = false;    // this evaluation is a repetition
  QLXDelayQueue fDelayQueue;
  std::array<QLXChannelMemory, kQLXChannelCount> fChannels;

  // Without memory for it the queue stays as it is.
  void CopyFrom(const QLXMemory& inSource);
};

}  // namespace qlx
