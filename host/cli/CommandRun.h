// One run of a command of the plug-in's menu, from a scene file to a scene file.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Command.h"
#include "model/SceneChanges.h"

namespace qlx::host {

class Person;
class Session;
struct ExtensionRecord;

struct CommandRun {
  SceneOptions fScene;
  std::string fCommand;
  std::vector<std::string> fSelect;
  std::vector<std::string> fKeys;  // "all", "none" or two frames; empty: none
  std::optional<int32_t> fFrame;   // without it, the first of the clip
  std::vector<std::string> fAnswers;
  std::string fOutput;
  bool fIsDry = false;  // prints what changes, and writes nothing
};

// The options that every one of these commands has.
void AddRunOptions(CLI::App& ioCommand, CommandRun& ioRun);
void AddSelectOption(CLI::App& ioCommand, std::vector<std::string>& outNames);
void AddFrameOption(CLI::App& ioCommand, std::optional<int32_t>& outFrame);
// Makes the command's action; an output that lacks is a wrong command line.
void SetRunAction(CLI::App& ioCommand, CommandContext& inContext, const CommandRun& inRun,
                  std::function<void()> inAction);

// Runs the command at the frame for what is selected; false when it was cancelled.
bool RunAs(Person& ioPerson, Session& ioSession, Scene& ioScene, const ExtensionRecord& inCommand,
           std::optional<int32_t> inFrame);

// Text about what the command changed, for behind the rest.
using ChangeReport =
    std::function<std::string(Scene& inScene, const SceneCopy& inBefore, const SceneChanges& inChanges)>;

// Writes the scene, and says so, when all went well and every answer was asked for; else a `UserError`. The report may
// be empty.
void RunOnFile(CommandContext& inContext, const CommandRun& inRun, const ChangeReport& inReport = {});

}  // namespace qlx::host
