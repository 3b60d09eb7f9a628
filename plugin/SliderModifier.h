// A modifier that puts one value of its element under a slider in the modifier's own panel. The value lives in the
// public block: whoever animates the block drives the target.
#pragma once

#include <cstddef>

#include "BasicMCFCOMImplementations.h"
#include "HostScene.h"

namespace qlx {

// The public block. 304 bytes on 32-bit targets; larger on others, where strings are.
struct SliderPublicData {
  TMCDynamicString fPath;            // the target as a text path (scene3d/TextPath.h); empty: none
  TMCString255 fLabel{"<not set>"};  // of the slider: the label of the target's row as it was chosen
  real32 fValue = 0;                 // what the target is given
  real32 fMin = -100;                // the slider's ends
  real32 fMax = 100;
};

class SliderModifier final : public TBasicTreeModifier {
 public:
  static constexpr MCGuid kInterfaceID = "203FF150-EDC1-991D-93E9-19E1A1710098"_guid;

  // Answers the class id with the object itself.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;

  // Gives the target the value. Without a target, or with one that is gone, nothing is written. Always 0.
  MCResult MC_CALL SetTreeElement(TreeElement* inTree) override;

  void* MC_CALL GetExtensionDataBuffer() override { return &fData; }
  uint32 MC_CALL GetExtensionDataSize() override { return sizeof fData; }
  int16 MC_CALL GetResourceId() override { return 183; }
  // Every message brings the slider 'valu' below its source up to date. The ends 'vmin' and 'vmax' do so from beside
  // it, and the button 'sbtn' lets a person choose the target (dialog 140). Throws `MC_E_INVALIDARG` when the source is
  // no UI part; nothing has changed then. Always 0 otherwise.
  MCResult MC_CALL HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* inData) override;
  MCResult MC_CALL ExtensionDataChanged() override { return MC_S_OK; }

 private:
  void WriteTarget(TreeElement& inTree);
  void FindMorphs(TreeElement& inTree);
  void HandleControl(IMFPart& inSource);
  void ShowSlider(IMFPart* inPart, bool inWithLabel) const;
  void PickTarget(IMFPart& inSource);
  void ShowTitle(IMFPart& inSource) const;

  SliderPublicData fData;
  TMCCountedPtr<TreeElement> fTree;              // the first element that was seen
  TMCCountedPtr<I3DShMorphTarget> fMorphTarget;  // looked for until it is found, and kept
};

}  // namespace qlx
