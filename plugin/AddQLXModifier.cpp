#include "AddQLXModifier.h"

namespace qlx {

namespace {

class AddQLXIsSelectionNonEmpty final : public SelectionMenuCallBack {};

}  // namespace

AddQLXModifierCommand::AddQLXModifierCommand() : AddModifierCommand("fQLX"_id, "AddQLXModifier", __LINE__) {}

void AddQLXModifierCommand::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<AddQLXIsSelectionNonEmpty>(outCallBack);
}

}  // namespace qlx
