// Numbers: what is read and written again reads as the same number.
#include <cmath>

#include "FuzzTokens.h"

namespace qlx::fuzz {

namespace {

// Writes with the stream's own writer, reads with its reader.
template <class Value>
Value Again(TMCStream& (TMCStream::*inWriter)(Value), TMCStream& (TMCStream::*inReader)(Value&), Value inValue) {
  TMCMemoryStream stream;
  stream.precision(15);
  (stream.*inWriter)(inValue);
  stream.Seek(0, kFromStart);
  Value value{};
  (stream.*inReader)(value);
  FuzzCheck(!stream.fail(), "what was written cannot be read");
  return value;
}

template <class Value>
void ReadInteger(TMCStream& ioStream, TMCStream& (TMCStream::*inWriter)(Value),
                 TMCStream& (TMCStream::*inReader)(Value&)) {
  Value value{};
  (ioStream.*inReader)(value);
  FuzzCheck(!ioStream.fail() || value == 0, "a value from a failed read");
  FuzzCheck(Again(inWriter, inReader, value) == value, "an integer changed");
}

void ReadReal(TMCStream& ioStream) {
  real64 value = 0;
  ioStream.ReadDouble(value);
  FuzzCheck(!std::isnan(value), "not a number");
  const real64 again = Again(&TMCStream::WriteDouble, &TMCStream::ReadDouble, value);
  if (std::abs(value) < 2147483647.0) {
    FuzzCheck(std::abs(again - value) <= 1e-9 * std::max(1.0, std::abs(value)), "a real number changed");
  }
}

void ReadOne(TMCStream& ioStream, int inKind) {
  real32 real = 0;
  int8 byte = 0;
  char word[8];
  switch (inKind % 8) {
    case 0:
      return ReadReal(ioStream);
    case 1:
      return ReadInteger(ioStream, &TMCStream::WriteInt16, &TMCStream::ReadInt16);
    case 2:
      return ReadInteger(ioStream, &TMCStream::WriteUInt16, &TMCStream::ReadUInt16);
    case 3:
      return ReadInteger(ioStream, &TMCStream::WriteInt32, &TMCStream::ReadInt32);
    case 4:
      return ReadInteger(ioStream, &TMCStream::WriteUInt32, &TMCStream::ReadUInt32);
    case 5:
      ioStream.ReadFloat(real);
      FuzzCheck(!std::isnan(real), "not a number");
      return;
    case 6:
      ioStream.ReadInt8(byte);
      return;
    default:
      ioStream.ReadWord(word, sizeof word);
      return;
  }
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx::fuzz;
  const FuzzHost host(8192);
  TokenInput input(inBytes, inSize);
  int kind = input.FirstByte() >> 1;
  ReadAll(input.Stream(), [&] { ReadOne(input.Stream(), kind++); });
  return 0;
}
