// The byte stream of the system, with values as text on top of its bytes.
//
//   TMCMemoryStream   a block that grows, or a view of memory or of a text (MCMemoryStream.h)
//   TMCFileStream     a file, with or without a buffer (MCFileStream.h)
//   MCBinaryFileIO    a file whose numbers are binary (MCBinaryFileIO.h)
//
// Positions and counts are bytes, below 2 GiB. A call that fails says so in `state()` and through a report, never by
// throwing; every read clears the state first, so the state is that of the last read and of the writes after it.
//
// Numbers are decimal text, the same whatever the locale of the process. The one exception: 8-bit values are no numbers
// in the text but the byte itself.
#pragma once

#include "MCObject.h"
#include "MCTextEncoding.h"

namespace qlx {

class MCStreamReader;
class TMCString;

inline constexpr uint32 kStreamEnd = 1;  // bits of `state()`
inline constexpr uint32 kStreamFailed = 2;
inline constexpr uint32 kStreamReadable = 1;  // bits of `mode()`
inline constexpr uint32 kStreamWritable = 2;
inline constexpr uint32 kStreamMustExist = 1U << 6;  // a file that is missing is not created

enum : int32 { kFromStart = 0, kFromCursor = 1, kFromEnd = 2 };  // origins of `Seek`

// Why a call failed. Read in the source where `StreamFail` is called; not stored.
inline constexpr MCResult kStreamBadNumber = 0x4269;
inline constexpr MCResult kStreamBadPosition = 0x426A;
inline constexpr MCResult kStreamPastEnd = 0x426B;
inline constexpr MCResult kStreamWrongMode = 0x426C;
inline constexpr MCResult kStreamBadBuffer = 0x426D;

class TMCStream : public TMCObject {
 public:
  using Manipulator = TMCStream& (*)(TMCStream&);

  TMCStream(const TMCStream&) = delete;
  TMCStream& operator=(const TMCStream&) = delete;

  // The virtual operations stand in the order of their slots. Operations without another answer give the stream.
  virtual ~TMCStream();
  virtual int32 Tell() const = 0;
  // Lands anywhere from the start to the end; outside it fails and stays. Landing on the end is the end of file.
  virtual TMCStream& Seek(int32 offset, int32 origin) = 0;
  // Moves the bytes that there are, `gcount()` of them; fewer than asked for is the end of file.
  virtual TMCStream& Read(void* outBuffer, int32 count) = 0;
  virtual TMCStream& GetByte(uint8& outByte) = 0;
  // Moves back by one byte and stores the byte there.
  virtual TMCStream& PutBack(uint8 inByte) = 0;
  // All of the bytes or, on failure, none.
  virtual TMCStream& Write(const void* inBuffer, int32 count) = 0;

  // Readers skip blanks and leave the first byte that is not part of the number. Without a digit, or with a value that
  // no writer of this width (signed or not) writes, they fail with 0. A number that one of the two writers of its width
  // wrote reads back with the same bits: 65535 is -1 as `int16`.
  virtual TMCStream& ReadDouble(real64& outValue);
  virtual TMCStream& ReadFloat(real32& outValue);
  virtual TMCStream& ReadInt16(int16& outValue);
  virtual TMCStream& ReadUInt16(uint16& outValue);
  virtual TMCStream& ReadInt32(int32& outValue);
  virtual TMCStream& ReadUInt32(uint32& outValue);
  virtual TMCStream& ReadInt8(int8& outValue);  // the next byte that is no blank
  virtual TMCStream& ReadUInt8(uint8& outValue);
  virtual TMCStream& Apply(Manipulator inManipulator);
  // With `precision()` decimals, trailing zeros dropped. From 2147483647 on it is that number; a value that is no
  // number is reported and written as 0.
  virtual TMCStream& WriteDouble(real64 inValue);
  // Rounded to six decimals first.
  virtual TMCStream& WriteFloat(real32 inValue);
  virtual TMCStream& WriteInt16(int16 inValue);
  virtual TMCStream& WriteUInt16(uint16 inValue);
  virtual TMCStream& WriteInt32(int32 inValue);
  virtual TMCStream& WriteUInt32(uint32 inValue);
  virtual TMCStream& WriteInt8(int8 inValue);  // the byte itself
  virtual TMCStream& WriteUInt8(uint8 inValue);

