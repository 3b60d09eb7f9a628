// `qlx links`: what follows what in a scene, and whether it does.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

#include "Command.h"
#include "JsonText.h"
#include "OutputFile.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "model/IDText.h"
#include "model/LinkList.h"

namespace qlx::host {

namespace {

const char* const kLinksExamples = R"(Examples:
  qlx links cart.gltf
  qlx links cart.gltf --json | jq '.links[] | select(.state == "broken")'
  qlx links cart.gltf --dot cart.dot && dot -Tsvg cart.dot -o cart.svg

Each line is a value, what it follows, and the state: ok; broken, and why; cycle, for links that follow each other in a
circle (they are evaluated in tree order); off, for a modifier that is switched off.
)";

struct LinksOptions {
  SceneOptions fScene;
  std::string fDot;
  bool fJson = false;
};

std::string TargetText(const LinkRow& inRow) {
  return Printable(inRow.fHasTarget ? TextOfLinkValue(inRow.fTarget) : inRow.fElement->GetNameText() + " (no value)");
}

std::string SourceText(const LinkRow& inRow) {
  std::string text;
  for (const LinkValue& source : inRow.fSources) {
    text += (text.empty() ? "" : ", ") + Printable(TextOfLinkValue(source));
  }
  return text.empty() ? "(no source)" : text;
}

std::string AsText(const LinkList& inLinks, const std::string& inName) {
  std::string text = fmt::format("{}: {}, {}\n", Printable(inName), Counted(inLinks.fRows.size(), "link"),
                                 Counted(inLinks.fCycles.size(), "cycle"));
  std::size_t targets = 0;
  std::size_t sources = 0;
  for (const LinkRow& row : inLinks.fRows) {
    targets = std::max(targets, TargetText(row).size());
    sources = std::max(sources, SourceText(row).size());
  }
  constexpr std::size_t kWidest = 40;
  for (const LinkRow& row : inLinks.fRows) {
    fmt::format_to(std::back_inserter(text), "{:<{}}  <- {:<{}}  {}{}{}\n", TargetText(row), std::min(targets, kWidest),
                   SourceText(row), std::min(sources, kWidest), NameOfState(row.fState), row.fWhy.empty() ? "" : ": ",
                   Printable(row.fWhy));
  }
  for (const std::string& cycle : inLinks.fCycles) {
    text += "cycle: " + Printable(cycle) + '\n';
  }
  return text;
}

Json ValueAsJson(const LinkValue& inValue) {
  const Element* const element = inValue.GetElement();
  return {{"of", OwnerOfLinkValue(inValue)},
          {"element", element == nullptr ? Json() : Json(const_cast<Element*>(element)->GetUniqueID())},
          {"path", PathOfLinkValue(inValue)}};
}

Json RowAsJson(const LinkRow& inRow) {
  Json sources = Json::array();
  for (const LinkValue& source : inRow.fSources) {
    sources.push_back(ValueAsJson(source));
  }
  return {{"element", inRow.fElement->GetNameText()},
          {"modifier", inRow.fIndex},
          {"class", TextFromID(inRow.fModifier->GetModifierClass())},
          {"target", inRow.fHasTarget ? ValueAsJson(inRow.fTarget) : Json()},
          {"sources", std::move(sources)},
          {"state", NameOfState(inRow.fState)},
          {"why", inRow.fWhy.empty() ? Json() : Json(inRow.fWhy)}};
}

std::string AsJson(const LinkList& inLinks, const std::string& inScene) {
  Json rows = Json::array();
  for (const LinkRow& row : inLinks.fRows) {
    rows.push_back(RowAsJson(row));
  }
  return JsonText({{"scene", inScene}, {"links", std::move(rows)}, {"cycles", inLinks.fCycles}});
}

void Run(CommandContext& inContext, const LinksOptions& inOptions) {
  Session session(inContext);
  if (!inOptions.fDot.empty()) {
    CheckOutputPlace(PathOfText(inOptions.fDot));
  }
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  session.ShowWarnings();  // of the scene: those of links are in the list
  const LinkList links = ListLinks(document->GetScene());
  if (!inOptions.fDot.empty()) {
    OutputFile(PathOfText(inOptions.fDot), DrawLinks(links)).PutInPlace();
  }
  inContext.fConsole.fOut << (inOptions.fJson ? AsJson(links, inOptions.fScene.fScene)
                                              : AsText(links, ShortName(inOptions.fScene)));
}

}  // namespace

void AddLinksCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command =
      inProgram.add_subcommand("links", "Print what follows what in a scene, and whether it does");
  const auto options = std::make_shared<LinksOptions>();
  command->footer(kLinksExamples);
  AddSceneOptions(*command, options->fScene);
  command->add_option("--dot", options->fDot, "Draw the links as a graph, for Graphviz")->type_name("FILE");
  command->add_flag("--json", options->fJson, "Print them as JSON");
  AddLibraryOption(*command, inContext);
  command->callback([options, &inContext] { inContext.fAction = [options, &inContext] { Run(inContext, *options); }; });
}

}  // namespace qlx::host
