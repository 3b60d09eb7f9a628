// The dialog in which a person edits one link of a chain (dialog 200). Each control that is used goes into the dialog's
// own copy of the link at once; the copy becomes the link on OK.
//
// Controls show the fields of the link in their order, and beside those:
//
//   'UnLm'           the unit of the limits, which is read as a real and is a unit's code
//   'uFRA'           both ends of the window at once
//   'TBno'           an earlier id of 'BTno'; as a button, it takes the axes of the position back, too
//   'sosc' 'sdcy' 'sgrw'   oscillator, decay and growth (dialogs 180, 160, 170)
#pragma once

#include "BasicPart.h"
#include "HostScene.h"
#include "PartAccess.h"
#include "QLXModifierData.h"

namespace qlx {

class QLXChainQLXSubDlg final : public TBasicPart {
 public:
  static constexpr MCGuid kInterfaceID = "10E24B1B-1020-0122-0FFF-211F1213ABBD"_guid;

  // Answers the class id with the object itself.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  // Acts on message 9 alone. Throws `MC_E_INVALIDARG` when its source is no UI part; nothing has changed then.
  MCResult MC_CALL Receive(uint32 inMessage, IMCUnknown* inSource, void* inData) override;

  // The element that the link is for, null for one that is gone, and the link to be copied. Nothing is heard before.
  void Start(TreeElement* inElement, const QLXChainLink& inLink);
  // Shows the copy in every control, and fills the lists of units that are empty.
  void ShowLink(IMFPart* inDialog);
  const QLXChainLink& GetLink() const { return fLink; }

 private:
  void TakeControl(IMFPart& inSource);
  void TakeField(MCID inID, IMFPart& inSource);
  void TakeLimitUnit(IMFPart& inSource);
  void TakeWindow(IMFPart& inSource);
  void TakeNoPosition(IMFPart& inSource);
  // Controls of the dialog, from any of them.
  void Show(MCID inID, IMFPart& inSource);
  void ClearSwitches(std::initializer_list<MCID> inIDs, IMFPart& inSource);

  TMCCountedPtr<TreeElement> fElement;
  bool fIsStarted = false;
  QLXChainLink fLink;
};

// Lets a person edit a link. False when that was cancelled, with the link as it was.
bool EditChainLink(TreeElement* inElement, QLXChainLink& ioLink);

}  // namespace qlx
