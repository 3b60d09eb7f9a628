// Hex lines: any bytes as a hex block, and any data written as one and read back.
#include <cstring>
#include <vector>

#include "FuzzTokens.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  using namespace qlx::fuzz;
  const FuzzHost host(8 * inSize + 8192);
  TokenInput input(inBytes, inSize);
  std::vector<uint8> room(input.FirstByte() + 1U);
  ReadAll(input.Stream(), [&] {
    MCToken::ReadHexData(input.Stream(), static_cast<uint32>(room.size()), room.data());
    MCToken::ReadTokenId(input.Stream());
  });

  TMCMemoryStream stream;
  MCToken::WriteHexData(stream, "DATA"_id, static_cast<uint32>(inSize), inBytes);
  stream.Seek(0, kFromStart);
  room.assign(inSize, 0);
  FuzzCheck(Ends([&] {
              FuzzCheck(MCToken::ReadTokenId(stream) == "DATA"_id, "the id changed");
              MCToken::ReadHexData(stream, static_cast<uint32>(inSize), room.data());
            }),
            "what was written cannot be read");
  FuzzCheck(inSize == 0 || std::memcmp(room.data(), inBytes, inSize) == 0, "data changed");
  return 0;
}
