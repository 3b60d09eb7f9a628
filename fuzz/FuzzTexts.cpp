// Texts of tokens, short and long: what is read and written again reads as the same text.
#include <cstring>

#include "FuzzTokens.h"

namespace qlx::fuzz {

namespace {

bool Holds(const TMCString& inText, char inByte) {
  return std::memchr(inText.CStr(), inByte, inText.ByteLength()) != nullptr;
}

void CheckWrittenAgain(const TMCDynamicString& inText) {
  if (Holds(inText, 1)) {
    return;  // the old escape is not written in a way that brings it back
  }
  TMCMemoryStream stream;
  MCToken::WriteString(stream, "TEXT"_id, inText);
  stream.Seek(0, kFromStart);
  FuzzCheck(MCToken::ReadTokenId(stream) == "TEXT"_id, "the id changed");
  TMCDynamicString again;
  MCToken::ReadLongString(stream, again);
  FuzzCheck(
      again.ByteLength() == inText.ByteLength() && std::memcmp(again.CStr(), inText.CStr(), again.ByteLength()) == 0,
      "a text changed");
}

void ReadOne(TMCStream& ioStream, int inKind) {
  TMCDynamicString text;
  TMCString15 cut;
  switch (inKind % 4) {
    case 0:
      MCToken::ReadString(ioStream, text);
      FuzzCheck(text.ByteLength() <= 3 * 255, "a text longer than a token");
      return;
    case 1:
      return MCToken::ReadString(ioStream, cut);
    case 2:
      MCToken::ReadLongString(ioStream, text);
      return CheckWrittenAgain(text);
    default:
      ioStream.ReadMCString(text);
      return;
  }
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx::fuzz;
  const FuzzHost host(4 * inSize + 8192);
  TokenInput input(inBytes, inSize);
  input.Stream().SetEncoding((input.FirstByte() & 2) != 0 ? &qlx::kCodePageEncoding : &qlx::kUtf8Encoding);
  int kind = input.FirstByte() >> 2;
  ReadAll(input.Stream(), [&] { ReadOne(input.Stream(), kind++); });
  return 0;
}
