#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "Source.h"
#include "resources/ControlKinds.h"
#include "resources/ResourceCodec.h"

namespace qlx::host {

namespace {

using TokenKind = SourceToken::Kind;

struct FamilyWord {
  std::string_view fWord;
  MCID fFamily;
};

constexpr FamilyWord kFamilyWords[] = {{"modifier", "modi"_id}, {"command", "scmd"_id}, {"part", "part"_id}};

const ControlKindInfo* FindKind(const std::string& inName) {
  const auto* const found = std::find_if(std::begin(kControlKinds), std::end(kControlKinds),
                                         [&](const ControlKindInfo& info) { return info.fName == inName; });
  return found == std::end(kControlKinds) ? nullptr : found;
}

// 8, 4, 4, 4 and 12 hexadecimal digits; nothing for a text of another form.
bool ReadGuid(const std::string& inText, MCGuid& outGuid) {
  constexpr std::string_view kForm = "00000000-0000-0000-0000-000000000000";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  if (inText.size() != kForm.size()) {
    return false;
  }
  std::array<uint8, 16> bytes{};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const std::size_t digit = kDigits.find(inText[i]);
    if (kForm[i] == '-' ? inText[i] != '-' : digit == std::string_view::npos) {
      return false;
    }
    if (kForm[i] != '-') {
      bytes[digits / 2] = static_cast<uint8>(bytes[digits / 2] << 4 | digit);
      ++digits;
    }
  }
  outGuid.fData1 = static_cast<uint32>(bytes[0]) << 24 | static_cast<uint32>(bytes[1]) << 16 |
                   static_cast<uint32>(bytes[2]) << 8 | bytes[3];
  outGuid.fData2 = static_cast<uint16>(bytes[4] << 8 | bytes[5]);
  outGuid.fData3 = static_cast<uint16>(bytes[6] << 8 | bytes[7]);
  std::copy_n(bytes.begin() + 8, 8, outGuid.fData4);
  return true;
}

class SourceParser {
 public:
  SourceParser(const std::string& inFile, std::string_view inText, Source& ioSource)
      : fLexer(inFile, inText), fSource(ioSource), fToken(fLexer.Next()) {}

  void Parse() {
    while (fToken.fKind != TokenKind::kEnd) {
      const SourceToken word = Take(TokenKind::kWord, "modifier, command, part, panel, dialog or parameters");
      const auto* const family = std::find_if(std::begin(kFamilyWords), std::end(kFamilyWords),
                                              [&](const FamilyWord& row) { return row.fWord == word.fText; });
      if (family != std::end(kFamilyWords)) {
        ParseExtension(family->fFamily, word.fPlace);
      } else if (word.fText == "panel" || word.fText == "dialog") {
        ParsePart(word.fText == "panel" ? kPanelType : kDialogType, word.fPlace);
      } else if (word.fText == "parameters") {
        ParseMap(word.fPlace);
      } else {
        FailAt(word.fPlace,
               "expected modifier, command, part, panel, dialog or parameters, found " + DescribeToken(word));
      }
    }
  }

 private:
  [[noreturn]] void Expected(const std::string& inWhat) const {
    FailAt(fToken.fPlace, fmt::format("expected {}, found {}", inWhat, DescribeToken(fToken)));
  }

  SourceToken Take(TokenKind inKind, const std::string& inWhat) {
    if (fToken.fKind != inKind) {
      Expected(inWhat);
    }
    SourceToken taken = std::move(fToken);
    fToken = fLexer.Next();
    return taken;
  }

  bool TakeWord(std::string_view inWord) {
    const bool isThere = fToken.fKind == TokenKind::kWord && fToken.fText == inWord;
    if (isThere) {
      fToken = fLexer.Next();
    }
    return isThere;
  }

  MCID TakeID(const std::string& inWhat) { return Take(TokenKind::kID, inWhat + " in single quotes").fID; }
  std::string TakeText(const std::string& inWhat) { return Take(TokenKind::kText, inWhat + " in double quotes").fText; }
  real32 TakeReal(const std::string& inWhat) { return static_cast<real32>(Take(TokenKind::kNumber, inWhat).fNumber); }

