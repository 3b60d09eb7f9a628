// The dialog that shows the values of an element and sets them (dialog 181).
//
//   'plst'         the tree of values; choosing a row shows its value
//   'cVal' 'nVal'  the value that it has, and the one that a person wants
//   'upbn'         gives the chosen value the new one, at the current time; whether it makes a key is the host's
//
// The fields are below the part two above the tree and the button. A value that is no number reads as 0.
#pragma once

#include "BasicPart.h"
#include "HostScene.h"

namespace qlx {

class PropertyExplorerDialog final : public TBasicPart {
 public:
  static constexpr MCGuid kInterfaceID = "10E24B1C-1022-0123-1000-22201315ADBF"_guid;

  // Answers the class id with the object itself.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  // Acts on message 9 alone, and from a source alone. Throws `MC_E_INVALIDARG` when that is no UI part; nothing has
  // changed then. A row that is none, and a value that is gone, change nothing.
  MCResult MC_CALL Receive(uint32 inMessage, IMCUnknown* inSource, void* inData) override;

  // The element that is shown; null for none.
  void SetTree(TreeElement* inTree) { fTree.Share(inTree); }

 private:
  void ShowChosen(IMFPart& inTreeControl);
  void ApplyNew(IMFPart& inButton);

  TMCCountedPtr<TreeElement> fTree;
};

}  // namespace qlx
