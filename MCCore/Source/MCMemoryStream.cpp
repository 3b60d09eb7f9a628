#include "MCMemoryStream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "MCMemory.h"
#include "MCString.h"

namespace qlx {

namespace {

constexpr int32 kStep = 4096;
constexpr int32 kLongStream = 1 << 20;
constexpr int64 kLargestSize = std::numeric_limits<int32>::max();

}  // namespace

TMCMemoryStream::TMCMemoryStream() noexcept : TMCStream(kStreamReadable | kStreamWritable) {
  fBlock = static_cast<uint8*>(MCmalloc(kStep));
  if (!fBlock) {
    StreamFail(kStreamBadBuffer);
    return;
  }
  fStart = fBlock;
  fCapacity = kStep;
}

TMCMemoryStream::TMCMemoryStream(const TMCString& inText) noexcept : TMCStream(kStreamReadable) {
  if (inText.ByteLength() > static_cast<uint32>(kLargestSize)) {
    StreamFail(kStreamBadBuffer);
    return;
  }
  SetView(const_cast<char*>(inText.CStr()), static_cast<int32>(inText.ByteLength()));
}

TMCMemoryStream::TMCMemoryStream(void* inMemory, int32 inSize, uint32 inMode) noexcept : TMCStream(inMode) {
  const bool isWritable = (inMode & kStreamWritable) != 0;
  if (isWritable && inSize <= 0) {
    StreamFail(kStreamWrongMode);
  } else if (inSize < 0 || (!inMemory && inSize != 0)) {
    StreamFail(kStreamBadBuffer);
  } else if (inMemory) {
    const MCSize size = inSize == 0 ? std::strlen(static_cast<const char*>(inMemory)) : static_cast<MCSize>(inSize);
    if (size > static_cast<MCSize>(kLargestSize)) {
      StreamFail(kStreamBadBuffer);
    } else {
      SetView(inMemory, static_cast<int32>(size));
    }
  }
}

TMCMemoryStream::~TMCMemoryStream() {
  MCfree(fBlock);
}

void TMCMemoryStream::SetView(void* inMemory, int32 inSize) noexcept {
  fStart = static_cast<uint8*>(inMemory);
  fSize = inSize;
  fCapacity = inSize;
}

uint8* TMCMemoryStream::DetachBlock() noexcept {
  if (!fBlock) {
    return nullptr;
  }
  fSize = -1;
  fCapacity = -1;
  fCursor = 0;
  fStart = nullptr;
  return std::exchange(fBlock, nullptr);
}

TMCStream& TMCMemoryStream::Seek(int32 offset, int32 origin) {
  const int64 from = origin == kFromStart ? 0 : origin == kFromEnd ? fSize : fCursor;
  const int64 place = from + offset;
  fState &= ~kStreamEnd;
  if (place < 0 || place > fSize) {
    StreamFail(kStreamBadPosition);
    return *this;
  }
  fCursor = static_cast<int32>(place);
  if (fCursor == fSize) {
    fState |= kStreamEnd;
  }
  return *this;
}

TMCStream& TMCMemoryStream::Read(void* outBuffer, int32 count) {
  if (!BeginRead()) {
    return *this;
  }
  if (count < 0 || (!outBuffer && count > 0)) {
    StreamFail(kStreamBadBuffer);
    return *this;
  }
  const int32 moved = std::min(count, BytesLeft());
  if (moved > 0) {
    MCMemoryCopy(outBuffer, fStart + fCursor, static_cast<MCSize>(moved));
    fCursor += moved;
  }
  return EndRead(moved, count);
}

TMCStream& TMCMemoryStream::GetByte(uint8& outByte) {
  if (!BeginRead()) {
    return *this;
  }
  if (BytesLeft() == 0) {
    return EndRead(0, 1);
  }
  outByte = fStart[fCursor++];
  return EndRead(1, 1);
}

TMCStream& TMCMemoryStream::PutBack(uint8 inByte) {
  if (fCursor <= 0) {
    StreamFail(kStreamBadPosition);
    return *this;
  }
  // A text that is only read may lie in memory that cannot be written.
  if (fStart[fCursor - 1] != inByte) {
    if (!BeginWrite()) {
      return *this;
    }
    fStart[fCursor - 1] = inByte;
  }
  --fCursor;
  fState &= ~kStreamEnd;
  return *this;
}

bool TMCMemoryStream::GrowTo(int64 inNeeded) noexcept {
  // A long stream takes larger steps, or it would be copied once for every 4096 bytes.
  const int64 step = fCapacity < kLongStream ? kStep : fCapacity / 4;
  const int64 capacity = std::max(inNeeded, std::min(fCapacity + step, kLargestSize));
  if (!fBlock || capacity > kLargestSize) {
    return false;
  }
  auto* const block = static_cast<uint8*>(MCrealloc(fBlock, static_cast<MCSize>(capacity)));
  if (!block) {
    return false;
  }
  fBlock = block;
  fStart = block;
  fCapacity = static_cast<int32>(capacity);
  return true;
}

TMCStream& TMCMemoryStream::Write(const void* inBuffer, int32 count) {
  if (!BeginWrite()) {
    return *this;
  }
  if (count < 0 || (!inBuffer && count > 0)) {
    StreamFail(kStreamBadBuffer);
    return *this;
  }
  const int64 end = int64{fCursor} + count;
  if (end > fCapacity && !GrowTo(end)) {
    StreamFail(kStreamBadPosition);
    return *this;
  }
  if (count > 0) {
    MCMemoryCopy(fStart + fCursor, inBuffer, static_cast<MCSize>(count));
    fCursor = static_cast<int32>(end);
    fSize = std::max(fSize, fCursor);
  }
  return *this;
}

}  // namespace qlx
