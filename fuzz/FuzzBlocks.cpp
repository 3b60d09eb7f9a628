// Binary blocks: any bytes as blocks with raw data, and any data written as one, read back, and skipped.
#include <cstring>
#include <vector>

#include "FuzzTokens.h"

namespace qlx::fuzz {

namespace {

void ReadOne(TMCStream& ioStream, bool asBytes) {
  uint8 room[64];
  const uint32 length = MCToken::ReadBinaryBlock(ioStream);
  MCToken::ReadRawHex(ioStream, room, std::min<uint32>(length, sizeof room), asBytes);
  MCToken::ReadBinaryBlockEnd(ioStream);
}

void CheckWrittenAgain(const uint8_t* inBytes, uint32 inSize, bool asBytes) {
  TMCMemoryStream stream;
  MCToken::BeginBinaryBlock(stream, "DATA"_id, asBytes ? inSize : 2 * inSize);
  MCToken::WriteRawHex(stream, inBytes, inSize, asBytes);
  MCToken::EndBinaryBlock(stream);
  stream.Write("NEXT ", 5);
  stream.Seek(0, kFromStart);
  std::vector<uint8> room(inSize);
  FuzzCheck(Ends([&] {
              MCToken::ReadTokenId(stream);
              const uint32 length = MCToken::ReadBinaryBlock(stream);
              FuzzCheck(length == (asBytes ? inSize : 2 * inSize), "the length changed");
              MCToken::ReadRawHex(stream, room.data(), inSize, asBytes);
              MCToken::ReadBinaryBlockEnd(stream);
              FuzzCheck(MCToken::ReadTokenId(stream) == "NEXT"_id, "the block ends elsewhere");
              stream.Seek(0, kFromStart);
              MCToken::ReadTokenId(stream);
              MCToken::SkipToken(stream);
              FuzzCheck(MCToken::ReadTokenId(stream) == "NEXT"_id, "the block is skipped to elsewhere");
            }),
            "what was written cannot be read");
  FuzzCheck(inSize == 0 || std::memcmp(room.data(), inBytes, inSize) == 0, "data changed");
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx::fuzz;
  const FuzzHost host(8 * inSize + 8192);
  TokenInput input(inBytes, inSize);
  const bool asBytes = (input.FirstByte() & 2) != 0;
  ReadAll(input.Stream(), [&] { ReadOne(input.Stream(), asBytes); });
  CheckWrittenAgain(inBytes, static_cast<qlx::uint32>(inSize), asBytes);
  return 0;
}
