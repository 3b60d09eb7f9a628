// Numbers and ids as text, and text as numbers. Nothing here depends on the locale that the process runs in; the
// decimal separator is the user's.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

#include "MCPlatformText.h"
#include "MCString.h"
#include "MCStringLengths.h"

namespace qlx {

namespace {

class DecimalSeparator {
 public:
  DecimalSeparator() noexcept : fCount(MCUtf8Encode(gPlatformText->fDecimalSeparator(), fBytes)) {}
  std::string_view Text() const noexcept { return {fBytes, fCount}; }
  bool Is(char inByte) const noexcept { return fCount == 1 && fBytes[0] == inByte; }

 private:
  char fBytes[3];
  uint32 fCount;
};

constexpr bool IsDigit(char inByte) noexcept {
  return inByte >= '0' && inByte <= '9';
}

constexpr bool IsTextBlank(char inByte) noexcept {
  return inByte == ' ' || (inByte >= '\t' && inByte <= '\r');
}

// Fraction digits or significant ones. A double has no more of either (1074 and 767), a fixed form no room.
constexpr uint32 kMostDigits = 1100;

// Room for the 309 digits of a whole part beside those, and for the separator.
class NumberText {
 public:
  NumberText(real64 inValue, std::chars_format inFormat, uint32 precision) noexcept {
    const auto digits = static_cast<int>(std::min(precision, kMostDigits));
    const auto result = std::to_chars(fBytes, fBytes + sizeof fBytes - 2, inValue, inFormat, digits);
    fCount = static_cast<MCSize>(result.ptr - fBytes);
  }
  void ToUpperCase() noexcept {
    for (MCSize i = 0; i < fCount; ++i) {
      fBytes[i] = static_cast<char>(fBytes[i] >= 'a' && fBytes[i] <= 'z' ? fBytes[i] - 0x20 : fBytes[i]);
    }
  }
  // The number with the user's separator in place of its '.'.
  std::string_view Localised() noexcept {
    const DecimalSeparator separator;
    char* const end = fBytes + fCount;
    char* const point = std::find(fBytes, end, '.');
    if (point != end) {
      const std::string_view text = separator.Text();
      std::memmove(point + text.size(), point + 1, static_cast<MCSize>(end - point) - 1);
      std::memcpy(point, text.data(), text.size());
      fCount += text.size() - 1;
    }
    return {fBytes, fCount};
  }

 private:
  char fBytes[kMostDigits + 320];
  MCSize fCount;
};

// What of a text is still to be read.
class NumberReader {
 public:
  explicit NumberReader(std::string_view inText) noexcept : fRest(inText) {}

  bool IsAtEnd() const noexcept { return fRest.empty(); }
  std::string_view Rest() const noexcept { return fRest; }
  void CutTo(MCSize inCount) noexcept { fRest = fRest.substr(0, inCount); }
  bool Take(std::string_view inText) noexcept {
    const bool found = fRest.starts_with(inText);
    fRest.remove_prefix(found ? inText.size() : 0);
    return found;
  }
  void SkipBlanks() noexcept {
    while (!fRest.empty() && IsTextBlank(fRest.front())) {
      fRest.remove_prefix(1);
    }
  }
  // True for a '-', which is taken, as a '+' is.
  bool TakeSign() noexcept { return Take("-") || (Take("+"), false); }

 private:
  std::string_view fRest;
};

// Digits in 32 bits, that wrap; and ten to the power of their count.
struct Digits {
  uint32 fValue = 0;
  uint32 fPower = 1;
};

Digits TakeDigits(NumberReader& ioReader, bool inSkipsCommas) noexcept {
  Digits digits;
  for (; !ioReader.IsAtEnd(); ioReader.Take(ioReader.Rest().substr(0, 1))) {
    const char next = ioReader.Rest().front();
    if (IsDigit(next)) {
      digits.fValue = digits.fValue * 10 + static_cast<uint32>(next - '0');
      digits.fPower *= 10;
    } else if (next != ',' || !inSkipsCommas) {
      break;
    }
  }
  return digits;
}

bool HasHexPrefix(std::string_view inText) noexcept {
  return inText.size() > 2 && inText[0] == '0' && (inText[1] == 'x' || inText[1] == 'X');
}

// A number without a sign, as C's "%lf" reads it: decimal, hexadecimal, infinite or none.
real64 ReadDouble(std::string_view inText) noexcept {
  const bool isHex = HasHexPrefix(inText);
  const std::string_view text = isHex ? inText.substr(2) : inText;
  if (text.starts_with('-')) {
    return 0;
  }
  real64 value = 0;
  const auto format = isHex ? std::chars_format::hex : std::chars_format::general;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value, format);
  if (result.ec == std::errc::result_out_of_range) {
    // So few digits leave the range by their exponent only.
    const MCSize exponent = text.find_first_of(isHex ? "pP" : "eE");
    const bool isSmall = exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-');
    return isSmall ? 0 : HUGE_VAL;
  }
  return result.ec == std::errc() ? value : 0;
}

}  // namespace

