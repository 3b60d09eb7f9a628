// The command that shows all values of the selected element, and lets a person set them one by one.
#pragma once

#include "CommandShell.h"

namespace qlx {

class PropertyExplorer final : public TBasicSceneCommand {
 public:
  static constexpr MCGuid kClassID = "10E24B1C-1022-0123-1000-22201314ACBE"_guid;

  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
  MCResult MC_CALL Init(ISceneCommandContext* inContext) override { return fContext.Init(inContext); }
  // Throws `MC_E_INVALIDARG` where the context lacks what every scene has.
  MCResult MC_CALL Prepare() override;
  // Runs the explorer (dialog 181) on the first selected element.
  bool MC_CALL Do() override;

 private:
  CommandContext fContext;
};

}  // namespace qlx
