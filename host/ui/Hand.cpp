#include "Hand.h"

#include <fmt/format.h>

#include <cmath>

#include "Controls.h"
#include "Lists.h"
#include "RowChoice.h"
#include "TreeControl.h"
#include "model/ClosestNames.h"
#include "model/Diagnostics.h"
#include "model/IDText.h"

namespace qlx::host {

namespace {

bool IsControl(const Part& inPart) {
  switch (inPart.GetKind()) {
    case ControlKind::kGroup:
    case ControlKind::kTitle:
    case ControlKind::kPane:
    case ControlKind::kLabel:
      return false;
    default:
      return true;
  }
}

template <class Visit>
void ForEachControl(Part& inPart, const Visit& inVisit) {
  if (IsControl(inPart)) {
    inVisit(inPart);
  }
  for (const auto& child : inPart.GetChildren()) {
    ForEachControl(*child, inVisit);
  }
}

std::string IDOf(const Part& inPart) {
  const MCID id = inPart.GetDescription().fID;
  std::string text = id == 0 ? "" : TextFromID(id);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::vector<Part*> FindAll(const Form& inForm, std::string_view inName) {
  std::vector<Part*> byID;
  std::vector<Part*> byLabel;
  ForEachControl(inForm.GetRoot(), [&](Part& part) {
    if (!inName.empty() && IDOf(part) == inName) {
      byID.push_back(&part);
    } else if (!inName.empty() && part.GetLabel() == inName) {
      byLabel.push_back(&part);
    }
  });
  return byID.empty() ? byLabel : byID;
}

[[noreturn]] void RefuseName(const Form& inForm, std::string_view inName) {
  std::vector<std::string> names;
  ForEachControl(inForm.GetRoot(), [&](Part& part) {
    for (std::string name : {IDOf(part), part.GetLabel()}) {
      if (!name.empty()) {
        names.push_back(std::move(name));
      }
    }
  });
  const std::string closest = ClosestText(inName, names);
  std::string all;
  for (std::size_t i = 0; closest.empty() && i < names.size() && i < 12; ++i) {
    all += fmt::format("{}\"{}\"", i == 0 ? "; it has " : ", ", names[i]);
  }
  throw UserError(fmt::format("\"{}\"", inForm.GetLabel()),
                  fmt::format("there is no control \"{}\"{}{}", inName, closest, all));
}

[[noreturn]] void RefuseSeveral(const std::vector<Part*>& inParts, std::string_view inName) {
  std::string ids;
  for (const Part* part : inParts) {
    ids += fmt::format("{}\"{}\"", ids.empty() ? "" : ", ", IDOf(*part));
  }
  throw UserError(fmt::format("\"{}\"", inName),
                  fmt::format("{} controls have this label; name one by its id: {}", inParts.size(), ids));
}

const char* WantedBy(const Part& inPart) {
  switch (inPart.GetValueForm()) {
    case "bool"_id:
      return "on or off";
    case "in32"_id:
      return "a whole number";
    case "re32"_id:
      return "a number";
    default:
      return "three numbers, as in \"1 2 3\"";
  }
}

// The page that hides a part, by the row that would show it.
std::string HiddenBy(const Form& inForm, const Part& inPart) {
  for (const Part* part = &inPart; part; part = part->GetParent()) {
    const ControlDescription& description = part->GetDescription();
    const auto* const list = part->GetKind() == ControlKind::kPane
                                 ? dynamic_cast<ListControl*>(inForm.Find(description.fPaneList))
                                 : nullptr;
    if (!list || list->GetChosen() == description.fPaneRow) {
      continue;
    }
    const auto row = static_cast<std::size_t>(description.fPaneRow);
    return row < list->GetRows().size()
               ? fmt::format("shows with \"{}\" of {}", TrimmedRow(list->GetRows()[row]), NameOf(*list))
               : fmt::format("shows with row {} of {}, which is not there", row, NameOf(*list));
  }
  return "";
}

}  // namespace

std::string NameOf(const Part& inPart) {
  const std::string id = IDOf(inPart);
  const std::string label = inPart.GetLabel();
  if (id.empty() || label.empty()) {
    return id.empty() ? fmt::format("\"{}\"", label) : id;
  }
  return fmt::format("{} (\"{}\")", id, label);
}

Part& Hand::Find(std::string_view inControl) const {
  std::vector<Part*> found = FindAll(fForm, inControl);
  if (found.empty()) {
    RefuseName(fForm, inControl);
  }
  std::vector<Part*> shown;
  for (Part* part : found) {
    if (fForm.IsShown(*part)) {
      shown.push_back(part);
    }
  }
  if (shown.size() > 1 || (shown.empty() && found.size() > 1)) {
    RefuseSeveral(shown.empty() ? found : shown, inControl);
  }
  return shown.empty() ? *found.front() : *shown.front();
}

Part& Hand::NeedUsable(std::string_view inControl) const {
  Part& part = Find(inControl);
  if (!fForm.IsShown(part)) {
    throw UserError(NameOf(part), "is on a page that is not open: it " + HiddenBy(fForm, part));
  }
  if (part.GetDescription().fReadOnly) {
    throw UserError(NameOf(part), "is shown only and cannot be changed");
  }
  return part;
}

void Hand::Use(Part& ioPart, const PartValue& inValue) const {
  if (const auto* number = dynamic_cast<const NumberControl*>(&ioPart); number && number->HasRange()) {
    const real64 entered = static_cast<real64>(std::get<real32>(Convert(inValue, "re32"_id).value_or(0.0f)));
    if (entered < static_cast<real64>(number->GetMinimum()) || entered > static_cast<real64>(number->GetMaximum())) {
      throw UserError(NameOf(ioPart), fmt::format("{} is out of its range, {} to {}", TextOfValue(inValue),
                                                  number->GetMinimum(), number->GetMaximum()));
    }
  }
  ioPart.SetValue(inValue);
  fForm.Used(ioPart);
}

void Hand::SetToggle(Part& ioPart, const std::string& inValue) const {
  const bool isOn = inValue == "on" || inValue == "true";
  if (!isOn && inValue != "off" && inValue != "false") {
    throw UserError(NameOf(ioPart), fmt::format("\"{}\" is neither on nor off", inValue));
  }
  if (!isOn && ioPart.GetKind() == ControlKind::kRadio) {
    throw UserError(NameOf(ioPart), "one of several is turned off by turning another on");
  }
  Use(ioPart, isOn);
}

void Hand::Set(std::string_view inControl, const std::string& inValue) const {
  Part& part = NeedUsable(inControl);
  switch (part.GetKind()) {
    case ControlKind::kCheckBox:
    case ControlKind::kRadio:
      return SetToggle(part, inValue);
    case ControlKind::kPopup:
    case ControlKind::kList:
    case ControlKind::kTree:
      return ChooseRow(part, inValue);
    case ControlKind::kButton:
      throw UserError(NameOf(part), "is a button, which has no value: it is pressed");
    case ControlKind::kText:
      return Use(part, inValue);
    default:
      break;
  }
  const std::optional<PartValue> value = Convert(inValue, part.GetValueForm());
  if (!value) {
    throw UserError(NameOf(part), fmt::format("\"{}\" is not {}", inValue, WantedBy(part)));
  }
  Use(part, *value);
}

void Hand::Press(std::string_view inControl) const {
  Part& part = NeedUsable(inControl);
  switch (part.GetKind()) {
    case ControlKind::kButton:
      return fForm.Used(part);
    case ControlKind::kCheckBox:
      return Use(part, !std::get<bool>(part.GetValue()));
    case ControlKind::kRadio:
      return Use(part, true);
    default:
      throw UserError(NameOf(part), "is no button: it is set or chosen from");
  }
}

void Hand::Choose(std::string_view inControl, const std::string& inRow) const {
  ChooseRow(NeedUsable(inControl), inRow);
}

void Hand::ChooseRow(Part& ioPart, const std::string& inRow) const {
  if (auto* const tree = dynamic_cast<TreeControl*>(&ioPart)) {
    TreeControl::Row& row = FindTreeRow(*tree, inRow);
    if (row.fItem && fForm.GetListener() && !fForm.GetListener()->IsSelectable(*row.fItem)) {
      throw UserError(NameOf(ioPart), fmt::format("the row \"{}\" cannot be selected", row.GetLabel()));
    }
    tree->Select(row);
    return fForm.Used(ioPart);
  }
  const auto* const rows = dynamic_cast<const RowsControl*>(&ioPart);
  if (!rows) {
    throw UserError(NameOf(ioPart), "has no rows to choose from");
  }
  Use(ioPart, FindListRow(*rows, inRow));
}

void Hand::Expand(std::string_view inControl, const std::string& inRow, bool inExpanded) const {
  Part& part = NeedUsable(inControl);
  auto* const tree = dynamic_cast<TreeControl*>(&part);
  if (!tree) {
    throw UserError(NameOf(part), "has no rows that fold");
  }
  FindTreeRow(*tree, inRow).fIsExpanded = inExpanded;
}

}  // namespace qlx::host
