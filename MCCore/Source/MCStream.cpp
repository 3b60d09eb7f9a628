#include "MCStream.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "MCByteArray.h"
#include "MCNumberText.h"
#include "MCStreamText.h"
#include "MCString.h"

namespace qlx {

TMCStream::~TMCStream() {
  for (uint32 i = 0; i < fInfoCount; ++i) {
    MCfree(fInfos[i].fRecord);
  }
  MCfree(fInfos);
}

void TMCStream::StreamFail([[maybe_unused]] MCResult inCode) noexcept {
  fState |= kStreamFailed;
  MCAssert(__FILE_NAME__, __LINE__, "Stream throw TMCException");
}

void TMCStream::precision(int32 inDecimals) noexcept {
  fPrecision = std::clamp(inDecimals, 0, 15);
}

// ---- numbers ----

template <class Value>
TMCStream& TMCStream::ReadInteger(Value& outValue) {
  constexpr uint64 kLargest = std::numeric_limits<std::make_unsigned_t<Value>>::max();
  ScannedInteger number;
  {
    MCStreamReader reader(*this);
    number = ScanInteger(reader);
  }
  outValue = 0;
  if (!number.fHasDigit || number.fMagnitude > (number.fIsNegative ? kLargest / 2 + 1 : kLargest)) {
    StreamFail(kStreamBadNumber);
    return *this;
  }
  const auto bits = static_cast<std::make_unsigned_t<Value>>(number.fMagnitude);
  outValue = static_cast<Value>(number.fIsNegative ? 0U - bits : bits);
  return *this;
}

template <class Value>
TMCStream& TMCStream::WriteInteger(Value inValue) {
  char text[kIntegerTextRoom];
  return Write(text, FormatInteger(text, inValue));
}

TMCStream& TMCStream::ReadDouble(real64& outValue) {
  bool found = false;
  {
    MCStreamReader reader(*this);
    found = ScanReal(reader, outValue);
  }
  if (!found) {
    outValue = 0;
    StreamFail(kStreamBadNumber);
  }
  return *this;
}

TMCStream& TMCStream::ReadFloat(real32& outValue) {
  constexpr real64 kLargest = std::numeric_limits<real32>::max();
  constexpr real32 kInfinity = std::numeric_limits<real32>::infinity();
  real64 value = 0;
  TMCStream::ReadDouble(value);
  outValue = value > kLargest ? kInfinity : value < -kLargest ? -kInfinity : static_cast<real32>(value);
  return *this;
}

TMCStream& TMCStream::ReadInt16(int16& outValue) {
  return ReadInteger(outValue);
}

TMCStream& TMCStream::ReadUInt16(uint16& outValue) {
  return ReadInteger(outValue);
}

TMCStream& TMCStream::ReadInt32(int32& outValue) {
  return ReadInteger(outValue);
}

TMCStream& TMCStream::ReadUInt32(uint32& outValue) {
  return ReadInteger(outValue);
}

TMCStream& TMCStream::ReadInt8(int8& outValue) {
  uint8 byte = 0;
  TMCStream::ReadUInt8(byte);
  outValue = static_cast<int8>(byte);
  return *this;
}

TMCStream& TMCStream::ReadUInt8(uint8& outValue) {
  MCStreamReader reader(*this);
  const int byte = reader.SkipBlanks();
  outValue = static_cast<uint8>(byte == MCStreamReader::kEnd ? 0 : byte);
  return *this;
}

TMCStream& TMCStream::Apply(Manipulator inManipulator) {
  return inManipulator(*this);
}

TMCStream& TMCStream::WriteDouble(real64 inValue) {
  char text[kRealTextRoom];
  return Write(text, FormatReal(text, inValue, fPrecision));
}

TMCStream& TMCStream::WriteFloat(real32 inValue) {
  return WriteDouble(std::floor(static_cast<real64>(inValue) * 1e6 + 0.5) * 1e-6);
}

TMCStream& TMCStream::WriteInt16(int16 inValue) {
  return WriteInteger(inValue);
}

TMCStream& TMCStream::WriteUInt16(uint16 inValue) {
  return WriteInteger(inValue);
}

TMCStream& TMCStream::WriteInt32(int32 inValue) {
  return WriteInteger(inValue);
}

TMCStream& TMCStream::WriteUInt32(uint32 inValue) {
  return WriteInteger(inValue);
}

TMCStream& TMCStream::WriteInt8(int8 inValue) {
  return Write(&inValue, 1);
}

TMCStream& TMCStream::WriteUInt8(uint8 inValue) {
  return Write(&inValue, 1);
}

// ---- text ----

TMCStream& TMCStream::WriteText(const char* inText) {
  const MCSize length = inText ? std::strlen(inText) : 0;
  if (length > static_cast<MCSize>(std::numeric_limits<int32>::max())) {
    StreamFail(kStreamBadBuffer);
    return *this;
  }
  return Write(inText, static_cast<int32>(length));
}

TMCStream& TMCStream::ReadWord(char* outBuffer, int32 inRoom) {
  if (!outBuffer || inRoom < 1) {
    StreamFail(kStreamBadBuffer);
    return *this;
  }
  MCStreamReader reader(*this);
  int32 count = 0;
  int byte = reader.SkipBlanks();
  for (; byte != MCStreamReader::kEnd && !IsBlank(byte); byte = reader.Get()) {
    if (count < inRoom - 1) {
      outBuffer[count++] = static_cast<char>(byte);
    }
  }
  outBuffer[count] = 0;
  reader.PutBack(byte);
  return *this;
}

TMCStream& TMCStream::WriteTextValue(const char* inText) {
  WriteQuoted(*this, inText, inText ? std::strlen(inText) : 0);
  return *this;
}

TMCStream& TMCStream::WriteMCString(const TMCString& inText) {
  WriteQuoted(*this, inText.CStr(), inText.ByteLength());
  return *this;
}

TMCStream& TMCStream::ReadMCString(TMCString& outText) {
  MCByteArray bytes;
  bool whole = true;
  {
    MCStreamReader reader(*this);
    const int first = reader.SkipBlanks();
    if (first == '"') {
      whole = ReadQuoted(reader, bytes);
    } else {
      int byte = first;
      for (; byte != MCStreamReader::kEnd && !IsBlank(byte); byte = reader.Get()) {
        whole = bytes.AddElem(static_cast<uint8>(byte)) && whole;
      }
      reader.PutBack(byte);
    }
  }
  outText.Assign(bytes.AsText(), bytes.GetElemCount());
  if (!whole) {
    StreamFail(kStreamPastEnd);
  }
  return *this;
}

MCResult TMCStream::Open(const TMCString&, uint32, int32, bool*) {
  StreamFail(kStreamBadPosition);
  return kStreamBadPosition;
}

TMCStream& endl(TMCStream& inStream) {
  return inStream.Write("\r\n", 2);
}

TMCStream& ends(TMCStream& inStream) {
  return inStream.Write("", 1);
}

}  // namespace qlx
