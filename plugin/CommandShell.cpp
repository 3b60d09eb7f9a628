#include "CommandShell.h"

#include "TreeSelectionIterator.h"

namespace qlx {

MCResult CommandContext::Init(ISceneCommandContext* inContext) {
  return GuardOperation([&] {
    fContext.Share(inContext);
    if (fContext) {
      fContext->GetSelectionOwner(fSelectionOwner.WriteInto());
    }
    if (fSelectionOwner) {
      fSelectionOwner->GetSelection(fSelection.WriteInto());
    }
    return MC_S_OK;
  });
}

MCResult CommandContext::Prepare(const char* inFile, int32 inLine) {
  return GuardOperation([&] {
    if (fContext) {
      fContext->GetScene(fScene.WriteInto());
      if (fScene) {
        fScene->GetSceneMaster(fSceneMaster.WriteInto());
      }
      if (!fSceneMaster) {
        throw TMCException(MC_E_INVALIDARG, inFile, inLine);
      }
      fContext->GetDocument(fDocument.WriteInto());
      if (!fDocument) {
        throw TMCException(MC_E_INVALIDARG, inFile, inLine + 1);
      }
    }
    if (!fSceneRoot && fScene) {
      TMCCountedPtr<IMCUnknown> root;
      fScene->GetRoot(root.WriteInto());
      fSceneRoot = MCQuery<TreeElement>(root);
    }
    return MC_S_OK;
  });
}

bool SelectionMenuCallBack::SelfPrepare(ISceneCommandContext* inContext) {
  bool isEnabled = false;
  GuardOperation([&] {
    TMCCountedPtr<ISceneSelectionOwner> owner;
    TMCCountedPtr<ISceneSelection> selection;
    if (inContext) {
      inContext->GetSelectionOwner(owner.WriteInto());
    }
    if (owner) {
      owner->GetSelection(selection.WriteInto());
    }
    if (!selection) {
      return MC_S_OK;
    }
    TTreeSelectionIterator elements(selection.Get());
    for (auto element = elements.Next(); element && !isEnabled; element = elements.Next()) {
      TMCCountedPtr<TreeElement> parent;
      element->GetParent(parent.WriteInto());
      isEnabled = static_cast<bool>(parent);
    }
    return MC_S_OK;
  });
  return isEnabled;
}

}  // namespace qlx
