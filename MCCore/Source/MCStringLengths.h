// Lengths as the sources of the string family work with them.
#pragma once

#include <cstring>
#include <limits>

#include "MCUtf8.h"

namespace qlx::detail {

// The sum, or the largest length there is.
constexpr uint32 CheckedSum(uint32 inA, uint32 inB) noexcept {
  constexpr uint32 kLargest = std::numeric_limits<uint32>::max();
  return inB <= kLargest - inA ? inA + inB : kLargest;
}

constexpr uint32 SequenceLengthAt(const char* inText, uint32 inOffset) noexcept {
  return MCUtf8SequenceLength(static_cast<uint8>(inText[inOffset]));
}

// True for bytes below 0x80 only. Four words at a time, which compilers make vectors; the last ones overlap.
inline bool IsAscii(const char* inText, uint32 inCount) noexcept {
  constexpr uint32 kWord = sizeof(uint64);
  const auto word = [inText](uint32 offset) {
    uint64 value;
    std::memcpy(&value, inText + offset, kWord);
    return value;
  };
  const auto half = [inText](uint32 offset) {
    uint32 value;
    std::memcpy(&value, inText + offset, sizeof value);
    return value;
  };
  uint64 bits = 0;
  if (inCount < kWord / 2) {
    for (uint32 i = 0; i < inCount; ++i) {
      bits |= static_cast<uint8>(inText[i]);
    }
    return (bits & 0x80) == 0;
  }
  if (inCount < kWord) {
    return ((half(0) | half(inCount - kWord / 2)) & 0x80808080U) == 0;
  }
  uint32 i = 0;
  for (; inCount - i >= 4 * kWord; i += 4 * kWord) {
    bits |= (word(i) | word(i + kWord)) | (word(i + 2 * kWord) | word(i + 3 * kWord));
  }
  for (; inCount - i >= kWord; i += kWord) {
    bits |= word(i);
  }
  return ((bits | word(inCount - kWord)) & 0x8080808080808080U) == 0;
}

// Every edit counts anew, so most texts, which are ASCII, are not looked at byte by byte.
inline uint32 CountCharacters(const char* inText, uint32 inCount) noexcept {
  if (IsAscii(inText, inCount)) {
    return inCount;
  }
  uint32 count = 0;
  for (uint32 i = 0; i < inCount; ++i) {
    count += MCUtf8BeginsCharacter(static_cast<uint8>(inText[i]));
  }
  return count;
}

// Copies a text, which may overlap its copy, and counts its characters. Names and keys, which are short and ASCII, are
// read once: all words are in registers before the first is written, and overlap in the middle.
inline uint32 CopyCounted(char* outText, const char* inText, uint32 inCount) noexcept {
  constexpr uint32 kWord = sizeof(uint64);
  if (inCount >= 2 * kWord && inCount <= 4 * kWord) {
    uint64 words[4];
    std::memcpy(words, inText, 2 * kWord);
    std::memcpy(words + 2, inText + inCount - 2 * kWord, 2 * kWord);
    const bool isAscii = (((words[0] | words[1]) | (words[2] | words[3])) & 0x8080808080808080U) == 0;
    const uint32 count = isAscii ? inCount : CountCharacters(inText, inCount);
    std::memcpy(outText, words, 2 * kWord);
    std::memcpy(outText + inCount - 2 * kWord, words + 2, 2 * kWord);
    return count;
  }
  const uint32 count = CountCharacters(inText, inCount);
  std::memmove(outText, inText, inCount);
  return count;
}

}  // namespace qlx::detail
