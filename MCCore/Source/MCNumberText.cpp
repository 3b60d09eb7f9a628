#include "MCNumberText.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "MCAssert.h"

namespace qlx {

namespace {

constexpr real64 kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                              1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int64 kLargestPower = std::size(kPowers) - 1;
// Exponents that are multiplied by one constant, from -5 on.
constexpr real64 kNearPowers[] = {1e-5, 1e-4, 1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2, 1e3, 1e4};

// By exact powers of ten, so that every target rounds alike.
real64 Scale(real64 inValue, int64 inExponent) {
  real64 value = inValue;
  int64 left = std::abs(inExponent);
  while (left > 0 && value != 0 && std::isfinite(value)) {
    const int64 step = std::min(left, kLargestPower);
    value = inExponent < 0 ? value / kPowers[step] : value * kPowers[step];
    left -= step;
  }
  return value;
}

real64 ApplyExponent(real64 inValue, int64 inExponent) {
  return inExponent >= -5 && inExponent <= 4 ? inValue * kNearPowers[inExponent + 5] : Scale(inValue, inExponent);
}

// The digits of a number as they come: as many as 64 bits hold, and how often the point must still be moved.
struct Digits {
  uint64 fValue = 0;
  int64 fDropped = 0;   // digits before the point that no longer fitted
  int64 fFraction = 0;  // digits behind the point that did
  bool fAny = false;

  void Add(int inByte, bool inFraction) {
    fAny = true;
    if (fValue < (std::numeric_limits<uint64>::max() - 9) / 10) {
      fValue = fValue * 10 + static_cast<uint64>(inByte - '0');
      fFraction += inFraction ? 1 : 0;
    } else {
      fDropped += inFraction ? 0 : 1;
    }
  }
  real64 Value() const { return Scale(static_cast<real64>(fValue), fDropped - fFraction); }
};

int ScanSign(MCStreamReader& ioReader, int inByte, bool& outIsNegative) {
  outIsNegative = inByte == '-';
  return inByte == '-' || inByte == '+' ? ioReader.Get() : inByte;
}

int64 ScanExponent(MCStreamReader& ioReader, int& ioByte) {
  bool negative = false;
  ioByte = ScanSign(ioReader, ioReader.Get(), negative);
  int64 exponent = 0;
  for (; IsDigit(ioByte); ioByte = ioReader.Get()) {
    exponent = std::min<int64>(exponent * 10 + (ioByte - '0'), 100000);
  }
  return negative ? -exponent : exponent;
}

}  // namespace

ScannedInteger ScanInteger(MCStreamReader& ioReader) {
  ScannedInteger number;
  int byte = ScanSign(ioReader, ioReader.SkipBlanks(), number.fIsNegative);
  for (; IsDigit(byte); byte = ioReader.Get()) {
    number.fHasDigit = true;
    if (number.fMagnitude <= std::numeric_limits<uint32>::max()) {
      number.fMagnitude = number.fMagnitude * 10 + static_cast<uint64>(byte - '0');
    }
  }
  ioReader.PutBack(byte);
  return number;
}

bool ScanReal(MCStreamReader& ioReader, real64& outValue) {
  bool negative = false;
  Digits digits;
  int byte = ScanSign(ioReader, ioReader.SkipBlanks(), negative);
  for (; IsDigit(byte); byte = ioReader.Get()) {
    digits.Add(byte, false);
  }
  if (byte == '.') {
    for (byte = ioReader.Get(); IsDigit(byte); byte = ioReader.Get()) {
      digits.Add(byte, true);
    }
  }
  real64 value = digits.Value();
  if (digits.fAny && (byte == 'e' || byte == 'E')) {
    value = ApplyExponent(value, ScanExponent(ioReader, byte));
  }
  if (!digits.fAny || (byte != ':' && byte != '/')) {
    ioReader.PutBack(byte);
  }
  outValue = negative ? -value : value;
  return digits.fAny;
}

int32 FormatReal(char* outText, real64 inValue, int32 inPrecision) {
  char* end = outText;
  real64 value = inValue;
  if (!MC_ASSERT_TEXT(!std::isnan(value), "value is a number")) {
    value = 0;
  }
  if (value < 0) {
    *end++ = '-';
    value = -value;
  }
  constexpr real64 kLargest = 2147483647.0;
  uint32 integer = static_cast<uint32>(std::min(value, kLargest));
  const real64 power = kPowers[inPrecision];
  // The added 1 keeps the zeros in front. When all decimals round up to the next integer the 1 has become 2.
  auto fraction = value < kLargest ? static_cast<uint64>(std::floor((value + 1 - integer) * power + 0.5)) : 0;
  if (fraction >= 2 * static_cast<uint64>(power)) {
    fraction = 0;
    ++integer;
  }
  end += FormatInteger(end, integer);
  if (fraction > static_cast<uint64>(power)) {
    char digits[kRealTextRoom] = {};
    const char* last = std::to_chars(digits, std::end(digits), fraction).ptr;
    while (last[-1] == '0') {
      --last;
    }
    digits[0] = '.';  // in place of the added 1
    end = std::copy(static_cast<const char*>(digits), last, end);
  }
  return static_cast<int32>(end - outText);
}

}  // namespace qlx
