#include "PrivateText.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "ComponentCall.h"
#include "MCMemoryStream.h"
#include "TokenFile.h"
#include "model/Diagnostics.h"
#include "model/IDText.h"

namespace qlx::host {

namespace {

constexpr std::string_view kOpenLevel = "{\n";
constexpr std::string_view kCloseLevel = "\n}\n";

// Answers what is wrong with the text as tokens.
std::optional<std::string> FindBadToken(const std::string& inText) {
  if (inText.find_first_not_of(" \t\r\n") == std::string::npos) {
    return std::nullopt;  // no tokens at all: everything keeps its value
  }
  std::vector<uint8> bytes(inText.begin(), inText.end());
  bytes.push_back('\n');  // the level that is put around the text ends its last word
  try {
    ReadTokenFile("not token text", bytes, [](const TokenItem&) {});
  } catch (const UserError& error) {
    return error.what();
  }
  return std::nullopt;
}

// What a component asks for with a token that it does not know: the first one is kept.
struct UnknownToken {
  MCID fKey = 0;
  int32 fPlace = 0;
  static void Skip(MCID inKey, TMCStream* inStream, void* inContext) {
    auto& unknown = *static_cast<UnknownToken*>(inContext);
    if (unknown.fKey == 0) {
      unknown = {inKey, inStream->Tell()};
    }
    MCToken::SkipToken(*inStream);
  }
};

// Of a place in the stream, which has the opening of the level in front of the text.
std::string PlaceText(const std::string& inText, int32 inPlace) {
  const std::size_t offset =
      std::min(inText.size(), static_cast<std::size_t>(std::max(inPlace - static_cast<int32>(kOpenLevel.size()), 0)));
  std::size_t line = 1;
  for (std::size_t i = 0; i < offset; ++i) {
    line += inText[i] == '\n' || (inText[i] == '\r' && inText.compare(i + 1, 1, "\n") != 0) ? 1 : 0;
  }
  return fmt::format("line {}, byte {}", line, offset);
}

}  // namespace

std::optional<std::string> WritePrivateText(IExStreamIO& inStreamIO, MCResult& outResult) {
  TMCMemoryStream stream;
  outResult = inStreamIO.Write(&stream);
  if (outResult == MC_S_OK && stream.fail()) {
    outResult = MC_E_OUTOFMEMORY;
  }
  if (outResult != MC_S_OK) {
    return std::nullopt;
  }
  return std::string(reinterpret_cast<const char*>(stream.GetData()), static_cast<std::size_t>(stream.GetSize()));
}

std::optional<std::string> ReadPrivateText(IExStreamIO& inStreamIO, const std::string& inText) {
  if (auto problem = FindBadToken(inText)) {
    return problem;
  }
  std::string level(kOpenLevel);
  level.append(inText).append(kCloseLevel);
  TMCMemoryStream stream(level.data(), static_cast<int32>(level.size()), kStreamReadable);
  UnknownToken unknown;
  MCResult result = MC_S_OK;
  const auto failure = CallComponent("Read", [&] { result = inStreamIO.Read(&stream, &UnknownToken::Skip, &unknown); });
  if (failure || result != MC_S_OK) {
    return fmt::format("{}: the class cannot read this (0x{:08X})", PlaceText(inText, stream.Tell()),
                       static_cast<uint32>(failure ? failure->fCode : result));
  }
  if (unknown.fKey != 0) {
    return fmt::format("{}: the class has no token \"{}\"", PlaceText(inText, unknown.fPlace),
                       TextFromID(unknown.fKey));
  }
  return std::nullopt;
}

}  // namespace qlx::host
