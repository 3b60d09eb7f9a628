// A translation table of a test, served as the host's while it lives.
#pragma once

#include <array>
#include <utility>
#include <vector>

#include "FakeObject.h"
#include "MCAsciiTranslation.h"
#include "MCHostUtilities.h"

namespace qlx::test {

// The parts of a persisted image.
struct TableImage {
  // Entry for each byte; each byte stands for itself.
  TableImage() {
    for (int i = 0; i < 256; ++i) {
      fTables[0][static_cast<uint8>(i)] = fTables[1][static_cast<uint8>(i)] = static_cast<uint8>(i);
    }
  }
  // The blocks follow as they are given.
  std::vector<uint8> Bytes() const {
    std::vector<uint8> bytes;
    for (const auto& table : fTables) {
      for (std::size_t i = 0; i < 256; ++i) {
        bytes.push_back(table[i % 16 * 16 + i / 16]);
      }
    }
    bytes.insert(bytes.end(), fBlocks.begin(), fBlocks.end());
    return bytes;
  }

  std::array<std::array<uint8, 256>, 2> fTables;
  std::vector<uint8> fBlocks = {0};
};

class HostedTable final : public FakeObject<IShSafeUtilities> {
 public:
  explicit HostedTable(const std::vector<uint8>& inImage) : fEarlier(std::exchange(gShSafeUtilities, this)) {
    fResult = fTable.ReadImage(inImage.data(), inImage.size());
  }
  ~HostedTable() override { gShSafeUtilities = fEarlier; }
  HostedTable(const HostedTable&) = delete;
  HostedTable& operator=(const HostedTable&) = delete;

  // What reading the image answered.
  MCResult GetResult() const { return fResult; }
  const TMCAsciiTranslationTable& Table() const { return fTable; }

  void MC_CALL GetProcessorFeatures(ProcessorFeatures& outFeatures) override { outFeatures = {}; }
  const TMCAsciiTranslationTable* MC_CALL GetAsciiTranslationTable() override { return &fTable; }

 private:
  TMCAsciiTranslationTable fTable;
  MCResult fResult = MC_S_OK;
  IShSafeUtilities* fEarlier;
};

}  // namespace qlx::test
