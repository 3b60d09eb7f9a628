#include "PanelText.h"

#include <fmt/format.h>

#include <algorithm>

#include "Text.h"
#include "model/IDText.h"
#include "ui/Controls.h"
#include "ui/Lists.h"
#include "ui/RowChoice.h"
#include "ui/TreeControl.h"

namespace qlx::host {

namespace {

// A line of the text. A heading or a sentence has a label alone.
struct PanelLine {
  std::size_t fDepth = 0;
  std::string fLabel;
  std::string fID;
  std::string fValue;
  std::string fTakes;
};

constexpr const char* kKindNames[] = {"group", "title", "pane",   "label",  "check",  "radio", "integer", "number",
                                      "text",  "popup", "slider", "vector", "button", "list",  "tree"};

bool IsFrame(const Part& inPart) {
  return inPart.GetKind() <= ControlKind::kPane;
}

std::vector<std::string> RowsOf(const Part& inPart) {
  std::vector<std::string> texts;
  if (const auto* const rows = dynamic_cast<const RowsControl*>(&inPart)) {
    for (const std::string& row : rows->GetRows()) {
      texts.emplace_back(TrimmedRow(row));
    }
  } else if (const auto* const tree = dynamic_cast<const TreeControl*>(&inPart)) {
    for (const TreeControl::Row* row : tree->GetRows()) {
      texts.push_back(row->GetLabel());
    }
  }
  return texts;
}

std::string ValueText(const Part& inPart) {
  switch (inPart.GetKind()) {
    case ControlKind::kCheckBox:
      return std::get<bool>(inPart.GetValue()) ? "[x]" : "[ ]";
    case ControlKind::kRadio:
      return std::get<bool>(inPart.GetValue()) ? "(x)" : "( )";
    case ControlKind::kPopup:
    case ControlKind::kList: {
      const int32 row = std::get<int32>(inPart.GetValue());
      return row < 0 ? "-" : RowsOf(inPart)[static_cast<std::size_t>(row)];
    }
    case ControlKind::kText:
      return fmt::format("\"{}\"", TextOfValue(inPart.GetValue()));
    case ControlKind::kButton:
    case ControlKind::kTree:
      return "";
    default:
      return TextOfValue(inPart.GetValue());
  }
}

std::string TakenBy(const Part& inPart) {
  if (inPart.GetDescription().fReadOnly) {
    return "shown only";
  }
  const auto* const number = dynamic_cast<const NumberControl*>(&inPart);
  const bool hasRange = number && number->HasRange();
  switch (inPart.GetKind()) {
    case ControlKind::kPopup:
    case ControlKind::kList:
      return fmt::format("{}", fmt::join(RowsOf(inPart), " | "));
    case ControlKind::kInteger:
    case ControlKind::kNumber:
    case ControlKind::kSlider: {
      const char* const what = inPart.GetKind() == ControlKind::kInteger ? "whole number" : "number";
      return hasRange ? fmt::format("{}, {} to {}", what, number->GetMinimum(), number->GetMaximum()) : what;
    }
    case ControlKind::kVector:
      return "three numbers";
    case ControlKind::kText:
      return "text";
    case ControlKind::kButton:
      return "button";
    case ControlKind::kRadio:
      return "one of several";
    case ControlKind::kTree:
      return Counted(RowsOf(inPart).size(), "row");
    default:
      return "on or off";
  }
}

// Panes of one row have one heading.
void AddLines(const Part& inPart, std::size_t inDepth, std::string& ioHeading, std::vector<PanelLine>& ioLines) {
  std::size_t depth = inDepth;
  if (!IsFrame(inPart)) {
    const bool isSentence = inPart.GetKind() == ControlKind::kLabel;
    ioLines.push_back({inDepth, inPart.GetLabel(), isSentence ? "" : TextFromID(inPart.GetDescription().fID),
                       isSentence ? "" : ValueText(inPart), isSentence ? "" : TakenBy(inPart)});
  } else if (!inPart.GetLabel().empty()) {
    const bool isPane = inPart.GetKind() == ControlKind::kPane;
    if (!isPane || ioHeading != inPart.GetLabel()) {
      ioLines.push_back({inDepth, inPart.GetLabel(), {}, {}, {}});
    }
    ioHeading = isPane ? inPart.GetLabel() : ioHeading;
    ++depth;
  }
  for (const auto& child : inPart.GetChildren()) {
    AddLines(*child, depth, ioHeading, ioLines);
  }
}

Json ValueAsJson(const Part& inPart) {
  const PartValue value = inPart.GetValue();
  if (inPart.GetValueForm() == 0) {
    return {};
  }
  if (const auto* const number = std::get_if<real32>(&value)) {
    return ShortNumber(*number);
  }
  if (const auto* const vector = std::get_if<std::array<real32, 3>>(&value)) {
    return Json::array({ShortNumber((*vector)[0]), ShortNumber((*vector)[1]), ShortNumber((*vector)[2])});
  }
  if (const auto* const text = std::get_if<std::string>(&value)) {
    return *text;
  }
  const auto* const whole = std::get_if<int32>(&value);
  return whole ? Json(*whole) : Json(std::get<bool>(value));
}

void AddJson(const Form& inForm, const Part& inPart, const std::string& inPage, Json& ioControls) {
  const ControlDescription& description = inPart.GetDescription();
  if (!IsFrame(inPart) && inPart.GetKind() != ControlKind::kLabel) {
    Json control = {{"id", TextFromID(description.fID)},
                    {"label", inPart.GetLabel()},
                    {"kind", kKindNames[static_cast<std::size_t>(inPart.GetKind())]},
                    {"value", ValueAsJson(inPart)},
                    {"page", inPage.empty() ? Json() : Json(inPage)},
                    {"shown", inForm.IsShown(inPart)},
                    {"readOnly", description.fReadOnly}};
    if (const std::vector<std::string> rows = RowsOf(inPart); !rows.empty()) {
      control["rows"] = rows;
    }
    const auto* const number = dynamic_cast<const NumberControl*>(&inPart);
    if (number && number->HasRange()) {
      control["range"] = {ShortNumber(number->GetMinimum()), ShortNumber(number->GetMaximum())};
    }
    ioControls.push_back(std::move(control));
  }
  for (const auto& child : inPart.GetChildren()) {
    AddJson(inForm, *child, inPart.GetKind() == ControlKind::kPane ? inPart.GetLabel() : inPage, ioControls);
  }
}

}  // namespace

std::string TextOfForm(const Form& inForm) {
  constexpr std::size_t kWidestLabel = 44;
  constexpr std::size_t kWidestValue = 24;
  std::vector<PanelLine> lines;
  std::string heading;
  AddLines(inForm.GetRoot(), 0, heading, lines);
  std::size_t labels = 0;
  std::size_t values = 0;
  for (PanelLine& line : lines) {
    line.fLabel = std::string(2 * line.fDepth, ' ') + Printable(line.fLabel);
    line.fValue = Printable(line.fValue);
    labels = std::max(labels, line.fID.empty() ? 0 : line.fLabel.size());
    values = std::max(values, line.fValue.size());
  }
  std::string text;
  for (const PanelLine& line : lines) {
    std::string written = fmt::format("{:<{}}  {:<4}  {:<{}}  {}", line.fLabel, std::min(labels, kWidestLabel),
                                      line.fID, line.fValue, std::min(values, kWidestValue), Printable(line.fTakes));
    written.erase(written.find_last_not_of(' ') + 1);
    text += written + '\n';
  }
  return text;
}

Json JsonOfForm(const Form& inForm) {
  Json controls = Json::array();
  AddJson(inForm, inForm.GetRoot(), "", controls);
  return {{"panel", inForm.GetPartDescription().fResourceId},
          {"label", inForm.GetLabel()},
          {"title", inForm.GetMessageSource().GetLabel()},
          {"controls", std::move(controls)}};
}

}  // namespace qlx::host
