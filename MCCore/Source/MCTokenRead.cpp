// Values behind their ids.
#include <algorithm>
#include <iterator>

#include "MCCountedPtr.h"
#include "MCString.h"
#include "MCTokenLexer.h"

namespace qlx::MCToken {

namespace {

using tokens::ThrowToken;

template <class Value>
Value ReadValue(TMCStream& ioStream, TMCStream& (TMCStream::*inReader)(Value&)) {
  Value value{};
  (ioStream.*inReader)(value);
  if (ioStream.fail()) {
    ThrowToken(ioStream.eof() ? MC_E_EOF : MC_E_BADTOKEN, __LINE__);
  }
  return value;
}

// A byte read as a value does not fail at the end of the stream, it is missing.
template <class Value>
Value ReadByteValue(TMCStream& ioStream, TMCStream& (TMCStream::*inReader)(Value&)) {
  const Value value = ReadValue(ioStream, inReader);
  if (ioStream.eof()) {
    ThrowToken(MC_E_EOF, __LINE__);
  }
  return value;
}

template <class Value>
void ReadValues(TMCStream& ioStream, TMCStream& (TMCStream::*inReader)(Value&), Value* outValues, uint32 inCount) {
  for (uint32 i = 0; i < inCount; ++i) {
    if (i > 0) {
      uint8 byte = 0;
      ioStream.GetByte(byte);
      if (ioStream.eof()) {
        ThrowToken(MC_E_EOF, __LINE__);
      }
      if (byte != ',') {
        ThrowToken(MC_E_BADTOKEN, __LINE__);
      }
    }
    outValues[i] = ReadValue(ioStream, inReader);
  }
}

// ASCII is the same in every encoding, and most texts are nothing else.
bool IsAscii(const char* inText, uint32 inCount) {
  return std::all_of(inText, inText + inCount, [](char byte) { return static_cast<uint8>(byte) < 0x80; });
}

void Decode(const Buffer& inText, uint32 inCount, const MCTextEncoding* inEncoding, TMCString& outText) {
  TMCCountedPtr<IMCTranscoder> transcoder;
  if (inEncoding && inEncoding->fCreateTranscoder && !IsAscii(inText, inCount)) {
    inEncoding->fCreateTranscoder(transcoder.WriteInto());
  }
  if (transcoder) {
    outText.FromTranscoded(reinterpret_cast<const uint8*>(inText), transcoder.Get());
  } else {
    outText = inText;
  }
}

}  // namespace

void ReadString(TMCStream& inStream, TMCString& outText) {
  Buffer buffer;
  uint32 count = 0;
  const Kind kind = tokens::NeedToken(inStream, buffer, &count);
  if (kind != Kind::kWord && kind != Kind::kString) {
    ThrowToken(MC_E_BADTOKEN, __LINE__);
  }
  Decode(buffer, count, inStream.GetEncoding(), outText);
  outText.ImportTranslated();
}

void ReadLongString(TMCStream& inStream, TMCDynamicString& outText, bool translate) {
  MCByteArray bytes;
  MCStreamReader reader(inStream);
  int byte = reader.Get();
  while (byte != '"' && byte != MCStreamReader::kEnd) {
    byte = reader.Get();
  }
  if (byte == MCStreamReader::kEnd || !ReadQuoted(reader, bytes)) {
    ThrowToken(MC_E_EOF, __LINE__);
  }
  outText.Assign(bytes.AsText(), bytes.GetElemCount());
  if (translate) {
    outText.ImportTranslated();
  }
}

int8 ReadInt8(TMCStream& inStream) {
  return ReadByteValue(inStream, &TMCStream::ReadInt8);
}

uint8 ReadUInt8(TMCStream& inStream) {
  return ReadByteValue(inStream, &TMCStream::ReadUInt8);
}

int16 ReadInt16(TMCStream& inStream) {
  return ReadValue(inStream, &TMCStream::ReadInt16);
}

uint16 ReadUInt16(TMCStream& inStream) {
  return ReadValue(inStream, &TMCStream::ReadUInt16);
}

int32 ReadInt32(TMCStream& inStream) {
  return ReadValue(inStream, &TMCStream::ReadInt32);
}

uint32 ReadUInt32(TMCStream& inStream) {
  return ReadValue(inStream, &TMCStream::ReadUInt32);
}

real32 ReadFloat(TMCStream& inStream) {
  return ReadValue(inStream, &TMCStream::ReadFloat);
}

real64 ReadDouble(TMCStream& inStream) {
  return ReadValue(inStream, &TMCStream::ReadDouble);
}

bool ReadBool(TMCStream& inStream) {
  return ReadUInt32(inStream) != 0;
}

MCPoint ReadPoint(TMCStream& inStream) {
  int32 values[2];
  ReadValues(inStream, &TMCStream::ReadInt32, values, std::size(values));
  return {values[0], values[1]};
}

MCRect ReadRect(TMCStream& inStream) {
  int32 values[4];
  ReadValues(inStream, &TMCStream::ReadInt32, values, std::size(values));
  return {values[1], values[0], values[3], values[2]};
}

MCID ReadIdValue(TMCStream& inStream) {
  return ReadTokenId(inStream);
}

void ReadUInt16Array(TMCStream& inStream, uint16* outValues, uint32 inCount) {
  ReadValues(inStream, &TMCStream::ReadUInt16, outValues, inCount);
}

void ReadUInt32Array(TMCStream& inStream, uint32* outValues, uint32 inCount) {
  ReadValues(inStream, &TMCStream::ReadUInt32, outValues, inCount);
}

void ReadFloatArray(TMCStream& inStream, real32* outValues, uint32 inCount) {
  ReadValues(inStream, &TMCStream::ReadFloat, outValues, inCount);
}

}  // namespace qlx::MCToken
