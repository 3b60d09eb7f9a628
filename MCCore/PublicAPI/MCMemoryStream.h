// A stream on memory: a block of its own that grows, or a view of memory that stays someone else's.
#pragma once

#include "MCStream.h"

namespace qlx {

class TMCMemoryStream : public TMCStream {
 public:
  // A block of 4096 bytes, empty, for reading and writing.
  TMCMemoryStream() noexcept;
  // The bytes of a text, to be read alone. The text must outlive the stream and not change.
  explicit TMCMemoryStream(const TMCString& inText) noexcept;
  // Memory that must outlive the stream. A size of 0 on memory that is only read is the length of the C string there.
  // A null pointer with a size fails with `kStreamBadBuffer`, a size that is not positive on memory to be written with
  // `kStreamWrongMode`; the stream is then empty.
  TMCMemoryStream(void* inMemory, int32 inSize, uint32 inMode) noexcept;
  ~TMCMemoryStream() override;

  int32 Tell() const override { return fCursor; }
  TMCStream& Seek(int32 offset, int32 origin) override;
  TMCStream& Read(void* outBuffer, int32 count) override;
  TMCStream& GetByte(uint8& outByte) override;
  // At the start it fails. A stream that is only read takes the byte that is there and no other.
  TMCStream& PutBack(uint8 inByte) override;
  // A block of the stream's own grows; a write past the end of any other fails.
  TMCStream& Write(const void* inBuffer, int32 count) override;

  const uint8* GetData() const noexcept { return fStart; }
  // -1 once the block was handed over.
  int32 GetSize() const noexcept { return fSize; }
  int32 GetCapacity() const noexcept { return fCapacity; }
  // Hands the block over to the caller, who frees it with `MCfree`; null when the memory is someone else's. The stream
  // is of no use afterwards.
  uint8* DetachBlock() noexcept;

 private:
  friend class MCStreamReader;

  void SetView(void* inMemory, int32 inSize) noexcept;
  bool GrowTo(int64 inNeeded) noexcept;
  int32 BytesLeft() const noexcept { return fCursor < fSize ? fSize - fCursor : 0; }

  uint8* fStart = nullptr;
  int32 fSize = 0;
  int32 fCapacity = 0;
  int32 fCursor = 0;
  uint8* fBlock = nullptr;
};

}  // namespace qlx
