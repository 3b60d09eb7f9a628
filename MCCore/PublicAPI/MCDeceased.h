// The mark that the host's allocator writes over freed objects, and the check that catches their use.
#pragma once

#include <cstring>

#include "MCTypes.h"

namespace qlx {

inline constexpr uint32 kDeceased = 0xDECEA5ED;

// True for a pointer that was read out of freed memory. The mark is 32 bits wide: on 64-bit targets the low half of
// the pointer counts, which also catches memory filled with the mark throughout. The mark is odd, so no aligned object
// can have it as its address.
inline bool MCCheckDeceased(const void* inPointer) noexcept {
  return static_cast<uint32>(reinterpret_cast<std::uintptr_t>(inPointer)) == kDeceased;
}

// The first word of the object at `inObject`, which is not null: its virtual table, while it lives.
inline const void* MCFirstWord(const void* inObject) noexcept {
  const void* word;
  std::memcpy(&word, inObject, sizeof word);
  return word;
}

}  // namespace qlx
