// The packed form: any bytes as packed data, and any data written in pieces and read back in others.
#include <cstring>
#include <vector>

#include "FuzzTokens.h"

namespace qlx::fuzz {

namespace {

// Calls `inWork(offset, count)` for pieces of at most `inPiece` bytes.
template <class Work>
void InPieces(uint32 inSize, uint32 inPiece, Work&& inWork) {
  for (uint32 offset = 0; offset < inSize; offset += inPiece) {
    inWork(offset, std::min(inPiece, inSize - offset));
  }
}

void CheckWrittenAgain(const uint8_t* inBytes, uint32 inSize, uint32 inPiece) {
  TMCMemoryStream stream;
  uint32 state = 0;
  InPieces(inSize, inPiece,
           [&](uint32 offset, uint32 count) { MCToken::WritePacked(stream, inBytes + offset, count, state); });
  MCToken::FlushPacked(stream, state);
  FuzzCheck(state == 0, "a state after the end");
  const uint32 rest = inSize % 3;
  FuzzCheck(stream.Tell() == static_cast<int32>(inSize / 3 * 4 + (rest == 0 ? 0 : rest + 1)), "another length");
  stream.Write("}", 1);
  stream.Seek(0, kFromStart);
  std::vector<uint8> room(inSize);
  FuzzCheck(Ends([&] {
              InPieces(inSize, 1 + inPiece * 7 % 5, [&](uint32 offset, uint32 count) {
                MCToken::ReadPacked(stream, room.data() + offset, count, state);
              });
              MCToken::ReadEnd(stream);
            }),
            "what was written cannot be read");
  FuzzCheck(inSize == 0 || std::memcmp(room.data(), inBytes, inSize) == 0, "data changed");
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  using namespace qlx::fuzz;
  const FuzzHost host(8 * inSize + 8192);
  TokenInput input(inBytes, inSize);
  uint8 room[16];
  uint32 state = input.FirstByte();  // a state that no call left is reported and begun anew
  ReadAll(input.Stream(), [&] {
    MCToken::ReadPacked(input.Stream(), room, 1 + input.FirstByte() % 16U, state);
    FuzzCheck((state & 0xFF) <= 2, "a state that is none");
  });
  CheckWrittenAgain(inBytes, static_cast<uint32>(inSize), 1 + input.FirstByte() % 7U);
  return 0;
}
