// Lengths as the sources of the string family work with them.
#pragma once

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

}  // namespace qlx::detail
