// Token streams written and read, beside a plain copy of the same bytes and beside JSON of the same tree; and one
// reading for each shape of input, whose speed must not depend on the size.
#include <benchmark/benchmark.h>

#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "MCMemory.h"
#include "MCMemoryStream.h"
#include "MCString.h"
#include "MCToken.h"
#include "PlainMemory.h"

namespace qlx::bench {

namespace {

using nlohmann::json;

constexpr int kGroups = 10000;

void SetBytes(benchmark::State& ioState, std::size_t inBytesEach) {
  ioState.SetBytesProcessed(static_cast<int64>(ioState.iterations()) * static_cast<int64>(inBytesEach));
}

void WriteTree(TMCStream& ioStream) {
  const TMCString31 text("a name of an element");
  for (int i = 0; i < kGroups; ++i) {
    MCToken::BeginToken(ioStream, "elem"_id);
    MCToken::WriteString(ioStream, "name"_id, text);
    MCToken::WriteInt32(ioStream, "id  "_id, i * 7919);
    MCToken::WriteBool(ioStream, "actv"_id, (i & 1) != 0);
    MCToken::WriteFloat(ioStream, "posx"_id, static_cast<real32>(i) * 0.37F);
    MCToken::WriteFloat(ioStream, "posy"_id, static_cast<real32>(i) * -1.5F);
    MCToken::EndToken(ioStream);
  }
}

json Tree() {
  json tree = json::array();
  for (int i = 0; i < kGroups; ++i) {
    tree.push_back({{"name", "a name of an element"},
                    {"id", i * 7919},
                    {"actv", (i & 1) != 0},
                    {"posx", static_cast<real32>(i) * 0.37F},
                    {"posy", static_cast<real32>(i) * -1.5F}});
  }
  return tree;
}

std::string TreeText() {
  const PlainMemory memory;
  TMCMemoryStream stream;
  WriteTree(stream);
  return {reinterpret_cast<const char*>(stream.GetData()), static_cast<std::size_t>(stream.GetSize())};
}

TMCMemoryStream Reading(const std::string& inText) {
  return TMCMemoryStream(const_cast<char*>(inText.data()), static_cast<int32>(inText.size()), kStreamReadable);
}

// A stream that only its virtual operations reach, as one from the other side of the binary border is.
class ForeignStream final : public TMCMemoryStream {
 public:
  using TMCMemoryStream::TMCMemoryStream;
};

real64 ReadTree(TMCStream& ioStream) {
  real64 sum = 0;
  TMCString31 text;
  for (int i = 0; i < kGroups; ++i) {
    MCToken::ReadTokenId(ioStream);
    MCToken::ReadBegin(ioStream);
    while (!MCToken::IsAtEnd(ioStream)) {
      switch (MCToken::ReadTokenId(ioStream)) {
        case "name"_id:
          MCToken::ReadString(ioStream, text);
          break;
        case "id  "_id:
          sum += MCToken::ReadInt32(ioStream);
          break;
        case "actv"_id:
          sum += MCToken::ReadBool(ioStream) ? 1 : 0;
          break;
        default:
          sum += static_cast<real64>(MCToken::ReadFloat(ioStream));
          break;
      }
    }
    MCToken::ReadEnd(ioStream);
  }
  return sum;
}

void WriteTokens(benchmark::State& ioState) {
  const PlainMemory memory;
  const std::size_t size = TreeText().size();
  for (auto _ : ioState) {
    TMCMemoryStream stream;
    WriteTree(stream);
    benchmark::DoNotOptimize(stream.GetSize());
  }
  SetBytes(ioState, size);
}

template <class Stream>
void ReadTokens(benchmark::State& ioState) {
  const PlainMemory memory;
  const std::string text = TreeText();
  for (auto _ : ioState) {
    Stream stream(const_cast<char*>(text.data()), static_cast<int32>(text.size()), kStreamReadable);
    benchmark::DoNotOptimize(ReadTree(stream));
  }
  SetBytes(ioState, text.size());
}

void SkipTokens(benchmark::State& ioState) {
  const PlainMemory memory;
  const std::string text = '{' + TreeText() + '}';
  for (auto _ : ioState) {
    TMCMemoryStream stream = Reading(text);
    MCToken::SkipToken(stream);
  }
  SetBytes(ioState, text.size());
}

void CopyTokens(benchmark::State& ioState) {
  const std::string text = TreeText();
  std::vector<char> copy(text.size());
  for (auto _ : ioState) {
    std::memcpy(copy.data(), text.data(), text.size());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
  SetBytes(ioState, text.size());
}

void WriteJson(benchmark::State& ioState) {
  const json tree = Tree();
  const std::size_t size = tree.dump().size();
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(tree.dump());
  }
  SetBytes(ioState, size);
}

void ReadJson(benchmark::State& ioState) {
  const std::string text = Tree().dump();
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(json::parse(text));
  }
  SetBytes(ioState, text.size());
}

// ---- shapes ----

std::string Deep(std::size_t inSize) {
  return std::string(inSize / 2, '{') + std::string(inSize / 2, '}');
}

std::string Wide(std::size_t inSize) {
  std::string text = "{\r\n";
  while (text.size() < inSize) {
    text += "valu 12345\r\n";
  }
  return text + "}\r\n";
}

std::string LongText(std::size_t inSize) {
  return '"' + std::string(inSize, 'x') + "\" ";
}

std::string LongComment(std::size_t inSize) {
  return '#' + std::string(inSize, 'x') + "\r\nend ";
}

template <std::string (*kShape)(std::size_t)>
void Skip(benchmark::State& ioState) {
  const PlainMemory memory;
  const std::string text = kShape(static_cast<std::size_t>(ioState.range(0)));
  for (auto _ : ioState) {
    TMCMemoryStream stream = Reading(text);
    MCToken::SkipToken(stream);
  }
  SetBytes(ioState, text.size());
}

template <std::string (*kShape)(std::size_t)>
void Capture(benchmark::State& ioState) {
  const PlainMemory memory;
  const std::string text = kShape(static_cast<std::size_t>(ioState.range(0)));
  for (auto _ : ioState) {
    TMCMemoryStream stream = Reading(text);
    uint8* data = nullptr;
    uint32 size = 0;
    MCToken::CaptureGroup(stream, data, size);
    MCfree(data);
  }
  SetBytes(ioState, text.size());
}

void ReadLongText(benchmark::State& ioState) {
  const PlainMemory memory;
  const std::string text = LongText(static_cast<std::size_t>(ioState.range(0)));
  for (auto _ : ioState) {
    TMCMemoryStream stream = Reading(text);
    TMCDynamicString read;
    MCToken::ReadLongString(stream, read);
  }
  SetBytes(ioState, text.size());
}

}  // namespace

