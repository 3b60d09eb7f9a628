// The command that puts a pin on the selected element.
#pragma once

#include "AddModifierCommand.h"

namespace qlx {

class AddPinModifierCommand final : public AddModifierCommand {
 public:
  static constexpr MCGuid kClassID = "3759F866-BD74-4B85-AE16-4F022E419105"_guid;

  AddPinModifierCommand();
  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
};

}  // namespace qlx
