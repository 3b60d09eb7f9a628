// Reads a stream byte by byte at the speed of memory: the bytes that a stream of ours has at hand are taken from where
// they lie, all others by the stream's own operations. A stream may come from the other side of the binary border, so
// nothing is asked of it but its known slots.
#pragma once

#include "MCStream.h"

namespace qlx {

class TMCFileStream;
class TMCMemoryStream;

constexpr bool IsBlank(int inByte) noexcept {
  return inByte == ' ' || inByte == '\t' || inByte == '\r' || inByte == '\n';
}

constexpr bool IsDigit(int inByte) noexcept {
  return inByte >= '0' && inByte <= '9';
}

// Between its calls the stream is not where the reader is: nobody else may use the stream while a reader lives. At its
// end the stream stands behind what was taken.
class MCStreamReader {
 public:
  static constexpr int kEnd = -1;

  explicit MCStreamReader(TMCStream& inStream) noexcept;
  ~MCStreamReader() { Leave(); }
  MCStreamReader(const MCStreamReader&) = delete;
  MCStreamReader& operator=(const MCStreamReader&) = delete;

  // The next byte, or `kEnd`.
  int Get() { return fNext != fWindowEnd ? *fNext++ : GetSlowly(); }
  // `inByte` is what `Get` gave last; `kEnd` is ignored.
  void PutBack(int inByte) {
    if (fNext != fWindow) {
      fNext -= inByte == kEnd ? 0 : 1;
    } else if (inByte != kEnd) {
      PutBackSlowly(static_cast<uint8>(inByte));
    }
  }
  int SkipBlanks() {
    int byte = Get();
    while (IsBlank(byte)) {
      byte = Get();
    }
    return byte;
  }

  // The bytes at hand: from `Next` to `WindowEnd`, there may be none. `TakeUpTo` moves on within them.
  const uint8* Next() const noexcept { return fNext; }
  const uint8* WindowEnd() const noexcept { return fWindowEnd; }
  void TakeUpTo(const uint8* inPlace) noexcept { fNext = inPlace; }

  // Passes so many bytes by `Seek`; with fewer left it fails as `Seek` does, and stays.
  void Skip(uint64 inCount);

 private:
  enum class Source : uint8 { kForeign, kMemory, kFile };

  void Enter() noexcept;
  void Leave() noexcept;
  int GetSlowly();
  void PutBackSlowly(uint8 inByte);

  TMCStream& fStream;
  const uint8* fWindow = nullptr;
  const uint8* fNext = nullptr;
  const uint8* fWindowEnd = nullptr;
  Source fSource;
};

}  // namespace qlx
