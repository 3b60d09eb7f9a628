// A file of binary numbers, in the byte order of the file.
#pragma once

#include "MCFileStream.h"

namespace qlx {

// Order 1 is the order of all targets of this system, the least significant byte first; with any other value the bytes
// of every number are swapped, on the way in and on the way out. A number that the end cuts fails with `kStreamPastEnd`
// and reads as 0.
class MCBinaryFileIO : public TMCFileStream {
 public:
  MCBinaryFileIO() noexcept { SetEncoding(&kBinaryEncoding); }

  int32 GetByteOrder() const noexcept { return fByteOrder; }
  void SetByteOrder(int32 inByteOrder) noexcept { fByteOrder = inByteOrder; }

  TMCStream& ReadDouble(real64& outValue) override;
  TMCStream& ReadFloat(real32& outValue) override;
  TMCStream& ReadInt16(int16& outValue) override;
  TMCStream& ReadUInt16(uint16& outValue) override;
  TMCStream& ReadInt32(int32& outValue) override;
  TMCStream& ReadUInt32(uint32& outValue) override;
  TMCStream& ReadInt8(int8& outValue) override;
  TMCStream& ReadUInt8(uint8& outValue) override;
  TMCStream& WriteDouble(real64 inValue) override;
  TMCStream& WriteFloat(real32 inValue) override;
  TMCStream& WriteInt16(int16 inValue) override;
  TMCStream& WriteUInt16(uint16 inValue) override;
  TMCStream& WriteInt32(int32 inValue) override;
  TMCStream& WriteUInt32(uint32 inValue) override;
  TMCStream& WriteInt8(int8 inValue) override;
  TMCStream& WriteUInt8(uint8 inValue) override;

 private:
  template <class Value>
  TMCStream& ReadBinary(Value& outValue);
  template <class Value>
  TMCStream& WriteBinary(Value inValue);

  int32 fByteOrder = 1;
};

}  // namespace qlx
