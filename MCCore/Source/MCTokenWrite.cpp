// Lines: groups and values.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "MCStreamText.h"
#include "MCString.h"
#include "MCToken.h"
#include "MCTokenLines.h"

namespace qlx {

namespace tokens {

void WriteIndentation(TMCStream& ioStream) {
  static constexpr char kBlanks[] = "                                                                ";
  const MCTokenState& state = MCToken::GetState(ioStream);
  for (int32 left = state.indent == 1 ? state.depth : 0; left > 0;) {
    const int32 part = std::min<int32>(left, sizeof kBlanks - 1);
    ioStream.Write(kBlanks, part);
    left -= part;
  }
}

void BeginLine(TMCStream& ioStream, MCID inID) {
  WriteIndentation(ioStream);
  MCToken::WriteTokenId(ioStream, inID);
  ioStream.Write(" ", 1);
}

}  // namespace tokens

namespace MCToken {

namespace {

using tokens::BeginLine;
using tokens::WriteIndentation;

// Depth is counted on streams that are indented, and so never in the shared record.
void ChangeDepth(TMCStream& ioStream, int32 inStep) {
  if (GetState(ioStream).indent == 1) {
    if (MCTokenState* const state = EditState(ioStream)) {
      state->depth += inStep;
    }
  }
}

template <class Value>
void WriteLine(TMCStream& ioStream, MCID inID, TMCStream& (TMCStream::*inWriter)(Value), Value inValue) {
  BeginLine(ioStream, inID);
  (ioStream.*inWriter)(inValue);
  ioStream.Apply(endl);
}

template <class Value>
void WriteValues(TMCStream& ioStream, TMCStream& (TMCStream::*inWriter)(Value), const Value* inValues, uint32 inCount) {
  for (uint32 i = 0; i < inCount; ++i) {
    if (i > 0) {
      ioStream.Write(",", 1);
    }
    (ioStream.*inWriter)(inValues[i]);
  }
}

template <class Value>
void WriteArray(TMCStream& ioStream, MCID inID, TMCStream& (TMCStream::*inWriter)(Value), const Value* inValues,
                uint32 inCount) {
  BeginLine(ioStream, inID);
  WriteValues(ioStream, inWriter, inValues, inCount);
  ioStream.Apply(endl);
}

}  // namespace

int32 BeginToken(TMCStream& inStream, MCID inID, bool wantPosition) {
  WriteIndentation(inStream);
  WriteTokenId(inStream, inID);
  const int32 position = wantPosition ? inStream.Tell() : 0;
  inStream.WriteText(GetState(inStream).compact == 1 ? "{" : " {").Apply(endl);
  ChangeDepth(inStream, 1);
  return position;
}

void BeginSection(TMCStream& inStream) {
  WriteIndentation(inStream);
  inStream.Write("{", 1).Apply(endl);
  ChangeDepth(inStream, 1);
}

// The closing line still stands at the depth of the group's content.
void EndToken(TMCStream& inStream) {
  WriteIndentation(inStream);
  inStream.Write("}", 1).Apply(endl);
  ChangeDepth(inStream, -1);
}

void WriteString(TMCStream& inStream, MCID inID, const TMCString& inText, bool translate) {
  WriteIndentation(inStream);
  WriteTokenId(inStream, inID);
  if (GetState(inStream).compact != 1) {
    inStream.Write(" ", 1);
  }
  if (translate) {
    TMCDynamicString text(inText);
    text.ExportTranslated(text);
    WriteQuoted(inStream, text.CStr(), text.ByteLength());
  } else {
    WriteQuoted(inStream, inText.CStr(), inText.ByteLength());
  }
  inStream.Apply(endl);
}

void WriteInt8(TMCStream& inStream, MCID inID, int8 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteInt8, inValue);
}

void WriteUInt8(TMCStream& inStream, MCID inID, uint8 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteUInt8, inValue);
}

void WriteInt16(TMCStream& inStream, MCID inID, int16 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteInt16, inValue);
}

void WriteUInt16(TMCStream& inStream, MCID inID, uint16 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteUInt16, inValue);
}

void WriteInt32(TMCStream& inStream, MCID inID, int32 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteInt32, inValue);
}

void WriteUInt32(TMCStream& inStream, MCID inID, uint32 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteUInt32, inValue);
}

void WriteFloat(TMCStream& inStream, MCID inID, real32 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteFloat, inValue);
}

void WriteDouble(TMCStream& inStream, MCID inID, real64 inValue) {
  WriteLine(inStream, inID, &TMCStream::WriteDouble, inValue);
}

void WriteBool(TMCStream& inStream, MCID inID, bool inValue) {
  WriteUInt32(inStream, inID, inValue ? 1 : 0);
}

void WritePoint(TMCStream& inStream, MCID inID, const MCPoint& inValue) {
  const int32 values[] = {inValue.fFirst, inValue.fSecond};
  WriteArray(inStream, inID, &TMCStream::WriteInt32, values, std::size(values));
}

void WriteRect(TMCStream& inStream, MCID inID, const MCRect& inValue) {
  const int32 values[] = {inValue.fSecond, inValue.fFirst, inValue.fFourth, inValue.fThird};
  WriteArray(inStream, inID, &TMCStream::WriteInt32, values, std::size(values));
}

void WriteIdValue(TMCStream& inStream, MCID inID, MCID inValue) {
  BeginLine(inStream, inID);
  WriteTokenId(inStream, inValue);
  inStream.Apply(endl);
}

void WriteUInt16Array(TMCStream& inStream, MCID inID, const uint16* inValues, uint32 inCount) {
  WriteArray(inStream, inID, &TMCStream::WriteUInt16, inValues, inCount);
}

void WriteUInt32Array(TMCStream& inStream, MCID inID, const uint32* inValues, uint32 inCount) {
  WriteArray(inStream, inID, &TMCStream::WriteUInt32, inValues, inCount);
}

void WriteFloatArray(TMCStream& inStream, MCID inID, const real32* inValues, uint32 inCount) {
  if (inID == 0) {
    WriteValues(inStream, &TMCStream::WriteFloat, inValues, inCount);
  } else {
    WriteArray(inStream, inID, &TMCStream::WriteFloat, inValues, inCount);
  }
}

}  // namespace MCToken
}  // namespace qlx
