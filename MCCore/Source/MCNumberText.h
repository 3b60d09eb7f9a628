// Numbers as text, the same in every locale.
#pragma once

#include <charconv>

#include "MCStreamReader.h"

namespace qlx {

struct ScannedInteger {
  uint64 fMagnitude = 0;  // stops growing beyond 32 bits
  bool fIsNegative = false;
  bool fHasDigit = false;
};

// Blanks, an optional sign, digits. The byte after them is left.
ScannedInteger ScanInteger(MCStreamReader& ioReader);

// The same with a fraction and an exponent; one `:` or `/` behind the number is taken. False without a digit.
bool ScanReal(MCStreamReader& ioReader, real64& outValue);

inline constexpr int kRealTextRoom = 32;

// Bytes that were written to `outText`, of `kRealTextRoom`.
int32 FormatReal(char* outText, real64 inValue, int32 inPrecision);

inline constexpr int kIntegerTextRoom = 12;

template <class Value>
int32 FormatInteger(char* outText, Value inValue) {
  return static_cast<int32>(std::to_chars(outText, outText + kIntegerTextRoom, inValue).ptr - outText);
}

}  // namespace qlx
