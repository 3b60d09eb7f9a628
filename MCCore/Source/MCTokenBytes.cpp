// Bytes in tokens: hex lines, binary blocks, and the data inside them.
#include <algorithm>

#include "MCTokenDigits.h"
#include "MCTokenLexer.h"
#include "MCTokenLines.h"

namespace qlx::MCToken {

namespace {

using tokens::HexValue;
using tokens::kHexDigits;
using tokens::ThrowToken;

constexpr uint32 kLineBytes = 64;

void WriteHexDigits(TMCStream& ioStream, const uint8* inData, uint32 inCount) {
  char digits[2 * kLineBytes];
  while (inCount > 0) {
    const uint32 part = std::min(inCount, kLineBytes);
    for (uint32 i = 0; i < part; ++i) {
      digits[2 * i] = kHexDigits[inData[i] >> 4];
      digits[2 * i + 1] = kHexDigits[inData[i] & 0x0F];
    }
    ioStream.Write(digits, static_cast<int32>(2 * part));
    inData += part;
    inCount -= part;
  }
}

int NeedHexValue(int inByte) {
  const int value = HexValue(inByte);
  if (value < 0) {
    ThrowToken(MC_E_BADTOKEN, __LINE__);
  }
  return value;
}

// Bytes of one line, at most `inRoom`.
uint32 DecodeHexLine(const char* inDigits, uint32 inDigitCount, uint8* outData, uint32 inRoom) {
  uint32 count = 0;
  int high = -1;
  for (uint32 i = 0; i < inDigitCount && count < inRoom; ++i) {
    if (inDigits[i] == '\r' || inDigits[i] == '\n') {
      continue;
    }
    const int value = NeedHexValue(static_cast<uint8>(inDigits[i]));
    if (high < 0) {
      high = value;
    } else {
      outData[count++] = static_cast<uint8>(high << 4 | value);
      high = -1;
    }
  }
  if (high >= 0) {
    ThrowToken(MC_E_BADTOKEN, __LINE__);  // half a byte
  }
  return count;
}

int NextRawDigit(MCStreamReader& ioReader) {
  int byte = ioReader.Get();
  while (byte == '\r' || byte == '\n') {
    byte = ioReader.Get();
  }
  if (byte == MCStreamReader::kEnd) {
    ThrowToken(MC_E_EOF, __LINE__);
  }
  return NeedHexValue(byte);
}

}  // namespace

void WriteHexData(TMCStream& inStream, MCID inID, uint32 inCount, const void* inData) {
  const auto* data = static_cast<const uint8*>(inData);
  uint32 left = inCount;
  MCID id = inID;
  do {
    const uint32 part = std::min(left, kLineBytes);
    tokens::BeginLine(inStream, id);
    WriteHexDigits(inStream, data, part);
    inStream.Apply(endl);
    data += part;
    left -= part;
    id = kMoreID;
  } while (left > 0);
}

void ReadHexData(TMCStream& inStream, uint32 inCount, void* outData) {
  auto* data = static_cast<uint8*>(outData);
  uint32 left = inCount;
  while (left > 0) {
    if (left < inCount && ReadTokenId(inStream) != kMoreID) {
      ThrowToken(MC_E_BADTOKEN, __LINE__);
    }
    Buffer line;
    uint32 digits = 0;
    const Kind kind = tokens::NeedToken(inStream, line, &digits);
    const uint32 part = kind == Kind::kBlock ? 0 : DecodeHexLine(line, digits, data, std::min(left, kLineBytes));
    if (part == 0) {
      ThrowToken(MC_E_BADTOKEN, __LINE__);
    }
    data += part;
    left -= part;
  }
}

void BeginBinaryBlock(TMCStream& inStream, MCID inID, uint32 inLength) {
  char header[10];
  header[0] = '$';
  for (uint32 i = 0; i < 8; ++i) {
    header[1 + i] = kHexDigits[inLength >> (28 - 4 * i) & 0x0F];
  }
  header[9] = '\r';
  tokens::BeginLine(inStream, inID);
  inStream.Write(header, sizeof header);
  if (GetState(inStream).pending != 0) {  // never in the shared record
    if (MCTokenState* const state = EditState(inStream)) {
      state->pending = 0;
    }
  }
}

void EndBinaryBlock(TMCStream& inStream) {
  inStream.Write("$", 1).Apply(endl);
}

uint32 ReadBinaryBlock(TMCStream& inStream) {
  MCStreamReader reader(inStream);
  const int first = reader.SkipBlanks();
  if (first == MCStreamReader::kEnd) {
    ThrowToken(MC_E_EOF, __LINE__);
  }
  if (first != '$') {
    reader.PutBack(first);
    ThrowToken(MC_E_BADTOKEN, __LINE__);
  }
  const uint32 length = tokens::ReadBlockLength(reader);
  if (reader.Get() == MCStreamReader::kEnd) {  // the CR
    ThrowToken(MC_E_EOF, __LINE__);
  }
  return length;
}

void ReadBinaryBlockEnd(TMCStream& inStream) {
  MCStreamReader reader(inStream);
  if (!tokens::SkipPastDollar(reader)) {
    ThrowToken(MC_E_EOF, __LINE__);
  }
}

void WriteRawHex(TMCStream& inStream, const void* inData, uint32 inCount, bool asBytes) {
  const auto* const data = static_cast<const uint8*>(inData);
  if (!asBytes) {
    WriteHexDigits(inStream, data, inCount);
  } else if (inCount > 0x7FFFFFFF) {
    inStream.StreamFail(kStreamBadBuffer);
  } else {
    inStream.Write(data, static_cast<int32>(inCount));
  }
}

void ReadRawHex(TMCStream& inStream, void* outData, uint32 inCount, bool asBytes) {
  if (asBytes) {
    const auto count = static_cast<int32>(std::min<uint32>(inCount, 0x7FFFFFFF));
    inStream.Read(outData, count);
    if (static_cast<uint32>(inStream.gcount()) != inCount) {
      ThrowToken(MC_E_EOF, __LINE__);
    }
    return;
  }
  auto* const data = static_cast<uint8*>(outData);
  MCStreamReader reader(inStream);
  for (uint32 i = 0; i < inCount; ++i) {
    const int high = NextRawDigit(reader);
    data[i] = static_cast<uint8>(high << 4 | NextRawDigit(reader));
  }
}

}  // namespace qlx::MCToken
