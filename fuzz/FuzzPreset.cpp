// Presets of links: any bytes, and what was read written and read again.
#include "FuzzTokens.h"
#include "QLXPreset.h"

int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  using namespace qlx::fuzz;
  const FuzzHost host(16384 + inSize * 128);
  TokenInput input(inBytes, inSize);
  QLXModifierData data;
  QLXPrivateData priv;
  int32 line = 0;
  if (!ReadPreset(input.Stream(), data, priv, line)) {
    FuzzCheck(line > 0 && static_cast<size_t>(line) <= inSize + 1, "the line is none of the input's");
    return 0;
  }
  TMCMemoryStream stream;
  WritePreset(stream, data, priv);
  stream.Seek(0, kFromStart);
  QLXModifierData dataAgain;
  QLXPrivateData privAgain;
  FuzzCheck(ReadPreset(stream, dataAgain, privAgain, line), "what was written cannot be read");
  TMCMemoryStream second;
  WritePreset(second, dataAgain, privAgain);
  FuzzCheck(TextOf(second) == TextOf(stream), "what was read again is something else");
  return 0;
}