  // The bytes of a text as they stand. Null writes nothing.
  virtual TMCStream& WriteText(const char* inText);
  // Skips blanks and takes the bytes up to the next; what does not fit into `inRoom` bytes with the NUL is dropped.
  virtual TMCStream& ReadWord(char* outBuffer, int32 inRoom);
  // A text between quotes, with `\` before each `\` and quote; `ReadMCString` reads it back, and a bare word too.
  virtual TMCStream& WriteTextValue(const char* inText);
  virtual TMCStream& WriteMCString(const TMCString& inText);
  virtual TMCStream& ReadMCString(TMCString& outText);

  // Files only (see TMCFileStream); every other stream fails with `kStreamBadPosition`.
  virtual MCResult Open(const TMCString& inPath, uint32 inMode, int32 inBufferSize, bool* outCreated);

  bool eof() const noexcept { return (fState & kStreamEnd) != 0; }
  bool fail() const noexcept { return (fState & kStreamFailed) != 0; }
  uint32 state() const noexcept { return fState; }
  void clear() noexcept { fState = 0; }
  uint32 mode() const noexcept { return fMode; }
  // Bytes that the last read moved.
  int32 gcount() const noexcept { return fGCount; }
  uint32 flags() const noexcept { return fFormatFlags; }
  void flags(uint32 inFlags) noexcept { fFormatFlags = inFlags; }
  // Decimals in text, 8 at first; kept between 0 and 15.
  int32 precision() const noexcept { return fPrecision; }
  void precision(int32 inDecimals) noexcept;
  // A second format value, which is stored and nothing more.
  int32 width() const noexcept { return fWidth; }
  void width(int32 inWidth) noexcept { fWidth = inWidth; }

  const MCTextEncoding* GetEncoding() const noexcept { return fEncoding; }
  // Before a file is opened: then its mark is written or skipped.
  void SetEncoding(const MCTextEncoding* inEncoding) noexcept { fEncoding = inEncoding; }
  uint8 GetMarkByteCount() const noexcept { return fMarkByteCount; }

  // Records that others keep with the stream, one a key; the stream owns its copy. `SetInfo` replaces an earlier one,
  // and answers its copy, or null without memory (the earlier one then stays).
  const void* GetInfo(uint32 inKey) const noexcept;
  void* SetInfo(uint32 inKey, const void* inRecord, uint32 inByteCount) noexcept;
  void RemoveInfo(uint32 inKey) noexcept;

  // Marks the stream as failed and reports "Stream throw TMCException". Despite these words nothing is thrown, and the
  // caller carries on.
  void StreamFail(MCResult inCode) noexcept;

 protected:
  explicit TMCStream(uint32 inMode) noexcept : fMode(inMode) {}

  // The start of every read. False when the stream is not readable.
  bool BeginRead() noexcept {
    fState = 0;
    fGCount = 0;
    return Allows(kStreamReadable);
  }
  bool BeginWrite() noexcept { return Allows(kStreamWritable); }
  // Answers a read that moved so many bytes of those asked for.
  TMCStream& EndRead(int32 inMoved, int32 inWanted) noexcept {
    fGCount = inMoved;
    fState |= inMoved < inWanted ? kStreamEnd : 0;
    return *this;
  }

  struct Info {
    uint32 fKey;
    void* fRecord;
  };
  Info* FindInfo(uint32 inKey) const noexcept;

  uint32 fFormatFlags = 0;
  uint32 fState = 0;
  uint32 fMode;
  int32 fPrecision = 8;
  int32 fWidth = 0;
  int32 fGCount = 0;
  Info* fInfos = nullptr;
  uint32 fInfoCount = 0;
  const MCTextEncoding* fEncoding = &kUtf8Encoding;
  uint8 fMarkByteCount = 0;

 private:
  friend class MCStreamReader;

  bool Allows(uint32 inMode) noexcept {
    if ((fMode & inMode) == 0) {
      StreamFail(kStreamWrongMode);
      return false;
    }
    return true;
  }
  template <class Value>
  TMCStream& ReadInteger(Value& outValue);
  template <class Value>
  TMCStream& WriteInteger(Value inValue);
};

// Manipulators. A line ends with CR and LF; a text that others read as C does, with one NUL.
TMCStream& endl(TMCStream& inStream);
TMCStream& ends(TMCStream& inStream);

}  // namespace qlx
