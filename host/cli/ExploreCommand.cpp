// `qlx explore`: the Property Explorer of the plug-in, read row by row and used as a person uses it.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "Command.h"
#include "CommandChoice.h"
#include "CommandRun.h"
#include "JsonText.h"
#include "OutputFile.h"
#include "PropertyRows.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "model/ParameterRows.h"
#include "ui/Hand.h"
#include "ui/Person.h"
#include "ui/RowChoice.h"

namespace qlx::host {

namespace {

const char* const kExploreExamples = R"(Examples:
  qlx explore arm.gltf --element Hand
  qlx explore arm.gltf --element Hand --frame 12 --animated
  qlx explore arm.gltf --element Hand --path self,amet,TRAN        the values below a row
  qlx explore arm.gltf --element Hand --path self,amet,TRAN,ROTA,RotX --set 0.5 -o changed.gltf
  qlx explore arm.gltf --element Hand --path "Global Y Position" --set 12 -o changed.gltf

Values are those of the Property Explorer at the current frame, modifiers included, in inches, radians or their own
unit. Setting one does what the dialog does: where the value has keys it sets a key on the current frame, else the base
value. A row is named by the path that stands beside it, or by its label.
)";

struct ExploreOptions {
  SceneOptions fScene;
  std::string fElement;
  std::string fPath;
  std::optional<std::string> fNew;
  std::optional<int32_t> fFrame;
  bool fAnimated = false;
  std::string fOutput;
  bool fJson = false;
};

struct ExploredRow {
  std::size_t fDepth = 0;
  std::string fLabel;
  std::string fPath;
  std::optional<real32> fValue;  // groups have none
  bool fIsAnimated = false;
};

// The person at the dialog: looks at one row after the other, or gives one a new value.
class Explorer final : public CancellingPerson {
 public:
  Explorer(const ExploreOptions& inOptions, Element& inElement, Diagnostics& inDiagnostics)
      : CancellingPerson(inDiagnostics), fOptions(inOptions), fElement(inElement) {}

  bool RunDialog(Form& ioDialog) override {
    const Hand hand(ioDialog);
    const auto& tree = dynamic_cast<const TreeControl&>(hand.Find("plst"));
    fPaths = PathsOfRows(tree);
    const auto [first, end] = FindRows(tree);
    if (fOptions.fNew) {
      fSet = Look(hand, tree, first);
      SetRow(hand, first);
      return true;
    }
    for (std::size_t row = first; row < end; ++row) {
      fRows.push_back(Look(hand, tree, row));
    }
    return true;
  }

  const std::vector<ExploredRow>& GetRows() const { return fRows; }
  // The row that was set, as it was before, and what it has now.
  const ExploredRow& GetSetRow() const { return fSet; }
  real32 GetNewValue() const { return fNewValue; }

 private:
  // The row that is asked for with those below it, or all.
  std::pair<std::size_t, std::size_t> FindRows(const TreeControl& inTree) const {
    const std::vector<TreeControl::Row*> rows = inTree.GetRows();
    if (fOptions.fPath.empty()) {
      return {0, rows.size()};
    }
    const TreeControl::Row* const chosen = &FindChosen(inTree);
    const auto first = std::find(rows.begin(), rows.end(), chosen);
    const auto end = std::find_if(first + 1, rows.end(),
                                  [&](const TreeControl::Row* row) { return row->GetDepth() <= chosen->GetDepth(); });
    return {static_cast<std::size_t>(first - rows.begin()), static_cast<std::size_t>(end - rows.begin())};
  }

  TreeControl::Row& FindChosen(const TreeControl& inTree) const {
    const std::string row = RowOfPath(inTree, fOptions.fPath, "--path");
    try {
      return FindTreeRow(inTree, row);
    } catch (const UserError& problem) {
      throw UserError("--path", problem.what());
    }
  }

  // Of a group the dialog shows nothing, of a colour as a whole 0: its numbers stand below it.
  ExploredRow Look(const Hand& inHand, const TreeControl& inTree, std::size_t inRow) {
    const TreeControl::Row& row = *inTree.GetRows()[inRow];
    ExploredRow explored{row.GetDepth(), row.GetLabel(), fPaths[inRow], std::nullopt, false};
    const FoundParameter found = FindParameter(fElement, explored.fPath);
    if ((found.fParameter && found.GetCount() == 1) || IsPositionInScene(explored.fPath)) {
      inHand.Choose("plst", fmt::format("#{}", inRow));
      explored.fValue = std::get<real32>(inHand.Find("cVal").GetValue());
    }
    explored.fIsAnimated = found.fParameter && found.fParameter->GetValueAccess()->AsAnimated()->HasKeys();
    return explored;
  }

  void SetRow(const Hand& inHand, std::size_t inRow) {
    if (!fSet.fValue) {
      throw UserError("--path", fmt::format("\"{}\" is a group of values: set one of them", fOptions.fPath));
    }
    try {
      inHand.Choose("plst", fmt::format("#{}", inRow));
      inHand.Set("nVal", *fOptions.fNew);
      inHand.Press("upbn");
    } catch (const UserError& problem) {
      throw UserError("--set", problem.what());
    }
    fNewValue = std::get<real32>(inHand.Find("cVal").GetValue());
  }

