#include "MCExtensibleArray.h"

namespace qlx::detail {

bool ExtensibleArrayCore::SetElemCount(int32 inCount) {
  const int32 count = inCount > 0 ? inCount : 0;
  const uint32 blocks = count ? (static_cast<uint32>(count - 1) >> fShift) + 1 : 0;
  const uint32 oldBlocks = fBlocks.GetElemCount();
  const MCSize blockBytes = (static_cast<MCSize>(fMask) + 1) * fElemSize;
  while (fBlocks.GetElemCount() < blocks) {
    auto* const block = static_cast<uint8*>(MCmalloc(blockBytes));
    if (!MC_ASSERT_TEXT(block, "Array allocation failed!") || !fBlocks.AddElem(block)) {
      MCfree(block);
      break;
    }
    MCMemoryFill(0, block, blockBytes);
  }
  const bool complete = fBlocks.GetElemCount() >= blocks;
  const uint32 kept = complete ? blocks : oldBlocks;
  while (fBlocks.GetElemCount() > kept) {
    const uint32 last = fBlocks.GetElemCount() - 1;
    MCfree(fBlocks[last]);
    fBlocks.RemoveElem(last);
  }
  if (complete) {
    // Elements that are dropped and asked for again are fresh again.
    for (int32 i = count; i < fElemCount && (static_cast<uint32>(i) >> fShift) < blocks; ++i) {
      MCMemoryFill(0, ElemAddress(i), fElemSize);
    }
    fElemCount = count;
  }
  return complete;
}

void* ExtensibleArrayCore::ElemAddress(int32 i) const noexcept {
  MC_ASSERT_TEXT(i >= 0 && i < fElemCount, "i>=0 && i < fElemCount");
  const uint32 index = static_cast<uint32>(i);
  const uint32 block = index >> fShift;
  uint8* const array = block < fBlocks.GetElemCount() ? fBlocks[block] : nullptr;
  return MC_ASSERT(array) ? array + static_cast<MCSize>(index & fMask) * fElemSize : nullptr;
}

}  // namespace qlx::detail
