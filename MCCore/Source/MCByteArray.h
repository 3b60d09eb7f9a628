// Bytes that are collected one run after the other, at a cost that grows with their number alone.
#pragma once

#include <algorithm>

#include "MCArray.h"

namespace qlx {

class MCByteArray : public TMCArray<uint8> {
 public:
  // Space starts at so many bytes and grows by as many, or by half where that is more.
  static constexpr uint32 kStep = 1000;

  MCByteArray() : TMCArray<uint8>(0, 0, kStep, false) {}

  // False without memory, and then nothing is added.
  bool Append(const uint8* inBytes, MCSize inCount) {
    const uint32 count = GetElemCount();
    if (inCount == 0) {
      return true;
    }
    if (inCount >= kEndIndex - count || !Reserve(count + static_cast<uint32>(inCount)) ||
        !SetElemCount(count + static_cast<uint32>(inCount))) {
      return false;
    }
    MCMemoryCopy(BaseAddress() + count, inBytes, inCount);
    return true;
  }
  bool AddElem(uint8 inByte) {
    return (GetElemCount() < GetElemSpace() || Reserve(GetElemCount() + 1)) && TMCArray<uint8>::AddElem(inByte);
  }

  const char* AsText() const noexcept { return GetElemCount() ? reinterpret_cast<const char*>(BaseAddress()) : ""; }

 private:
  bool Reserve(uint32 inCount) {
    const uint32 space = GetElemSpace();
    if (inCount <= space) {
      return true;
    }
    const uint64 grown = uint64{space} + std::max(kStep, space / 2);
    return SetElemSpace(static_cast<uint32>(std::max<uint64>(inCount, std::min<uint64>(grown, kEndIndex - 1))));
  }
};

}  // namespace qlx
