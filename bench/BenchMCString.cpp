// The string family beside std::string with room reserved: assignment, appending, finding, comparing. The counting of
// characters is part of what is measured.
#include <benchmark/benchmark.h>

#include <string>

#include "MCString.h"
#include "PlainMemory.h"

namespace qlx::bench {

namespace {

const char* const kShort = "UpperArm_L.rotation";
const char* const kLong =
    "The quick brown fox jumps over the lazy dog, and the lazy dog, which has seen this many times before, sleeps on. "
    "At night the fox comes back and sleeps beside it.";

// A text with room for 255 bytes, of either library.
template <class Text>
struct Roomy {
  Text fText;
};
template <>
struct Roomy<TMCDynamicString> {
  Roomy() { fText.SetMaxLength(255); }
  TMCDynamicString fText;
};
template <>
struct Roomy<std::string> {
  Roomy() { fText.reserve(255); }
  std::string fText;
};

template <class Text>
void Assign(benchmark::State& ioState, const char* inText) {
  const PlainMemory memory;
  const Text source(inText);
  Roomy<Text> roomy;
  for (auto _ : ioState) {
    roomy.fText = source;
    benchmark::ClobberMemory();
  }
}

// Ten pieces, as messages and paths are built.
template <class Text>
void Append(benchmark::State& ioState, const char* inText) {
  const PlainMemory memory;
  const Text source(inText);
  Roomy<Text> roomy;
  for (auto _ : ioState) {
    roomy.fText = "";
    for (int i = 0; i < 10; ++i) {
      roomy.fText += source;
    }
    benchmark::ClobberMemory();
  }
}

template <class Text>
void AppendBytes(benchmark::State& ioState, const char* inText) {
  const PlainMemory memory;
  Roomy<Text> roomy;
  for (auto _ : ioState) {
    roomy.fText = "";
    for (const char* byte = inText; *byte; ++byte) {
      roomy.fText += *byte;
    }
    benchmark::ClobberMemory();
  }
}

int64 IndexOf(const std::string& inText, const std::string& inWanted) {
  return static_cast<int64>(inText.find(inWanted));
}
int64 IndexOf(const TMCString& inText, const TMCString& inWanted) {
  return inText.Find(inWanted);
}

template <class Text>
void Find(benchmark::State& ioState, const char* inWanted) {
  const PlainMemory memory;
  const Text text(kLong);
  const Text wanted(inWanted);
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(IndexOf(text, wanted));
  }
}

template <class Text>
void Compare(benchmark::State& ioState, const char* inText) {
  const PlainMemory memory;
  const Text text(inText);
  const Text same(inText);
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(text == same);
    benchmark::ClobberMemory();
  }
}

template <class Text>
void Register(const std::string& inForm) {
  const auto add = [&](const char* operation, auto function, const char* text, const char* label) {
    benchmark::RegisterBenchmark((std::string(operation) + inForm + "/" + label).c_str(), function, text);
  };
  add("Assign", Assign<Text>, kShort, "short");
  add("Assign", Assign<Text>, kLong, "long");
  add("Append", Append<Text>, kShort, "short");
  add("AppendBytes", AppendBytes<Text>, kLong, "long");
  add("Find", Find<Text>, "lazy", "near");
  add("Find", Find<Text>, "beside", "far");
  add("Compare", Compare<Text>, kShort, "short");
  add("Compare", Compare<Text>, kLong, "long");
}

[[maybe_unused]] const bool kRegistered = [] {
  Register<TMCString255>("Fixed");
  Register<TMCDynamicString>("Dynamic");
  Register<std::string>("Std");
  return true;
}();

}  // namespace

}  // namespace qlx::bench
