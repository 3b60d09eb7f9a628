// Panels and dialogs that a test builds and a test's person uses: parts below parts, controls with values, lists.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "FakeObject.h"
#include "HostExtensions.h"
#include "HostInterface.h"
#include "HostServices.h"
#include "MCArray.h"
#include "MCCountedPtr.h"
#include "MCString.h"

namespace qlx::test {

inline std::string TextOf(const TMCString& inText) {
  return {inText.CStr(), inText.ByteLength()};
}

struct FakeRow {
  TMCCountedPtr<IMFHierarchyItem> fItem;
  std::string fLabel;
  std::size_t fDepth = 0;
  bool fIsExpanded = true;
};

// A control of any kind: it answers the interfaces of its kind, and the values that it was given a form of.
class FakeControl final : public IMFPart,
                          public ILabelledControl,
                          public ISliderControl,
                          public IPopupControl,
                          public IListControl,
                          public IHierarchyList,
                          public IModalDialog {
 public:
  enum Kind { kPlain, kLabelled, kSlider, kPopup, kList, kTree, kDialog };

  explicit FakeControl(MCID inID = 0, Kind inKind = kPlain) : fID(inID), fKind(inKind) {}

  FakeControl& Add(MCID inID, Kind inKind = kPlain) {
    fChildren.push_back(std::make_unique<FakeControl>(inID, inKind));
    fChildren.back()->fParent = this;
    return *fChildren.back();
  }
  FakeControl& Add(MCID inID, bool inValue) { return Valued(inID, "bool"_id, inValue ? 1 : 0); }
  FakeControl& Add(MCID inID, int32 inValue) { return Valued(inID, "in32"_id, inValue); }
  FakeControl& Add(MCID inID, real32 inValue) { return Valued(inID, "re32"_id, static_cast<real64>(inValue)); }
  FakeControl& Add(MCID inID, const char* inText) {
    FakeControl& control = Valued(inID, "str "_id, 0);
    control.fText = inText;
    return control;
  }
  // Null when it is not there.
  FakeControl* Find(MCID inID) {
    for (const auto& child : fChildren) {
      FakeControl* const found = child->fID == inID ? child.get() : child->Find(inID);
      if (found) {
        return found;
      }
    }
    return nullptr;
  }
  FakeControl& operator[](MCID inID) { return *Find(inID); }
  IMFPart* AsPart() { return this; }
  // References that somebody still holds to it or to what is below.
  int CountHeld() const {
    int held = fCount;
    for (const auto& child : fChildren) {
      held += child->CountHeld();
    }
    return held;
  }

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (fExtension && fExtension->QueryInterface(inID, outObject) == MC_S_OK) {
      return MC_S_OK;
    }
    if (inID == IMCUnknown::kInterfaceID || inID == IMFPart::kInterfaceID) {
      return MCStoreCounted<IMFPart>(this, outObject);
    }
    return Answers<ILabelledControl>(kLabelled, inID, outObject) || Answers<ISliderControl>(kSlider, inID, outObject) ||
                   Answers<IPopupControl>(kPopup, inID, outObject) || Answers<IListControl>(kList, inID, outObject) ||
                   Answers<IHierarchyList>(kTree, inID, outObject) || Answers<IModalDialog>(kDialog, inID, outObject)
               ? MC_S_OK
               : MCStoreNone(outObject);
  }
  uint32 MC_CALL AddRef() override { return static_cast<uint32>(++fCount); }
  uint32 MC_CALL Release() override { return static_cast<uint32>(--fCount); }

