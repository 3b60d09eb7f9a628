// The command that puts a link on the selected element.
#pragma once

#include "AddModifierCommand.h"

namespace qlx {

class AddQLXModifierCommand final : public AddModifierCommand {
 public:
  static constexpr MCGuid kClassID = "10D400AB-1490-3211-DFF0-210FA01799B1"_guid;

  AddQLXModifierCommand();
  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
};

}  // namespace qlx
