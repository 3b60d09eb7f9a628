// Controls that hold rows of text: popups and flat lists.
#pragma once

#include "Part.h"

namespace qlx::host {

// Rows of which at most one is chosen. Its value is the number of that row, from 0, or -1; its text the row's.
// A popup that comes with rows begins with the one that is its default.
class RowsControl : public Part {
 public:
  explicit RowsControl(std::shared_ptr<const ControlDescription> inDescription);
  MCID GetValueForm() const override { return "in32"_id; }
  PartValue GetValue() const override { return fChosen; }

  const std::vector<std::string>& GetRows() const { return fRows; }
  int32 GetChosen() const { return fChosen; }
  void AddText(std::string inText) { fRows.push_back(std::move(inText)); }
  void ClearTexts();

 protected:
  bool TakeValue(const PartValue& inValue) override;
  std::optional<PartValue> ToForm(MCID inForm) const override;
  std::optional<PartValue> FromForm(const PartValue& inValue) const override;

 private:
  bool ChooseRow(int32 inRow);

  std::vector<std::string> fRows;
  int32 fChosen = -1;
};

class PopupControl final : public PartWith<RowsControl, IPopupControl> {
 public:
  using PartWith::PartWith;
  uint32 MC_CALL GetItemCount() override { return static_cast<uint32>(GetRows().size()); }
  void MC_CALL AddItem(const TMCString& inText) override { AddText(TextFrom(inText)); }
};

class ListControl final : public PartWith<RowsControl, IListControl> {
 public:
  using PartWith::PartWith;
  uint32 MC_CALL GetListRowCount() override { return static_cast<uint32>(GetRows().size()); }
  void MC_CALL AddListRow(const TMCString& inText) override { AddText(TextFrom(inText)); }
  // No row is current from then on.
  void MC_CALL ClearListRows() override { ClearTexts(); }
  bool MC_CALL GetCurrentRow(uint32& outRow) override;
  // A row that there is not leaves the current one.
  void MC_CALL SetCurrentRow(uint32 inRow) override;
};

}  // namespace qlx::host
