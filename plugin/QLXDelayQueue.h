// The values of a link that wait out its delay, first in, first out.
#pragma once

#include "MCArray.h"

namespace qlx {

// A ring of 32-bit reals. It takes memory as it fills, in steps that double, and keeps it: a link that waits a fixed
// number of frames allocates during the first of them alone.
class QLXDelayQueue {
 public:
  // What no delay of a scene that people make needs. Past it the oldest value gives way, so that a delay that never
  // ends takes no more than 256 KB.
  static constexpr uint32 kLongest = 65536;

  uint32 GetCount() const noexcept { return fCount; }
  bool IsEmpty() const noexcept { return fCount == 0; }
  // Keeps the memory.
  void Clear() noexcept { fCount = 0; }
  // Makes room for so many values ahead of their time; a number beyond `kLongest`, or without memory, does nothing.
  void Reserve(uint32 inCount);
  // Without memory the oldest value gives way.
  void PushBack(real32 inValue);
  // 0 for an empty queue.
  real32 PopFront() noexcept;
  // The values alone, not the room. False without memory, with this queue as it was.
  bool CopyFrom(const QLXDelayQueue& inSource);

 private:
  bool GrowTo(uint32 inRoom);
  real32& At(uint32 inIndex) noexcept { return fRing[(fFirst + inIndex) & (fRing.GetElemCount() - 1)]; }

  TMCArray<real32> fRing;  // its count is a power of two, or 0
  uint32 fFirst = 0;
  uint32 fCount = 0;
};

}  // namespace qlx
