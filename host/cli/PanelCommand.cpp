// `qlx panel`: the panel of a modifier, as text.
#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "JsonText.h"
#include "ModifierChoice.h"
#include "PanelText.h"
#include "Session.h"
#include "Text.h"
#include "model/ClosestNames.h"
#include "services/ModifierPanel.h"

namespace qlx::host {

namespace {

const char* const kPanelExamples = R"(Examples:
  qlx panel arm.gltf --element Hand
  qlx panel arm.gltf --element Hand --modifier 1 --json

Each line is a control: its label, the id by which a script of `qlx edit` names it, its value, and what it takes.
)";

struct PanelOptions {
  SceneOptions fScene;
  std::string fElement;
  uint32 fModifier = 0;
  bool fJson = false;
};

void ShowPanel(CommandContext& inContext, const PanelOptions& inOptions) {
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  const Element& element = NeedElement(document->GetScene(), inOptions.fElement, "--element");
  PluginModifier& modifier = NeedModifier(element, inOptions.fModifier, "--modifier");
  const ModifierPanel panel(session.GetHost(), modifier);
  session.ShowWarnings();
  if (inOptions.fJson) {
    inContext.fConsole.fOut << JsonText(JsonOfForm(panel.GetForm()));
    return;
  }
  inContext.fConsole.fOut << fmt::format("{}: modifier {} of {}, panel {} \"{}\"\n\n{}", modifier.GetClassName(),
                                         inOptions.fModifier, Printable(inOptions.fElement), modifier.GetPanelNumber(),
                                         Printable(panel.GetForm().GetLabel()), TextOfForm(panel.GetForm()));
}

}  // namespace

void AddPanelCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("panel", "Print the panel of a modifier");
  const auto options = std::make_shared<PanelOptions>();
  command->footer(kPanelExamples);
  AddSceneOptions(*command, options->fScene);
  command->add_option("--element", options->fElement, "The element that the modifier sits on")
      ->required()
      ->type_name("NAME");
  command->add_option("--modifier", options->fModifier, "Its number in the element's list; without it, 0")
      ->type_name("NUMBER");
  command->add_flag("--json", options->fJson, "Print it as JSON");
  AddLibraryOption(*command, inContext);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { ShowPanel(inContext, *options); }; });
}

}  // namespace qlx::host
