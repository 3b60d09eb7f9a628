// Numbers as bytes, the most significant byte first, whatever the order of the target.
#pragma once

#include "MCTypes.h"

namespace qlx {

inline uint16 ReadBig16(const uint8* inBytes) noexcept {
  return static_cast<uint16>(inBytes[0] << 8 | inBytes[1]);
}
inline uint32 ReadBig32(const uint8* inBytes) noexcept {
  return static_cast<uint32>(ReadBig16(inBytes)) << 16 | ReadBig16(inBytes + 2);
}
inline void PutBig16(uint8* outBytes, uint16 inValue) noexcept {
  outBytes[0] = static_cast<uint8>(inValue >> 8);
  outBytes[1] = static_cast<uint8>(inValue);
}
inline void PutBig32(uint8* outBytes, uint32 inValue) noexcept {
  PutBig16(outBytes, static_cast<uint16>(inValue >> 16));
  PutBig16(outBytes + 2, static_cast<uint16>(inValue));
}

}  // namespace qlx
