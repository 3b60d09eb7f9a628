// Lengths as the sources of the string family work with them.
#pragma once

#include <algorithm>
#include <cstdint>
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

// Where a text's storage is known to be shorter than a vector, GCC warns of the branches that its length never takes.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
#pragma GCC diagnostic ignored "-Wstringop-overflow"
#endif

// Sixteen bytes at a time, in a register.
constexpr uint32 kVectorSize = 16;
using WordVector = uint64 __attribute__((vector_size(kVectorSize)));

template <class Vector>
Vector LoadAs(const char* inText) noexcept {
  Vector vector;
  std::memcpy(&vector, inText, sizeof vector);
  return vector;
}

inline void StoreVector(char* outText, WordVector inVector) noexcept {
  std::memcpy(outText, &inVector, sizeof inVector);
}

constexpr uint64 kHighBits = 0x8080808080808080U;

inline bool HasHighBit(WordVector inBits) noexcept {
  return ((inBits[0] | inBits[1]) & kHighBits) != 0;
}

// The same for less than a vector; the two words overlap in the middle.
inline bool IsShortAscii(const char* inText, uint32 inCount) noexcept {
  if (inCount >= sizeof(uint64)) {
    return ((LoadAs<uint64>(inText) | LoadAs<uint64>(inText + inCount - sizeof(uint64))) & kHighBits) == 0;
  }
  if (inCount >= sizeof(uint32)) {
    return ((LoadAs<uint32>(inText) | LoadAs<uint32>(inText + inCount - sizeof(uint32))) & kHighBits) == 0;
  }
  uint8 bits = 0;
  for (uint32 i = 0; i < inCount; ++i) {
    bits |= static_cast<uint8>(inText[i]);
  }
  return bits < 0x80;
}

// Where four vectors stand that cover a text of one to four of them: they overlap, and nothing branches on the length.
struct FourVectors {
  explicit constexpr FourVectors(uint32 inCount) noexcept
      : fLast(inCount - kVectorSize), fSecond(std::min(fLast, kVectorSize)), fThird(fLast - fSecond) {}
  uint32 fLast;
  uint32 fSecond;
  uint32 fThird;
};
constexpr uint32 kFourVectors = 4 * kVectorSize;

inline WordVector BitsOfFour(const char* inText, uint32 inCount) noexcept {
  const FourVectors at(inCount);
  return (LoadAs<WordVector>(inText) | LoadAs<WordVector>(inText + at.fSecond)) |
         (LoadAs<WordVector>(inText + at.fThird) | LoadAs<WordVector>(inText + at.fLast));
}

// True for bytes below 0x80 only.
inline bool IsAscii(const char* inText, uint32 inCount) noexcept {
  if (inCount < kVectorSize) {
    return IsShortAscii(inText, inCount);
  }
  if (inCount <= kFourVectors) {
    return !HasHighBit(BitsOfFour(inText, inCount));
  }
  const uint32 last = inCount - kFourVectors;
  WordVector bits = BitsOfFour(inText + last, kFourVectors);
  for (uint32 i = 0; i < last; i += kFourVectors) {
    bits |= BitsOfFour(inText + i, kFourVectors);
  }
  return !HasHighBit(bits);
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

// Copies a text, which may overlap its copy, and counts its characters. It is read once, unless it is not ASCII: the
// last vector, which overlaps the one before it, is in a register before anything is written.
inline uint32 CopyCounted(char* outText, const char* inText, uint32 inCount) noexcept {
  const bool overlaps = reinterpret_cast<std::uintptr_t>(outText) - reinterpret_cast<std::uintptr_t>(inText) < inCount;
  if (inCount < kVectorSize || overlaps) {
    const uint32 count = CountCharacters(inText, inCount);
    std::memmove(outText, inText, inCount);
    return count;
  }
  const uint32 last = inCount - kVectorSize;
  const WordVector end = LoadAs<WordVector>(inText + last);
  WordVector bits = end;
  for (uint32 i = 0; i < last; i += kVectorSize) {
    const WordVector part = LoadAs<WordVector>(inText + i);
    bits |= part;
    StoreVector(outText + i, part);
  }
  StoreVector(outText + last, end);
  return HasHighBit(bits) ? CountCharacters(outText, inCount) : inCount;
}

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

}  // namespace qlx::detail