  int TakeWhole(const std::string& inWhat, int inSmallest, int inLargest) {
    const SourceToken token = Take(TokenKind::kNumber, inWhat);
    if (token.fNumber != std::trunc(token.fNumber) || token.fNumber < inSmallest || token.fNumber > inLargest) {
      FailAt(token.fPlace, fmt::format("{} is a whole number from {} to {}", inWhat, inSmallest, inLargest));
    }
    return static_cast<int>(token.fNumber);
  }

  int16 TakeResourceId() {
    return static_cast<int16>(TakeWhole("the number of a resource", 1, std::numeric_limits<int16>::max()));
  }

  void ParseExtension(MCID inFamily, const SourcePlace& inPlace) {
    ExtensionSource extension;
    extension.fPlace = inPlace;
    ExtensionRecord& record = extension.fRecord;
    record.fFamily = inFamily;
    record.fName = Take(TokenKind::kWord, "the name of a class").fText;
    record.fID = TakeID("an id");
    Take(TokenKind::kOpen, "{");
    while (fToken.fKind != TokenKind::kClose) {
      const SourcePlace place = fToken.fPlace;
      if (TakeWord("class")) {
        if (!ReadGuid(TakeText("a class id"), record.fClassID)) {
          FailAt(place,
                 "a class id has the form \"00000000-0000-0000-0000-000000000000\", with digits 0 to 9 and A to F");
        }
      } else if (TakeWord("resource")) {
        record.fResourceId = TakeResourceId();
      } else if (TakeWord("label")) {
        record.fLabel = TakeText("a label");
      } else if (TakeWord("help")) {
        record.fHelp = TakeText("a help");
      } else {
        Expected("class, resource, label, help or }");
      }
    }
    Take(TokenKind::kClose, "}");
    fSource.fExtensions.push_back(std::move(extension));
  }

  void ParsePart(MCID inKind, const SourcePlace& inPlace) {
    PartSource part;
    part.fPlace = inPlace;
    part.fPart.fKind = inKind;
    part.fPart.fResourceId = TakeResourceId();
    part.fPart.fLabel = TakeText("a label");
    Take(TokenKind::kOpen, "{");
    if (TakeWord("code")) {
      part.fCodePlace = fToken.fPlace;
      part.fCode = Take(TokenKind::kWord, "the name of a class").fText;
    }
    part.fPart.fRoot = ParseControl(part, 1);
    if (fToken.fKind != TokenKind::kClose) {
      Expected("} after the one control that holds all others");
    }
    Take(TokenKind::kClose, "}");
    fSource.fParts.push_back(std::move(part));
  }

  ControlDescription ParseControl(PartSource& ioPart, int inDepth) {
    if (inDepth > kDeepestControl) {
      FailAt(fToken.fPlace, fmt::format("controls in each other, more than {} deep", kDeepestControl));
    }
    const ControlKindInfo* const info = fToken.fKind == TokenKind::kWord ? FindKind(fToken.fText) : nullptr;
    if (info == nullptr) {
      Expected("a kind of control, such as group, check or button");
    }
    ControlDescription control;
    control.fKind = info->fKind;
    const std::size_t index = ioPart.fControls.size();
    ioPart.fControls.emplace_back().fPlace = fToken.fPlace;
    fToken = fLexer.Next();
    if (fToken.fKind == TokenKind::kID) {
      control.fID = TakeID("an id");
    }
    if (fToken.fKind == TokenKind::kText) {
      control.fLabel = TakeText("a label");
    }
    while (fToken.fKind == TokenKind::kWord && ParseProperty(*info, control, ioPart.fControls[index])) {
    }
    if (fToken.fKind == TokenKind::kOpen) {
      ParseChildren(*info, control, ioPart, inDepth);
    }
    return control;
  }

  void ParseChildren(const ControlKindInfo& inInfo, ControlDescription& ioControl, PartSource& ioPart, int inDepth) {
    if (!inInfo.fHasChildren) {
      FailAt(fToken.fPlace, fmt::format("a {} has no controls in it", inInfo.fName));
    }
    Take(TokenKind::kOpen, "{");
    while (fToken.fKind != TokenKind::kClose) {
      ioControl.fChildren.push_back(ParseControl(ioPart, inDepth + 1));
    }
    Take(TokenKind::kClose, "}");
  }