  // IMFPart
  MCID MC_CALL GetPartId() override { return fID; }
  void MC_CALL FindChildPart(IMFPart** outPart, MCID inID, int32) override {
    MCAssignCounted<IMFPart>(outPart, Find(inID));
  }
  void MC_CALL GetParentPart(IMFPart** outPart) override { MCAssignCounted<IMFPart>(outPart, fParent); }
  MCResult MC_CALL GetPartValue(void* outBuffer, MCID inTypeId) override {
    if (inTypeId != fForm) {
      return MC_E_NOTVALID;
    }
    switch (inTypeId) {
      case "bool"_id:
        *static_cast<uint8*>(outBuffer) = static_cast<uint8>(fNumber);
        return MC_S_OK;
      case "in32"_id:
        *static_cast<int32*>(outBuffer) = static_cast<int32>(fNumber);
        return MC_S_OK;
      case "re32"_id:
        *static_cast<real32*>(outBuffer) = static_cast<real32>(fNumber);
        return MC_S_OK;
      default:
        *static_cast<TMCString*>(outBuffer) = fText.c_str();
        return MC_S_OK;
    }
  }
  MCResult MC_CALL SetPartValue(const void* inBuffer, MCID inTypeId, int32 in1, int32 in2) override {
    ++fWrites;
    if (inTypeId != fForm || in1 != 1 || in2 != 1) {
      return MC_E_NOTVALID;
    }
    switch (inTypeId) {
      case "bool"_id:
        fNumber = *static_cast<const bool*>(inBuffer) ? 1 : 0;
        return MC_S_OK;
      case "in32"_id:
        fNumber = *static_cast<const int32*>(inBuffer);
        return MC_S_OK;
      case "re32"_id:
        fNumber = static_cast<real64>(*static_cast<const real32*>(inBuffer));
        return MC_S_OK;
      default:
        fText = TextOf(*static_cast<const TMCString*>(inBuffer));
        return MC_S_OK;
    }
  }

  // Titles and sliders
  void MC_CALL GetLabel(TMCString& outText) override { outText = fText.c_str(); }
  void MC_CALL SetLabel(const TMCString& inText, int32 inOne) override {
    fText = TextOf(inText);
    fWrites += inOne;
  }
  void MC_CALL SetSliderLabel(const TMCString& inText) override { fText = TextOf(inText); }
  void MC_CALL SetSliderRange(real32 inMinimum, real32 inMaximum, int32) override {
    fMinimum = inMinimum;
    fMaximum = inMaximum;
  }

  // Popups and lists
  uint32 MC_CALL GetItemCount() override { return static_cast<uint32>(fTexts.size()); }
  void MC_CALL AddItem(const TMCString& inText) override { fTexts.push_back(TextOf(inText)); }
  uint32 MC_CALL GetListRowCount() override { return GetItemCount(); }
  void MC_CALL AddListRow(const TMCString& inText) override { AddItem(inText); }
  void MC_CALL ClearListRows() override {
    fTexts.clear();
    fCurrent.reset();
  }
  bool MC_CALL GetCurrentRow(uint32& outRow) override {
    outRow = fCurrent.value_or(outRow);
    return fCurrent.has_value();
  }
  void MC_CALL SetCurrentRow(uint32 inRow) override { fCurrent = inRow; }

  // Trees
  void MC_CALL ClearList(int32) override {
    fRows.clear();
    fDepths.clear();
    fBranch.clear();
    fSelected.clear();
  }
  void MC_CALL AddRow(IMFHierarchyItem* inItem, const TMCString* const* inLabels, int32 inCount,
                      IMFHierarchyItem* inParent) override;
  uint32 MC_CALL GetRowCount() override { return static_cast<uint32>(fRows.size()); }
  void MC_CALL SetRowsExpanded(const TMCArray<uint32>& inRows, bool inExpanded) override {
    for (const uint32 row : inRows) {
      fRows.at(row).fIsExpanded = inExpanded;
    }
  }
  TMCArray<uint32>& MC_CALL GetSelectedRows(TMCArray<uint32>& outRows) override {
    outRows.SetElemCount(0);
    for (const uint32 row : fSelected) {
      outRows.AddElem(row);
    }
    return outRows;
  }
  IMFHierarchyItem* MC_CALL GetRowItem(uint32 inRow) override {
    return inRow < fRows.size() ? fRows[inRow].fItem.Get() : nullptr;
  }
  void MC_CALL GetRowLabel(TMCString& outLabel, uint32 inRow) override { outLabel = fRows.at(inRow).fLabel.c_str(); }
  // The row with that label, selected.
  void Select(const std::string& inLabel) {
    for (uint32 i = 0; i < fRows.size(); ++i) {
      if (fRows[i].fLabel == inLabel) {
        fSelected = {i};
      }
    }
  }
  std::vector<std::string> Labels() const {
    std::vector<std::string> labels;
    for (const FakeRow& row : fRows) {
      labels.push_back(std::string(2 * row.fDepth, ' ') + row.fLabel);
    }
    return labels;
  }

  // Dialogs
  bool MC_CALL RunModal() override {
    ++fRuns;
    return fOnRun && fOnRun(*this);
  }
  void MC_CALL CloseDialog() override { ++fCloses; }

