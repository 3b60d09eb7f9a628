// What text asks of the operating system, answered by the test while a guard lives; what it does not set is the
// system's own.
//
//   PlatformTextGuard platform;
//   platform.UseWesternCodePage();
#pragma once

#include <utility>

#include "MCPlatformText.h"

namespace qlx::test {

class PlatformTextGuard {
 public:
  PlatformTextGuard() : fText(kSystemText), fEarlier(std::exchange(gPlatformText, &fText)) {}
  ~PlatformTextGuard() { gPlatformText = fEarlier; }
  PlatformTextGuard(const PlatformTextGuard&) = delete;
  PlatformTextGuard& operator=(const PlatformTextGuard&) = delete;

  PlatformText* operator->() { return &fText; }

  void UseWesternCodePage() {
    fText.fCodePage = []() noexcept { return kWesternCodePageNumber; };
  }
  // A code page with characters of two bytes, as in East Asia.
  void UseDoubleByteCodePage() {
    fText.fCodePage = []() noexcept { return uint32{932}; };
    fText.fIsLeadByte = [](uint8 byte) noexcept { return byte >= 0x81 && byte <= 0x9F; };
    fText.fNextCharacter = [](const char* text) noexcept {
      const auto byte = static_cast<uint8>(*text);
      return text + (byte == 0 ? 0 : byte >= 0x81 && byte <= 0x9F && text[1] ? 2 : 1);
    };
  }
  void UseUtf8CodePage() {
    fText.fCodePage = []() noexcept { return uint32{65001}; };
  }
  template <uint16 kSeparator>
  void UseDecimalSeparator() {
    fText.fDecimalSeparator = []() noexcept { return kSeparator; };
  }

 private:
  PlatformText fText;
  const PlatformText* fEarlier;
};

}  // namespace qlx::test
