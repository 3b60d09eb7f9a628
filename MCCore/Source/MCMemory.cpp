#include "MCMemory.h"

#include <cstring>
#include <limits>

#include "MCAssert.h"

namespace qlx {

ProcessorFeatures gProcessorFeatures;

namespace {

constexpr MCSize kElementBytes = sizeof(uint32);
constexpr MCSize kBlockBytes = 8 * kElementBytes;

void CopyElementBlocks(uint8* outDest, const uint8* inSource, MCSize inCount) {
  for (; inCount >= kBlockBytes; inCount -= kBlockBytes) {
    std::memcpy(outDest, inSource, kBlockBytes);
    outDest += kBlockBytes;
    inSource += kBlockBytes;
  }
  std::memcpy(outDest, inSource, inCount);
}

}  // namespace

void* MCmalloc(MCSize inSize) noexcept {
  const MCSize size = inSize;
  MC_ASSERT((size) <= static_cast<MCSize>(std::numeric_limits<uint32>::max()));
  if (!gMemoryUtilities) {
    MCRuntimeAssert(__FILE_NAME__, __LINE__, "gMemoryUtilities");
    return nullptr;
  }
  return gMemoryUtilities->Allocate(size);
}

void* MCrealloc(void* inBlock, MCSize inSize) noexcept {
  if (!gMemoryUtilities) {
    MCRuntimeAssert(__FILE_NAME__, __LINE__, "gMemoryUtilities");
    return nullptr;
  }
  return gMemoryUtilities->Reallocate(inBlock, inSize);
}

void MCfree(void* inBlock) noexcept {
  if (inBlock && gMemoryUtilities) {
    gMemoryUtilities->Free(inBlock);
  }
}

void MCMemoryFill(uint8 inValue, void* outDest, MCSize inCount) noexcept {
  if (inCount) {
    std::memset(outDest, inValue, inCount);
  }
}

void MCMemoryCopy(void* outDest, const void* inSource, MCSize inCount) noexcept {
  if (!inCount) {
    return;
  }
  if (gProcessorFeatures.fBytes[0] && inCount % kElementBytes == 0) {
    CopyElementBlocks(static_cast<uint8*>(outDest), static_cast<const uint8*>(inSource), inCount);
  } else {
    std::memcpy(outDest, inSource, inCount);
  }
}

void MCMemoryMove(void* outDest, const void* inSource, MCSize inCount) noexcept {
  if (inCount) {
    std::memmove(outDest, inSource, inCount);
  }
}

}  // namespace qlx
