// The number types of the system, its 4-character ids, and the calling convention of its interfaces.
#pragma once

#include <cstddef>
#include <cstdint>

// Interface operations and exports use the standard calling convention of 32-bit Windows, where the closed host
// runs. Every other target has one convention only. An override repeats the mark of the operation that it overrides.
#if defined(_WIN32) && defined(__i386__)
#define MC_CALL __stdcall
#else
#define MC_CALL
#endif

namespace qlx {

using int8 = std::int8_t;
using int16 = std::int16_t;
using int32 = std::int32_t;
using int64 = std::int64_t;
using uint8 = std::uint8_t;
using uint16 = std::uint16_t;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;
using real32 = float;
using real64 = double;

// A size in memory. Containers count in `uint32`; only block sizes are of this type.
using MCSize = std::size_t;

// A 4-character id: parameter, token, message or type word. First character in the top byte; blanks count.
using MCID = uint32;

// `"pset"_id` is the id of these four characters.
consteval MCID operator""_id(const char* inText, std::size_t inLength) {
  if (inLength != 4) {
    throw "a 4-character id has four characters";
  }
  MCID id = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    id = (id << 8) | static_cast<uint8>(inText[i]);
  }
  return id;
}

}  // namespace qlx
