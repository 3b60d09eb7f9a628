#include "MCResourceStream.h"

#include <algorithm>

#include "MCMemory.h"

namespace qlx {

TMCStream& MCResourceStream::Seek(int32 offset, int32 origin) {
  const int64 from = origin == kFromStart ? 0 : origin == kFromEnd ? GetLength() : Tell();
  const int64 place = from + offset;
  fState &= ~kStreamEnd;
  if (place < 0 || place > GetLength()) {
    StreamFail(kStreamBadPosition);
    return *this;
  }
  fCursor = static_cast<int32>(place);
  fState |= fCursor == GetLength() ? kStreamEnd : 0;
  return *this;
}

TMCStream& MCResourceStream::Read(void* outBuffer, int32 count) {
  if (!BeginRead()) {
    return *this;
  }
  if (count < 0 || (!outBuffer && count > 0)) {
    StreamFail(kStreamBadBuffer);
    return *this;
  }
  fCursor = Tell();
  const int32 moved = std::min(count, GetLength() - fCursor);
  if (moved > 0) {
    MCMemoryCopy(outBuffer, fResource->GetData() + fCursor, static_cast<MCSize>(moved));
    fCursor += moved;
  }
  return EndRead(moved, count);
}

TMCStream& MCResourceStream::PutBack(uint8 inByte) {
  const int32 place = Tell() - 1;
  if (place < 0) {
    StreamFail(kStreamBadPosition);
  } else if (fResource->GetData()[place] == inByte || BeginWrite()) {
    fCursor = place;
    fState &= ~kStreamEnd;
  }
  return *this;
}

TMCStream& MCResourceStream::Write(const void*, int32) {
  BeginWrite();
  return *this;
}

}  // namespace qlx
