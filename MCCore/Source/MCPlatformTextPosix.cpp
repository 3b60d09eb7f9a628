#include <langinfo.h>
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

  static const CaseLocale& Get() noexcept {
    static const CaseLocale sLocale;
    return sLocale;
  }

  wint_t Lower(wint_t inChar) const noexcept {
    if (fLocale) {
      return towlower_l(inChar, fLocale);
    }
    return inChar >= 'A' && inChar <= 'Z' ? inChar + ('a' - 'A') : inChar;
  }
  wint_t Upper(wint_t inChar) const noexcept {
    if (fLocale) {
      return towupper_l(inChar, fLocale);
    }
    return inChar >= 'a' && inChar <= 'z' ? inChar - ('a' - 'A') : inChar;
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

int32 CompareCaseless(const char* inA, const char* inB) noexcept {
  const CaseLocale& locale = CaseLocale::Get();
  while (*inA && *inB) {
    const wint_t a = locale.Lower(NextCodePoint(inA));
    const wint_t b = locale.Lower(NextCodePoint(inB));
    if (a != b) {
      return a < b ? -1 : 1;
    }
  }
  return (*inA != 0) - (*inB != 0);
}

// Writes `inCode` over `inCount` bytes when it takes so many.
void WriteCodePoint(wint_t inCode, char* outBytes, std::ptrdiff_t inCount) noexcept {
  const std::ptrdiff_t count = inCode < 0x80 ? 1 : inCode < 0x800 ? 2 : inCode < 0x10000 ? 3 : 4;
  constexpr uint8 kLeads[] = {0, 0, 0xC0, 0xE0, 0xF0};
  if (count != inCount) {
    return;
  }
  for (std::ptrdiff_t i = count - 1; i > 0; --i) {
    outBytes[i] = static_cast<char>(0x80 | (inCode & 0x3F));
    inCode >>= 6;
  }
  outBytes[0] = static_cast<char>(kLeads[count] | inCode);
}

template <class Mapping>
void MapCase(char* ioText, Mapping&& inMapping) noexcept {
  while (*ioText) {
    const char* next = ioText;
    const wint_t code = NextCodePoint(next);
    const bool isCharacter = next - ioText > 1 || code < 0x80;
    if (const wint_t mapped = inMapping(code); isCharacter && mapped != code) {
      WriteCodePoint(mapped, ioText, next - ioText);
    }
    ioText += next - ioText;
  }
}

void ToUpper(char* ioText) noexcept {
  MapCase(ioText, [](wint_t code) { return CaseLocale::Get().Upper(code); });
}

void ToLower(char* ioText) noexcept {
  MapCase(ioText, [](wint_t code) { return CaseLocale::Get().Lower(code); });
}

const char* NextCharacter(const char* inText) noexcept {
  if (*inText) {
    NextCodePoint(inText);
  }
  return inText;
}

// Byte texts are UTF-8 on these systems, which has no characters that begin with a lead byte of a code page.
bool IsLeadByte(uint8) noexcept {
  return false;
}

uint32 CodePageNumber() noexcept {
  constexpr uint32 kUtf8 = 65001;
  return kUtf8;
}

// That of the user's locale, which need not be the one that the process runs in.
uint16 ReadDecimalSeparator() noexcept {
  uint16 separator = '.';
  if (const locale_t locale = newlocale(LC_NUMERIC_MASK | LC_CTYPE_MASK, "", static_cast<locale_t>(nullptr))) {
    const char* const text = nl_langinfo_l(RADIXCHAR, locale);
    if (text && *text) {
      separator = MCUtf8Decode(text, static_cast<uint32>(std::strlen(text)));
    }
    freelocale(locale);
  }
  return separator ? separator : uint16{'.'};
}

uint16 DecimalSeparator() noexcept {
  static const uint16 sSeparator = ReadDecimalSeparator();
  return sSeparator;
}

}  // namespace

const PlatformText kSystemText = {CompareCaseless, ToUpper,        ToLower,         NextCharacter,
                                  IsLeadByte,      CodePageNumber, DecimalSeparator};

}  // namespace qlx
