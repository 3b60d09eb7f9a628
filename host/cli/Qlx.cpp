#include "Qlx.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <new>
#include <sstream>

#include "Command.h"
#include "MCException.h"
#include "Text.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

const char* const kAbout =
    "Runs an animated glTF scene through the QLX modifiers of its elements, without the application that the "
    "plug-in was made for.";

const char* const kProgramExamples = R"(Examples:
  qlx tree scene.gltf                       what is in a scene
  qlx get scene.gltf --element Arm --path self,amet,TRAN,ROTA,RotX
                                            a value by its path
  qlx edit scene.gltf --script steps.txt -o edited.gltf
                                            what a person does in panels, from a script
  qlx menu scene.gltf --select Arm          the commands of the plug-in's menu, which `qlx do` runs
  qlx explore scene.gltf --element Arm      an element's values as the Property Explorer has them
  qlx links scene.gltf                      what follows what, and whether it does
  qlx bake scene.gltf -o baked.glb          every frame evaluated, the result as keys
  qlx info                                  the plug-in that is loaded
  qlx tokens saved.tok                      what is in a token file, and where it is broken
  qlx resources panels.rsrc                 what is in a resource file, and where it is damaged

`qlx COMMAND --help` tells more. Exit code: 0 done, 1 a problem with a file or a value, 2 a wrong command line.
)";

int Fail(Console& inConsole, int inCode, const std::string& inText) {
  inConsole.fErr << "qlx: " << Printable(inText) << std::endl;
  return inCode;
}

// Help and version are answers, everything else that the parser throws is a wrong command line.
int AnswerParseError(const CLI::App& inProgram, const CLI::ParseError& inError, Console& inConsole) {
  if (inError.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    std::ostringstream ignored;
    inProgram.exit(inError, inConsole.fOut, ignored);
    return kExitDone;
  }
  std::string help = "qlx";
  for (const CLI::App* command : inProgram.get_subcommands()) {
    help += ' ' + command->get_name();
  }
  return Fail(inConsole, kExitUsage, std::string(inError.what()) + " (try: " + help + " --help)");
}

int RunAction(const CommandContext& inContext) {
  try {
    inContext.fAction();
    inContext.fConsole.fOut.flush();
    if (!inContext.fConsole.fOut) {
      return Fail(inContext.fConsole, kExitFailed, "standard output cannot be written");
    }
    return kExitDone;
  } catch (const UserError& problem) {
    return Fail(inContext.fConsole, kExitFailed, problem.what());
  } catch (const std::bad_alloc&) {
    return Fail(inContext.fConsole, kExitFailed, "out of memory");
  } catch (const std::exception& problem) {
    return Fail(inContext.fConsole, kExitFailed, std::string("an error of the program itself: ") + problem.what());
  } catch (const TMCException& fault) {  // a fault in the host's own code, on a thread that translates them
    const auto code = static_cast<uint32>(fault.GetCode());
    return Fail(inContext.fConsole, kExitFailed, fmt::format("an error of the program itself: code 0x{:08X}", code));
  }
}

}  // namespace

void AddLibraryOption(CLI::App& inCommand, CommandContext& inContext) {
  inCommand.add_option("--library", inContext.fLibrary, "The plug-in to load; without it, the one beside this program")
      ->type_name("FILE");
}

void AddSceneOptions(CLI::App& inCommand, SceneOptions& inOptions) {
  inCommand.add_option("SCENE", inOptions.fScene, "A glTF 2.0 scene, .gltf or .glb")->required()->type_name("");
  inCommand.add_option("--clip", inOptions.fClip, "The animation to read by its name; without it, the first")
      ->type_name("NAME");
  inCommand
      .add_option("--fps", inOptions.fRate, "Frames a second; without it, what fits the keys of the scene, else 30")
      ->type_name("RATE");
}

int RunQlx(std::vector<std::string> inArguments, Console& inConsole) {
  CommandContext context{inConsole, {}, {}};
  CLI::App program(kAbout, "qlx");
  program.set_version_flag("--version", std::string("qlx " QLX_VERSION), "Print the version");
  program.set_help_flag("--help,-h", "Print this help");
  program.footer(kProgramExamples);
  program.allow_windows_style_options(false);  // "/scenes/arm.gltf" is a path on every system, never an option
  program.failure_message(CLI::FailureMessage::simple);
  AddLibraryOption(program, context);
  AddTreeCommand(program, context);
  AddGetCommand(program, context);
  AddSetCommand(program, context);
  AddAddCommand(program, context);
  AddPanelCommand(program, context);
  AddEditCommand(program, context);
  AddMenuCommand(program, context);
  AddDoCommand(program, context);
  AddKeysCommand(program, context);
  AddChainCommand(program, context);
  AddExploreCommand(program, context);
  AddLinkCommand(program, context);
  AddLinksCommand(program, context);
  AddBakeCommand(program, context);
  AddInfoCommand(program, context);
  AddTokensCommand(program, context);
  AddResourcesCommand(program, context);
  try {
    std::reverse(inArguments.begin(), inArguments.end());  // the parser takes them from the end
    program.parse(std::move(inArguments));
  } catch (const CLI::ParseError& error) {
    return AnswerParseError(program, error, inConsole);
  }
  if (!context.fAction) {
    return Fail(inConsole, kExitUsage, "a command is missing (try: qlx --help)");
  }
  return RunAction(context);
}

}  // namespace qlx::host
