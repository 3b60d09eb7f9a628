// Texts between quotes, as streams and tokens have them.
#pragma once

#include "MCByteArray.h"
#include "MCStreamReader.h"

namespace qlx {

inline constexpr uint8 kEscape = '\\';
// The other escape, which older files have: it is read as a backslash is, and never written. A byte 0x01 of a text
// itself is therefore lost on the way back.
inline constexpr uint8 kOldEscape = 0x01;

void WriteQuoted(TMCStream& ioStream, const char* inText, MCSize inLength);

// Appends the rest of a text behind its opening quote, escapes undone. False when the stream ends first or there is no
// memory.
bool ReadQuoted(MCStreamReader& ioReader, MCByteArray& outBytes);

// The first quote or escape from `inText` on, or `inEnd`.
const uint8* FindStringStop(const uint8* inText, const uint8* inEnd) noexcept;

}  // namespace qlx
