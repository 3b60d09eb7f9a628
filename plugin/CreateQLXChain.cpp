#include "CreateQLXChain.h"

#include "AddModifierCommand.h"
#include "PartAccess.h"
#include "PluginDialog.h"
#include "QLXChainDialog.h"
#include "QLXModifier.h"

namespace qlx {

namespace {

constexpr int32 kChainDialog = 190;

class QLXChainIsSelectionNonEmpty final : public ContextMenuCallBack {};

// The link follows the element from then on.
void Follow(QLXChainLink& ioLink, TreeElement& inElement) {
  ioLink.fHasControlElement = true;
  ioLink.fUseControlElement = true;
  inElement.GetTreePath(ioLink.fControlElementPath);
  AssignFitting(ioLink.GetControlElementName(), inElement.GetName());
}

void LayLink(TreeElement& ioTarget, const QLXChainLink& inLink) {
  const auto component = MakeModifier("fQLX"_id);
  if (const auto modifier = MCQuery<QLXModifier>(component)) {
    modifier->SetChainLink(inLink);
    AppendModifier(ioTarget, component.Get());
  }
}

}  // namespace

void QLXChainCommand::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<QLXChainIsSelectionNonEmpty>(outCallBack);
}

MCResult QLXChainCommand::Init(ISceneCommandContext* inContext) {
  fContext.Share(inContext);
  return MC_S_OK;
}

MCResult QLXChainCommand::Prepare() {
  if (fContext) {
    fContext->GetScene(fScene.WriteInto());
  }
  return MC_S_OK;
}

bool QLXChainCommand::Do() {
  return RunCommand([&] {
    PluginDialog dialog(kChainDialog);
    const auto links = MCQuery<QLXChainDialog>(dialog.GetPart());
    if (!links || !fScene) {
      return;
    }
    links->SetScene(fScene.Get());
    if (dialog.Run()) {
      bool followsFirst = false;
      TakeFields(dialog.GetPart(), {{"cgrp"_id, followsFirst}});
      LayChain(*links, followsFirst);
    }
    links->SetScene(nullptr);
  });
}

void QLXChainCommand::LayChain(const QLXChainDialog& inDialog, bool inFollowsFirst) const {
  TMCCountedPtr<TreeElement> followed;
  for (const QLXChainLink& source : inDialog.GetLinks()) {
    QLXChainLink link = source;
    TMCCountedPtr<TreeElement> target;
    fScene->FindElementByTreePath(target.WriteInto(), link.fTargetPath);
    if (!target) {
      continue;
    }
    if (followed) {
      Follow(link, *followed);
    }
    LayLink(*target, link);
    if (!followed || !inFollowsFirst) {
      followed = target;
    }
  }
}

}  // namespace qlx
