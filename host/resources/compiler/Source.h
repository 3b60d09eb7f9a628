// Text sources, parsed: descriptions, and where a person wrote what.
#pragma once

#include <string_view>
#include <vector>

#include "SourceText.h"
#include "resources/Descriptions.h"

namespace qlx::host {

struct ExtensionSource {
  ExtensionRecord fRecord;
  SourcePlace fPlace;
};

struct ControlSource {
  SourcePlace fPlace;
  std::string fField;  // of the public block; empty: none
  SourcePlace fFieldPlace;
};

struct PartSource {
  PartDescription fPart;
  SourcePlace fPlace;
  std::string fCode;  // name of the class of its code; empty: none
  SourcePlace fCodePlace;
  // One for each control in the order of the text: the root, then each child in front of its own children.
  std::vector<ControlSource> fControls;
};

struct FieldSource {
  SourcePlace fPlace;
  bool fIsHidden = false;
};

struct ParameterMapSource {
  ParameterMapDescription fMap;
  SourcePlace fPlace;
  std::vector<FieldSource> fFields;
};

struct Source {
  std::vector<ExtensionSource> fExtensions;
  std::vector<PartSource> fParts;
  std::vector<ParameterMapSource> fMaps;
};

// Adds what the text holds. `ResourceError` with file, line and column.
void ParseSource(const std::string& inFile, std::string_view inText, Source& ioSource);

// Looks at all sources together, and fills in what one says of the other: fields' controls, and the classes of parts.
// `ResourceError` at the first place that breaks a rule:
//   - ids are unique in a panel or dialog; so are resource ids, classes, their names and ids, and fields
//   - radio groups have two members or more; a pane names a list of its panel
//   - a control that shows a field is of the field's type; each field is shown once, or said to be hidden
//   - labels and helps are short enough to be read
void CheckSource(Source& ioSource);

}  // namespace qlx::host
