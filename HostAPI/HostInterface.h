// User interface: parts, controls and dialogs. All are implemented by the host, for its main thread.
#pragma once

#include "MCArray.h"
#include "MCUnknown.h"

namespace qlx {

class IMFHierarchyItem;
class TMCString;

// Messages from a control that a person used: to the modifier of a panel, and to the code of a dialog.
inline constexpr uint32 kPanelControlUsed = 5;
inline constexpr uint32 kDialogControlUsed = 9;

// Any part of a panel or dialog.
class IMFPart : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "622D5D6C-E8A6-4ABB-9C7D-3689D216B40C"_guid;

  virtual MCID MC_CALL GetPartId() = 0;
  // The part below this one with that id, null when there is none.
  virtual void MC_CALL FindChildPart(IMFPart** outPart, MCID inID, int32 inZero) = 0;
  virtual void MC_CALL GetParentPart(IMFPart** outPart) = 0;
  // Read and set a control's value in the form of `inTypeId` ('bool', 'in32', 're32', 'str '). A control that has no
  // such form answers a failure and leaves buffer and value alone.
  virtual MCResult MC_CALL GetPartValue(void* outBuffer, MCID inTypeId) = 0;
  virtual MCResult MC_CALL SetPartValue(const void* inBuffer, MCID inTypeId, int32 inOne1, int32 inOne2) = 0;

 protected:
  ~IMFPart() = default;
};

class ISliderControl : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "C90720A2-5E91-4D36-B562-8802D5D1079F"_guid;

  virtual void MC_CALL SetSliderLabel(const TMCString& inText) = 0;
  virtual void MC_CALL SetSliderRange(real32 inMinimum, real32 inMaximum, int32 inOne) = 0;

 protected:
  ~ISliderControl() = default;
};

// Answered by a part with a title that can be changed. Buttons are none.
class ILabelledControl : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "917F6FD4-0AD9-4198-A093-E21A7D21D299"_guid;

  virtual void MC_CALL GetLabel(TMCString& outText) = 0;
  virtual void MC_CALL SetLabel(const TMCString& inText, int32 inOne) = 0;

 protected:
  ~ILabelledControl() = default;
};

class IPopupControl : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "54A1ABE8-478D-46D6-9EDE-7199DDDBAF72"_guid;

  virtual uint32 MC_CALL GetItemCount() = 0;
  virtual void MC_CALL AddItem(const TMCString& inText) = 0;

 protected:
  ~IPopupControl() = default;
};

// A flat list of texts with one current row.
class IListControl : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "D88FEB49-9D01-4B2D-8034-41198541B7F0"_guid;

  virtual uint32 MC_CALL GetListRowCount() = 0;
  virtual void MC_CALL AddListRow(const TMCString& inText) = 0;
  virtual void MC_CALL ClearListRows() = 0;
  // False, with `outRow` as it was, when no row is current.
  virtual bool MC_CALL GetCurrentRow(uint32& outRow) = 0;
  virtual void MC_CALL SetCurrentRow(uint32 inRow) = 0;

 protected:
  ~IListControl() = default;
};

// A tree of rows. Rows are numbered from the top, folded ones included.
class IHierarchyList : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "448F0096-AC7F-43C4-A759-7ED7E1416252"_guid;

  virtual void MC_CALL ClearList(int32 inZero) = 0;
  // Adds a row below that of `inParent` (null: at the top), with one label a column. The list holds the item and
  // copies the labels.
  virtual void MC_CALL AddRow(IMFHierarchyItem* inItem, const TMCString* const* inLabels, int32 inLabelCount,
                              IMFHierarchyItem* inParent) = 0;
  virtual uint32 MC_CALL GetRowCount() = 0;
  virtual void MC_CALL SetRowsExpanded(const TMCArray<uint32>& inRows, bool inExpanded) = 0;
  virtual TMCArray<uint32>& MC_CALL GetSelectedRows(TMCArray<uint32>& outRows) = 0;
  // Null past the end.
  virtual IMFHierarchyItem* MC_CALL GetRowItem(uint32 inRow) = 0;
  virtual void MC_CALL GetRowLabel(TMCString& outLabel, uint32 inRow) = 0;

 protected:
  ~IHierarchyList() = default;
};

class IModalDialog : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "24D24674-D509-4B38-BA82-74B27AB4EA4C"_guid;

  // Runs until the person closes the dialog; true for OK.
  virtual bool MC_CALL RunModal() = 0;
  // Ends the dialog. Called after OK and after cancel.
  virtual void MC_CALL CloseDialog() = 0;

 protected:
  ~IModalDialog() = default;
};

}  // namespace qlx
