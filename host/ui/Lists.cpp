#include "Lists.h"

#include <algorithm>

namespace qlx::host {

RowsControl::RowsControl(std::shared_ptr<const ControlDescription> inDescription)
    : Part(std::move(inDescription)), fRows(GetDescription().fItems) {
  const std::optional<PartValue> start = Convert(GetDescription().fDefault, "in32"_id);
  if (GetKind() == ControlKind::kPopup && !fRows.empty() && start) {
    ChooseRow(std::get<int32>(*start));
  }
}

void RowsControl::ClearTexts() {
  fRows.clear();
  fChosen = -1;
}

bool RowsControl::TakeValue(const PartValue& inValue) {
  return ChooseRow(std::get<int32>(inValue));
}

bool RowsControl::ChooseRow(int32 inRow) {
  if (inRow < -1 || (inRow >= 0 && static_cast<std::size_t>(inRow) >= fRows.size())) {
    return false;
  }
  fChosen = inRow;
  return true;
}

std::optional<PartValue> RowsControl::ToForm(MCID inForm) const {
  if (inForm == "bool"_id) {
    return std::nullopt;
  }
  if (inForm == "str "_id) {
    return fChosen < 0 ? std::string() : fRows[static_cast<std::size_t>(fChosen)];
  }
  return Convert(fChosen, inForm);
}

std::optional<PartValue> RowsControl::FromForm(const PartValue& inValue) const {
  if (const auto* text = std::get_if<std::string>(&inValue)) {
    const auto found = std::ranges::find(fRows, *text);
    return found == fRows.end() ? std::nullopt : std::optional<PartValue>(static_cast<int32>(found - fRows.begin()));
  }
  return std::holds_alternative<bool>(inValue) ? std::nullopt : Convert(inValue, "in32"_id);
}

bool ListControl::GetCurrentRow(uint32& outRow) {
  if (GetChosen() < 0) {
    return false;
  }
  outRow = static_cast<uint32>(GetChosen());
  return true;
}

void ListControl::SetCurrentRow(uint32 inRow) {
  if (inRow < GetRows().size()) {
    SetValue(static_cast<int32>(inRow));
  }
}

}  // namespace qlx::host
