// Translation between the bytes of two systems, one byte to one byte or to a short text. The host supplies the table
// through `gShSafeUtilities`; `TMCString::TranslateAscii` applies it.
#pragma once

#include "MCObject.h"

namespace qlx {

// Direction 1 leads out of this system (`ExportTranslated`), direction 0 into it.
//
// Nothing that a table holds is trusted: an escape text that does not end inside its block is not there.
class TMCAsciiTranslationTable : public TMCObject {
 public:
  static constexpr uint8 kUntranslatable = 0;
  // The byte's translation is a text of the escape block.
  static constexpr uint8 kEscape = 0x1B;
  static constexpr MCSize kTableBytes = 256;

  // Translates nothing.
  TMCAsciiTranslationTable() noexcept = default;
  ~TMCAsciiTranslationTable();
  TMCAsciiTranslationTable(const TMCAsciiTranslationTable&) = delete;
  TMCAsciiTranslationTable& operator=(const TMCAsciiTranslationTable&) = delete;

  // Takes the table's persisted image: two transposed tables of 256 bytes, then the two escape blocks. Answers
  // `MC_E_EOF` for an image that ends early and `MC_E_OUTOFMEMORY`; the table is then as it was.
  //
  // A block of length L is copied with L + 1 bytes, and the next one begins L bytes after it: its length is the last
  // byte of the copy. That is how images are, and a block of length 0 is followed by itself.
  MCResult ReadImage(const uint8* inImage, MCSize inCount) noexcept;

  // The two below know the directions 0 and 1; every other is 1.
  uint8 Translate(uint8 inByte, int32 direction) const noexcept { return fTables[direction != 0][inByte]; }
  // Null when the block is absent or has no text for the byte.
  const char* GetEscapeString(uint8 inByte, int32 direction) const noexcept;

 private:
  // This order, and the blocks as the image has them, are shared with the host.
  uint8 fTables[2][kTableBytes] = {};
  uint8* fEscapeBlocks[2] = {nullptr, nullptr};
};

static_assert(sizeof(TMCAsciiTranslationTable) == 512 + 2 * sizeof(void*));

}  // namespace qlx
