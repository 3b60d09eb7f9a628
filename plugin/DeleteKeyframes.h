// The command that removes the keys at the current time.
#pragma once

#include "CommandShell.h"
#include "KeyframeScope.h"

namespace qlx {

class DeleteKeyframesCommand final : public TBasicSceneCommand {
 public:
  static constexpr MCGuid kClassID = "AE16DF61-D1B1-17F1-1C1F-18131A12131A"_guid;

  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
  MCResult MC_CALL Init(ISceneCommandContext* inContext) override { return fContext.Init(inContext); }
  // Throws `MC_E_INVALIDARG` where the context lacks what every scene has.
  MCResult MC_CALL Prepare() override;
  // Asks for the scope (dialog 165). Only keys at exactly the current tick go.
  bool MC_CALL Do() override;

 private:
  KeyframeScope fScope;
  CommandContext fContext;
};

}  // namespace qlx
