#include "MCStreamText.h"

#include <algorithm>
#include <limits>

namespace qlx {

const uint8* FindStringStop(const uint8* inText, const uint8* inEnd) noexcept {
  const uint8* place = inText;
  while (place != inEnd && *place != '"' && *place != kEscape && *place != kOldEscape) {
    ++place;
  }
  return place;
}

void WriteQuoted(TMCStream& ioStream, const char* inText, MCSize inLength) {
  ioStream.Write("\"", 1);
  const char* run = inText;
  const char* const end = inText + inLength;
  while (run != end) {
    // An escaped byte begins the next run.
    const char* next = std::find_if(run + 1, end, [](char byte) { return byte == '"' || byte == '\\'; });
    if (next - run > std::numeric_limits<int32>::max()) {
      next = run + std::numeric_limits<int32>::max();
    }
    if (*run == '"' || *run == '\\') {
      ioStream.Write("\\", 1);
    }
    ioStream.Write(run, static_cast<int32>(next - run));
    run = next;
  }
  ioStream.Write("\"", 1);
}

bool ReadQuoted(MCStreamReader& ioReader, MCByteArray& outBytes) {
  for (;;) {
    const uint8* const stop = FindStringStop(ioReader.Next(), ioReader.WindowEnd());
    if (!outBytes.Append(ioReader.Next(), static_cast<MCSize>(stop - ioReader.Next()))) {
      return false;
    }
    ioReader.TakeUpTo(stop);
    int byte = ioReader.Get();
    if (byte == '"') {
      return true;
    }
    if (byte == kEscape || byte == kOldEscape) {
      byte = ioReader.Get();
    }
    if (byte == MCStreamReader::kEnd || !outBytes.AddElem(static_cast<uint8>(byte))) {
      return false;
    }
  }
}

}  // namespace qlx
