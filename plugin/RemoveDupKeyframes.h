// The command that removes the keys that repeat both their neighbours.
#pragma once

#include "CommandShell.h"
#include "KeyframeScope.h"

namespace qlx {

class RemoveDupKeyframesCommand final : public TBasicSceneCommand {
 public:
  static constexpr MCGuid kClassID = "5D95B36C-C4BD-4242-96BB-067A18E44CDB"_guid;

  int16 MC_CALL GetResourceId() override { return 158; }
  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
  MCResult MC_CALL Init(ISceneCommandContext* inContext) override;
  // Throws `MC_E_INVALIDARG` where the context lacks what every scene has.
  MCResult MC_CALL Prepare() override;
  // Asks for the scope (dialog 158). A run of equal values keeps its first key and its last; reals are compared as
  // such, without a tolerance, other values by their bytes. Interpolation and tangents play no part.
  bool MC_CALL Do() override;

 private:
  KeyframeScope fScope;
  CommandContext fContext;
};

}  // namespace qlx
