#include "QLXMemory.h"

namespace qlx {

void QLXMemory::CopyFrom(const QLXMemory& inSource) {
  fDelayQueue.CopyFrom(inSource.fDelayQueue);
  fLastTime = inSource.fLastTime;
  fLastTimeExtra = inSource.fLastTimeExtra;
  fMorphNotifier = inSource.fMorphNotifier;
  fTargetElement = inSource.fTargetElement;
  fChannels = inSource.fChannels;
}

}  // namespace qlx
