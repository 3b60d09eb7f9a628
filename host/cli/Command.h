// What the commands of `qlx` share. Each command has a file of its own, with its options, its help and its work.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Console.h"

namespace CLI {
class App;
}

namespace qlx::host {

struct CommandContext {
  Console& fConsole;
  std::string fLibrary;           // --library; empty: the one beside the program
  std::function<void()> fAction;  // set by the command that the arguments name; a `UserError` ends it
};

// Each adds its command to the program.
void AddTreeCommand(CLI::App& inProgram, CommandContext& inContext);
void AddGetCommand(CLI::App& inProgram, CommandContext& inContext);
void AddSetCommand(CLI::App& inProgram, CommandContext& inContext);
void AddAddCommand(CLI::App& inProgram, CommandContext& inContext);
void AddPanelCommand(CLI::App& inProgram, CommandContext& inContext);
void AddEditCommand(CLI::App& inProgram, CommandContext& inContext);
void AddMenuCommand(CLI::App& inProgram, CommandContext& inContext);
void AddDoCommand(CLI::App& inProgram, CommandContext& inContext);
void AddKeysCommand(CLI::App& inProgram, CommandContext& inContext);
void AddChainCommand(CLI::App& inProgram, CommandContext& inContext);
void AddExploreCommand(CLI::App& inProgram, CommandContext& inContext);
void AddLinkCommand(CLI::App& inProgram, CommandContext& inContext);
void AddLinksCommand(CLI::App& inProgram, CommandContext& inContext);
void AddBakeCommand(CLI::App& inProgram, CommandContext& inContext);
void AddInfoCommand(CLI::App& inProgram, CommandContext& inContext);
void AddTokensCommand(CLI::App& inProgram, CommandContext& inContext);
void AddResourcesCommand(CLI::App& inProgram, CommandContext& inContext);

// `--library` is understood before and after a command's name.
void AddLibraryOption(CLI::App& inCommand, CommandContext& inContext);

// Options that say how a scene is read.
struct SceneOptions {
  std::string fScene;
  std::string fClip;
  std::optional<float> fRate;
};
void AddSceneOptions(CLI::App& inCommand, SceneOptions& inOptions);

}  // namespace qlx::host
