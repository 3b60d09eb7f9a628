// How the text of a stream is encoded: a name, the byte order mark at the start of a file, and what decodes it.
#pragma once

#include "MCTranscoder.h"

namespace qlx {

// One record an encoding, for as long as the process runs: streams point at it and never own it.
struct MCTextEncoding {
  const char* fName;
  uint8 fMark[4];
  uint8 fMarkByteCount;
  void (*fCreateTranscoder)(IMCTranscoder** outTranscoder) noexcept;  // null: bytes are taken as they stand
  const MCTextEncoding*
      fIfMarked;  // the encoding of a file that begins with its mark; null: this one alone is looked for
};

// UTF-8 without a mark: what a new stream has. A file that begins with a mark is read as `kUtf8MarkedEncoding`.
extern const MCTextEncoding kUtf8Encoding;
extern const MCTextEncoding kUtf8MarkedEncoding;
// The system's 8-bit code page, the Western one.
extern const MCTextEncoding kCodePageEncoding;
// No text: no mark is written or looked for.
extern const MCTextEncoding kBinaryEncoding;

}  // namespace qlx
