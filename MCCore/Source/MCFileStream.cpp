#include "MCFileStream.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include "MCFilePath.h"
#include "MCMemory.h"
#include "MCString.h"

namespace qlx {

namespace {

constexpr int64 kLargestLength = std::numeric_limits<int32>::max();

std::ios::openmode OpenMode(uint32 inMode, bool inIsThere) {
  const bool reads = (inMode & kStreamReadable) != 0;
  const bool writes = (inMode & kStreamWritable) != 0;
  std::ios::openmode mode = std::ios::binary | std::ios::in;  // a file to be written is read, too, where it is buffered
  if (writes) {
    mode |= std::ios::out;
  }
  return writes && (!reads || !inIsThere) ? mode | std::ios::trunc : mode;
}

}  // namespace

TMCFileStream::~TMCFileStream() {
  Close();
}

void TMCFileStream::Close() noexcept {
  Flush();
  delete std::exchange(fFile, nullptr);
  MCfree(std::exchange(fBuffer, nullptr));
  fBufferCapacity = fBufferLength = fBufferCursor = fBufferPosition = fLength = 0;
  fBufferChanged = false;
  fBufferFailed = false;
  fMarkByteCount = 0;
  fMode = 0;
}

MCResult TMCFileStream::Open(const TMCString& inPath, uint32 inMode, int32 inBufferSize, bool* outCreated) {
  Close();
  fState = 0;
  bool created = false;
  MCResult result = MC_E_NOTVALID;
  try {
    result = OpenFile(inPath, inMode, created);
    if (result == MC_S_OK) {
      result = AllocateBuffer(inBufferSize);
    }
  } catch (const std::bad_alloc&) {
    result = MC_E_OUTOFMEMORY;
  } catch (const std::exception&) {
    result = MC_E_NOTVALID;  // a path that is no UTF-8, say
  }
  if (outCreated) {
    *outCreated = created;
  }
  if (result != MC_S_OK) {
    Close();
    fState |= kStreamFailed;
  }
  return result;
}

MCResult TMCFileStream::OpenFile(const TMCString& inPath, uint32 inMode, bool& outCreated) {
  const std::filesystem::path path = PathOfText({inPath.CStr(), inPath.ByteLength()});
  std::error_code problem;
  const auto status = std::filesystem::status(path, problem);
  const bool isThere = std::filesystem::exists(status);
  if (!isThere && ((inMode & kStreamWritable) == 0 || (inMode & kStreamMustExist) != 0)) {
    return MC_E_FILENOTFOUND;
  }
  if (std::filesystem::is_directory(status) || (inMode & (kStreamReadable | kStreamWritable)) == 0) {
    return MC_E_NOTVALID;
  }
  fFile = new std::filebuf;
  fFile->pubsetbuf(nullptr, 0);  // the stream has its own
  if (!fFile->open(path, OpenMode(inMode, isThere))) {
    return isThere ? MC_E_NOTVALID : MC_E_FILENOTFOUND;
  }
  outCreated = !isThere;
  fMode = inMode;
  return MeasureFile();
}

MCResult TMCFileStream::MeasureFile() {
  const std::streamoff length = fFile->pubseekoff(0, std::ios::end);
  if (length < 0 || length > kLargestLength) {
    return MC_E_NOTVALID;
  }
  fLength = static_cast<int32>(length);
  if (fLength > 0) {
    ReadMark();
  } else if ((fMode & kStreamWritable) != 0) {
    WriteMark();
  }
  fLength -= length > 0 ? fMarkByteCount : 0;
  return fail() ? MC_E_NOTVALID : MC_S_OK;
}

void TMCFileStream::ReadMark() {
  for (const MCTextEncoding* encoding : {fEncoding, fEncoding ? fEncoding->fIfMarked : nullptr}) {
    uint8 mark[sizeof fEncoding->fMark];
    const int32 count = encoding ? encoding->fMarkByteCount : 0;
    if (count > 0 && ReadFile(mark, count, 0) == count && std::equal(mark, mark + count, encoding->fMark)) {
      fEncoding = encoding;
      fMarkByteCount = encoding->fMarkByteCount;
      return;
    }
  }
}

void TMCFileStream::WriteMark() {
  if (!MC_ASSERT(fEncoding) || fEncoding->fMarkByteCount == 0) {
    return;
  }
  if (WriteFile(fEncoding->fMark, fEncoding->fMarkByteCount, 0)) {
    fMarkByteCount = fEncoding->fMarkByteCount;
  } else {
    StreamFail(kStreamBadPosition);
  }
}

MCResult TMCFileStream::AllocateBuffer(int32 inBufferSize) noexcept {
  for (int32 size = inBufferSize; size > 0; size /= 2) {
    fBuffer = static_cast<uint8*>(MCmalloc(static_cast<MCSize>(size)));
    if (fBuffer) {
      fBufferCapacity = size;
      return MC_S_OK;
    }
  }
  return inBufferSize > 0 ? MC_E_OUTOFMEMORY : MC_S_OK;
}

// ---- the file below the buffer ----

int32 TMCFileStream::ReadFile(void* outBytes, int32 count, int32 inPosition) noexcept {
  try {
    if (fFile->pubseekpos(std::streamoff{inPosition} + fMarkByteCount) < 0) {
      return 0;
    }
    return static_cast<int32>(fFile->sgetn(static_cast<char*>(outBytes), count));
  } catch (...) {
    return 0;  // a disk that cannot be read
  }
}

bool TMCFileStream::WriteFile(const void* inBytes, int32 count, int32 inPosition) noexcept {
  try {
    return fFile->pubseekpos(std::streamoff{inPosition} + fMarkByteCount) >= 0 &&
           fFile->sputn(static_cast<const char*>(inBytes), count) == count && fFile->pubsync() == 0;
  } catch (...) {
    return false;
  }
}

bool TMCFileStream::WriteBuffer() noexcept {
  if (!std::exchange(fBufferChanged, false)) {
    return true;
  }
  if (WriteFile(fBuffer, fBufferLength, fBufferPosition)) {
    return true;
  }
  fBufferFailed = true;
  StreamFail(kStreamBadPosition);
  return false;
}

void TMCFileStream::Flush() noexcept {
  if (fFile) {
    WriteBuffer();
  }
}

bool TMCFileStream::MoveBuffer(int32 inPosition) noexcept {
  const bool written = WriteBuffer();
  fBufferPosition = inPosition;
  fBufferLength = 0;
  fBufferCursor = 0;
  return written;
}

// True when there are bytes at the cursor.
bool TMCFileStream::FillBuffer() noexcept {
  if (fBufferCursor < fBufferLength) {
    return true;
  }
  if (!fBuffer || !MoveBuffer(Tell())) {
    return false;
  }
  fBufferLength = ReadFile(fBuffer, std::min(fBufferCapacity, fLength - fBufferPosition), fBufferPosition);
  return fBufferLength > 0;
}

// ---- the operations ----

TMCStream& TMCFileStream::Seek(int32 offset, int32 origin) {
  const int64 from = origin == kFromStart ? 0 : origin == kFromEnd ? fLength : Tell();
  const int64 place = from + offset;
  fState &= ~kStreamEnd;
  if (!fFile || place < 0 || place > fLength) {
    StreamFail(kStreamBadPosition);
    return *this;
  }
  if (place >= fBufferPosition && place <= int64{fBufferPosition} + fBufferLength) {
    fBufferCursor = static_cast<int32>(place - fBufferPosition);
  } else {
    MoveBuffer(static_cast<int32>(place));
  }
  if (place == fLength) {
    fState |= kStreamEnd;
  }
  return *this;
}

int32 TMCFileStream::ReadBytes(uint8* outBytes, int32 count) noexcept {
  const int32 wanted = std::min(count, fLength - Tell());
  if (!fBuffer) {
    const int32 moved = wanted > 0 ? ReadFile(outBytes, wanted, fBufferPosition) : 0;
    fBufferPosition += moved;
    return moved;
  }
  int32 moved = 0;
  while (moved < wanted && FillBuffer()) {
    const int32 part = std::min(wanted - moved, fBufferLength - fBufferCursor);
    MCMemoryCopy(outBytes + moved, fBuffer + fBufferCursor, static_cast<MCSize>(part));
    fBufferCursor += part;
    moved += part;
  }
  return moved;
}

TMCStream& TMCFileStream::Read(void* outBuffer, int32 count) {
  if (!BeginRead()) {
    return *this;
  }
  if (count < 0 || (!outBuffer && count > 0)) {
    StreamFail(kStreamBadBuffer);
    return *this;
  }
  return EndRead(ReadBytes(static_cast<uint8*>(outBuffer), count), count);
}

TMCStream& TMCFileStream::GetByte(uint8& outByte) {
  if (!BeginRead()) {
    return *this;
  }
  if (fBufferCursor < fBufferLength) {
    outByte = fBuffer[fBufferCursor++];
    return EndRead(1, 1);
  }
  return EndRead(ReadBytes(&outByte, 1), 1);
}

TMCStream& TMCFileStream::PutBack(uint8 inByte) {
  const int32 place = Tell() - 1;
  if (!fFile || place < 0) {
    StreamFail(kStreamBadPosition);
    return *this;
  }
  uint8 there = 0;
  Seek(place, kFromStart);
  ReadBytes(&there, 1);
  Seek(place, kFromStart);
  if (there != inByte) {
    Write(&inByte, 1);
    Seek(place, kFromStart);
  }
  return *this;
}

TMCStream& TMCFileStream::Write(const void* inBuffer, int32 count) {
  if (!BeginWrite()) {
    return *this;
  }
  if (count < 0 || (!inBuffer && count > 0)) {
    StreamFail(kStreamBadBuffer);
    return *this;
  }
  if (count > kLargestLength - fMarkByteCount - Tell()) {
    StreamFail(kStreamBadPosition);
    return *this;
  }
  const auto* bytes = static_cast<const uint8*>(inBuffer);
  if (!fBuffer) {
    if (count > 0 && !WriteFile(bytes, count, fBufferPosition)) {
      StreamFail(kStreamBadPosition);
      return *this;
    }
    fBufferPosition += count;
  } else {
    int32 left = count;
    while (left > 0) {
      if (fBufferCursor == fBufferCapacity && !MoveBuffer(Tell())) {
        return *this;
      }
      const int32 part = std::min(left, fBufferCapacity - fBufferCursor);
      MCMemoryCopy(fBuffer + fBufferCursor, bytes, static_cast<MCSize>(part));
      fBufferCursor += part;
      fBufferLength = std::max(fBufferLength, fBufferCursor);
      fBufferChanged = true;
      bytes += part;
      left -= part;
    }
  }
  fLength = std::max(fLength, Tell());
  return *this;
}

}  // namespace qlx
