#include "CommandRun.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "AnswerPerson.h"
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
  ioScene.Evaluate(inRun.fFrame ? TimeOfFrame(ioScene, *inRun.fFrame, "--frame") : ioScene.GetStart());
  AnswerPerson person(inRun.fAnswers, ioScene.GetDiagnostics());
  UserInterface& user = ioSession.GetHost().GetUser();
  user.SetPerson(&person);
  try {
    const bool isDone = SceneCommand(ioSession.GetHost(), ioScene, inCommand).Run();
    user.SetPerson(nullptr);
    person.CheckThatAllWereAsked();
    return isDone;
  } catch (...) {
    user.SetPerson(nullptr);
    throw;
  }
}

}  // namespace

void AddSelectOption(CLI::App& ioCommand, std::vector<std::string>& outNames) {
  ioCommand.add_option("--select", outNames, "The elements that are selected, in this order")->type_name("NAME...");
}

void AddRunOptions(CLI::App& ioCommand, CommandRun& ioRun) {
  ioCommand.add_option("--frame", ioRun.fFrame, "The current frame; without it, the first of the clip")
      ->type_name("FRAME");
  ioCommand.add_option("-o,--output", ioRun.fOutput, "The scene to write, .gltf or .glb")
      ->required()
      ->type_name("FILE");
}

void RunOnFile(CommandContext& inContext, const CommandRun& inRun) {
  CheckOutputPlace(PathOfText(inRun.fOutput));
  Session session(inContext);
  const ExtensionRecord& command = NeedCommand(session.GetHost(), inRun.fCommand, "the command");
  const std::unique_ptr<GltfDocument> document = session.Open(inRun.fScene);
  const bool isDone = RunInScene(session, document->GetScene(), inRun, command);
  document->Write(PathOfText(inRun.fOutput));
  session.ShowWarnings();
  inContext.fConsole.fOut << fmt::format("{}: {} {}\n", inRun.fOutput, CommandName(command),
                                         isDone ? "done" : "cancelled");
}

}  // namespace qlx::host
