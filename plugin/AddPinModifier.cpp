#include "AddPinModifier.h"

namespace qlx {

namespace {

class AddPinIsSelectionNonEmpty final : public SelectionMenuCallBack {};

}  // namespace

AddPinModifierCommand::AddPinModifierCommand() : AddModifierCommand("fPIN"_id, "AddPinModifier", __LINE__) {}

void AddPinModifierCommand::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<AddPinIsSelectionNonEmpty>(outCallBack);
}

}  // namespace qlx
