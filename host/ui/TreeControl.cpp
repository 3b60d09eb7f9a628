#include "TreeControl.h"

#include <algorithm>

namespace qlx::host {

const std::string& TreeControl::Row::GetLabel() const {
  static const std::string sNone;
  return fLabels.empty() ? sNone : fLabels.front();
}

uint32 TreeControl::Row::GetDepth() const {
  uint32 depth = 0;
  for (const Row* above = fParent; above; above = above->fParent) {
    ++depth;
  }
  return depth;
}

bool TreeControl::Row::IsVisible() const {
  for (const Row* above = fParent; above; above = above->fParent) {
    if (!above->fIsExpanded) {
      return false;
    }
  }
  return true;
}

// Rows are as deep as code nests them: without recursion.
const std::vector<TreeControl::Row*>& TreeControl::GetRows() const {
  if (!fOrderValid) {
    fOrder.clear();
    std::vector<Row*> open(fTop.rbegin(), fTop.rend());
    while (!open.empty()) {
      Row* const row = open.back();
      open.pop_back();
      fOrder.push_back(row);
      open.insert(open.end(), row->fChildren.rbegin(), row->fChildren.rend());
    }
    fOrderValid = true;
  }
  return fOrder;
}

void TreeControl::Select(Row& ioRow) {
  for (Row& row : fStore) {
    row.fIsSelected = false;
  }
  ioRow.fIsSelected = true;
  for (Row* above = ioRow.fParent; above; above = above->fParent) {
    above->fIsExpanded = true;
  }
}

void TreeControl::ClearList(int32 /*inZero*/) {
  fOrder.clear();
  fOrderValid = true;
  fByItem.clear();
  fTop.clear();
  const std::deque<Row> old = std::exchange(fStore, {});  // items that go may look at the list
}

// True when a new last row of that parent is the last of the list.
bool TreeControl::IsLastBranch(const Row* inParent) const {
  if (!inParent || fOrder.empty()) {
    return true;
  }
  for (const Row* row = fOrder.back(); row; row = row->fParent) {
    if (row == inParent) {
      return true;
    }
  }
  return false;
}

void TreeControl::AddRow(IMFHierarchyItem* inItem, const TMCString* const* inLabels, int32 inLabelCount,
                         IMFHierarchyItem* inParent) {
  const auto above = inParent ? fByItem.find(inParent) : fByItem.end();
  Row* const parent = above == fByItem.end() ? nullptr : above->second;
  Row& row = fStore.emplace_back();
  row.fItem.Share(inItem);
  row.fParent = parent;
  for (int32 i = 0; inLabels && i < inLabelCount; ++i) {
    row.fLabels.push_back(inLabels[i] ? TextFrom(*inLabels[i]) : std::string());
  }
  fOrderValid = fOrderValid && IsLastBranch(parent);
  (parent ? parent->fChildren : fTop).push_back(&row);
  if (fOrderValid) {
    fOrder.push_back(&row);
  }
  if (inItem) {
    fByItem[inItem] = &row;
  }
}

void TreeControl::SetRowsExpanded(const TMCArray<uint32>& inRows, bool inExpanded) {
  const std::vector<Row*>& rows = GetRows();
  for (const uint32 row : inRows) {
    if (row < rows.size()) {
      rows[row]->fIsExpanded = inExpanded;
    }
  }
}

TMCArray<uint32>& TreeControl::GetSelectedRows(TMCArray<uint32>& outRows) {
  outRows.SetElemCount(0);
  const std::vector<Row*>& rows = GetRows();
  for (uint32 i = 0; i < rows.size(); ++i) {
    if (rows[i]->fIsSelected) {
      outRows.AddElem(i);
    }
  }
  return outRows;
}

IMFHierarchyItem* TreeControl::GetRowItem(uint32 inRow) {
  const std::vector<Row*>& rows = GetRows();
  return inRow < rows.size() ? rows[inRow]->fItem.Get() : nullptr;
}

void TreeControl::GetRowLabel(TMCString& outLabel, uint32 inRow) {
  const std::vector<Row*>& rows = GetRows();
  if (inRow < rows.size()) {
    StoreText(rows[inRow]->GetLabel(), outLabel);
  }
}

}  // namespace qlx::host
