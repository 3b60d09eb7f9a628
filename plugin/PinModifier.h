// A modifier that holds its element at a position, while rotation and scale keep following the animation.
//
// The position is in scene units, either in scene space or in the space of the element's parent. Nothing is converted:
// switching the space after a position was taken reads the same three numbers in the other space.
#pragma once

#include <cstddef>

#include "BasicMCFCOMImplementations.h"
#include "HostScene.h"
#include "MCVector.h"

namespace qlx {

// The public block: what the host's parameter exchange reads and writes. Little-endian, laid out the same everywhere.
struct PinPublicData {
  bool fPositionSet = false;  // a position was taken
  bool fActive = false;       // the pin is on
  bool fGlobal = false;       // the position is in scene space
  uint8 fGap = 0;             // stays 0, so that the block's bytes are always the same
  TVector3 fPosition{};
  TVector3 fReserved{};  // part of the block's map; no operation reads it
};

static_assert(sizeof(PinPublicData) == 28);
static_assert(offsetof(PinPublicData, fPositionSet) == 0 && offsetof(PinPublicData, fActive) == 1);
static_assert(offsetof(PinPublicData, fGlobal) == 2 && offsetof(PinPublicData, fPosition) == 4);
static_assert(offsetof(PinPublicData, fReserved) == 16);

class PinModifier final : public TBasicTreeModifier {
 public:
  static constexpr MCGuid kInterfaceID = "203FF150-EDC1-991D-93E9-19E1A1710097"_guid;

  // Answers the class id with the object itself.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;

  // Writes the position over the translation of the element's transform, when one was taken and the pin is on. Always
  // 0.
  MCResult MC_CALL SetTreeElement(TreeElement* inTree) override;

  void* MC_CALL GetExtensionDataBuffer() override { return &fData; }
  uint32 MC_CALL GetExtensionDataSize() override { return sizeof fData; }
  int16 MC_CALL GetResourceId() override { return 156; }
  // The panel's buttons: 'setp' takes the element's present position, 'adkf' keys the pinned one at the current time.
  // Throws `MC_E_INVALIDARG` when the source of a message is no UI part; nothing has changed then. Always 0 otherwise.
  MCResult MC_CALL HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* inData) override;
  // A reset: the whole block goes to zero. The element stays.
  MCResult MC_CALL ExtensionDataChanged() override;

 private:
  void Apply(TreeElement& inTree) const;
  void HandleButton(MCID inPart);
  TMCCountedPtr<TreeElement> FindElement();
  void TakePosition(TreeElement& inTree);
  void KeyPosition(TreeElement& inTree) const;

  PinPublicData fData;
  TMCCountedPtr<TreeElement> fTree;  // the first element that was seen
};

}  // namespace qlx
