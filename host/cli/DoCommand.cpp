// `qlx menu` and `qlx do`: the commands of the plug-in's menu.
#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "CommandChoice.h"
#include "CommandRun.h"
#include "JsonText.h"
#include "Session.h"
#include "model/IDText.h"

namespace qlx::host {

namespace {

const char* const kMenuExamples = R"(Examples:
  qlx menu arm.gltf --select Hand
  qlx menu arm.gltf --select Hand Arm --json

A command can be run (`qlx do`) where it is enabled for what is selected.
)";

const char* const kDoExamples = R"(Examples:
  qlx do arm.gltf "Add Pin" --select Hand -o pinned.gltf
  qlx do arm.gltf "Delete Keyframes" --select Hand --frame 12 --answer subt=on -o out.gltf
  qlx do arm.gltf "Delete Keyframes" --select Hand --frame 12 --answer subt=on --dry-run
  qlx do arm.gltf "Wiggle Keyframes" --select Hand --keys all --answer minf=-5 maxf=2 -o out.gltf
  qlx do arm.gltf "Property Explorer" --select Hand --answer plst="Rotation X" nVal=0.5 upbn -o out.gltf
  qlx do arm.gltf "QLX Chain" --answer abtn pick=Arm mval=2 ok abtn pick=Hand ok cgrp=on -o out.gltf

A command is named by its label, its name or its id, as `qlx menu` prints them. Answers are taken in their order:
  ID=VALUE                a control of the open dialog: on, off, a number, a text, a row; a label stands for an id, too
  ID                      a button
  ok, cancel              the end of a dialog; behind the last answer, ok
  pick=NAME, file=PATH    what is asked for
  button=TEXT             the button of an alert; without an answer, an alert is a warning
)";

struct MenuOptions {
  SceneOptions fScene;
  std::vector<std::string> fSelect;
  bool fJson = false;
};

std::string TextOfMenu(const std::vector<MenuEntry>& inEntries) {
  std::string text;
  for (const MenuEntry& entry : inEntries) {
    text += fmt::format("{:<9} {}  {:<31} {}\n", entry.fIsEnabled ? "enabled" : "disabled",
                        TextFromID(entry.fCommand->fID), entry.fCommand->fLabel, entry.fCommand->fHelp);
  }
  return text;
}

Json JsonOfMenu(const std::vector<MenuEntry>& inEntries) {
  Json commands = Json::array();
  for (const MenuEntry& entry : inEntries) {
    commands.push_back({{"id", TextFromID(entry.fCommand->fID)},
                        {"name", entry.fCommand->fName},
                        {"label", entry.fCommand->fLabel},
                        {"help", entry.fCommand->fHelp},
                        {"enabled", entry.fIsEnabled}});
  }
  return {{"commands", std::move(commands)}};
}

void ShowMenu(CommandContext& inContext, const MenuOptions& inOptions) {
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  SelectElements(document->GetScene(), inOptions.fSelect, "--select");
  const std::vector<MenuEntry> entries = ListCommands(session.GetHost(), document->GetScene());
  session.ShowWarnings();
  inContext.fConsole.fOut << (inOptions.fJson ? JsonText(JsonOfMenu(entries)) : TextOfMenu(entries));
}

}  // namespace

void AddMenuCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("menu", "Print the commands of the menu, and which are enabled");
  const auto options = std::make_shared<MenuOptions>();
  command->footer(kMenuExamples);
  AddSceneOptions(*command, options->fScene);
  AddSelectOption(*command, options->fSelect);
  command->add_flag("--json", options->fJson, "Print them as JSON");
  AddLibraryOption(*command, inContext);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { ShowMenu(inContext, *options); }; });
}

void AddDoCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("do", "Run a command of the menu, and write the scene");
  const auto run = std::make_shared<CommandRun>();
  command->footer(kDoExamples);
  AddSceneOptions(*command, run->fScene);
  command->add_option("COMMAND", run->fCommand, "The command")->required()->type_name("");
  AddSelectOption(*command, run->fSelect);
  command->add_option("--keys", run->fKeys, "Mark the keys of the selected elements: all, or from a frame to a frame")
      ->expected(1, 2)
      ->type_name("all|FRAME FRAME");
  command->add_option("--answer", run->fAnswers, "What to answer, in this order")->type_name("ID=VALUE...");
  AddRunOptions(*command, *run);
  AddLibraryOption(*command, inContext);
  SetRunAction(*command, inContext, *run, [run, &inContext] { RunOnFile(inContext, *run); });
}

}  // namespace qlx::host
