// Blocks of memory from the host, and operations on their bytes.
//
// The library has no allocator of its own. Every block comes from `gMemoryUtilities`; nothing here throws, and a
// request that fails answers null.
#pragma once

#include "MCHostUtilities.h"

namespace qlx {

// Before start-up and after clean-up there is no allocator: both requests then report to standard error and answer
// null, and `MCfree` does nothing.
void* MCmalloc(MCSize inSize) noexcept;
// On failure answers null and leaves the block as it was.
void* MCrealloc(void* inBlock, MCSize inSize) noexcept;
// Ignores null.
void MCfree(void* inBlock) noexcept;

// Counts are bytes. A count of 0 touches nothing, and the pointers may then be null.
void MCMemoryFill(uint8 inValue, void* outDest, MCSize inCount) noexcept;
// The regions must not overlap. With the processor feature, whole 32-bit elements go eight at a time.
void MCMemoryCopy(void* outDest, const void* inSource, MCSize inCount) noexcept;
// The regions may overlap.
void MCMemoryMove(void* outDest, const void* inSource, MCSize inCount) noexcept;

// What the host said at start-up; all zero before.
extern ProcessorFeatures gProcessorFeatures;

// Tells the processor that memory is about to be used. Any address will do; nothing else happens.
inline void MCPrefetch(const void* inAddress) noexcept {
  __builtin_prefetch(inAddress);
}

}  // namespace qlx
