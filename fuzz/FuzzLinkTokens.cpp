// The private data of links: any bytes, and what was read written and read again.
#include "FuzzTokens.h"
#include "QLXModifierTokens.h"

namespace {

void WriteLevel(qlx::TMCStream& ioStream, const qlx::QLXPrivateData& inData) {
  qlx::MCToken::BeginSection(ioStream);
  qlx::WriteTokens(ioStream, inData);
  qlx::MCToken::EndToken(ioStream);
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  using namespace qlx::fuzz;
  const FuzzHost host(16384 + inSize * 128);
  TokenInput input(inBytes, inSize);
  QLXPrivateData data;
  Ends([&] { ReadTokens(input.Stream(), data, nullptr, nullptr); });
  TMCMemoryStream stream;
  WriteLevel(stream, data);
  stream.Seek(0, kFromStart);
  QLXPrivateData again;
  FuzzCheck(Ends([&] { ReadTokens(stream, again, nullptr, nullptr); }), "what was written cannot be read");
  TMCMemoryStream second;
  WriteLevel(second, again);
  FuzzCheck(TextOf(second) == TextOf(stream), "what was read again is something else");
  return 0;
}
