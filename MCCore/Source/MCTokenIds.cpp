#include "MCTokenLexer.h"

namespace qlx::MCToken {

namespace {

constexpr MCID kBlankID = 0x20202020;
constexpr MCTokenState kDefaultState;

constexpr uint8 ByteOfID(MCID inID, int inIndex) {
  return static_cast<uint8>(inID >> (24 - 8 * inIndex));
}

constexpr MCID WithByte(MCID inID, int inIndex, uint8 inByte) {
  const int shift = 24 - 8 * inIndex;
  return (inID & ~(MCID{0xFF} << shift)) | (MCID{inByte == '\'' ? uint8{0} : inByte} << shift);
}

void ReportComma(bool inIsComma) {
  MC_ASSERT_TEXT(!inIsComma, "c != tCOMMA");
}

}  // namespace

const MCTokenState& GetState(const TMCStream& inStream) noexcept {
  const auto* const state = static_cast<const MCTokenState*>(inStream.GetInfo(kStateKey));
  return state ? *state : kDefaultState;
}

MCTokenState* EditState(TMCStream& inStream) noexcept {
  // A record that is there belongs to this stream, and so may be changed.
  if (const void* const own = inStream.GetInfo(kStateKey)) {
    return static_cast<MCTokenState*>(const_cast<void*>(own));
  }
  return static_cast<MCTokenState*>(inStream.SetInfo(kStateKey, &kDefaultState, sizeof kDefaultState));
}

void SetTokenValue(TMCStream& inStream, int32 inValue) noexcept {
  if (MCTokenState* const state = EditState(inStream)) {
    state->tokenValue = inValue;
  }
}

int32 GetTokenValue(const TMCStream& inStream) noexcept {
  return GetState(inStream).tokenValue;
}

MCID MakeToken(const char* inText) noexcept {
  MCID id = kBlankID;
  for (int i = 0; i < 4 && inText && inText[i] != 0; ++i) {
    id = WithByte(id, i, static_cast<uint8>(inText[i]));
  }
  return id;
}

MCID ReadTokenId(TMCStream& inStream) {
  MCStreamReader reader(inStream);
  MCID id = kBlankID;
  int byte = reader.SkipBlanks();
  ReportComma(byte == ',');
  for (int i = 0; i < 4; ++i) {
    if (i > 0) {
      byte = reader.Get();
    }
    if (byte == MCStreamReader::kEnd) {
      tokens::ThrowToken(MC_E_EOF, __LINE__);
    }
    if (byte == ',') {
      reader.PutBack(byte);
      break;
    }
    if (IsBlank(byte)) {
      break;
    }
    id = WithByte(id, i, static_cast<uint8>(byte));
  }
  return id;
}

void WriteTokenId(TMCStream& inStream, MCID inID, bool dropBlanks) {
  char text[4];
  int32 count = 0;
  for (; count < 4; ++count) {
    const uint8 byte = ByteOfID(inID, count);
    if (dropBlanks && byte == ' ') {
      break;
    }
    ReportComma(byte == ',');
    text[count] = byte == 0 ? '\'' : static_cast<char>(byte);
  }
  inStream.Write(text, count);
}

}  // namespace qlx::MCToken
