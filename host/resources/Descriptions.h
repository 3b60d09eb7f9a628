// What a plug-in's resource file says of its extensions, panels and dialogs, as plain values.
#pragma once

#include <string>
#include <vector>

#include "MCGuid.h"
#include "MCTypes.h"

namespace qlx::host {

// One class of the library. `fFamily` is 'modi' (modifiers), 'scmd' (commands of the menu) or 'part' (code of a
// dialog).
struct ExtensionRecord {
  MCGuid fClassID{};
  MCID fFamily = 0;
  MCID fID = 0;           // 'fQLX'
  std::string fName;      // "QLXModifier"
  std::string fLabel;     // what a person reads: "QLX Link"
  std::string fHelp;      // one sentence
  int16 fResourceId = 0;  // its panel or dialog; 0: none

  bool operator==(const ExtensionRecord&) const = default;
};

enum class ControlKind : uint8 {
  kGroup,     // a frame around others; its label is fixed and it is no labelled control
  kTitle,     // a frame whose label the code reads and sets
  kPane,      // a page, shown while its row of a list is current; a labelled control
  kLabel,     // fixed text
  kCheckBox,  // 'bool'
  kRadio,     // 'bool', one on of those with the same `fRadioGroup`
  kInteger,   // 'in32'
  kNumber,    // 're32'
  kText,      // 'str '
  kPopup,     // 'in32', the row that is chosen, from 0; -1: none
  kSlider,    // 're32'
  kVector,    // 'VEC3'
  kButton,
  kList,  // flat, one current row
  kTree,  // rows with labels, folded and open
};

// One control and those inside it. All texts are UTF-8.
struct ControlDescription {
  ControlKind fKind = ControlKind::kGroup;
  MCID fID = 0;  // 0: nobody asks for it
  std::string fLabel;
  std::string fHelp;
  MCID fRadioGroup = 0;
  bool fReadOnly = false;
  // Numbers: the range that a person can enter; none while minimum and maximum are equal.
  real32 fMinimum = 0;
  real32 fMaximum = 0;
  real32 fDefault = 0;              // of a control of a dialog, which no field fills
  std::vector<std::string> fItems;  // a popup's or list's that come with the resource
  // A pane: shown while this row of the list with that id is current.
  MCID fPaneList = 0;
  int16 fPaneRow = 0;
  // Layout: a row has twelve columns; a control begins a new row unless it says otherwise.
  uint8 fColumns = 12;
  bool fSameRow = false;
  std::vector<ControlDescription> fChildren;

  bool operator==(const ControlDescription&) const = default;
};

// A panel ('Panl') or dialog ('Dlog'). A dialog always has OK and Cancel of the host's own.
struct PartDescription {
  MCID fKind = 0;
  int16 fResourceId = 0;
  std::string fLabel;
  MCGuid fExtension{};  // class of the part's code; zeros: none
  ControlDescription fRoot;

  bool operator==(const PartDescription&) const = default;
};

// A field of a class's public block and the control that shows it. Types: 'bool', 'in32', 're32', 'VEC3', 's255' (a
// `TMCString255`), 'sdyn' (a `TMCDynamicString`). Offsets follow from order and types, so that one map serves all
// targets.
struct FieldDescription {
  std::string fName;  // "fModifyValue"
  MCID fType = 0;
  MCID fControl = 0;  // 0: shown nowhere

  bool operator==(const FieldDescription&) const = default;
};

struct ParameterMapDescription {
  MCID fClass = 0;  // 'fQLX'
  std::vector<FieldDescription> fFields;

  bool operator==(const ParameterMapDescription&) const = default;
};

}  // namespace qlx::host
