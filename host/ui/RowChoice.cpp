#include "RowChoice.h"

#include <fmt/format.h>

#include <algorithm>

#include "Hand.h"
#include "model/ClosestNames.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

constexpr std::string_view kBelow = " > ";

// The number that "#3" is; nothing for a text that is none.
std::optional<std::size_t> NumberOfRow(const std::string& inRow) {
  const std::optional<PartValue> number =
      inRow.starts_with('#') ? Convert(PartValue(inRow.substr(1)), "in32"_id) : std::nullopt;
  return number && std::get<int32>(*number) >= 0 ? std::optional<std::size_t>(std::get<int32>(*number)) : std::nullopt;
}

[[noreturn]] void RefuseRow(const Part& inControl, const std::string& inRow, const std::vector<std::string>& inRows) {
  std::string there = ClosestText(inRow, inRows);
  for (std::size_t i = 0; there.size() < 200 && ClosestText(inRow, inRows).empty() && i < inRows.size(); ++i) {
    there += fmt::format("{}\"{}\"", i == 0 ? "; it has " : ", ", inRows[i]);
  }
  throw UserError(NameOf(inControl),
                  fmt::format("it has no row \"{}\"{}", inRow, inRows.empty() ? "; it is empty" : there));
}

[[noreturn]] void RefuseNumber(const Part& inControl, const std::string& inRow, std::size_t inCount) {
  throw UserError(NameOf(inControl), inCount == 0
                                         ? "it has no rows"
                                         : fmt::format("it has no row {}: its rows are #0 to #{}", inRow, inCount - 1));
}

std::vector<std::string> SplitPath(std::string_view inPath) {
  std::vector<std::string> labels;
  for (std::size_t end = inPath.find(kBelow); end != std::string_view::npos; end = inPath.find(kBelow)) {
    labels.emplace_back(TrimmedRow(inPath.substr(0, end)));
    inPath.remove_prefix(end + kBelow.size());
  }
  labels.emplace_back(TrimmedRow(inPath));
  return labels;
}

// Labels of parameters say more than their names: "Rotation X (RotX) [qfix]".
std::string_view NameOfRow(const TreeControl::Row& inRow) {
  const std::string_view label = TrimmedRow(inRow.GetLabel());
  return label.substr(0, std::min(label.find(" ("), label.find(" [")));
}

bool IsNamed(const TreeControl::Row& inRow, const std::string& inText) {
  return TrimmedRow(inRow.GetLabel()) == inText || NameOfRow(inRow) == inText;
}

// The last label is the row's, each other one that of a row above the one after it.
bool Fits(const TreeControl::Row& inRow, const std::vector<std::string>& inLabels) {
  if (!IsNamed(inRow, inLabels.back())) {
    return false;
  }
  std::size_t left = inLabels.size() - 1;
  for (const TreeControl::Row* above = inRow.fParent; above && left > 0; above = above->fParent) {
    left -= IsNamed(*above, inLabels[left - 1]) ? 1 : 0;
  }
  return left == 0;
}

// The row is missing, or it is not where the labels above it say.
[[noreturn]] void RefuseLabels(const TreeControl& inTree, const std::vector<std::string>& inLabels) {
  std::vector<std::string> names;
  for (const TreeControl::Row* row : inTree.GetRows()) {
    names.emplace_back(NameOfRow(*row));
    if (inLabels.size() > 1 && IsNamed(*row, inLabels.back())) {
      const std::string place = row->fParent ? fmt::format("below \"{}\"", row->fParent->GetLabel()) : "at the top";
      throw UserError(NameOf(inTree), fmt::format("its row \"{}\" is not below \"{}\" but {}", names.back(),
                                                  inLabels[inLabels.size() - 2], place));
    }
  }
  RefuseRow(inTree, inLabels.back(), names);
}

[[noreturn]] void RefuseRows(const Part& inControl, const std::string& inRow, const std::vector<std::size_t>& inFound) {
  std::string numbers;
  for (std::size_t i = 0; i < inFound.size() && i < 5; ++i) {
    numbers += fmt::format("{}#{}", i == 0 ? "" : ", ", inFound[i]);
  }
  throw UserError(NameOf(inControl),
                  fmt::format("{} rows are \"{}\" ({}{}): say which by a row above it, as in \"Arm > Rotation X\"",
                              inFound.size(), inRow, numbers, inFound.size() > 5 ? ", ..." : ""));
}

}  // namespace

std::string_view TrimmedRow(std::string_view inText) {
  const std::size_t first = inText.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view()
                                         : inText.substr(first, inText.find_last_not_of(' ') - first + 1);
}

int32 FindListRow(const RowsControl& inControl, const std::string& inRow) {
  const std::vector<std::string>& rows = inControl.GetRows();
  if (const std::optional<std::size_t> number = NumberOfRow(inRow)) {
    if (*number >= rows.size()) {
      RefuseNumber(inControl, inRow, rows.size());
    }
    return static_cast<int32>(*number);
  }
  std::vector<std::string> names;
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    names.emplace_back(TrimmedRow(rows[i]));
    if (names.back() == TrimmedRow(inRow)) {
      found.push_back(i);
    }
  }
  if (found.empty()) {
    RefuseRow(inControl, inRow, names);
  }
  if (found.size() > 1) {
    throw UserError(NameOf(inControl), fmt::format("{} rows are \"{}\": choose one by its number, as in #{}",
                                                   found.size(), inRow, found.front()));
  }
  return static_cast<int32>(found.front());
}

TreeControl::Row& FindTreeRow(const TreeControl& inTree, const std::string& inRow) {
  const std::vector<TreeControl::Row*>& rows = inTree.GetRows();
  if (const std::optional<std::size_t> number = NumberOfRow(inRow)) {
    if (*number >= rows.size()) {
      RefuseNumber(inTree, inRow, rows.size());
    }
    return *rows[*number];
  }
  const std::vector<std::string> labels = SplitPath(inRow);
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (Fits(*rows[i], labels)) {
      found.push_back(i);
    }
  }
  if (found.size() > 1) {
    RefuseRows(inTree, inRow, found);
  }
  if (found.empty()) {
    RefuseLabels(inTree, labels);
  }
  return *rows[found.front()];
}

}  // namespace qlx::host
