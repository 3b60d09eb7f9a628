// Hex digits of the token format: capitals alone.
#pragma once

#include "MCTypes.h"

namespace qlx::tokens {

inline constexpr char kHexDigits[] = "0123456789ABCDEF";

// -1 for a byte that is no digit, and for the end of a stream.
constexpr int HexValue(int inByte) noexcept {
  if (inByte >= '0' && inByte <= '9') {
    return inByte - '0';
  }
  return inByte >= 'A' && inByte <= 'F' ? inByte - 'A' + 10 : -1;
}

}  // namespace qlx::tokens
