#include "MCAsciiTranslation.h"

#include <algorithm>
#include <utility>

#include "MCMemory.h"

namespace qlx {

namespace {

constexpr MCSize kFirstBlock = 2 * TMCAsciiTranslationTable::kTableBytes;

void Transpose(const uint8* inStored, uint8* outTable) noexcept {
  for (MCSize row = 0; row < 16; ++row) {
    for (MCSize column = 0; column < 16; ++column) {
      outTable[16 * row + column] = inStored[row + 16 * column];
    }
  }
}

// The block whose length byte is the first of `inCount` bytes; null where that length is 0.
MCResult CopyBlock(const uint8* inBlock, MCSize inCount, uint8*& outCopy) noexcept {
  outCopy = nullptr;
  if (inCount == 0 || inBlock[0] >= inCount) {
    return MC_E_EOF;
  }
  if (inBlock[0] == 0) {
    return MC_S_OK;
  }
  const MCSize bytes = MCSize{inBlock[0]} + 1;
  outCopy = static_cast<uint8*>(MCmalloc(bytes));
  if (!outCopy) {
    return MC_E_OUTOFMEMORY;
  }
  MCMemoryCopy(outCopy, inBlock, bytes);
  return MC_S_OK;
}

}  // namespace

TMCAsciiTranslationTable::~TMCAsciiTranslationTable() {
  for (uint8*& block : fEscapeBlocks) {
    MCfree(std::exchange(block, nullptr));
  }
}

MCResult TMCAsciiTranslationTable::ReadImage(const uint8* inImage, MCSize inCount) noexcept {
  uint8* blocks[2] = {nullptr, nullptr};
  MCSize offset = kFirstBlock;
  MCResult result = inCount > kFirstBlock ? MC_S_OK : MC_E_EOF;
  for (uint8*& block : blocks) {
    if (result == MC_S_OK) {
      result = CopyBlock(inImage + offset, inCount - offset, block);
      offset += result == MC_S_OK ? inImage[offset] : 0;
    }
  }
  if (result != MC_S_OK) {
    MCfree(blocks[0]);
    MCfree(blocks[1]);
    return result;
  }
  for (MCSize i = 0; i < 2; ++i) {
    Transpose(inImage + i * kTableBytes, fTables[i]);
    MCfree(std::exchange(fEscapeBlocks[i], blocks[i]));
  }
  return MC_S_OK;
}

const char* TMCAsciiTranslationTable::GetEscapeString(uint8 inByte, int32 direction) const noexcept {
  const uint8* const block = fEscapeBlocks[direction != 0];
  if (!block) {
    return nullptr;
  }
  const uint8* const end = block + block[0] + 1;
  for (const uint8* entry = block + 1; entry < end;) {
    const uint8* const text = entry + 1;
    const uint8* const textEnd = std::find(text, end, uint8{0});
    if (textEnd == end) {
      return nullptr;
    }
    if (*entry == inByte) {
      return reinterpret_cast<const char*>(text);
    }
    entry = textEnd + 1;
  }
  return nullptr;
}

}  // namespace qlx
