// A stream on a file. Position and length do not count the byte order mark at the start of a text file.
#pragma once

#include <fstream>

#include "MCStream.h"

namespace qlx {

class TMCFileStream : public TMCStream {
 public:
  TMCFileStream() noexcept : TMCStream(0) {}
  // Writes what is still in the buffer, as `Close` does.
  ~TMCFileStream() override;

  // `inPath` is UTF-8. `inMode` is made of the bits of `mode()`:
  //   readable               the file as it is
  //   readable and writable  the file as it is, from its start
  //   writable               an empty file
  // A missing file is created when it may be written, unless `kStreamMustExist` is set; `outCreated` (may be null)
  // tells. A buffer size of 0 or less means no buffer; without memory for it, half of it is tried, and so on. Answers
  // `MC_E_FILENOTFOUND`, `MC_E_OUTOFMEMORY`, or `MC_E_NOTVALID` for a file that cannot be opened or has 2 GiB; the
  // stream has then failed, too.
  MCResult Open(const TMCString& inPath, uint32 inMode, int32 inBufferSize, bool* outCreated) override;
  // Fails, like every write, when the bytes in the buffer cannot be written.
  void Close() noexcept;
  bool IsOpen() const noexcept { return fFile != nullptr; }
  void Flush() noexcept;
  int32 GetLength() const noexcept { return fLength; }

  int32 Tell() const override { return fBufferPosition + fBufferCursor; }
  TMCStream& Seek(int32 offset, int32 origin) override;
  TMCStream& Read(void* outBuffer, int32 count) override;
  TMCStream& GetByte(uint8& outByte) override;
  TMCStream& PutBack(uint8 inByte) override;
  TMCStream& Write(const void* inBuffer, int32 count) override;

 private:
  friend class MCStreamReader;

  MCResult OpenFile(const TMCString& inPath, uint32 inMode, bool& outCreated);
  MCResult AllocateBuffer(int32 inBufferSize) noexcept;
  MCResult MeasureFile();
  void ReadMark();
  void WriteMark();
  // The buffer is empty afterwards, at the cursor's place.
  bool MoveBuffer(int32 inPosition) noexcept;
  bool WriteBuffer() noexcept;
  bool FillBuffer() noexcept;
  int32 ReadFile(void* outBytes, int32 count, int32 inPosition) noexcept;
  bool WriteFile(const void* inBytes, int32 count, int32 inPosition) noexcept;
  int32 ReadBytes(uint8* outBytes, int32 count) noexcept;

  std::filebuf* fFile = nullptr;
  uint8* fBuffer = nullptr;
  int32 fBufferCapacity = 0;
  int32 fBufferLength = 0;    // bytes in the buffer
  int32 fBufferCursor = 0;    // among them
  int32 fBufferPosition = 0;  // of the buffer's first byte in the file
  int32 fLength = 0;
  bool fBufferChanged = false;  // holds bytes that the file has not
  bool fBufferFailed = false;   // such bytes could not be written; tried again at `Close` no more
};

}  // namespace qlx