void TMCString::FromInt(int32 inValue) {
  char scratch[13];
  char* const end = scratch + sizeof scratch;
  char* first = end;
  uint32 rest = inValue < 0 ? 0U - static_cast<uint32>(inValue) : static_cast<uint32>(inValue);
  do {
    *--first = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest);
  if (inValue < 0) {
    *--first = '-';
  }
  Assign(first, static_cast<MCSize>(end - first));
}

void TMCString::FromID(MCID id, bool literal) {
  constexpr MCID kLargestNumber = 0x21212121;
  if (!literal && id <= kLargestNumber) {
    FromInt(static_cast<int32>(id));
    return;
  }
  const char text[5] = {static_cast<char>(id >> 24), static_cast<char>(id >> 16), static_cast<char>(id >> 8),
                        static_cast<char>(id), 0};
  Assign(text, literal ? 4 : std::strlen(text));
}

void TMCString::FromFloat(real32 inValue, uint32 precision) {
  NumberText number(static_cast<real64>(inValue), std::chars_format::fixed, precision);
  const std::string_view text = number.Localised();
  Assign(text.data(), text.size());
}

void TMCString::FromDouble(real64 inValue, uint32 precision) {
  NumberText number(inValue, std::chars_format::general, precision);
  number.ToUpperCase();
  const std::string_view text = number.Localised();
  Assign(text.data(), text.size());
}

void TMCString::FromMoney(real64 inValue) {
  NumberText number(inValue, std::chars_format::fixed, 2);
  const std::string_view text = number.Localised();
  Assign(text.data(), text.size());
}

real32 TMCString::ToFloat() const {
  const DecimalSeparator separator;
  const bool skipsCommas = !separator.Is(',');
  NumberReader reader({CStr(), fByteLength});
  const bool isNegative = reader.TakeSign();
  if (reader.IsAtEnd()) {
    return 0;
  }
  const Digits whole = TakeDigits(reader, skipsCommas);
  Digits fraction;
  if (reader.Take(separator.Text())) {
    constexpr MCSize kFractionBytes = 9;
    reader.CutTo(kFractionBytes);
    fraction = TakeDigits(reader, skipsCommas);
  }
  const auto value = static_cast<real32>(static_cast<long double>(whole.fValue) +
                                         static_cast<long double>(fraction.fValue) / fraction.fPower);
  return isNegative ? -value : value;
}

real64 TMCString::ToDouble() const {
  char scratch[64];
  const DecimalSeparator separator;
  NumberReader reader(std::string_view(CStr(), std::min<MCSize>(fByteLength, sizeof scratch - 1)));
  MCSize count = 0;
  while (!reader.IsAtEnd()) {
    if (reader.Take(separator.Text())) {
      scratch[count++] = '.';
    } else {
      scratch[count++] = reader.Rest().front();
      reader.Take(reader.Rest().substr(0, 1));
    }
  }
  NumberReader number({scratch, count});
  number.SkipBlanks();
  const bool isNegative = number.TakeSign();
  const real64 value = ReadDouble(number.Rest());
  return isNegative ? -value : value;
}

int32 TMCString::ToInt() const {
  const std::string_view text(CStr(), fByteLength);
  MCSize i = 0;
  const auto skipWhile = [&](auto&& inTest) {
    while (i < text.size() && (text[i] == ',' || inTest(text[i]))) {
      ++i;
    }
  };
  skipWhile(IsTextBlank);
  const bool isNegative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
    ++i;
  }
  // One more below 0 than above.
  const int64 most = int64{std::numeric_limits<int32>::max()} + (isNegative ? 1 : 0);
  int64 value = 0;
  skipWhile([&](char byte) {
    if (!IsDigit(byte)) {
      return false;
    }
    value = std::min(value * 10 + (byte - '0'), most);
    return true;
  });
  return static_cast<int32>(isNegative ? -value : value);
}

bool TMCString::IsNumeric() const {
  const DecimalSeparator separator;
  NumberReader reader({CStr(), fByteLength});
  while (!reader.IsAtEnd()) {
    if (!IsDigit(reader.Rest().front()) && reader.Rest().front() != '-' && reader.Rest().front() != '+') {
      if (!reader.Take(separator.Text())) {
        return false;
      }
    } else {
      reader.Take(reader.Rest().substr(0, 1));
    }
  }
  return true;
}

void TMCString::TrimZeros() {
  const std::string_view text(CStr(), fByteLength);
  const MCSize separator = text.find_last_of(".,");
  if (!MC_ASSERT_TEXT(separator != std::string_view::npos, "TrimZeros: no separator")) {
    return;
  }
  const MCSize last = text.find_last_not_of('0');
  const MCSize kept = last == separator ? separator : last + 1;
  constexpr int32 kMostDeleted = 1000;
  Delete(static_cast<int32>(detail::CountCharacters(text.data(), static_cast<uint32>(kept))), kMostDeleted);
}

void TMCString::IncrementNumber(TMCString& outResult) const {
  outResult = *this;
  for (uint32 i = outResult.fByteLength; i-- > 0;) {
    char& byte = outResult.Buffer()[i];
    if (byte == '9') {
      byte = '0';
    } else if (IsDigit(byte)) {
      ++byte;
      return;
    } else {
      MC_ASSERT_TEXT(byte == ',' || byte == '.', "Unknown character!!");
    }
  }
  outResult.Insert(TMCString15("1"), 0);
}

}  // namespace qlx
