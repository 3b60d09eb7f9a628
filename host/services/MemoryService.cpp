#include "MemoryService.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "MCDeceased.h"
#include "MCPlatform.h"
#include "model/WorkAhead.h"

namespace qlx::host {

namespace {

// The mark fills a whole pointer, so that 64-bit targets see it in either half.
void MarkDeceased(void* inObject) {
  const uint32 words[] = {kDeceased, kDeceased};
  std::memcpy(inObject, words, sizeof(void*));
}

// Large objects begin with a cache line, which lets their classes lay them out by lines.
void* AllocateBlock(MCSize inSize) {
  constexpr MCSize kLarge = 1024;
  return inSize >= kLarge ? AllocateAligned(inSize, kCacheLine) : std::malloc(inSize);
}

}  // namespace

MemoryService::~MemoryService() {
  for (auto& kept : fKept) {
    std::free(kept.load());
  }
}

void* MemoryService::Allocate(MCSize inSize) {
  // Room for a mark in the smallest object, and an address of its own for an empty block.
  void* block = AllocateBlock(std::max(inSize, sizeof(void*)));
  if (block) {
    fAllocations.fetch_add(1, std::memory_order_relaxed);
  }
  return block;
}

void* MemoryService::AllocateWithFlags(MCSize inSize, uint32 /*inFlags*/) {
  return Allocate(inSize);
}

void* MemoryService::Reallocate(void* inBlock, MCSize inSize) {
  if (!inBlock) {
    return Allocate(inSize);
  }
  void* moved = std::realloc(inBlock, std::max(inSize, sizeof(void*)));
  if (moved) {
    fAllocations.fetch_add(1, std::memory_order_relaxed);
    fFreed.fetch_add(1, std::memory_order_relaxed);
  }
  return moved;
}

void MemoryService::Free(void* inBlock) {
  if (inBlock) {
    std::free(inBlock);
    fFreed.fetch_add(1, std::memory_order_relaxed);
  }
}

void* MemoryService::NewObject(MCSize inByteCount) {
  return Allocate(inByteCount);
}

void MemoryService::DeleteObject(void* inObject) {
  if (!inObject) {
    return;
  }
  MarkDeceased(inObject);
  fFreed.fetch_add(1, std::memory_order_relaxed);
  if constexpr (kKept != 0) {
    const std::size_t slot = fNextKept.fetch_add(1, std::memory_order_relaxed) % fKept.size();
    inObject = fKept[slot].exchange(inObject, std::memory_order_acq_rel);
  }
  std::free(inObject);
}

void* MemoryService::NewArray(MCSize inByteCount) {
  return Allocate(inByteCount);
}

void MemoryService::DeleteArray(void* inArray) {
  Free(inArray);
}

}  // namespace qlx::host
