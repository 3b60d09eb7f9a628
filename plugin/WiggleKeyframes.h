// The command that moves the selected keys by a random number of frames.
#pragma once

#include "CommandShell.h"

namespace qlx {

// The bounds, in frames: the command's public block.
struct WigglePublicData {
  int32 fMinFrames = -3;
  int32 fMaxFrames = 3;
};
static_assert(sizeof(WigglePublicData) == 8);

class WiggleKeyframesCommand final : public TBasicSceneCommand {
 public:
  static constexpr MCGuid kClassID = "AEE6DF60-DAB9-47F2-BCDF-0843BA52133A"_guid;

  void* MC_CALL GetExtensionDataBuffer() override { return &fData; }
  uint32 MC_CALL GetExtensionDataSize() override { return sizeof fData; }
  int16 MC_CALL GetResourceId() override { return 159; }
  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override;
  // Every run starts from the default bounds, unless the exchange writes the block afterwards.
  MCResult MC_CALL Init(ISceneCommandContext* inContext) override;
  // Throws nothing of its own.
  MCResult MC_CALL Prepare() override;
  // Works on the keys that are selected in the time lines of the scene's selected elements. With a bound of -1 the
  // first key that would move in its direction ends the command with `MC_E_FAULT`: keys before it have moved.
  bool MC_CALL Do() override;

 private:
  void WiggleElement(TreeElement& inElement) const;

  WigglePublicData fData;
  TMCCountedPtr<ISceneCommandContext> fContext;
  TMCCountedPtr<I3DShScene> fScene;
};

}  // namespace qlx
