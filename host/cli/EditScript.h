// Runs a script on a scene: steps of its own, and those on the panel that is open.
//
//   add qlx|pin|slider to ELEMENT      remove NUMBER of ELEMENT      turn NUMBER of ELEMENT on|off
//   panel NUMBER of ELEMENT            reset                         frame NUMBER
//   select NAME...                     keys all|none              keys FRAME FRAME
//   do COMMAND                         undo                       redo
//
// Each step that changes something can be taken back, as one.
//
// For the steps on a panel, and the answers to what they make the plug-in ask, see ui/ScriptPerson.h.
#pragma once

#include <memory>

#include "model/UndoHistory.h"
#include "services/ModifierPanel.h"
#include "ui/ScriptPerson.h"

namespace qlx::host {

class EditScript {
 public:
  // The host asks this script's person until it ends. It must end before the scene.
  EditScript(Host& inHost, Scene& inScene, const std::string& inName, const std::filesystem::path& inFolder);
  ~EditScript();
  EditScript(const EditScript&) = delete;
  EditScript& operator=(const EditScript&) = delete;

  // `ScriptError` at the step that cannot be done; what stands in front of it is done then.
  void Run(const std::vector<ScriptStep>& inSteps);

 private:
  struct Action;
  static const Action* FindAction(const std::string& inWord);

  void RunStep(const ScriptStep& inStep);
  void ShowPanelAnew();
  void AddOne(const ScriptStep& inStep);
  void RemoveOne(const ScriptStep& inStep);
  void Turn(const ScriptStep& inStep);
  void OpenPanel(const ScriptStep& inStep);
  void Reset(const ScriptStep& inStep);
  void GoToFrame(const ScriptStep& inStep);
  void SelectThem(const ScriptStep& inStep);
  void SelectKeysOfThem(const ScriptStep& inStep);
  void DoCommand(const ScriptStep& inStep);
  void Undo(const ScriptStep& inStep);
  void Redo(const ScriptStep& inStep);

  PluginModifier& FindModifier(const ScriptStep& inStep);
  uint32 NumberOf(const ScriptStep& inStep, const std::string& inWord) const;

  Host& fHost;
  Scene& fScene;
  ScriptPerson fPerson;
  UndoHistory fHistory;
  std::unique_ptr<ModifierPanel> fPanel;
};

}  // namespace qlx::host