  // What a control says behind its label. False for a word that is none of these.
  bool ParseProperty(const ControlKindInfo& inInfo, ControlDescription& ioControl, ControlSource& ioPlaces) {
    const SourceToken word = fToken;
    const auto only = [&](bool inFits, const char* inOf) {
      if (!inFits) {
        FailAt(word.fPlace, fmt::format("\"{}\" is of {}, and this is a {}", word.fText, inOf, inInfo.fName));
      }
    };
    if (TakeWord("of")) {
      only(inInfo.fKind == ControlKind::kRadio || inInfo.fKind == ControlKind::kPane, "radios and panes");
      (inInfo.fKind == ControlKind::kRadio ? ioControl.fRadioGroup : ioControl.fPaneList) =
          TakeID(inInfo.fKind == ControlKind::kRadio ? "the id of a radio group" : "the id of a list");
    } else if (TakeWord("row")) {
      only(inInfo.fKind == ControlKind::kPane, "panes");
      ioControl.fPaneRow = static_cast<int16>(TakeWhole("a row", 0, 999));
    } else if (TakeWord("range")) {
      only(inInfo.fHasRange, "numbers");
      ioControl.fMinimum = TakeReal("the smallest number");
      ioControl.fMaximum = TakeReal("the largest number");
      if (ioControl.fMinimum >= ioControl.fMaximum) {
        FailAt(word.fPlace, "a range goes from the smaller number to the larger one");
      }
    } else if (TakeWord("default")) {
      only(inInfo.fValue != ControlValue::kNone && inInfo.fValue != ControlValue::kText &&
               inInfo.fValue != ControlValue::kVector,
           "switches and numbers");
      ioControl.fDefault = TakeReal("a number");
    } else if (TakeWord("items")) {
      only(inInfo.fHasItems, "popups and lists");
      do {
        ioControl.fItems.push_back(TakeText("an item"));
      } while (fToken.fKind == TokenKind::kText);
    } else if (TakeWord("field")) {
      only(inInfo.fValue != ControlValue::kNone, "controls with a value");
      ioPlaces.fFieldPlace = fToken.fPlace;
      ioPlaces.fField = Take(TokenKind::kWord, "the name of a field").fText;
    } else {
      return ParseLook(ioControl);
    }
    return true;
  }

  bool ParseLook(ControlDescription& ioControl) {
    if (TakeWord("columns")) {
      ioControl.fColumns = static_cast<uint8>(TakeWhole("the width in columns", 1, 12));
    } else if (TakeWord("same-row")) {
      ioControl.fSameRow = true;
    } else if (TakeWord("read-only")) {
      ioControl.fReadOnly = true;
    } else if (TakeWord("help")) {
      ioControl.fHelp = TakeText("a help");
    } else {
      return false;
    }
    return true;
  }

  void ParseMap(const SourcePlace& inPlace) {
    ParameterMapSource map;
    map.fPlace = inPlace;
    map.fMap.fClass = TakeID("the id of a class");
    Take(TokenKind::kOpen, "{");
    while (fToken.fKind != TokenKind::kClose) {
      FieldSource& places = map.fFields.emplace_back();
      FieldDescription& field = map.fMap.fFields.emplace_back();
      places.fPlace = fToken.fPlace;
      const SourceToken type = Take(TokenKind::kWord, "the type of a field, or }");
      for (const char each : type.fText) {
        field.fType = field.fType << 8 | static_cast<uint8>(each);
      }
      if (type.fText.size() != 4 || GetFieldValue(field.fType) == ControlValue::kNone) {
        FailAt(type.fPlace, fmt::format("expected the type of a field (bool, in32, re32, VEC3, s255 or sdyn), found {}",
                                        DescribeToken(type)));
      }
      field.fName = Take(TokenKind::kWord, "the name of a field").fText;
      places.fIsHidden = TakeWord("hidden");
    }
    Take(TokenKind::kClose, "}");
    fSource.fMaps.push_back(std::move(map));
  }

  SourceLexer fLexer;
  Source& fSource;
  SourceToken fToken;
};

}  // namespace

void ParseSource(const std::string& inFile, std::string_view inText, Source& ioSource) {
  SourceParser(inFile, inText, ioSource).Parse();
}

}  // namespace qlx::host
