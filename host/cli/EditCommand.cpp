// `qlx add` and `qlx edit`: what a person does to the modifiers of a scene.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <fstream>
#include <iterator>

#include "Command.h"
#include "EditScript.h"
#include "ModifierChoice.h"
#include "OutputFile.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "model/ClosestNames.h"

namespace qlx::host {

namespace {

const char* const kAddExamples = R"(Examples:
  qlx add arm.gltf --to Hand --modifier pin -o pinned.gltf
  qlx add arm.gltf --to Hand --modifier qlx -o linked.gltf

The modifier stands last on the element, as a new one is: `qlx edit` sets it up.
)";

const char* const kEditExamples = R"(Examples:
  qlx edit arm.gltf --script pin.txt -o pinned.gltf

A script is a text of one action a line; a # at a line's start or before a blank begins a comment.
  add qlx|pin|slider to ELEMENT    remove NUMBER of ELEMENT    turn NUMBER of ELEMENT on|off
  panel NUMBER of ELEMENT          opens the panel that the following actions use
  set CONTROL VALUE                on, off, a number, a text, "1 2 3"
  press CONTROL                    a button, a check box, one of several
  choose CONTROL ROW               by its text, in a tree as in "Arm > Rotation X", or by number as in #3
  open CONTROL ROW, fold CONTROL ROW
  reset                            the modifier's settings
  frame NUMBER                     goes to a frame
  select NAME...                   the elements that the following commands work on
  keys all|none, keys FRAME FRAME  marks keys of the selected elements, from a frame to a frame
  do COMMAND                       a command of the menu, as `qlx menu` prints them
  undo, redo                       the last action that changed something
A control is named by its id or label, as `qlx panel` prints them. What an action opens is answered in a block behind it:
  press ChTL {
    set ttlt Elbow
    ok
  }
Answers: the actions on a dialog and then ok or cancel; pick ELEMENT; file PATH; answer BUTTON. On an error no scene is
written; a preset that the script saved by then stays.
)";

struct EditOptions {
  SceneOptions fScene;
  std::string fElement;
  std::string fModifier;
  std::string fScript;
  std::string fOutput;
};

std::string ReadScript(const std::string& inFile) {
  std::ifstream stream(PathOfText(inFile), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream) {
    throw UserError(inFile, "the script cannot be read");
  }
  return text;
}

void AddOneModifier(CommandContext& inContext, const EditOptions& inOptions) {
  CheckOutputPlace(PathOfText(inOptions.fOutput));
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  Element& element = NeedElement(document->GetScene(), inOptions.fElement, "--to");
  const PluginModifier& modifier = AddModifierTo(session.GetHost(), element, inOptions.fModifier, "--modifier");
  const std::string name = modifier.GetClassName();
  document->Write(PathOfText(inOptions.fOutput));
  session.ShowWarnings();
  inContext.fConsole.fOut << fmt::format("{}: {} is modifier {} of {}\n", inOptions.fOutput, name,
                                         element.GetModifiers().size() - 1, Printable(inOptions.fElement));
}

void Edit(CommandContext& inContext, const EditOptions& inOptions) {
  CheckOutputPlace(PathOfText(inOptions.fOutput));
  const std::filesystem::path file = PathOfText(inOptions.fScript);
  const std::vector<ScriptStep> steps = ParseScript(inOptions.fScript, ReadScript(inOptions.fScript));
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  EditScript(session.GetHost(), document->GetScene(), inOptions.fScript, file.parent_path()).Run(steps);
  document->Write(PathOfText(inOptions.fOutput));
  session.ShowWarnings();
  inContext.fConsole.fOut << fmt::format("{}: {} of {} done\n", inOptions.fOutput, Counted(steps.size(), "action"),
                                         inOptions.fScript);
}

void AddOutputOption(CLI::App& ioCommand, EditOptions& ioOptions) {
  ioCommand.add_option("-o,--output", ioOptions.fOutput, "The scene to write, .gltf or .glb")
      ->required()
      ->type_name("FILE");
}

}  // namespace

void AddAddCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("add", "Write a scene with one modifier more");
  const auto options = std::make_shared<EditOptions>();
  command->footer(kAddExamples);
  AddSceneOptions(*command, options->fScene);
  command->add_option("--to", options->fElement, "The element that gets it")->required()->type_name("NAME");
  command->add_option("--modifier", options->fModifier, "qlx, pin or slider")->required()->type_name("WHICH");
  AddOutputOption(*command, *options);
  AddLibraryOption(*command, inContext);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { AddOneModifier(inContext, *options); }; });
}

void AddEditCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command =
      inProgram.add_subcommand("edit", "Do what a script says a person does, and write the scene");
  const auto options = std::make_shared<EditOptions>();
  command->footer(kEditExamples);
  AddSceneOptions(*command, options->fScene);
  command->add_option("--script", options->fScript, "The script")->required()->type_name("FILE");
  AddOutputOption(*command, *options);
  AddLibraryOption(*command, inContext);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { Edit(inContext, *options); }; });
}

}  // namespace qlx::host
