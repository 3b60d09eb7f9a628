#include <windows.h>

#include "MCPlatformText.h"

namespace qlx {

namespace {

struct CodePage {
  CodePage() noexcept : fIsWestern(GetACP() == 1252) {
    if (!GetCPInfo(CP_ACP, &fInfo)) {
      fInfo.LeadByte[0] = 0;
      fInfo.LeadByte[1] = 0;
    }
  }
  bool fIsWestern;
  CPINFO fInfo;
};

const CodePage& ActiveCodePage() noexcept {
  static const CodePage sCodePage;
  return sCodePage;
}

}  // namespace

int32 PlatformCompareCaseless(const char* inA, const char* inB) noexcept {
  return lstrcmpiA(inA, inB);
}

bool PlatformHasWesternCodePage() noexcept {
  return ActiveCodePage().fIsWestern;
}

bool PlatformIsLeadByte(uint8 inByte) noexcept {
  // Pairs of first and last lead byte, up to a pair of zeros.
  const BYTE* range = ActiveCodePage().fInfo.LeadByte;
  for (int i = 0; i + 1 < MAX_LEADBYTES && (range[i] || range[i + 1]); i += 2) {
    if (inByte >= range[i] && inByte <= range[i + 1]) {
      return true;
    }
  }
  return false;
}

}  // namespace qlx
