// A resource read through the stream interface.
#pragma once

#include "MCResource.h"
#include "MCStream.h"

namespace qlx {

// Shares the resource while it lives, and copies nothing. Read alone; when the resource is replaced by a shorter one
// the cursor stands at its end at most, and when its file is closed the stream is empty.
class MCResourceStream : public TMCStream {
 public:
  explicit MCResourceStream(MCResource* inShared) noexcept : TMCStream(kStreamReadable), fResource(inShared) {}

  int32 GetLength() const noexcept { return fResource ? static_cast<int32>(fResource->GetSize()) : 0; }

  int32 Tell() const override { return fCursor < GetLength() ? fCursor : GetLength(); }
  TMCStream& Seek(int32 offset, int32 origin) override;
  TMCStream& Read(void* outBuffer, int32 count) override;
  TMCStream& GetByte(uint8& outByte) override { return Read(&outByte, 1); }
  // Takes the byte that is there and no other.
  TMCStream& PutBack(uint8 inByte) override;
  // Always fails: data is replaced through the file.
  TMCStream& Write(const void* inBuffer, int32 count) override;

 private:
  MCSharedResource fResource;
  int32 fCursor = 0;
};

}  // namespace qlx
