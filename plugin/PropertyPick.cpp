#include "PropertyPick.h"

#include "PartAccess.h"
#include "PluginDialog.h"

namespace qlx {

namespace {

constexpr int32 kPropertyDialog = 140;

}  // namespace

TMCCountedPtr<QLXPropertyItem> GetSelectedProperty(IHierarchyList& inList, uint32& outRow) {
  TMCArray<uint32> rows;
  inList.GetSelectedRows(rows);
  if (rows.GetElemCount() == 0) {
    return nullptr;
  }
  outRow = rows[0];
  return MCQuery<QLXPropertyItem>(inList.GetRowItem(outRow));
}

bool PickProperty(TreeElement& inElement, PropertyTree inTree, PickedProperty& outPicked) {
  if (!MCQuery<I3DShAnimated>(&inElement)) {
    return false;
  }
  PluginDialog dialog(kPropertyDialog);
  const auto list = FindControl<IHierarchyList>(dialog.GetPart(), "plst"_id);
  if (!list) {
    return false;
  }
  FillPropertyTree(*list, inElement, inTree, TextPathFilter::kEditable);
  if (!dialog.Run()) {
    return false;
  }
  uint32 row = 0;
  const auto item = GetSelectedProperty(*list, row);
  if (!item) {
    return false;
  }
  outPicked.fPath = item->GetText();
  list->GetRowLabel(outPicked.fLabel, row);
  return true;
}

}  // namespace qlx
