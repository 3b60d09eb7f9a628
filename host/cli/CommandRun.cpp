#include "CommandRun.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "AnswerPerson.h"
#include "ChangesText.h"
#include "CommandChoice.h"
#include "OutputFile.h"
#include "Session.h"
#include "gltf/GltfFiles.h"
#include "services/UserInterface.h"

namespace qlx::host {

namespace {

bool RunInScene(Session& ioSession, Scene& ioScene, const CommandRun& inRun, const ExtensionRecord& inCommand) {
  SelectElements(ioScene, inRun.fSelect, "--select");
  if (!inRun.fKeys.empty()) {
    SelectKeysOf(ioScene, inRun.fKeys, "--keys");
  }
  AnswerPerson person(inRun.fAnswers, ioScene.GetDiagnostics());
  const bool isDone = RunAs(person, ioSession, ioScene, inCommand, inRun.fFrame);
  person.CheckThatAllWereAsked();
  return isDone;
}

// The line that says what was done.
std::string Headline(const CommandRun& inRun, const std::string& inCommand, bool inIsDone,
                     const SceneChanges& inChanges) {
  if (inRun.fIsDry) {
    return fmt::format("{}, dry run: {}\n", inCommand, inIsDone ? CountChanges(inChanges) : "cancelled");
  }
  return fmt::format("{}: {} {}\n", inRun.fOutput, inCommand, inIsDone ? "done" : "cancelled");
}

}  // namespace

void AddSelectOption(CLI::App& ioCommand, std::vector<std::string>& outNames) {
  ioCommand.add_option("--select", outNames, "The elements that are selected, in this order")->type_name("NAME...");
}

void AddFrameOption(CLI::App& ioCommand, std::optional<int32_t>& outFrame) {
  ioCommand.add_option("--frame", outFrame, "The current frame; without it, the first of the clip")->type_name("FRAME");
}

void AddRunOptions(CLI::App& ioCommand, CommandRun& ioRun) {
  AddFrameOption(ioCommand, ioRun.fFrame);
  ioCommand.add_option("-o,--output", ioRun.fOutput, "The scene to write, .gltf or .glb; not with --dry-run")
      ->type_name("FILE");
  ioCommand.add_flag("--dry-run", ioRun.fIsDry, "Print each key and modifier that would change, and write nothing");
}

void SetRunAction(CLI::App& ioCommand, CommandContext& inContext, const CommandRun& inRun,
                  std::function<void()> inAction) {
  ioCommand.callback([&inContext, &inRun, action = std::move(inAction)] {
    if (inRun.fOutput.empty() && !inRun.fIsDry) {
      throw CLI::RequiredError("--output (or --dry-run)");
    }
    inContext.fAction = action;
  });
}

bool RunAs(Person& ioPerson, Session& ioSession, Scene& ioScene, const ExtensionRecord& inCommand,
           std::optional<int32_t> inFrame) {
  ioScene.Evaluate(inFrame ? TimeOfFrame(ioScene, *inFrame, "--frame") : ioScene.GetStart());
  UserInterface& user = ioSession.GetHost().GetUser();
  user.SetPerson(&ioPerson);
  try {
    const bool isDone = SceneCommand(ioSession.GetHost(), ioScene, inCommand).Run();
    user.SetPerson(nullptr);
    return isDone;
  } catch (...) {
    user.SetPerson(nullptr);
    throw;
  }
}

void RunOnFile(CommandContext& inContext, const CommandRun& inRun, const ChangeReport& inReport) {
  if (!inRun.fIsDry) {
    CheckOutputPlace(PathOfText(inRun.fOutput));
  }
  Session session(inContext);
  const ExtensionRecord& command = NeedCommand(session.GetHost(), inRun.fCommand, "the command");
  const std::unique_ptr<GltfDocument> document = session.Open(inRun.fScene);
  Scene& scene = document->GetScene();
  std::optional<SceneCopy> before;
  if (inRun.fIsDry || inReport) {
    before.emplace(scene);
  }
  const bool isDone = RunInScene(session, scene, inRun, command);
  const SceneChanges changes = before ? before->FindChanges() : SceneChanges();
  if (!inRun.fIsDry) {
    document->Write(PathOfText(inRun.fOutput));
  }
  std::string text = Headline(inRun, CommandName(command), isDone, changes);
  text += inRun.fIsDry ? ListChanges(session.GetHost(), scene, changes) : "";
  text += inReport ? inReport(scene, *before, changes) : "";
  session.ShowWarnings();
  inContext.fConsole.fOut << text;
}

}  // namespace qlx::host
