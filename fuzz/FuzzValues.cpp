// Ids, compound values and arrays, with groups around them.
#include "FuzzTokens.h"

namespace qlx::fuzz {

namespace {

void CheckIdWrittenAgain(MCID inID) {
  if ((inID >> 24) == ' ') {
    return;  // a blank in front is lost with the others
  }
  TMCMemoryStream stream;
  MCToken::WriteTokenId(stream, inID, true);
  stream.Write("  ", 2);
  stream.Seek(0, kFromStart);
  FuzzCheck(MCToken::ReadTokenId(stream) == inID, "an id changed");
}

void ReadOne(TMCStream& ioStream, int inKind) {
  uint16 shorts[3];
  uint32 words[20];
  real32 reals[5];
  switch (inKind % 9) {
    case 0:
      return CheckIdWrittenAgain(MCToken::ReadTokenId(ioStream));
    case 1:
      MCToken::ReadPoint(ioStream);
      return;
    case 2:
      MCToken::ReadRect(ioStream);
      return;
    case 3:
      return MCToken::ReadUInt16Array(ioStream, shorts, 3);
    case 4:
      return MCToken::ReadUInt32Array(ioStream, words, 20);
    case 5:
      return MCToken::ReadFloatArray(ioStream, reals, 5);
    case 6:
      MCToken::ReadBool(ioStream);
      return;
    case 7:
      MCToken::ReadIdValue(ioStream);
      return;
    default:
      return MCToken::IsAtEnd(ioStream) ? MCToken::ReadEnd(ioStream) : MCToken::ReadBegin(ioStream);
  }
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx::fuzz;
  const FuzzHost host(8192);
  // The first half says what is read, the second half is read.
  const size_t half = inSize / 2;
  FuzzInput kinds(inBytes, half);
  TokenInput input(inBytes + half, inSize - half);
  ReadAll(input.Stream(), [&] { ReadOne(input.Stream(), kinds.TakeByte()); });
  return 0;
}
