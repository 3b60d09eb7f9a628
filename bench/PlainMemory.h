// The host's allocator at its plainest: the C library's. Serves `gMemoryUtilities` while it lives.
#pragma once

#include <cstdlib>
#include <utility>

#include "MCHostUtilities.h"

namespace qlx::bench {

class PlainMemory final : public IMemoryUtilities {
 public:
  PlainMemory() : fEarlier(std::exchange(gMemoryUtilities, this)) {}
  ~PlainMemory() { gMemoryUtilities = fEarlier; }
  PlainMemory(const PlainMemory&) = delete;
  PlainMemory& operator=(const PlainMemory&) = delete;

  MCResult MC_CALL QueryInterface(const MCGuid&, void** outObject) override {
    *outObject = nullptr;
    return MC_E_NOINTERFACE;
  }
  uint32 MC_CALL AddRef() override { return 1; }
  uint32 MC_CALL Release() override { return 1; }
  void* MC_CALL Allocate(MCSize inSize) override { return std::malloc(inSize); }
  void* MC_CALL AllocateWithFlags(MCSize inSize, uint32) override { return std::malloc(inSize); }
  void* MC_CALL Reallocate(void* inBlock, MCSize inSize) override { return std::realloc(inBlock, inSize); }
  void MC_CALL Free(void* inBlock) override { std::free(inBlock); }
  void* MC_CALL NewObject(MCSize inByteCount) override { return std::malloc(inByteCount); }
  void MC_CALL DeleteObject(void* inObject) override { std::free(inObject); }
  void* MC_CALL NewArray(MCSize inByteCount) override { return std::malloc(inByteCount); }
  void MC_CALL DeleteArray(void* inArray) override { std::free(inArray); }

 private:
  IMemoryUtilities* fEarlier;
};

}  // namespace qlx::bench
