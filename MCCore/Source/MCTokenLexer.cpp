#include "MCTokenLexer.h"

#include <algorithm>

#include "MCException.h"
#include "MCTokenDigits.h"

namespace qlx {

namespace tokens {

void ThrowToken(MCResult inCode, int32 inLine) {
  throw TMCException(inCode, "MCToken", inLine);
}

uint32 ReadBlockLength(MCStreamReader& ioReader) {
  uint32 length = 0;
  for (int digits = 0; digits < 8;) {
    const int byte = ioReader.Get();
    if (byte == MCStreamReader::kEnd) {
      ThrowToken(MC_E_EOF, __LINE__);
    }
    if (byte == '$') {
      ioReader.PutBack(byte);
      ThrowToken(MC_E_BADTOKEN, __LINE__);
    }
    const int value = HexValue(byte);
    if (value >= 0) {
      length = length << 4 | static_cast<uint32>(value);
      ++digits;
    }
  }
  return length;
}

bool SkipPastDollar(MCStreamReader& ioReader) {
  for (;;) {
    ioReader.TakeUpTo(std::find(ioReader.Next(), ioReader.WindowEnd(), '$'));
    const int byte = ioReader.Get();
    if (byte == MCStreamReader::kEnd || byte == '$') {
      return byte == '$';
    }
  }
}

bool SkipBlock(MCStreamReader& ioReader, uint32 inLength) {
  if (inLength != MCToken::kUnknownLength) {
    ioReader.Skip(uint64{inLength} + 1);
  }
  return SkipPastDollar(ioReader);
}

Kind NeedToken(TMCStream& inStream, MCToken::Buffer& outBuffer, uint32* outCount) {
  MCStreamReader reader(inStream);
  BufferSink sink(outBuffer, false);
  const Kind kind = ScanToken(reader, sink);
  sink.Finish();
  if (kind == Kind::kEnd) {
    ThrowToken(MC_E_EOF, __LINE__);
  }
  if (outCount) {
    *outCount = sink.GetCount();
  }
  return kind;
}

}  // namespace tokens

namespace MCToken {

MCResult ReadToken(TMCStream& inStream, Buffer& outBuffer, bool keepQuotes) {
  MCStreamReader reader(inStream);
  tokens::BufferSink sink(outBuffer, keepQuotes);
  const Kind kind = tokens::ScanToken(reader, sink);
  if (kind == Kind::kBlock) {
    tokens::TextByte(sink, '$');
  }
  sink.Finish();
  return kind == Kind::kEnd ? MC_E_EOF : MC_S_OK;
}

Kind PeekKind(TMCStream& inStream) {
  MCStreamReader reader(inStream);
  tokens::NoSink sink;
  const int first = tokens::SkipToToken(reader, sink);
  reader.PutBack(first);
  switch (first) {
    case MCStreamReader::kEnd:
      return Kind::kEnd;
    case '"':
      return Kind::kString;
    case '$':
      return Kind::kBlock;
    case '{':
      return Kind::kOpen;
    case '}':
      return Kind::kClose;
    default:
      return Kind::kWord;
  }
}

bool IsAtEnd(TMCStream& inStream) {
  const Kind kind = PeekKind(inStream);
  if (kind == Kind::kEnd) {
    tokens::ThrowToken(MC_E_EOF, __LINE__);
  }
  return kind == Kind::kClose;
}

void ReadBegin(TMCStream& inStream) {
  Buffer buffer;
  if (tokens::NeedToken(inStream, buffer) != Kind::kOpen) {
    tokens::ThrowToken(MC_E_BADTOKEN, __LINE__);
  }
}

void ReadEnd(TMCStream& inStream) {
  Buffer buffer;
  if (tokens::NeedToken(inStream, buffer) != Kind::kClose) {
    tokens::ThrowToken(MC_E_BADTOKEN, __LINE__);
  }
}

void SkipToken(TMCStream& inStream) {
  SkipToEnd(inStream, false);
}

void SkipToEnd(TMCStream& inStream, bool inside) {
  MCStreamReader reader(inStream);
  tokens::NoSink sink;
  if (!tokens::ScanGroup(reader, sink, inside ? 1 : 0, [](Kind) {})) {
    tokens::ThrowToken(MC_E_EOF, __LINE__);
  }
}

}  // namespace MCToken
}  // namespace qlx
