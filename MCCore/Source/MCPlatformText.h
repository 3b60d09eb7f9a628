// What text asks of the operating system: one table of functions, the system's own unless a test puts others in their
// place. Texts are NUL-terminated bytes of the system's code page (UTF-8 outside Windows).
#pragma once

#include "MCTypes.h"

namespace qlx {

struct PlatformText {
  // Order of two texts as a person sorts them, case apart: below 0, 0 or above 0.
  int32 (*fCompareCaseless)(const char* inA, const char* inB) noexcept;
  // In place: what would need more or fewer bytes keeps its case.
  void (*fToUpper)(char* ioText) noexcept;
  void (*fToLower)(char* ioText) noexcept;
  // The character after that at `inText`; at the end of the text, its NUL.
  const char* (*fNextCharacter)(const char* inText) noexcept;
  // True for a byte that begins a character of two bytes.
  bool (*fIsLeadByte)(uint8 inByte) noexcept;
  // The number of the code page for byte texts. The answer stays the same.
  uint32 (*fCodePage)() noexcept;
  // What the user writes between a number's whole part and its fraction. Never 0; the answer stays the same.
  uint16 (*fDecimalSeparator)() noexcept;
};

extern const PlatformText kSystemText;
extern const PlatformText* gPlatformText;

constexpr uint32 kWesternCodePageNumber = 1252;

inline int32 PlatformCompareCaseless(const char* inA, const char* inB) noexcept {
  return gPlatformText->fCompareCaseless(inA, inB);
}
inline bool PlatformHasWesternCodePage() noexcept {
  return gPlatformText->fCodePage() == kWesternCodePageNumber;
}
inline bool PlatformIsLeadByte(uint8 inByte) noexcept {
  return gPlatformText->fIsLeadByte(inByte);
}

}  // namespace qlx