BENCHMARK(WriteTokens);
BENCHMARK(ReadTokens<TMCMemoryStream>)->Name("ReadTokens");
BENCHMARK(ReadTokens<ForeignStream>)->Name("ReadTokensOfAForeignStream");
BENCHMARK(SkipTokens);
BENCHMARK(CopyTokens);
BENCHMARK(WriteJson);
BENCHMARK(ReadJson);
BENCHMARK(Skip<Deep>)->Name("SkipDeep")->Arg(1 << 14)->Arg(1 << 24);
BENCHMARK(Skip<Wide>)->Name("SkipWide")->Arg(1 << 14)->Arg(1 << 24);
BENCHMARK(Skip<LongText>)->Name("SkipLongText")->Arg(1 << 14)->Arg(1 << 24);
BENCHMARK(Skip<LongComment>)->Name("SkipLongComment")->Arg(1 << 14)->Arg(1 << 24);
BENCHMARK(Capture<Deep>)->Name("CaptureDeep")->Arg(1 << 14)->Arg(1 << 24);
BENCHMARK(Capture<Wide>)->Name("CaptureWide")->Arg(1 << 14)->Arg(1 << 24);
BENCHMARK(ReadLongText)->Arg(1 << 14)->Arg(1 << 24);

}  // namespace qlx::bench
