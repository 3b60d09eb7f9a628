#include "KeyframeScope.h"

#include "COMSafeUtilities.h"
#include "PartAccess.h"
#include "PluginDialog.h"
#include "TreeElementIterator.h"
#include "TreeSelectionIterator.h"

namespace qlx {

namespace {

bool AskForScope(int32 inDialog, KeyframeScope& ioScope) {
  PluginDialog dialog(inDialog);
  const bool isOk = dialog.Run();
  if (isOk) {
    ioScope = {};
    TakeFields(dialog.GetPart(),
               {{"figu"_id, ioScope.fWholeFigure}, {"subt"_id, ioScope.fSubtree}, {"selo"_id, ioScope.fSelectedOnly}});
  }
  return isOk;
}

void TellNoFigure() {
  if (IAlertService* const alerts = GetAlertService()) {
    alerts->ShowAlert(0, "The selected item is not a figure", "", "", "", 1, "OK", "", "");
  }
}

void WorkOn(TreeElement& inElement, KeyframeWork& ioWork) {
  const auto animated = MCQuery<I3DShAnimated>(&inElement);
  if (const auto owner = MCShare(animated ? animated->GetTimeLineOwner() : nullptr)) {
    ioWork.Work(*owner);
  }
}

// False for an element without a figure, where one is needed.
bool WorkInScope(TreeElement& inElement, const KeyframeScope& inScope, KeyframeWork& ioWork) {
  if (!inScope.fWholeFigure && !inScope.fSubtree) {
    WorkOn(inElement, ioWork);
    return true;
  }
  TreeElement* const root = inScope.fWholeFigure ? FindFigureRoot(&inElement) : &inElement;
  if (!root) {
    return false;
  }
  TTreeElementIterator elements(*root);
  while (TreeElement* const element = elements.Next()) {
    WorkOn(*element, ioWork);
  }
  return true;
}

}  // namespace

void RunInScope(CommandContext& inContext, int32 inDialog, KeyframeScope& ioScope, KeyframeWork& ioWork) {
  TTreeSelectionIterator selected(inContext.fSelection.Get());
  auto element = selected.Next();
  if (AskForScope(inDialog, ioScope)) {
    for (; element; element = selected.Next()) {
      if (!WorkInScope(*element, ioScope, ioWork)) {
        TellNoFigure();
        return;
      }
    }
  }
  if (inContext.fScene) {
    inContext.fScene->RefreshAfterCommand();
  }
}

}  // namespace qlx
