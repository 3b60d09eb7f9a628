#include "MCBinaryFileIO.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace qlx {

template <class Value>
TMCStream& MCBinaryFileIO::ReadBinary(Value& outValue) {
  uint8 bytes[sizeof(Value)] = {};
  Read(bytes, sizeof bytes);
  outValue = 0;
  if (gcount() < static_cast<int32>(sizeof bytes)) {
    StreamFail(kStreamPastEnd);
    return *this;
  }
  if (fByteOrder != 1) {
    std::reverse(std::begin(bytes), std::end(bytes));
  }
  std::memcpy(&outValue, bytes, sizeof bytes);
  return *this;
}

template <class Value>
TMCStream& MCBinaryFileIO::WriteBinary(Value inValue) {
  uint8 bytes[sizeof(Value)];
  std::memcpy(bytes, &inValue, sizeof bytes);
  if (fByteOrder != 1) {
    std::reverse(std::begin(bytes), std::end(bytes));
  }
  return Write(bytes, sizeof bytes);
}

TMCStream& MCBinaryFileIO::ReadDouble(real64& outValue) {
  return ReadBinary(outValue);
}
TMCStream& MCBinaryFileIO::ReadFloat(real32& outValue) {
  return ReadBinary(outValue);
}
TMCStream& MCBinaryFileIO::ReadInt16(int16& outValue) {
  return ReadBinary(outValue);
}
TMCStream& MCBinaryFileIO::ReadUInt16(uint16& outValue) {
  return ReadBinary(outValue);
}
TMCStream& MCBinaryFileIO::ReadInt32(int32& outValue) {
  return ReadBinary(outValue);
}
TMCStream& MCBinaryFileIO::ReadUInt32(uint32& outValue) {
  return ReadBinary(outValue);
}
TMCStream& MCBinaryFileIO::ReadInt8(int8& outValue) {
  return ReadBinary(outValue);
}
TMCStream& MCBinaryFileIO::ReadUInt8(uint8& outValue) {
  return ReadBinary(outValue);
}

TMCStream& MCBinaryFileIO::WriteDouble(real64 inValue) {
  return WriteBinary(inValue);
}
TMCStream& MCBinaryFileIO::WriteFloat(real32 inValue) {
  return WriteBinary(inValue);
}
TMCStream& MCBinaryFileIO::WriteInt16(int16 inValue) {
  return WriteBinary(inValue);
}
TMCStream& MCBinaryFileIO::WriteUInt16(uint16 inValue) {
  return WriteBinary(inValue);
}
TMCStream& MCBinaryFileIO::WriteInt32(int32 inValue) {
  return WriteBinary(inValue);
}
TMCStream& MCBinaryFileIO::WriteUInt32(uint32 inValue) {
  return WriteBinary(inValue);
}
TMCStream& MCBinaryFileIO::WriteInt8(int8 inValue) {
  return WriteBinary(inValue);
}
TMCStream& MCBinaryFileIO::WriteUInt8(uint8 inValue) {
  return WriteBinary(inValue);
}

}  // namespace qlx
