#include "AddSliderModifier.h"

namespace qlx {

namespace {

class AddSliderIsSelectionNonEmpty final : public SelectionMenuCallBack {};

}  // namespace

AddSliderModifierCommand::AddSliderModifierCommand() : AddModifierCommand("fSLD"_id, "AddSliderModifier", __LINE__) {}

void AddSliderModifierCommand::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<AddSliderIsSelectionNonEmpty>(outCallBack);
}

}  // namespace qlx
