// The dialog in which a person composes a chain of links: a list with a row for each link, and buttons (dialog 190).
//
//   'abtn'         adds a link on an element that the person chooses
//   'achb'         adds a link for each element below that of the current row, all with the same settings
//   'ebtn' 'dbtn'  edits, removes the link of the current row
//   'ubtn' 'mdbt'  moves it up, down
//
// Buttons for a row do nothing while none is current. The list is 'clst', below the parent of each button.
#pragma once

#include "BasicPart.h"
#include "HostScene.h"
#include "MCClassArray.h"
#include "QLXModifierData.h"

namespace qlx {

class QLXChainDialog final : public TBasicPart {
 public:
  static constexpr MCGuid kInterfaceID = "10E24B1B-1020-0122-0FFF-211F1212AABC"_guid;

  // Answers the class id with the object itself.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  // Acts on message 9 alone. Throws `MC_E_INVALIDARG` when its source is no UI part; nothing has changed then.
  MCResult MC_CALL Receive(uint32 inMessage, IMCUnknown* inSource, void* inData) override;

  // Not counted: set before the dialog runs, by a command that holds it longer.
  void SetScene(I3DShScene* inScene) { fScene = inScene; }
  // From the first link to the last.
  const TMCClassArray<QLXChainLink>& GetLinks() const { return fLinks; }

 private:
  void HandleButton(MCID inButton, IListControl* inList);
  void HandleRow(MCID inButton, uint32 inRow, IListControl* inList);
  void AddChosen();
  void AddBelow(uint32 inRow);
  bool Edit(uint32 inRow);
  bool Swap(uint32 inRow, uint32 inOther);
  // False without memory, with both arrays as they were.
  bool AddLink(const QLXChainLink& inLink, const TMCString& inLabel);
  TMCCountedPtr<TreeElement> FindTarget(const QLXChainLink& inLink) const;
  void ShowRows(IListControl* inList) const;

  I3DShScene* fScene = nullptr;
  // Of equal length: a text for each row, and its link.
  TMCClassArray<TMCString255> fRowLabels;
  TMCClassArray<QLXChainLink> fLinks;
};

}  // namespace qlx
