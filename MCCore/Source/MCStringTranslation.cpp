// Texts of other systems: translation by the host's table, and variants in one text.
#include <algorithm>
#include <cstring>

#include "MCAsciiTranslation.h"
#include "MCMemory.h"
#include "MCPlatformText.h"
#include "MCString.h"
#include "MCStringLengths.h"

namespace qlx {

void TMCString::TranslateAscii(int32 direction) {
  const auto* const asciiTranslationTable = gShSafeUtilities ? gShSafeUtilities->GetAsciiTranslationTable() : nullptr;
  if (!MC_ASSERT(asciiTranslationTable)) {
    return;
  }
  uint32 write = 0;
  for (uint32 i = 0; i < fByteLength; ++i) {
    const auto byte = static_cast<uint8>(Buffer()[i]);
    const uint8 translated = asciiTranslationTable->Translate(byte, direction);
    if (translated == TMCAsciiTranslationTable::kUntranslatable) {
      MC_ASSERT_TEXT(false, "Untranslatable character");
      continue;
    }
    if (translated != TMCAsciiTranslationTable::kEscape) {
      Buffer()[write++] = static_cast<char>(translated);
      continue;
    }
    const char* const escape = asciiTranslationTable->GetEscapeString(byte, direction);
    if (!MC_ASSERT_TEXT(escape, "Missing escape string")) {
      continue;
    }
    const auto count = static_cast<uint32>(std::strlen(escape));
    if (!MC_ASSERT_TEXT(GrowForEscape(i, write, count), "Skipping char in TranslateAscii")) {
      continue;
    }
    MCMemoryCopy(Buffer() + write, escape, count);
    write += count;
  }
  fByteLength = std::min(write, fByteLength);
  WriteNul();
  CountCharacters();
}

// The bytes that were dropped before `ioOffset`, and the byte there, are room already.
bool TMCString::GrowForEscape(uint32& ioOffset, uint32 inWrite, uint32 inCount) {
  if (ioOffset - inWrite + 1 >= inCount) {
    return true;
  }
  const uint32 extra = inCount - 1 - (ioOffset - inWrite);
  const uint32 wanted = detail::CheckedSum(fByteLength, extra);
  if (wanted > fMaxLength) {
    // A hundredth more than is wanted, so that not every escape moves the text.
    const auto spare = static_cast<uint32>(static_cast<real32>(fMaxLength) * 0.01F);
    SetMaxLength(detail::CheckedSum(wanted, spare));
  }
  if (wanted > fMaxLength) {
    return false;
  }
  char* const text = Buffer();
  MCMemoryMove(text + inWrite + inCount - 1, text + ioOffset, static_cast<MCSize>(fByteLength) - ioOffset + 1);
  ioOffset += extra;
  fByteLength = wanted;
  return true;
}

void TMCString::ExportTranslated(TMCString& outTarget) {
  if (!PlatformHasWesternCodePage()) {
    outTarget = *this;
  } else if (&outTarget == this) {
    TranslateAscii(1);
  } else if (fByteLength <= TMCString1023().MaxLength()) {
    ExportAndRestore<TMCString1023>(outTarget);
  } else {
    ExportAndRestore<TMCDynamicString>(outTarget);
  }
}

template <class Saved>
void TMCString::ExportAndRestore(TMCString& outTarget) {
  const Saved saved(*this);
  if (saved.fByteLength != fByteLength) {
    return;
  }
  const uint32 length = fLength;
  TranslateAscii(1);
  outTarget = *this;
  Assign(saved.CStr(), saved.fByteLength);
  fLength = length;
  fCount.SetKnown(false);
}

void TMCString::ImportTranslated() {
  if (GetByte(0) == '@') {
    const int32 ours = Find(TMCString15("@W"));
    if (ours >= 0) {
      Delete(0, ours + 2);
    }
    const int32 next = FindChar('@');
    if (next >= 0) {
      Delete(next, std::numeric_limits<int32>::max());
    }
  }
  if (PlatformHasWesternCodePage()) {
    TranslateAscii(0);
  }
}

void TMCString::ImportTranslatedBytes() {
  if (GetByte(0) == '@') {
    const int32 ours = FindBytes(TMCString15("@W"));
    if (ours >= 0) {
      DeleteBytes(0, ours + 2);
    }
    const int32 next = FindByte('@');
    if (next >= 0) {
      DeleteBytes(next, std::numeric_limits<int32>::max());
    }
  }
  TranslateAscii(0);
}

}  // namespace qlx
