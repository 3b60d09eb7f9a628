// What a command of the plug-in's menu works on: a scene, and what was selected in it.
#pragma once

#include "HostCommands.h"
#include "model/Scene.h"

namespace qlx::host {

// Keeps the selection as it was when the context was made; elements that leave the scene meanwhile are held.
class SceneCommandContext final : public HostObject<ISceneCommandContext, ISceneSelectionOwner, ISceneSelection> {
 public:
  explicit SceneCommandContext(Scene& inScene);

  // ISceneCommandContext
  void MC_CALL GetScene(I3DShScene** outScene) override;
  void MC_CALL GetSelectionOwner(ISceneSelectionOwner** outOwner) override;
  // The scene itself: this host has one scene a document.
  void MC_CALL GetDocument(IMCUnknown** outDocument) override;

  // ISceneSelectionOwner
  void MC_CALL GetSelection(ISceneSelection** outSelection) override;

  // ISceneSelection
  uint32 MC_CALL GetEntryCount() override { return static_cast<uint32>(fSelected.size()); }
  const MCID* MC_CALL GetEntry(uint32 inIndex, uint32& outCount) override;
  IMCUnknown* MC_CALL GetEntryObject(uint32 inIndex, int32 inZero) override;

 private:
  TMCCountedPtr<Scene> fScene;
  std::vector<TMCCountedPtr<Element>> fSelected;
};

}  // namespace qlx::host
