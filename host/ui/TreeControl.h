// The list whose rows fold.
#pragma once

#include <deque>
#include <unordered_map>

#include "HostExtensions.h"
#include "MCArray.h"
#include "Part.h"

namespace qlx::host {

// Rows are numbered from the top, those inside folded ones included. Filling it from the top down costs the same for
// each row, however many there are.
class TreeControl final : public PartWith<Part, IHierarchyList> {
 public:
  using PartWith::PartWith;

  // A new row is open, and selected by nobody.
  struct Row {
    TMCCountedPtr<IMFHierarchyItem> fItem;
    std::vector<std::string> fLabels;  // one a column
    Row* fParent = nullptr;            // null: at the top
    std::vector<Row*> fChildren;
    bool fIsExpanded = true;
    bool fIsSelected = false;

    const std::string& GetLabel() const;
    uint32 GetDepth() const;
    bool IsVisible() const;  // no row above it is folded
  };
  // From the top. Rows are valid until the list is cleared.
  const std::vector<Row*>& GetRows() const;
  // A person's: the only selected row from then on, seen by all rows above it being open.
  void Select(Row& ioRow);

  // IHierarchyList
  void MC_CALL ClearList(int32 inZero) override;
  // A parent that is in no row puts the row at the top level.
  void MC_CALL AddRow(IMFHierarchyItem* inItem, const TMCString* const* inLabels, int32 inLabelCount,
                      IMFHierarchyItem* inParent) override;
  uint32 MC_CALL GetRowCount() override { return static_cast<uint32>(fStore.size()); }
  // Rows that there are not are left out.
  void MC_CALL SetRowsExpanded(const TMCArray<uint32>& inRows, bool inExpanded) override;
  TMCArray<uint32>& MC_CALL GetSelectedRows(TMCArray<uint32>& outRows) override;
  IMFHierarchyItem* MC_CALL GetRowItem(uint32 inRow) override;
  // The first column's; a row that there is not has no label, and the text stays.
  void MC_CALL GetRowLabel(TMCString& outLabel, uint32 inRow) override;

 private:
  bool IsLastBranch(const Row* inParent) const;

  std::deque<Row> fStore;
  std::vector<Row*> fTop;
  std::unordered_map<const IMFHierarchyItem*, Row*> fByItem;
  mutable std::vector<Row*> fOrder;
  mutable bool fOrderValid = true;
};

}  // namespace qlx::host
