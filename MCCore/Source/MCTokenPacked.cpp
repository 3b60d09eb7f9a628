// The packed form: three bytes b0, b1, b2 as four characters, six bits in each.
//
//   d0  b0, low six bits
//   d1  b0, high two; b1, low four as the upper bits
//   d2  b1, high four; b2, low two as the upper bits
//   d3  b2, high six
//
// The state of a writer holds the bytes of an unfinished group: their count, then the bytes. That of a reader holds the
// count of those that it gave out, then the bits of the next byte that have come already.
#include <algorithm>

#include "MCTokenLexer.h"

namespace qlx::MCToken {

namespace {

using tokens::ThrowToken;

struct Group {
  uint8 fBytes[3] = {0, 0, 0};
  uint32 fCount = 0;

  explicit Group(uint32 inState) : fCount(inState & 0xFF) {
    fBytes[0] = static_cast<uint8>(inState >> 8);
    fBytes[1] = static_cast<uint8>(inState >> 16);
  }
  uint32 AsState() const { return fCount == 0 ? 0 : fCount | uint32{fBytes[0]} << 8 | uint32{fBytes[1]} << 16; }

  uint8 Character(int inIndex) const {
    const uint8 bits[] = {
        static_cast<uint8>(fBytes[0] & 0x3F), static_cast<uint8>((fBytes[0] >> 6) + (fBytes[1] & 0x0F) * 4),
        static_cast<uint8>((fBytes[1] >> 4) + (fBytes[2] & 0x03) * 16), static_cast<uint8>(fBytes[2] >> 2)};
    return static_cast<uint8>(bits[inIndex] + kFirstBinHex);
  }
};

// Characters on their way to the stream.
class PackedWriter {
 public:
  explicit PackedWriter(TMCStream& ioStream) : fStream(ioStream) {}
  void Add(const Group& inGroup) {
    for (int i = 0; i < 4; ++i) {
      fText[fCount++] = inGroup.Character(i);
    }
    if (fCount == sizeof fText) {
      Flush();
    }
  }
  void Flush() {
    fStream.Write(fText, fCount);
    fCount = 0;
  }

 private:
  TMCStream& fStream;
  uint8 fText[256];
  int32 fCount = 0;
};

// The six bits of the next character of the form.
uint32 NextBits(MCStreamReader& ioReader) {
  for (;;) {
    const int byte = ioReader.Get();
    if (!MC_ASSERT_TEXT(byte != MCStreamReader::kEnd, "!stream.eof()")) {
      ThrowToken(MC_E_EOF, __LINE__);
    }
    if (!MC_ASSERT_TEXT(byte != '}', "d!='}'") || !MC_ASSERT_TEXT(byte != '{', "d!='{'")) {
      ThrowToken(MC_E_INVALIDARG, __LINE__);
    }
    if (byte >= kFirstBinHex && byte < kFirstBinHex + 64) {
      return static_cast<uint32>(byte - kFirstBinHex);
    }
  }
}

// One byte, from as many characters as it needs: what follows the last byte may be no packed data any more.
uint8 NextByte(MCStreamReader& ioReader, uint32& ioState) {
  const uint32 given = ioState & 0xFF;
  const uint32 bits = given == 0 ? NextBits(ioReader) : ioState >> 8;
  const uint32 more = NextBits(ioReader);
  switch (given) {
    case 0:
      ioState = 1 | (more >> 2) << 8;
      return static_cast<uint8>(bits | (more & 0x03) << 6);
    case 1:
      ioState = 2 | (more >> 4) << 8;
      return static_cast<uint8>(bits | (more & 0x0F) << 4);
    default:
      ioState = 0;
      return static_cast<uint8>(bits | more << 2);
  }
}

}  // namespace

void WritePacked(TMCStream& inStream, const void* inData, uint32 inCount, uint32& ioState) {
  if (!MC_ASSERT_TEXT(inCount >= 1, "count>=1")) {
    return;
  }
  if (!MC_ASSERT_TEXT((ioState & 0xFF) <= 2, "Problemo here")) {
    ioState = 0;
  }
  Group group(ioState);
  PackedWriter writer(inStream);
  const auto* const data = static_cast<const uint8*>(inData);
  for (uint32 i = 0; i < inCount; ++i) {
    group.fBytes[group.fCount++] = data[i];
    if (group.fCount == 3) {
      writer.Add(group);
      group = Group(0);
    }
  }
  writer.Flush();
  ioState = group.AsState();
}

void FlushPacked(TMCStream& inStream, uint32& ioState) {
  if (!MC_ASSERT_TEXT((ioState & 0xFF) <= 2, "Problemo here")) {
    ioState = 0;
  }
  Group group(ioState);
  if (group.fCount > 0) {
    if (group.fCount == 1) {
      MC_ASSERT_TEXT(group.Character(2) == kFirstBinHex, "d2 == kFirstBinHex");
      group.fBytes[1] = 0;
    }
    MC_ASSERT_TEXT(group.Character(3) == kFirstBinHex, "d3 == kFirstBinHex");
    const uint8 text[] = {group.Character(0), group.Character(1), group.Character(2)};
    inStream.Write(text, static_cast<int32>(group.fCount + 1));
  }
  ioState = 0;
}

void ReadPacked(TMCStream& inStream, void* outData, uint32 inCount, uint32& ioState) {
  if (!MC_ASSERT_TEXT(inCount, "size")) {
    return;
  }
  if (!MC_ASSERT_TEXT((ioState & 0xFF) <= 2, "We have a problem here")) {
    ioState = 0;
  }
  MCStreamReader reader(inStream);
  auto* const data = static_cast<uint8*>(outData);
  for (uint32 i = 0; i < inCount; ++i) {
    data[i] = NextByte(reader, ioState);
  }
}

}  // namespace qlx::MCToken
