// The lexer: tokens one by one, groups skipped and groups captured agree about where everything ends.
#include <vector>

#include "FuzzTokens.h"

namespace qlx::fuzz {

namespace {

struct Step {
  MCResult fResult;
  int32 fEnd;
  MCToken::Kind fKind;
  bool operator==(const Step&) const = default;
};

std::vector<Step> Tokens(TMCStream& ioStream) {
  std::vector<Step> steps;
  MCToken::Buffer buffer;
  Ends([&] {
    for (int i = 0; i < 10000; ++i) {
      const MCToken::Kind kind = MCToken::PeekKind(ioStream);
      const int32 before = ioStream.Tell();
      const MCResult result = MCToken::ReadToken(ioStream, buffer, i % 2 == 1);
      FuzzCheck(ioStream.Tell() > before || result == MC_E_EOF, "a token of no bytes");
      steps.push_back({result, ioStream.Tell(), kind});
      if (result != MC_S_OK) {
        break;
      }
    }
  });
  return steps;
}

// Where the group that begins at `inStart` ends; -1 when reading it fails.
template <class Work>
int32 EndOf(TMCStream& ioStream, int32 inStart, Work&& inWork) {
  ioStream.Seek(inStart, kFromStart);
  return Ends([&] { inWork(ioStream); }) ? ioStream.Tell() : -1;
}

void Compare(TMCStream& ioStream, int32 inStart) {
  const int32 skipped = EndOf(ioStream, inStart, [](TMCStream& s) { MCToken::SkipToken(s); });
  const int32 captured = EndOf(ioStream, inStart, [](TMCStream& s) {
    uint8* data = nullptr;
    uint32 size = 0;
    MCToken::CaptureGroup(s, data, size);
    FuzzCheck(size <= static_cast<uint32>(s.Tell()), "more captured than read");
    MCfree(data);
  });
  FuzzCheck(skipped == captured, "skipping and capturing differ");
  EndOf(ioStream, inStart, [](TMCStream& s) { MCToken::SkipToEnd(s); });
  EndOf(ioStream, inStart, [](TMCStream& s) {
    TMCDynamicString text;
    MCToken::CaptureGroupText(s, text);
    TMCMemoryStream again(text);
    MCToken::SkipToken(again);  // it is a whole group
  });
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx::fuzz;
  const FuzzHost host(4 * inSize + 8192);
  TokenInput input(inBytes, inSize);
  Compare(input.Stream(), 0);
  Compare(input.Stream(), static_cast<qlx::int32>(inSize / 2));
  input.Stream().Seek(0, qlx::kFromStart);
  const auto steps = Tokens(input.Stream());
  if (inSize > 1) {
    qlx::TMCMemoryStream own(const_cast<uint8_t*>(inBytes + 1), static_cast<qlx::int32>(inSize - 1), 1);
    FuzzCheck(Tokens(own) == steps, "our own streams read another way than foreign ones");
  }
  return 0;
}
