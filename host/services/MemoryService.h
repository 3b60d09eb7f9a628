// The host's allocator: the C runtime's blocks, counted, with a mark over freed objects.
#pragma once

#include <array>
#include <atomic>

#include "MCHostUtilities.h"
#include "model/HostObject.h"

namespace qlx::host {

// May be called on any thread. A freed object has `kDeceased` over its first word and is given back to the runtime
// only after `kKept` more were freed: who touches it meanwhile meets the mark and is reported. Plain blocks and arrays
// are given back at once.
class MemoryService final : public HostObject<IMemoryUtilities> {
 public:
  ~MemoryService() override;

  void* MC_CALL Allocate(MCSize inSize) override;
  // The flags have no meaning here.
  void* MC_CALL AllocateWithFlags(MCSize inSize, uint32 inFlags) override;
  void* MC_CALL Reallocate(void* inBlock, MCSize inSize) override;
  void MC_CALL Free(void* inBlock) override;
  void* MC_CALL NewObject(MCSize inByteCount) override;
  void MC_CALL DeleteObject(void* inObject) override;
  void* MC_CALL NewArray(MCSize inByteCount) override;
  void MC_CALL DeleteArray(void* inArray) override;

  // Blocks that were asked for so far, those that were moved to another size counted again; and blocks that are alive.
  uint64 GetAllocations() const { return fAllocations.load(std::memory_order_relaxed); }
  uint64 GetAlive() const { return GetAllocations() - fFreed.load(std::memory_order_relaxed); }

#if defined(__SANITIZE_ADDRESS__)
  static constexpr std::size_t kKept = 0;  // the sanitizer keeps freed blocks itself, and sees every access
#else
  static constexpr std::size_t kKept = 256;
#endif

 private:
  std::atomic<uint64> fAllocations{0};
  std::atomic<uint64> fFreed{0};
  std::atomic<std::size_t> fNextKept{0};
  std::array<std::atomic<void*>, kKept == 0 ? 1 : kKept> fKept{};
};

}  // namespace qlx::host
