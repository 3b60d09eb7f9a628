#include "SystemServices.h"

#include <algorithm>
#include <array>
#include <thread>

#include "MCAssert.h"

namespace qlx::host {

const TMCAsciiTranslationTable* SafeUtilities::GetAsciiTranslationTable() {
  if (fTable != nullptr) {
    return fTable.get();
  }
  // Both tables, each transposed: entry 16 * i + j of an image is the translation of byte 16 * j + i.
  std::array<uint8, 2 * TMCAsciiTranslationTable::kTableBytes + 10> image{};
  for (std::size_t i = 0; i < 2 * TMCAsciiTranslationTable::kTableBytes; ++i) {
    image[i] = static_cast<uint8>(i % 16 * 16 + i / 16 % 16);
  }
  // The byte that marks an escape text stands for itself by such a text, one in each direction. Blocks share the byte
  // between them: it ends the first as a copy has it, and is the length of the second.
  constexpr uint8 kEscape = TMCAsciiTranslationTable::kEscape;
  constexpr std::array<uint8, 8> kBlocks{4, kEscape, kEscape, 0, 3, kEscape, kEscape, 0};
  std::ranges::copy(kBlocks, image.begin() + 2 * TMCAsciiTranslationTable::kTableBytes);
  fTable = std::make_unique<TMCAsciiTranslationTable>();
  MC_ASSERT_TEXT(fTable->ReadImage(image.data(), image.size()) == MC_S_OK, "the table of plain bytes is not read");
  return fTable.get();
}

void SafeUtilities::GetProcessorFeatures(ProcessorFeatures& outFeatures) {
  // Every processor that runs this program copies blocks of eight elements faster. The rest says nothing here.
  outFeatures = {.fBytes = {1, 0, 0, 0}};
}

uint32 MultiProcessing::GetProcessorCount() {
  return std::max(1U, std::thread::hardware_concurrency());  // 0 where the system does not tell
}

MCResult HostQuestion::FindPart(const MCGuid& inID, void** outObject) {
  return inID == fID ? MCStoreCounted<IHostQuestion>(this, outObject) : MCStoreNone(outObject);
}

}  // namespace qlx::host
