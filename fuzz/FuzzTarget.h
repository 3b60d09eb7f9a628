// What the fuzz targets share. A target is one source with the function below: it takes any bytes, lets a reader work
// on them, and checks with `FuzzCheck` what must hold for every input.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "MCHostUtilities.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize);

namespace qlx::fuzz {

// A finding: something that must hold for every input does not.
inline void FuzzCheck(bool inHolds, const char* inWhat) {
  if (!inHolds) {
    std::fprintf(stderr, "finding: %s\n", inWhat);
    std::abort();
  }
}

// The host's services while one input runs. The allocator answers requests that the input can justify; a larger one is
// a finding, and so is a block that is left at the end. Reports are expected of bad input and stay silent.
class FuzzHost final : public IMemoryUtilities, public IDebugUtilities {
 public:
  // No single block may be larger than `inLargestBlock` bytes.
  explicit FuzzHost(MCSize inLargestBlock)
      : fLargestBlock(inLargestBlock),
        fEarlierMemory(std::exchange(gMemoryUtilities, this)),
        fEarlierDebug(std::exchange(gDebugUtilities, this)) {}
  ~FuzzHost() {
    gMemoryUtilities = fEarlierMemory;
    gDebugUtilities = fEarlierDebug;
    FuzzCheck(fLive == 0, "a block was not given back");
  }
  FuzzHost(const FuzzHost&) = delete;
  FuzzHost& operator=(const FuzzHost&) = delete;

  MCResult MC_CALL QueryInterface(const MCGuid&, void** outObject) override {
    *outObject = nullptr;
    return MC_E_NOINTERFACE;
  }
  uint32 MC_CALL AddRef() override { return 1; }
  uint32 MC_CALL Release() override { return 1; }

  void* MC_CALL Allocate(MCSize inSize) override { return Request(nullptr, inSize); }
  void* MC_CALL AllocateWithFlags(MCSize inSize, uint32) override { return Request(nullptr, inSize); }
  void* MC_CALL Reallocate(void* inBlock, MCSize inSize) override { return Request(inBlock, inSize); }
  void MC_CALL Free(void* inBlock) override { GiveBack(inBlock); }
  void* MC_CALL NewObject(MCSize inByteCount) override { return Request(nullptr, inByteCount); }
  void MC_CALL DeleteObject(void* inObject) override { GiveBack(inObject); }
  void* MC_CALL NewArray(MCSize inByteCount) override { return Request(nullptr, inByteCount); }
  void MC_CALL DeleteArray(void* inArray) override { GiveBack(inArray); }

  void MC_CALL ReportAssertion(const char*, int32, const char*) override {}
  void MC_CALL Report(const char*, int32) override {}
  void MC_CALL Report2(const char*, int32, int32, int32) override {}
  void MC_CALL Report3(const char*, int32, int32, int32, int32) override {}
  void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping& outValues) override { outValues = {}; }

 private:
  void* Request(void* inBlock, MCSize inSize) {
    FuzzCheck(inSize <= fLargestBlock, "a block larger than the input can justify");
    fLive += inBlock ? 0 : 1;
    return std::realloc(inBlock, std::max<MCSize>(inSize, 1));
  }
  void GiveBack(void* inBlock) {
    fLive -= inBlock ? 1 : 0;
    std::free(inBlock);
  }

  MCSize fLargestBlock;
  IMemoryUtilities* fEarlierMemory;
  IDebugUtilities* fEarlierDebug;
  int fLive = 0;
};

// The bytes of an input, taken from its start; 0 when there are none left.
class FuzzInput {
 public:
  FuzzInput(const uint8_t* inBytes, size_t inSize) : fBytes(inBytes), fSize(inSize) {}

  uint8_t TakeByte() {
    if (fSize == 0) {
      return 0;
    }
    --fSize;
    return *fBytes++;
  }
  const char* Rest() const { return reinterpret_cast<const char*>(fBytes); }
  size_t RestSize() const { return fSize; }

 private:
  const uint8_t* fBytes;
  size_t fSize;
};

}  // namespace qlx::fuzz
