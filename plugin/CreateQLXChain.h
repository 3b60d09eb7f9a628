// The command that lays a chain of links over elements, typically the bones of a figure.
#pragma once

#include "CommandShell.h"

namespace qlx {

class QLXChainDialog;

class QLXChainCommand final : public TBasicSceneCommand {
 public:
  static constexpr MCGuid kClassID = "10E24BAB-1020-0121-0FFF-211F1212AABB"_guid;

  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
  MCResult MC_CALL Init(ISceneCommandContext* inContext) override;
  MCResult MC_CALL Prepare() override;
  // Runs the dialog of the chain (dialog 190). On OK each of its links becomes a modifier, behind those of its element.
  // The first keeps what the dialog gave it; every other one follows the first element where 'cgrp' is on, and the one
  // before it where it is off. A link whose element is gone is left out, as if the list did not have it.
  bool MC_CALL Do() override;

 private:
  void LayChain(const QLXChainDialog& inDialog, bool inFollowsFirst) const;

  TMCCountedPtr<ISceneCommandContext> fContext;
  TMCCountedPtr<I3DShScene> fScene;
};

}  // namespace qlx
