// The host's allocator as tests want it: it counts, it can refuse, and at its end nothing may be left.
#pragma once

#include <atomic>

#include "MCHostUtilities.h"
#include "MCMemory.h"
#include "MCObject.h"

namespace qlx::test {

// Serves `gMemoryUtilities` while it lives. Fresh blocks are filled with 0xCD, so that nothing relies on zeros.
class TestMemory final : public IMemoryUtilities {
 public:
  TestMemory();
  ~TestMemory();
  TestMemory(const TestMemory&) = delete;
  TestMemory& operator=(const TestMemory&) = delete;

  // Allows so many requests and refuses the next one; later ones are served again.
  void RefuseAfter(int inRequests) {
    fRefused = false;
    fUntilRefusal = inRequests;
  }
  void RefuseNothing() { fUntilRefusal = -1; }
  // As an allocator that has no larger blocks.
  void RefuseAbove(MCSize inSize) { fLargest = inSize; }
  bool HasRefused() const { return fRefused; }

  int GetRequests() const { return fRequests; }
  int GetLiveBlocks() const { return fLive; }

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return 1; }
  uint32 MC_CALL Release() override { return 1; }
  void* MC_CALL Allocate(MCSize inSize) override { return Request(inSize); }
  void* MC_CALL AllocateWithFlags(MCSize inSize, uint32) override { return Request(inSize); }
  void* MC_CALL Reallocate(void* inBlock, MCSize inSize) override;
  void MC_CALL Free(void* inBlock) override { GiveBack(inBlock); }
  void* MC_CALL NewObject(MCSize inByteCount) override { return Request(inByteCount); }
  void MC_CALL DeleteObject(void* inObject) override { GiveBack(inObject); }
  void* MC_CALL NewArray(MCSize inByteCount) override { return Request(inByteCount); }
  void MC_CALL DeleteArray(void* inArray) override { GiveBack(inArray); }

 private:
  bool Refuses();
  void* Request(MCSize inSize);
  void GiveBack(void* inBlock);

  IMemoryUtilities* fEarlier;
  MCSize fLargest = static_cast<MCSize>(-1);
  std::atomic<int> fRequests = 0;
  std::atomic<int> fLive = 0;
  std::atomic<int> fUntilRefusal = -1;
  std::atomic<bool> fRefused = false;
};

// Runs `inBody(step)` with the first request refused, then with the second, and so on, until a run needs no more
// requests than were allowed. The body must not leave blocks behind.
template <class Body>
void WithEachAllocationRefused(TestMemory& inMemory, Body&& inBody) {
  for (int step = 0;; ++step) {
    inMemory.RefuseAfter(step);
    inBody(step);
    const bool refused = inMemory.HasRefused();
    inMemory.RefuseNothing();
    if (!refused) {
      return;
    }
  }
}

// The host's list of live objects and its counters, connected while this lives.
class TestBookkeeping {
 public:
  TestBookkeeping() { InitMCCountedObject({&fHead, &fTail, nullptr, nullptr, &fSerial, &fLiveCount}); }
  ~TestBookkeeping() { InitMCCountedObject({}); }
  TestBookkeeping(const TestBookkeeping&) = delete;
  TestBookkeeping& operator=(const TestBookkeeping&) = delete;

  TMCCountedObject* fHead = nullptr;
  TMCCountedObject* fTail = nullptr;
  int32 fSerial = 0;
  int32 fLiveCount = 0;
};

}  // namespace qlx::test
