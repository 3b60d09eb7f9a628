// 16-byte ids of classes and interfaces.
#pragma once

#include <bit>

#include "MCTypes.h"

namespace qlx {

// In memory: a 32-bit, two 16-bit and eight 8-bit fields, the numbers in the machine's byte order.
struct MCGuid {
  uint32 fData1;
  uint16 fData2;
  uint16 fData3;
  uint8 fData4[8];

  // Two ids are equal when their four 32-bit words are equal.
  friend constexpr bool operator==(const MCGuid& inA, const MCGuid& inB) {
    struct Words {
      uint32 fWord[4];
    };
    const auto a = std::bit_cast<Words>(inA);
    const auto b = std::bit_cast<Words>(inB);
    return a.fWord[0] == b.fWord[0] && a.fWord[1] == b.fWord[1] && a.fWord[2] == b.fWord[2] && a.fWord[3] == b.fWord[3];
  }
};

static_assert(sizeof(MCGuid) == 16);

namespace detail {

constexpr uint32 HexDigit(char inDigit) {
  if (inDigit >= '0' && inDigit <= '9') {
    return static_cast<uint32>(inDigit - '0');
  }
  if (inDigit >= 'A' && inDigit <= 'F') {
    return static_cast<uint32>(inDigit - 'A' + 10);
  }
  throw "an id is written in upper-case hexadecimal digits";
}

constexpr uint32 HexNumber(const char* inText, int inDigits) {
  uint32 value = 0;
  for (int i = 0; i < inDigits; ++i) {
    value = (value << 4) | HexDigit(inText[i]);
  }
  return value;
}

}  // namespace detail

// `"1F3AE15F-FDC2-001D-13E1-1FF121717497"_guid`, in the usual grouping of 8, 4, 4, 4 and 12 digits.
consteval MCGuid operator""_guid(const char* inText, std::size_t inLength) {
  if (inLength != 36 || inText[8] != '-' || inText[13] != '-' || inText[18] != '-' || inText[23] != '-') {
    throw "an id has the form 00000000-0000-0000-0000-000000000000";
  }
  MCGuid guid{detail::HexNumber(inText, 8),
              static_cast<uint16>(detail::HexNumber(inText + 9, 4)),
              static_cast<uint16>(detail::HexNumber(inText + 14, 4)),
              {}};
  for (int i = 0; i < 8; ++i) {
    guid.fData4[i] = static_cast<uint8>(detail::HexNumber(inText + (i < 2 ? 19 : 20) + 2 * i, 2));
  }
  return guid;
}

}  // namespace qlx
