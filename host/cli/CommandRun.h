// One run of a command of the plug-in's menu, from a scene file to a scene file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Command.h"

namespace qlx::host {

struct CommandRun {
  SceneOptions fScene;
  std::string fCommand;
  std::vector<std::string> fSelect;
  std::vector<std::string> fKeys;  // "all", "none" or two frames; empty: none
  std::optional<int32_t> fFrame;   // without it, the first of the clip
  std::vector<std::string> fAnswers;
  std::string fOutput;
};

// The options that every one of these commands has.
void AddRunOptions(CLI::App& ioCommand, CommandRun& ioRun);
void AddSelectOption(CLI::App& ioCommand, std::vector<std::string>& outNames);

// Writes the scene, and says so, when all went well and every answer was asked for; else a `UserError`.
void RunOnFile(CommandContext& inContext, const CommandRun& inRun);

}  // namespace qlx::host
