#include "Base64.h"

#include <array>

namespace qlx::host {

namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8 kNoDigit = 0xFF;

constexpr std::array<uint8, 256> MakeValues() {
  std::array<uint8, 256> values{};
  values.fill(kNoDigit);
  for (std::size_t i = 0; i < kDigits.size(); ++i) {
    values[static_cast<uint8>(kDigits[i])] = static_cast<uint8>(i);
  }
  return values;
}

constexpr std::array<uint8, 256> kValues = MakeValues();

std::size_t CountPadding(std::string_view inText) {
  if (inText.ends_with("==")) {
    return 2;
  }
  return inText.ends_with('=') ? 1 : 0;
}

}  // namespace

std::string EncodeBase64(std::span<const uint8> inBytes) {
  std::string text;
  text.reserve((inBytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < inBytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, inBytes.size() - i);
    uint32 group = static_cast<uint32>(inBytes[i]) << 16;
    group |= count > 1 ? static_cast<uint32>(inBytes[i + 1]) << 8 : 0;
    group |= count > 2 ? inBytes[i + 2] : 0U;
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit <= count ? kDigits[(group >> (18 - 6 * digit)) & 63] : '=';
    }
  }
  return text;
}

std::optional<std::vector<uint8>> DecodeBase64(std::string_view inText) {
  if (inText.size() % 4 != 0) {
    return std::nullopt;
  }
  const std::size_t padding = CountPadding(inText);
  const std::string_view digits = inText.substr(0, inText.size() - padding);
  std::vector<uint8> bytes;
  bytes.reserve(inText.size() / 4 * 3);
  uint32 group = 0;
  unsigned bits = 0;
  for (const char digit : digits) {
    const uint8 value = kValues[static_cast<uint8>(digit)];
    if (value == kNoDigit) {
      return std::nullopt;
    }
    group = (group << 6 | value) & 0xFFFFFF;
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      bytes.push_back(static_cast<uint8>(group >> bits));
    }
  }
  return bytes;
}

}  // namespace qlx::host
