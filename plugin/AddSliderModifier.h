// The command that puts a slider on the selected element.
#pragma once

#include "AddModifierCommand.h"

namespace qlx {

class AddSliderModifierCommand final : public AddModifierCommand {
 public:
  static constexpr MCGuid kClassID = "3759F866-BD74-4B85-AE16-4F022E419106"_guid;

  AddSliderModifierCommand();
  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
};

}  // namespace qlx
