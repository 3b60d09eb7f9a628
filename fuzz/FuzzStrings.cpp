// Sequences of operations on every form of the string family, on texts of any bytes, beside a plain model of them.
#include "FuzzTarget.h"
#include "StringSteps.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  // A step adds 40,000 bytes at most, and doubles a text at most.
  const fuzz::FuzzHost host(size_t{1} << 30);
  fuzz::FuzzInput input(inBytes, inSize);
  test::StringSteps steps([&] { return input.TakeByte(); });
  while (input.RestSize() > 0) {
    const std::string difference = steps.Step();
    fuzz::FuzzCheck(difference.empty(), difference.c_str());
  }
  return 0;
}
