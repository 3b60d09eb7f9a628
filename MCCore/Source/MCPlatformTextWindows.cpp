#include <windows.h>

#include <atomic>

#include "MCPlatformText.h"

namespace qlx {

namespace {

struct CodePage {
  CodePage() noexcept : fNumber(GetACP()) {
    if (!GetCPInfo(CP_ACP, &fInfo)) {
      fInfo.LeadByte[0] = 0;
      fInfo.LeadByte[1] = 0;
    }
  }
  uint32 fNumber;
  CPINFO fInfo;
};

const CodePage& ActiveCodePage() noexcept {
  static const CodePage sCodePage;
  return sCodePage;
}

int32 CompareCaseless(const char* inA, const char* inB) noexcept {
  return lstrcmpiA(inA, inB);
}

void ToUpper(char* ioText) noexcept {
  CharUpperA(ioText);
}

void ToLower(char* ioText) noexcept {
  CharLowerA(ioText);
}

const char* NextCharacter(const char* inText) noexcept {
  return CharNextA(inText);
}

// As `IsDBCSLeadByte` has it, from the ranges that were asked for once.
bool IsLeadByte(uint8 inByte) noexcept {
  // Pairs of first and last lead byte, up to a pair of zeros.
  const BYTE* range = ActiveCodePage().fInfo.LeadByte;
  for (int i = 0; i + 1 < MAX_LEADBYTES && (range[i] || range[i + 1]); i += 2) {
    if (inByte >= range[i] && inByte <= range[i + 1]) {
      return true;
    }
  }
  return false;
}

uint32 CodePageNumber() noexcept {
  return ActiveCodePage().fNumber;
}

uint16 DecimalSeparator() noexcept {
  static std::atomic<uint16> sSeparator = 0;  // 0: not asked yet
  uint16 separator = sSeparator;
  if (separator == 0) {
    wchar_t text[32] = L"";
    GetProfileStringW(L"intl", L"sDecimal", L".", text, 32);
    separator = text[0] ? static_cast<uint16>(text[0]) : uint16{'.'};
    sSeparator = separator;
  }
  return separator;
}

}  // namespace

const PlatformText kSystemText = {CompareCaseless, ToUpper,        ToLower,         NextCharacter,
                                  IsLeadByte,      CodePageNumber, DecimalSeparator};

}  // namespace qlx
