#include <utility>

#include "MCException.h"
#include "MCMemoryStream.h"
#include "MCString.h"
#include "MCTokenLexer.h"

namespace qlx::MCToken {

namespace {

// Every byte but those of comments, as it stands.
class VerbatimSink {
 public:
  void Blank(uint8 inByte) { Mark(inByte); }
  void Comment(uint8 inByte) {
    if (inByte == '\r' || inByte == '\n') {
      Mark(inByte);  // the line end behind a comment is none of it
    }
  }
  void Mark(uint8 inByte) { fIsWhole = fBytes.AddElem(inByte) && fIsWhole; }
  void Text(const uint8* inFirst, const uint8* inEnd) {
    fIsWhole = fBytes.Append(inFirst, static_cast<MCSize>(inEnd - inFirst)) && fIsWhole;
  }
  const MCByteArray& GetBytes() const { return fBytes; }
  // False when there was no memory for a byte.
  bool IsWhole() const { return fIsWhole; }

 private:
  MCByteArray fBytes;
  bool fIsWhole = true;
};

class TextSink {
 public:
  void Blank(uint8) {}
  void Comment(uint8) {}
  void Mark(uint8 inByte) { fText.Write(&inByte, 1); }
  void Text(const uint8* inFirst, const uint8* inEnd) { fText.Write(inFirst, static_cast<int32>(inEnd - inFirst)); }
  void AfterToken(Kind inKind) {
    if (inKind != Kind::kBlock) {
      fText.Write(" ", 1);
    }
  }
  const TMCMemoryStream& GetText() const { return fText; }

 private:
  TMCMemoryStream fText;
};

}  // namespace

void CaptureGroup(TMCStream& inStream, uint8*& outData, uint32& outSize) {
  outData = nullptr;
  outSize = 0;
  VerbatimSink sink;
  {
    MCStreamReader reader(inStream);
    if (!tokens::ScanGroup(reader, sink, 0, [](Kind) {})) {
      tokens::ThrowToken(MC_E_EOF, __LINE__);
    }
  }
  const uint32 size = sink.GetBytes().GetElemCount();
  auto* const data = sink.IsWhole() ? static_cast<uint8*>(MCmalloc(size ? size : 1)) : nullptr;
  if (MC_ASSERT(data)) {
    MCMemoryCopy(data, sink.GetBytes().BaseAddress(), size);
    outData = data;
    outSize = size;
  }
}

void CaptureGroupText(TMCStream& inStream, TMCDynamicString& outText) {
  ReadBegin(inStream);
  TextSink sink;
  constexpr uint8 kOpen = '{';
  sink.Text(&kOpen, &kOpen + 1);
  sink.AfterToken(Kind::kOpen);
  {
    MCStreamReader reader(inStream);
    if (!tokens::ScanGroup(reader, sink, 1, [&](Kind inKind) { sink.AfterToken(inKind); })) {
      tokens::ThrowToken(MC_E_EOF, __LINE__);
    }
  }
  if (sink.GetText().fail()) {
    tokens::ThrowToken(MC_E_OUTOFMEMORY, __LINE__);
  }
  outText.Assign(reinterpret_cast<const char*>(sink.GetText().GetData()),
                 static_cast<MCSize>(sink.GetText().GetSize()));
}

}  // namespace qlx::MCToken
