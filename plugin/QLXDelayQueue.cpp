#include "QLXDelayQueue.h"

#include <algorithm>
#include <bit>

namespace qlx {

namespace {

constexpr uint32 kSmallestRing = 8;

}  // namespace

void QLXDelayQueue::Reserve(uint32 inCount) {
  if (inCount > fRing.GetElemCount() && inCount <= kLongest) {
    GrowTo(std::max(kSmallestRing, std::bit_ceil(inCount)));
  }
}

void QLXDelayQueue::PushBack(real32 inValue) {
  const uint32 room = fRing.GetElemCount();
  if (fCount == room && (room >= kLongest || !GrowTo(std::max(kSmallestRing, room * 2)))) {
    if (room == 0) {
      return;
    }
    PopFront();
  }
  At(fCount) = inValue;
  ++fCount;
}

real32 QLXDelayQueue::PopFront() noexcept {
  if (fCount == 0) {
    return 0;
  }
  const real32 value = At(0);
  fFirst = (fFirst + 1) & (fRing.GetElemCount() - 1);
  --fCount;
  return value;
}

bool QLXDelayQueue::CopyFrom(const QLXDelayQueue& inSource) {
  if (this == &inSource) {
    return true;
  }
  if (fRing.GetElemCount() < inSource.fCount && !GrowTo(std::bit_ceil(inSource.fCount))) {
    return false;
  }
  fFirst = 0;
  fCount = inSource.fCount;
  for (uint32 i = 0; i < fCount; ++i) {
    At(i) = const_cast<QLXDelayQueue&>(inSource).At(i);
  }
  return true;
}

// The room at least doubles, so what had wrapped round to the front of the ring finds its place behind the old end.
bool QLXDelayQueue::GrowTo(uint32 inRoom) {
  const uint32 room = fRing.GetElemCount();
  if (!fRing.SetElemCount(inRoom)) {
    return false;
  }
  for (uint32 i = room; i < fFirst + fCount; ++i) {
    fRing[i] = fRing[i - room];
  }
  return true;
}

}  // namespace qlx
