#include "QLXChainDialog.h"

#include <utility>

#include "COMSafeUtilities.h"
#include "MCException.h"
#include "OperationGuard.h"
#include "PartAccess.h"
#include "QLXChainQLXSubDlg.h"
#include "TreeElementIterator.h"

namespace qlx {

MCResult QLXChainDialog::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == kInterfaceID) {
    return MCStoreCounted<QLXChainDialog>(this, outObject);
  }
  return TBasicPart::QueryInterface(inID, outObject);
}

MCResult QLXChainDialog::Receive(uint32 inMessage, IMCUnknown* inSource, void* /*inData*/) {
  return GuardOperation([&] {
    if (inMessage != kDialogControlUsed) {
      return MC_S_OK;
    }
    const auto source = MCQuery<IMFPart>(inSource);
    if (!source) {
      throw TMCException(MC_E_INVALIDARG, "CreateQLXChain", 225);
    }
    const auto list = FindControl<IListControl>(GetParent(source.Get()).Get(), "clst"_id);
    HandleButton(source->GetPartId(), list.Get());
    return MC_S_OK;
  });
}

void QLXChainDialog::HandleButton(MCID inButton, IListControl* inList) {
  uint32 row = 0;
  if (inButton == "abtn"_id) {
    AddChosen();
    ShowRows(inList);
  } else if (inList && inList->GetCurrentRow(row) && row < fLinks.GetElemCount()) {
    HandleRow(inButton, row, inList);
  }
}

void QLXChainDialog::HandleRow(MCID inButton, uint32 inRow, IListControl* inList) {
  uint32 current = inRow;
  switch (inButton) {
    case "achb"_id:
      AddBelow(inRow);
      break;
    case "ebtn"_id:
      if (!Edit(inRow)) {
        return;
      }
      break;
    case "dbtn"_id:
      fRowLabels.RemoveElem(inRow);
      fLinks.RemoveElem(inRow);
      ShowRows(inList);
      return;
    case "ubtn"_id:
      if (!Swap(inRow, --current)) {
        return;
      }
      break;
    case "mdbt"_id:
      if (!Swap(inRow, ++current)) {
        return;
      }
      break;
    default:
      return;
  }
  ShowRows(inList);
  inList->SetCurrentRow(current);
}

void QLXChainDialog::AddChosen() {
  IShellUtilities* const shell = GetShellUtilities();
  TMCCountedPtr<TreeElement> chosen;
  if (!shell ||
      !shell->ChooseObject(chosen.WriteInto(), TMCString31("Choose Object"), TMCString31("Choose Control Target"), 0, 0,
                           0) ||
      !chosen) {
    return;
  }
  QLXChainLink link;
  chosen->GetTreePath(link.fTargetPath);
  if (EditChainLink(chosen.Get(), link)) {
    AddLink(link, chosen->GetName());
  }
}

void QLXChainDialog::AddBelow(uint32 inRow) {
  const auto root = FindTarget(fLinks[inRow]);
  QLXChainLink link = fLinks[inRow];
  if (!root || !EditChainLink(root.Get(), link)) {
    return;
  }
  uint32 count = fLinks.GetElemCount();
  TTreeElementIterator counted(*root, TTreeElementIterator::Start::kAfterRoot);
  while (counted.Next()) {
    ++count;
  }
  // Room for all at once: a link is large, and arrays grow in small steps.
  if (!fLinks.SetElemSpace(count) || !fRowLabels.SetElemSpace(count)) {
    return;
  }
  TTreeElementIterator elements(*root, TTreeElementIterator::Start::kAfterRoot);
  while (TreeElement* const element = elements.Next()) {
    element->GetTreePath(link.fTargetPath);
    if (!AddLink(link, element->GetName())) {
      return;
    }
  }
}

bool QLXChainDialog::Edit(uint32 inRow) {
  QLXChainLink link = fLinks[inRow];
  const bool isOk = EditChainLink(FindTarget(link).Get(), link) && inRow < fLinks.GetElemCount();
  if (isOk) {
    fLinks[inRow] = link;
  }
  return isOk;
}

// False for a row past either end.
bool QLXChainDialog::Swap(uint32 inRow, uint32 inOther) {
  if (inOther >= fLinks.GetElemCount()) {
    return false;
  }
  std::swap(fLinks[inRow], fLinks[inOther]);
  const TMCString255 label = fRowLabels[inRow];
  fRowLabels[inRow] = fRowLabels[inOther];
  fRowLabels[inOther] = label;
  return true;
}

bool QLXChainDialog::AddLink(const QLXChainLink& inLink, const TMCString& inLabel) {
  TMCString255 label;
  AssignFitting(label, inLabel);
  if (!fLinks.AddElem(inLink)) {
    return false;
  }
  if (!fRowLabels.AddElem(label)) {
    fLinks.RemoveElem(fLinks.GetElemCount() - 1);
    return false;
  }
  return true;
}

TMCCountedPtr<TreeElement> QLXChainDialog::FindTarget(const QLXChainLink& inLink) const {
  TMCCountedPtr<TreeElement> target;
  if (fScene) {
    fScene->FindElementByTreePath(target.WriteInto(), inLink.fTargetPath);
  }
  return target;
}

void QLXChainDialog::ShowRows(IListControl* inList) const {
  if (!inList) {
    return;
  }
  inList->ClearListRows();
  for (const TMCString255& label : fRowLabels) {
    inList->AddListRow(label);
  }
}

}  // namespace qlx
