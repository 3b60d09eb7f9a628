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
};

// The channels that have not taken one of their numbers yet.
class QLXPendingChannels {
 public:
  // True once for each channel.
  bool Take(std::size_t inChannel) {
    const uint32 bit = 1U << inChannel;
    const bool wasPending = (fBits & bit) != 0;
    if (wasPending) {
      fBits = static_cast<uint16>(fBits - bit);
    }
    return wasPending;
  }

 private:
  uint16 fBits = (1U << kQLXChannelCount) - 1;
};

struct QLXMemory {
  std::array<QLXChannelMemory, kQLXChannelCount> fChannels;
  QLXDelayQueue fDelayQueue;

  // What every evaluation needs stands together, from here to the end.
  TMCCountedPtr<TreeElement> fTargetElement;  // the first element that was seen
  TMCCountedPtr<I3DShMorphTarget> fMorphNotifier;
  int32 fLastTime = 0;        // of the last evaluation; so a first one at time 0 counts as a repetition
  uint32 fLastTimeExtra = 0;  // the second word of a scene time
  QLXPendingChannels fBaselinePending;
  QLXPendingChannels fTargetLastPending;
  QLXPendingChannels fTargetStartPending;
  bool fSameFrame = false;  // this evaluation is a repetition

  // False without memory for the queue, which stays as it is.
  bool CopyFrom(const QLXMemory& inSource);
};

}  // namespace qlx
