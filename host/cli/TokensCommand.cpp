// `qlx tokens`: what is in a token file.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "Command.h"
#include "JsonText.h"
#include "MCFilePath.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "gltf/GltfProblem.h"
#include "model/Diagnostics.h"
#include "services/TokenFile.h"

namespace qlx::host {

namespace {

const char* const kTokensExamples = R"(Examples:
  qlx tokens saved.tok                    groups and values as an indented tree
  qlx tokens saved.tok --check            whether it is whole; else where it is not, and exit code 1
  qlx tokens saved.tok --json | jq '.items[] | select(.id == "spar")'
)";

struct TokensOptions {
  std::string fFile;
  bool fCheck = false;
  bool fJson = false;
};

using MCToken::Kind;

// Longer values, and deeper groups, tell a person no more.
constexpr std::size_t kLongestText = 100;
constexpr std::size_t kDeepestTokenIndent = 40;
constexpr std::size_t kShownBytes = 16;

// A block as people look at bytes: how many there are, and the first of them.
std::string BlockText(std::string_view inData) {
  std::string text = fmt::format("${}:", Counted(inData.size(), "byte"));
  for (const char byte : inData.substr(0, kShownBytes)) {
    text += fmt::format(" {:02X}", static_cast<uint8>(byte));
  }
  return inData.size() > kShownBytes ? text + " ..." : text;
}

std::string ValueText(const TokenItem& inItem) {
  switch (inItem.fKind) {
    case Kind::kOpen:
      return "{";
    case Kind::kClose:
      return "}";
    case Kind::kBlock:
      return BlockText(inItem.fText);
    default:
      return Printable(inItem.fText.substr(0, kLongestText)) +
             (inItem.fText.size() > kLongestText ? fmt::format("... ({} bytes)", inItem.fText.size()) : std::string());
  }
}

void WriteLine(std::ostream& ioOut, const TokenItem& inItem) {
  ioOut << std::string(2 * std::min(inItem.fDepth, kDeepestTokenIndent), ' ');
  if (inItem.fDepth > kDeepestTokenIndent) {
    ioOut << fmt::format("(level {}) ", inItem.fDepth);
  }
  const std::string value = ValueText(inItem);
  ioOut << Printable(inItem.fID) << (inItem.fID.empty() || value.empty() ? "" : " ") << value << '\n';
}

// Items are a plain list with their depths: a deep file makes no deep document.
Json ItemAsJson(const TokenItem& inItem) {
  static constexpr const char* kKinds[] = {"word", "text", "block", "open", "close", "none"};
  return {{"id", Printable(inItem.fID)},
          {"kind", kKinds[static_cast<std::size_t>(inItem.fKind)]},
          {"value", inItem.fKind == Kind::kBlock ? Json(inItem.fText.size()) : Json(Printable(inItem.fText))},
          {"depth", inItem.fDepth},
          {"offset", inItem.fOffset}};
}

std::vector<uint8> ReadBytes(const std::string& inFile) {
  try {
    return ReadWholeFile(PathOfText(inFile));
  } catch (const GltfProblem& problem) {
    throw UserError(inFile, problem.what());
  }
}

void Run(CommandContext& inContext, const TokensOptions& inOptions) {
  std::ostream& out = inContext.fConsole.fOut;
  const std::vector<uint8> bytes = ReadBytes(inOptions.fFile);
  Json items = Json::array();
  const TokenCounts counts = ReadTokenFile(inOptions.fFile, bytes, [&](const TokenItem& item) {
    if (inOptions.fJson) {
      items.push_back(ItemAsJson(item));
    } else if (!inOptions.fCheck) {
      WriteLine(out, item);
    }
  });
  if (inOptions.fJson) {
    out << JsonText({{"file", inOptions.fFile},
                     {"groups", counts.fGroups},
                     {"values", counts.fValues},
                     {"deepest", counts.fDeepest},
                     {"items", inOptions.fCheck ? Json() : std::move(items)}});
  } else if (inOptions.fCheck) {
    out << fmt::format("{}: whole, {}, {}, deepest level {}\n", Printable(inOptions.fFile),
                       Counted(counts.fGroups, "group"), Counted(counts.fValues, "value"), counts.fDeepest);
  }
}

}  // namespace

void AddTokensCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command =
      inProgram.add_subcommand("tokens", "Print a token file as a tree, or check that it is whole");
  const auto options = std::make_shared<TokensOptions>();
  command->footer(kTokensExamples);
  command->add_option("FILE", options->fFile, "A token file")->required()->type_name("");
  command->add_flag("--check", options->fCheck, "Say only whether it is whole");
  command->add_flag("--json", options->fJson, "Print it as JSON");
  command->callback([options, &inContext] { inContext.fAction = [options, &inContext] { Run(inContext, *options); }; });
}

}  // namespace qlx::host
