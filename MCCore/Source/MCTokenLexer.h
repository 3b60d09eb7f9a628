// The one lexer of the token format. What becomes of the bytes that it passes is its sink's affair:
//
//   Blank(byte)        a blank between tokens
//   Comment(byte)      a byte of a comment, from `#` to the line end that ends it
//   Mark(byte)         a quote or an escape of a text
//   Text(first, end)   bytes of the token itself, escapes undone
//
// A brace is one byte of text. Binary blocks are passed over and give no bytes.
#pragma once

#include <array>

#include "MCStreamReader.h"
#include "MCStreamText.h"
#include "MCToken.h"

namespace qlx::tokens {

using MCToken::Kind;

[[noreturn]] void ThrowToken(MCResult inCode, int32 inLine);

constexpr bool EndsWord(uint8 inByte) noexcept {
  return IsBlank(inByte) || inByte == '#' || inByte == '{' || inByte == '}' || inByte == '"';
}

inline constexpr auto kWordEnds = [] {
  std::array<bool, 256> ends{};
  for (int byte = 0; byte < 256; ++byte) {
    ends[static_cast<std::size_t>(byte)] = EndsWord(static_cast<uint8>(byte));
  }
  return ends;
}();

// Eight digits behind the `$`; what is neither digit nor capital hex letter is passed over. Throws at another `$`,
// which is left, and at the end.
uint32 ReadBlockLength(MCStreamReader& ioReader);

// Passes the CR and the data by their length, where it is known, and then everything up to the closing `$`. A length
// that points past the end is not believed: the block then ends at the next `$`. False at the end of the stream.
bool SkipBlock(MCStreamReader& ioReader, uint32 inLength);
bool SkipPastDollar(MCStreamReader& ioReader);

struct NoSink {
  void Blank(uint8) {}
  void Comment(uint8) {}
  void Mark(uint8) {}
  void Text(const uint8*, const uint8*) {}
};

template <class Sink>
void TextByte(Sink& ioSink, uint8 inByte) {
  ioSink.Text(&inByte, &inByte + 1);
}

// Up to the first byte of a token, which is taken; `kEnd` at the end.
template <class Sink>
int SkipToToken(MCStreamReader& ioReader, Sink& ioSink) {
  for (;;) {
    int byte = ioReader.Get();
    if (IsBlank(byte)) {
      ioSink.Blank(static_cast<uint8>(byte));
    } else if (byte == '#') {
      for (; byte != '\r' && byte != '\n'; byte = ioReader.Get()) {
        if (byte == MCStreamReader::kEnd) {
          return byte;
        }
        ioSink.Comment(static_cast<uint8>(byte));
      }
      ioSink.Comment(static_cast<uint8>(byte));
    } else {
      return byte;
    }
  }
}

// The rest of a text behind its quote.
template <class Sink>
bool ScanString(MCStreamReader& ioReader, Sink& ioSink) {
  ioSink.Mark('"');
  for (;;) {
    const uint8* const stop = FindStringStop(ioReader.Next(), ioReader.WindowEnd());
    ioSink.Text(ioReader.Next(), stop);
    ioReader.TakeUpTo(stop);
    int byte = ioReader.Get();
    if (byte == '"') {
      ioSink.Mark('"');
      return true;
    }
    if (byte == kEscape || byte == kOldEscape) {
      ioSink.Mark(static_cast<uint8>(byte));
      byte = ioReader.Get();
    }
    if (byte == MCStreamReader::kEnd) {
      return false;
    }
    TextByte(ioSink, static_cast<uint8>(byte));
  }
}

// False when the stream ends the word.
template <class Sink>
bool ScanWord(MCStreamReader& ioReader, Sink& ioSink, uint8 inFirst) {
  TextByte(ioSink, inFirst);
  for (;;) {
    const uint8* stop = ioReader.Next();
    while (stop != ioReader.WindowEnd() && !kWordEnds[*stop]) {
      ++stop;
    }
    ioSink.Text(ioReader.Next(), stop);
    ioReader.TakeUpTo(stop);
    const int byte = ioReader.Get();
    if (byte == MCStreamReader::kEnd) {
      return false;
    }
    if (kWordEnds[static_cast<uint8>(byte)]) {
      ioReader.PutBack(byte);
      return true;
    }
    TextByte(ioSink, static_cast<uint8>(byte));
  }
}

// One token; `kEnd` when the stream ends before it does.
template <class Sink>
Kind ScanToken(MCStreamReader& ioReader, Sink& ioSink) {
  const int first = SkipToToken(ioReader, ioSink);
  switch (first) {
    case MCStreamReader::kEnd:
      return Kind::kEnd;
    case '"':
      return ScanString(ioReader, ioSink) ? Kind::kString : Kind::kEnd;
    case '$':
      return SkipBlock(ioReader, ReadBlockLength(ioReader)) ? Kind::kBlock : Kind::kEnd;
    case '{':
    case '}':
      TextByte(ioSink, static_cast<uint8>(first));
      return first == '{' ? Kind::kOpen : Kind::kClose;
    default:
      return ScanWord(ioReader, ioSink, static_cast<uint8>(first)) ? Kind::kWord : Kind::kEnd;
  }
}

// A whole group, or one token when none opens here; `depth` is 1 inside a group. `inAfterToken` is called after each.
template <class Sink, class AfterToken>
bool ScanGroup(MCStreamReader& ioReader, Sink& ioSink, int32 depth, AfterToken&& inAfterToken) {
  do {
    const Kind kind = ScanToken(ioReader, ioSink);
    if (kind == Kind::kEnd) {
      return false;
    }
    depth += kind == Kind::kOpen ? 1 : kind == Kind::kClose ? -1 : 0;
    inAfterToken(kind);
  } while (depth > 0);
  return true;
}

// A token in a buffer of the caller's.
class BufferSink {
 public:
  BufferSink(MCToken::Buffer& outBuffer, bool keepQuotes) : fBuffer(outBuffer), fKeepQuotes(keepQuotes) {}

  void Blank(uint8) {}
  void Comment(uint8 inByte) { Mark(inByte); }
  void Mark(uint8 inByte) {
    if (fKeepQuotes) {
      Text(&inByte, &inByte + 1);
    }
  }
  void Text(const uint8* inFirst, const uint8* inEnd) {
    for (; inFirst != inEnd && fCount < sizeof fBuffer - 1; ++inFirst) {
      fBuffer[fCount++] = static_cast<char>(*inFirst);
    }
  }
  void Finish() { fBuffer[fCount] = 0; }
  uint32 GetCount() const { return fCount; }

 private:
  MCToken::Buffer& fBuffer;
  uint32 fCount = 0;
  bool fKeepQuotes;
};

// Reads a token into the buffer; throws at the end of the stream.
Kind NeedToken(TMCStream& inStream, MCToken::Buffer& outBuffer, uint32* outCount = nullptr);

}  // namespace qlx::tokens
