#include "SceneCommandContext.h"

namespace qlx::host {

SceneCommandContext::SceneCommandContext(Scene& inScene) : fScene(MCShare(&inScene)) {
  for (Element* const element : inScene.GetSelection()) {
    fSelected.push_back(MCShare(element));
  }
}

void SceneCommandContext::GetScene(I3DShScene** outScene) {
  StoreForCaller<I3DShScene>(outScene, fScene.Get());
}

void SceneCommandContext::GetSelectionOwner(ISceneSelectionOwner** outOwner) {
  StoreForCaller<ISceneSelectionOwner>(outOwner, this);
}

void SceneCommandContext::GetDocument(IMCUnknown** outDocument) {
  StoreForCaller<IMCUnknown>(outDocument, static_cast<I3DShScene*>(fScene.Get()));
}

void SceneCommandContext::GetSelection(ISceneSelection** outSelection) {
  StoreForCaller<ISceneSelection>(outSelection, this);
}

const MCID* SceneCommandContext::GetEntry(uint32 inIndex, uint32& outCount) {
  static constexpr MCID kTypes[] = {"Tree"_id};
  const bool isEntry = inIndex < fSelected.size();
  outCount = isEntry ? 1 : 0;
  return isEntry ? kTypes : nullptr;
}

IMCUnknown* SceneCommandContext::GetEntryObject(uint32 inIndex, int32 /*inZero*/) {
  return inIndex < fSelected.size() ? static_cast<TreeElement*>(fSelected[inIndex].Get()) : nullptr;
}

}  // namespace qlx::host
