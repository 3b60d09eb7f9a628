#include <locale.h>
#include <wctype.h>

#include <cstring>

#include "MCPlatformText.h"
#include "MCUtf8.h"

namespace qlx {

namespace {

// Case mapping of all Unicode letters, whatever locale the process runs in: results are the same on every machine.
class CaseLocale {
 public:
  CaseLocale() noexcept : fLocale(newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr))) {}
  ~CaseLocale() {
    if (fLocale) {
      freelocale(fLocale);
    }
  }
  CaseLocale(const CaseLocale&) = delete;
  CaseLocale& operator=(const CaseLocale&) = delete;

  wint_t Fold(wint_t inChar) const noexcept {
    if (fLocale) {
      return towlower_l(inChar, fLocale);
    }
    return inChar >= 'A' && inChar <= 'Z' ? inChar + ('a' - 'A') : inChar;
  }

 private:
  locale_t fLocale;
};

// The next code point, and the text moved past it. A byte that is no UTF-8 stands for itself.
wint_t NextCodePoint(const char*& ioText) noexcept {
  const auto lead = static_cast<uint8>(*ioText);
  const uint32 length = MCUtf8SequenceLength(lead);
  constexpr uint8 kLeadBits[] = {0xFF, 0x7F, 0x1F, 0x0F, 0x07};
  wint_t code = lead & kLeadBits[length];
  for (uint32 i = 1; i < length; ++i) {
    const auto next = static_cast<uint8>(ioText[i]);
    if ((next & 0xC0) != 0x80) {
      ++ioText;
      return lead;
    }
    code = code << 6 | (next & 0x3F);
  }
  ioText += length ? length : 1;
  return code;
}

}  // namespace

int32 PlatformCompareCaseless(const char* inA, const char* inB) noexcept {
  static const CaseLocale sLocale;
  while (*inA && *inB) {
    const wint_t a = sLocale.Fold(NextCodePoint(inA));
    const wint_t b = sLocale.Fold(NextCodePoint(inB));
    if (a != b) {
      return a < b ? -1 : 1;
    }
  }
  return (*inA != 0) - (*inB != 0);
}

// Byte texts are UTF-8 on these systems, which has no characters that begin with a lead byte of a code page.
bool PlatformHasWesternCodePage() noexcept {
  return false;
}

bool PlatformIsLeadByte(uint8) noexcept {
  return false;
}

}  // namespace qlx
