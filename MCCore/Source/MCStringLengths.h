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

inline uint32 CountCharacters(const char* inText, uint32 inCount) noexcept {
  uint32 count = 0;
  uint32 i = 0;
  // Most texts are ASCII: four words at a time as long as none has an upper bit.
  for (uint64 words[4]; inCount - i >= sizeof words; i += sizeof words) {
    std::memcpy(words, inText + i, sizeof words);
    if ((words[0] | words[1] | words[2] | words[3]) & 0x8080808080808080U) {
      for (uint32 k = 0; k < sizeof words; ++k) {
        count += MCUtf8BeginsCharacter(static_cast<uint8>(inText[i + k]));
      }
    } else {
      count += sizeof words;
    }
  }
  for (; i < inCount; ++i) {
    count += MCUtf8BeginsCharacter(static_cast<uint8>(inText[i]));
  }
  return count;
}

}  // namespace qlx::detail