  static bool IsPositionInScene(const std::string& inPath) {
    return inPath.ends_with(",GlbX") || inPath.ends_with(",GlbY") || inPath.ends_with(",GlbZ");
  }

  const ExploreOptions& fOptions;
  Element& fElement;
  std::vector<std::string> fPaths;
  std::vector<ExploredRow> fRows;
  ExploredRow fSet;
  real32 fNewValue = 0;
};

std::vector<ExploredRow> ShownRows(std::vector<ExploredRow> inRows, bool inAnimated) {
  if (inAnimated) {
    std::erase_if(inRows, [](const ExploredRow& row) { return !row.fIsAnimated; });
  }
  return inRows;
}

// Rows that are left alone without those above them are not indented.
std::string TextOfRows(const std::vector<ExploredRow>& inRows, bool inIndented) {
  const std::size_t top = inRows.empty() ? 0 : inRows.front().fDepth;
  constexpr std::size_t kWidestLabel = 48;
  std::vector<std::string> labels;
  std::size_t width = 0;
  for (const ExploredRow& row : inRows) {
    labels.push_back(std::string(inIndented ? 2 * (row.fDepth - top) : 0, ' ') + Printable(row.fLabel));
    width = std::min(std::max(width, labels.back().size()), kWidestLabel);
  }
  std::string text;
  for (std::size_t i = 0; i < inRows.size(); ++i) {
    const ExploredRow& row = inRows[i];
    text += fmt::format("{:<{}}  {:>12}  {}{}\n", labels[i], width, row.fValue ? TextOfNumber(*row.fValue) : "",
                        Printable(row.fPath), row.fIsAnimated ? "  (animated)" : "");
  }
  return text;
}

Json JsonOfRows(const std::vector<ExploredRow>& inRows) {
  Json rows = Json::array();
  for (const ExploredRow& row : inRows) {
    rows.push_back({{"label", row.fLabel},
                    {"path", row.fPath},
                    {"depth", row.fDepth},
                    {"value", row.fValue ? Json(ShortNumber(*row.fValue)) : Json()},
                    {"animated", row.fIsAnimated}});
  }
  return {{"rows", std::move(rows)}};
}

std::string TextOfSetting(const ExploreOptions& inOptions, const Explorer& inExplorer) {
  const ExploredRow& row = inExplorer.GetSetRow();
  return fmt::format("{}: {} of {} is {}{}, it was {}\n", inOptions.fOutput, Printable(row.fLabel),
                     Printable(inOptions.fElement), inExplorer.GetNewValue(),
                     row.fIsAnimated ? " by a key on the current frame" : "", *row.fValue);
}

void Explore(CommandContext& inContext, const ExploreOptions& inOptions) {
  if (inOptions.fNew) {
    CheckOutputPlace(PathOfText(inOptions.fOutput));
  }
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  Scene& scene = document->GetScene();
  SelectElements(scene, {{inOptions.fElement}}, "--element");
  Explorer explorer(inOptions, *scene.GetSelection().front(), scene.GetDiagnostics());
  RunAs(explorer, session, scene, NeedCommand(session.GetHost(), "prex", "the command"), inOptions.fFrame);
  if (inOptions.fNew) {
    document->Write(PathOfText(inOptions.fOutput));
  }
  const std::vector<ExploredRow> rows = ShownRows(explorer.GetRows(), inOptions.fAnimated);
  session.ShowWarnings();
  inContext.fConsole.fOut << (inOptions.fNew    ? TextOfSetting(inOptions, explorer)
                              : inOptions.fJson ? JsonText(JsonOfRows(rows))
                                                : TextOfRows(rows, !inOptions.fAnimated));
}

}  // namespace

void AddExploreCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command =
      inProgram.add_subcommand("explore", "Print an element's values as the Property Explorer has them, or set one");
  const auto options = std::make_shared<ExploreOptions>();
  command->footer(kExploreExamples);
  AddSceneOptions(*command, options->fScene);
  command->add_option("--element", options->fElement, "The element")->required()->type_name("NAME");
  CLI::Option* const path =
      command->add_option("--path", options->fPath, "A row with those below it; without it, all")->type_name("PATH");
  CLI::Option* const value =
      command->add_option("--set", options->fNew, "Give the row a new value")->type_name("NUMBER")->needs(path);
  CLI::Option* const output = command->add_option("-o,--output", options->fOutput, "The scene to write, .gltf or .glb")
                                  ->type_name("FILE")
                                  ->needs(value);
  value->needs(output);
  AddFrameOption(*command, options->fFrame);
  CLI::Option* const animated = command->add_flag("--animated", options->fAnimated, "Only the values that have keys");
  CLI::Option* const json = command->add_flag("--json", options->fJson, "Print them as JSON");
  animated->excludes(value);
  json->excludes(value);
  AddLibraryOption(*command, inContext);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { Explore(inContext, *options); }; });
}

}  // namespace qlx::host