  MCID fID;
  Kind fKind;
  IMCUnknown* fExtension = nullptr;  // answers first
  FakeControl* fParent = nullptr;
  std::vector<std::unique_ptr<FakeControl>> fChildren;
  MCID fForm = 0;  // of the value: 0 for none
  real64 fNumber = 0;
  std::string fText;  // value or label
  real32 fMinimum = 0;
  real32 fMaximum = 0;
  std::vector<std::string> fTexts;
  std::optional<uint32> fCurrent;
  std::vector<FakeRow> fRows;
  std::vector<uint32> fSelected;
  std::function<bool(FakeControl&)> fOnRun;  // what the person does; true for OK
  int fWrites = 0;
  int fRuns = 0;
  int fCloses = 0;
  int fCount = 0;

 private:
  FakeControl& Valued(MCID inID, MCID inForm, real64 inNumber) {
    FakeControl& control = Add(inID);
    control.fForm = inForm;
    control.fNumber = inNumber;
    return control;
  }
  template <class Interface>
  bool Answers(Kind inKind, const MCGuid& inID, void** outObject) {
    return fKind == inKind && inID == Interface::kInterfaceID && MCStoreCounted<Interface>(this, outObject) == MC_S_OK;
  }

  std::unordered_map<const IMFHierarchyItem*, std::size_t> fDepths;
  std::vector<const IMFHierarchyItem*> fBranch;  // from the top down to the last row
};

// Below the last row that the parent holds. Fast for rows that come in their order.
inline void FakeControl::AddRow(IMFHierarchyItem* inItem, const TMCString* const* inLabels, int32 inCount,
                                IMFHierarchyItem* inParent) {
  const std::size_t depth = inParent ? fDepths.at(inParent) + 1 : 0;
  auto place = fRows.end();
  if (depth == 0 || (depth <= fBranch.size() && fBranch[depth - 1] == inParent)) {
    fBranch.resize(depth);
    fBranch.push_back(inItem);
  } else {
    place = std::ranges::find(fRows, inParent, [](const FakeRow& inRow) { return inRow.fItem.Get(); }) + 1;
    place = std::find_if(place, fRows.end(), [depth](const FakeRow& inRow) { return inRow.fDepth < depth; });
  }
  fDepths[inItem] = depth;
  fRows.insert(place, {MCShare(inItem), inCount > 0 ? TextOf(*inLabels[0]) : "", depth, true});
}

// The host's dialogs by their numbers, and what became of the context in which they are looked for.
class FakeDialogs final : public FakeObject<IDialogFactory, IResourceManager> {
 public:
  // A dialog that a test fills; the person does what is given.
  FakeControl& Add(int32 inResourceId, std::function<bool(FakeControl&)> inOnRun) {
    auto& dialog = fDialogs[inResourceId];
    dialog = std::make_unique<FakeControl>("Dlog"_id, FakeControl::kDialog);
    dialog->fOnRun = std::move(inOnRun);
    return *dialog;
  }
  FakeControl& operator[](int32 inResourceId) { return *fDialogs.at(inResourceId); }
  void Clear() { fDialogs.clear(); }

  MCResult MC_CALL CreateDialog(IMFPart** outDialog, MCID inKind, int32 inResourceId) override {
    const auto found = fDialogs.find(inResourceId);
    if (inKind != "Dlog"_id || found == fDialogs.end() || fContexts.size() != 1) {
      return MC_E_NOTVALID;
    }
    MCAssignCounted<IMFPart>(outDialog, found->second.get());
    return MC_S_OK;
  }
  MCResult MC_CALL PushResourceContext(MCID inFamily, MCID inClass, uint32& outToken) override {
    if (inFamily != "modi"_id || inClass != "fQLX"_id) {
      return MC_E_NOTVALID;
    }
    outToken = ++fTokens;
    fContexts.push_back(outToken);
    return MC_S_OK;
  }
  MCResult MC_CALL PopResourceContext(uint32 inToken) override {
    if (fContexts.empty() || fContexts.back() != inToken) {
      return MC_E_NOTVALID;
    }
    fContexts.pop_back();
    return MC_S_OK;
  }

  std::vector<uint32> fContexts;  // those that are current; none at the end of a call

 private:
  std::map<int32, std::unique_ptr<FakeControl>> fDialogs;
  uint32 fTokens = 0;
};

}  // namespace qlx::test
