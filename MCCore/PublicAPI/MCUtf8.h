// How the text of this system is read: UTF-8, one 16-bit value a character.
//
// Only bytes that begin a character count. Bytes that can neither begin nor continue one (0x80 to 0xC1 on their own,
// 0xF5 and up) add nothing to a length.
#pragma once

#include "MCTypes.h"

namespace qlx {

// Bytes of the character that `inByte` begins; 0 when it begins none.
constexpr uint32 MCUtf8SequenceLength(uint8 inByte) noexcept {
  if (inByte < 0x80) {
    return 1;
  }
  if (inByte < 0xC2 || inByte > 0xF4) {
    return 0;
  }
  return inByte < 0xE0 ? 2 : inByte < 0xF0 ? 3 : 4;
}

constexpr bool MCUtf8BeginsCharacter(uint8 inByte) noexcept {
  return MCUtf8SequenceLength(inByte) != 0;
}

// The character at `inText`, of which `inCount` bytes are there; missing ones read as 0. The upper bits of a
// four-byte character are lost: a character is one 16-bit value everywhere, never a pair of surrogates.
constexpr uint16 MCUtf8Decode(const char* inText, uint32 inCount) noexcept {
  const auto byte = [=](uint32 i) { return i < inCount ? static_cast<uint32>(static_cast<uint8>(inText[i])) : 0U; };
  const auto low = [=](uint32 i) { return byte(i) & 0x3F; };
  switch (MCUtf8SequenceLength(static_cast<uint8>(byte(0)))) {
    case 1:
      return static_cast<uint16>(byte(0));
    case 2:
      return static_cast<uint16>((byte(0) & 0x1F) << 6 | low(1));
    case 3:
      return static_cast<uint16>(byte(0) << 12 | low(1) << 6 | low(2));
    case 4:
      return static_cast<uint16>(byte(1) << 12 | low(2) << 6 | low(3));
    default:
      return 0;
  }
}

// Bytes that `inChar` takes. Halves of surrogate pairs are characters like any other and take three.
constexpr uint32 MCUtf8EncodedLength(uint16 inChar) noexcept {
  return inChar < 0x80 ? 1 : inChar < 0x800 ? 2 : 3;
}

// Writes those bytes, at most three, and answers how many they are.
constexpr uint32 MCUtf8Encode(uint16 inChar, char* outBytes) noexcept {
  const auto tail = [=](int inShift) { return static_cast<char>(0x80 | (inChar >> inShift & 0x3F)); };
  switch (MCUtf8EncodedLength(inChar)) {
    case 1:
      outBytes[0] = static_cast<char>(inChar);
      return 1;
    case 2:
      outBytes[0] = static_cast<char>(0xC0 | inChar >> 6);
      outBytes[1] = tail(0);
      return 2;
    default:
      outBytes[0] = static_cast<char>(0xE0 | inChar >> 12);
      outBytes[1] = tail(6);
      outBytes[2] = tail(0);
      return 3;
  }
}

}  // namespace qlx
