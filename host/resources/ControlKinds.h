// What is true of all controls of a kind.
#pragma once

#include <string_view>

#include "Descriptions.h"

namespace qlx::host {

// A type word of a public block's fields.
inline constexpr MCID kFieldTypes[] = {"bool"_id, "in32"_id, "re32"_id, "VEC3"_id, "s255"_id, "sdyn"_id};

// What a control's value is, whatever types of fields it shows.
enum class ControlValue : uint8 { kNone, kTruth, kWhole, kReal, kVector, kText };

struct ControlKindInfo {
  ControlKind fKind;
  std::string_view fName;  // in text sources: "radio"
  ControlValue fValue;
  bool fHasChildren;
  bool fHasItems;
  bool fHasRange;
};

inline constexpr ControlKindInfo kControlKinds[] = {
    {ControlKind::kGroup, "group", ControlValue::kNone, true, false, false},
    {ControlKind::kTitle, "title", ControlValue::kNone, true, false, false},
    {ControlKind::kPane, "pane", ControlValue::kNone, true, false, false},
    {ControlKind::kLabel, "label", ControlValue::kNone, false, false, false},
    {ControlKind::kCheckBox, "check", ControlValue::kTruth, false, false, false},
    {ControlKind::kRadio, "radio", ControlValue::kTruth, false, false, false},
    {ControlKind::kInteger, "integer", ControlValue::kWhole, false, false, true},
    {ControlKind::kNumber, "number", ControlValue::kReal, false, false, true},
    {ControlKind::kText, "text", ControlValue::kText, false, false, false},
    {ControlKind::kPopup, "popup", ControlValue::kWhole, false, true, false},
    {ControlKind::kSlider, "slider", ControlValue::kReal, false, false, true},
    {ControlKind::kVector, "vector", ControlValue::kVector, false, false, true},
    {ControlKind::kButton, "button", ControlValue::kNone, false, false, false},
    {ControlKind::kList, "list", ControlValue::kNone, false, true, false},
    {ControlKind::kTree, "tree", ControlValue::kNone, false, false, false},
};

// The table is in the order of the kinds.
inline const ControlKindInfo& GetKindInfo(ControlKind inKind) {
  return kControlKinds[static_cast<std::size_t>(inKind)];
}

// The value by which fields of the type are shown; `kNone` for an unknown type.
constexpr ControlValue GetFieldValue(MCID inType) {
  switch (inType) {
    case "bool"_id:
      return ControlValue::kTruth;
    case "in32"_id:
      return ControlValue::kWhole;
    case "re32"_id:
      return ControlValue::kReal;
    case "VEC3"_id:
      return ControlValue::kVector;
    case "s255"_id:
    case "sdyn"_id:
      return ControlValue::kText;
    default:
      return ControlValue::kNone;
  }
}

}  // namespace qlx::host
