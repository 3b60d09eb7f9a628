#include "MCStreamReader.h"

#include <cstring>
#include <limits>

#include "MCFileStream.h"
#include "MCMemoryStream.h"

namespace qlx {

namespace {

const void* TableOf(const TMCStream& inStream) noexcept {
  const void* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&inStream), sizeof table);
  return table;
}

// True for a stream of exactly these classes from this very library. The table alone is compared: a stream of the
// host's own has no type information that could be asked.
bool IsMemoryStream(const TMCStream& inStream) noexcept {
  static uint8 sByte = 0;
  static const TMCMemoryStream sWitness(&sByte, 1, kStreamReadable);
  return TableOf(inStream) == TableOf(sWitness);
}

bool IsFileStream(const TMCStream& inStream) noexcept {
  static const TMCFileStream sWitness;
  return TableOf(inStream) == TableOf(sWitness);
}

}  // namespace

MCStreamReader::MCStreamReader(TMCStream& inStream) noexcept
    : fStream(inStream),
      fSource(IsMemoryStream(inStream) ? Source::kMemory
              : IsFileStream(inStream) ? Source::kFile
                                       : Source::kForeign) {
  fStream.fState = 0;  // as every read does
  Enter();
}

void MCStreamReader::Enter() noexcept {
  fWindow = nullptr;
  fWindowEnd = nullptr;
  if ((fStream.fMode & kStreamReadable) != 0) {
    if (fSource == Source::kMemory) {
      const auto& memory = static_cast<const TMCMemoryStream&>(fStream);
      fWindow = memory.fStart + memory.fCursor;
      fWindowEnd = fWindow + memory.BytesLeft();
    } else if (fSource == Source::kFile) {
      const auto& file = static_cast<const TMCFileStream&>(fStream);
      fWindow = file.fBuffer + file.fBufferCursor;
      fWindowEnd = file.fBuffer + file.fBufferLength;
    }
  }
  fNext = fWindow;
}

void MCStreamReader::Leave() noexcept {
  if (fNext == fWindow) {
    return;
  }
  const auto taken = static_cast<int32>(fNext - fWindow);
  if (fSource == Source::kMemory) {
    static_cast<TMCMemoryStream&>(fStream).fCursor += taken;
  } else {
    static_cast<TMCFileStream&>(fStream).fBufferCursor += taken;
  }
  fStream.fState = 0;
  fStream.fGCount = 1;
  fWindow = fNext;
}

int MCStreamReader::GetSlowly() {
  uint8 byte = 0;
  if (fSource == Source::kForeign) {
    fStream.GetByte(byte);
    return (fStream.fState & (kStreamEnd | kStreamFailed)) == 0 ? byte : kEnd;
  }
  Leave();
  fStream.GetByte(byte);
  const bool got = (fStream.fState & (kStreamEnd | kStreamFailed)) == 0;
  Enter();
  return got ? byte : kEnd;
}

void MCStreamReader::PutBackSlowly(uint8 inByte) {
  fStream.PutBack(inByte);
  Enter();
}

void MCStreamReader::Skip(uint64 inCount) {
  Leave();
  if (inCount <= static_cast<uint64>(std::numeric_limits<int32>::max())) {
    fStream.Seek(static_cast<int32>(inCount), kFromCursor);
  } else {
    fStream.StreamFail(kStreamBadPosition);
  }
  Enter();
}

}  // namespace qlx
