#include "PropertyExplorer.h"

#include "PartAccess.h"
#include "PluginDialog.h"
#include "PropertyExplorerDialog.h"
#include "PropertyFill.h"
#include "TreeSelectionIterator.h"

namespace qlx {

namespace {

constexpr int32 kExplorerDialog = 181;

class PropertyExplorerIsSelectionNonEmpty final : public SelectionMenuCallBack {};

}  // namespace

void PropertyExplorer::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<PropertyExplorerIsSelectionNonEmpty>(outCallBack);
}

MCResult PropertyExplorer::Prepare() {
  return fContext.Prepare("PropertyExplorer", __LINE__);
}

bool PropertyExplorer::Do() {
  return RunCommand([&] {
    TTreeSelectionIterator selected(fContext.fSelection.Get());
    const auto element = selected.Next();
    if (!element) {
      return;
    }
    PluginDialog dialog(kExplorerDialog);
    const auto explorer = MCQuery<PropertyExplorerDialog>(dialog.GetPart());
    const auto list = FindControl<IHierarchyList>(dialog.GetPart(), "plst"_id);
    if (!explorer || !list) {
      return;
    }
    explorer->SetTree(element.Get());
    FillPropertyTree(*list, *element, PropertyTree::kOwnAndPosition, TextPathFilter::kAll);
    dialog.Run();
    explorer->SetTree(nullptr);
  });
}

}  // namespace qlx
