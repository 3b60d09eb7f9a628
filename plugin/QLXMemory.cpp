#include "QLXMemory.h"

namespace qlx {

bool QLXMemory::CopyFrom(const QLXMemory& inSource) {
  fLastTime = inSource.fLastTime;
  fLastTimeExtra = inSource.fLastTimeExtra;
  fMorphNotifier = inSource.fMorphNotifier;
  fTargetElement = inSource.fTargetElement;
  fChannels = inSource.fChannels;
  fBaselinePending = inSource.fBaselinePending;
  fTargetLastPending = inSource.fTargetLastPending;
  fTargetStartPending = inSource.fTargetStartPending;
  return fDelayQueue.CopyFrom(inSource.fDelayQueue);
}

}  // namespace qlx
