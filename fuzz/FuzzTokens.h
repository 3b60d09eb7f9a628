// What the fuzz targets of the token format share.
#pragma once

#include <string_view>

#include "FuzzTarget.h"
#include "MCException.h"
#include "MCMemory.h"
#include "MCMemoryStream.h"
#include "MCString.h"
#include "MCToken.h"

namespace qlx::fuzz {

// A stream that only its virtual operations reach, as one from the other side of the binary border is.
class ForeignStream final : public TMCMemoryStream {
 public:
  using TMCMemoryStream::TMCMemoryStream;
};

// The input in a stream. Its first byte says whether the stream is one of ours or a foreign one.
class TokenInput {
 public:
  TokenInput(const uint8_t* inBytes, size_t inSize)
      : fIsForeign(inSize > 0 && (inBytes[0] & 1) != 0),
        fFirst(inSize > 0 ? inBytes[0] : 0),
        fOwn(Start(inBytes, inSize), Size(inSize), kStreamReadable),
        fForeign(Start(inBytes, inSize), Size(inSize), kStreamReadable) {}

  TMCStream& Stream() { return fIsForeign ? static_cast<TMCStream&>(fForeign) : fOwn; }
  uint8_t FirstByte() const { return fFirst; }

 private:
  static void* Start(const uint8_t* inBytes, size_t inSize) {
    return const_cast<uint8_t*>(inSize > 1 ? inBytes + 1 : nullptr);
  }
  static int32 Size(size_t inSize) { return inSize > 1 ? static_cast<int32>(inSize - 1) : 0; }

  bool fIsForeign;
  uint8_t fFirst;
  TMCMemoryStream fOwn;
  ForeignStream fForeign;
};

// What was written, while the stream stays as it is.
inline std::string_view TextOf(const TMCMemoryStream& inStream) {
  return {reinterpret_cast<const char*>(inStream.GetData()), static_cast<std::size_t>(inStream.GetSize())};
}

// False when the work ended in an exception. Its code must be one that readers of tokens may throw.
template <class Work>
bool Ends(Work&& inWork) {
  try {
    inWork();
    return true;
  } catch (const TMCException& problem) {
    const MCResult code = problem.GetCode();
    FuzzCheck(code == MC_E_EOF || code == MC_E_BADTOKEN || code == MC_E_INVALIDARG, "an exception with another code");
    return false;
  }
}

// Reads values until the stream ends or a read fails. Every step must move on, so that reading ends.
template <class Step>
void ReadAll(TMCStream& ioStream, Step&& inStep) {
  for (int32 before = -1; ioStream.Tell() != before && Ends(inStep) && !ioStream.fail() && !ioStream.eof();) {
    before = ioStream.Tell();
  }
}

}  // namespace qlx::fuzz
