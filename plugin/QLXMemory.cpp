#include "QLXMemory.h"

namespace qlx {

void QLXMemory::CopyFrom(const QLXMemory& inSource) {
  fDelayQueue.CopyFrom(inSource.fDelayQueue);
  fLastTime = inSource.fLastTime;
  fLastTimeExtra = inSource.fLastTimeExtra;
  fMorphNotifier = inSource.fMorphNotifier;
  fTargetElement = inSource.fTargetElement;
  fChannels = inSource.fChannels;
  fBaselinePending = inSource.fBaselinePending;
  fTargetLastPending = inSource.fTargetLastPending;
  fTargetStartPending = inSource.fTargetStartPending;
}

}  // namespace qlx
