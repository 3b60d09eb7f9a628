#include <gtest/gtest.h>

#include "ResourceTexts.h"
#include "resources/ResourceBytes.h"
#include "resources/ResourceCodec.h"

namespace qlx::host {
namespace {

// Decodes by the resource's type and encodes again. Throws what the decoder throws.
std::vector<uint8> Recode(MCID inType, int16 inID, std::span<const uint8> inBytes) {
  switch (inType) {
    case kExtensionType:
      return EncodeExtension(DecodeExtension(inBytes, inID));
    case kParameterMapType:
      return EncodeParameterMap(DecodeParameterMap(inBytes, inID));
    default:
      return EncodePart(DecodePart(inBytes, inType, inID));
  }
}

std::string ProblemOfBytes(MCID inType, std::span<const uint8> inBytes) {
  try {
    Recode(inType, 1, inBytes);
  } catch (const ResourceError& error) {
    return error.what();
  }
  return "taken";
}

ControlDescription EveryMember() {
  ControlDescription control;
  control.fKind = ControlKind::kPane;
  control.fID = "abcd"_id;
  control.fLabel = "label \u00e4";
  control.fHelp = "help";
  control.fRadioGroup = "grou"_id;
  control.fReadOnly = true;
  control.fMinimum = -1.5f;
  control.fMaximum = 2.5f;
  control.fDefault = 0.25f;
  control.fItems = {"one", ""};
  control.fPaneList = "list"_id;
  control.fPaneRow = 5;
  control.fColumns = 7;
  control.fSameRow = true;
  ControlDescription child = control;
  child.fKind = ControlKind::kTree;
  control.fChildren = {child, ControlDescription()};
  return control;
}

TEST(ResourceCodec, KeepsEveryMember) {
  const PartDescription part{kDialogType, 140, "Choose", "10E24B1B-1020-0122-0FFF-211F1212AABC"_guid, EveryMember()};
  EXPECT_EQ(DecodePart(EncodePart(part), kDialogType, 140), part);
  const ExtensionRecord record{part.fExtension, "part"_id, "abcd"_id, "Name", "Label", "Help", -3};
  EXPECT_EQ(DecodeExtension(EncodeExtension(record), 1), record);
  const ParameterMapDescription map{"fQLX"_id, {{"fA", "bool"_id, "ctrl"_id}, {"fB", "sdyn"_id, 0}}};
  EXPECT_EQ(DecodeParameterMap(EncodeParameterMap(map), 1), map);
}

// One form on all targets: the bytes themselves.
TEST(ResourceCodec, NumbersAreBigEndian) {
  const std::vector<uint8> kBytes = {0,   1,   'f', 'P', 'I', 'N', 0,   1,   0,   2,
                                     'f', 'A', 'r', 'e', '3', '2', 'c', 't', 'r', 'l'};
  EXPECT_EQ(EncodeParameterMap({"fPIN"_id, {{"fA", "re32"_id, "ctrl"_id}}}), kBytes);
  ControlDescription control;
  control.fDefault = 1.5f;
  const std::vector<uint8> part = EncodePart({kPanelType, 1, "", {}, control});
  EXPECT_EQ(std::vector<uint8>(part.begin() + 45, part.begin() + 49), (std::vector<uint8>{0x3F, 0xC0, 0, 0}));
}

TEST(ResourceCodec, RefusesEveryCutOfWhatShipsAndEveryByteTooMany) {
  for (const CompiledResource& resource : CompileSource(ShippedSource())) {
    const std::span<const uint8> bytes(resource.fBytes);
    EXPECT_EQ(Recode(resource.fType, resource.fID, bytes), resource.fBytes);
    const std::size_t step = bytes.size() > 4096 ? 13 : 1;  // the largest have the same controls as the others
    for (std::size_t length = 0; length < bytes.size(); length += step) {
      EXPECT_NE(ProblemOfBytes(resource.fType, bytes.first(length)), "taken") << resource.fID << " at " << length;
    }
    std::vector<uint8> longer = resource.fBytes;
    longer.push_back(0);
    EXPECT_NE(ProblemOfBytes(resource.fType, longer).find("1 bytes too many"), std::string::npos);
  }
}

TEST(ResourceCodec, ErrorsNameTheResourceTheByteAndTheProblem) {
  const std::vector<uint8> part = EncodePart({kPanelType, 1, "", {}, EveryMember()});
  const std::vector<uint8> map = EncodeParameterMap({"fPIN"_id, {{"fA", "re32"_id, 0}, {"fB", "re32"_id, 0}}});
  constexpr std::size_t kControl = 20;  // behind version, class and label
  const struct {
    const char* fLabel;
    const std::vector<uint8>& fBytes;
    std::size_t fPlace;
    std::vector<uint8> fPut;
    const char* fProblem;
  } kRows[] = {
      {"version", part, 0, {0, 2}, "'Panl' 1, byte 0: version 2, where version 1 is known"},
      {"kind", part, kControl, {15}, "'Panl' 1, byte 20: no control is of the kind 15"},
      {"flags",
       part,
       kControl + 1,
       {0x84},
       "'Panl' 1, byte 21: the flags of a control are 0x84, which no program has written"},
      {"no columns", part, kControl + 2, {0}, "'Panl' 1, byte 22: a control of 0 columns, and there are 12"},
      {"columns", part, kControl + 2, {13}, "'Panl' 1, byte 22: a control of 13 columns, and there are 12"},
      {"pane row", part, kControl + 15, {0xFF, 0xFE}, "'Panl' 1, byte 35: a pane of the row -2"},
      {"range", part, kControl + 17, {0x7F, 0, 0, 0}, "'Panl' 1, byte 41: a range whose maximum is below its minimum"},
      {"NaN", part, kControl + 25, {0x7F, 0xC0, 0, 0}, "'Panl' 1, byte 45: a number that is not finite"},
      {"long label",
       part,
       kControl + 29,
       {0xFF, 0xFF},
       "'Panl' 1, byte 49: a text of 65535 bytes, of which 118 are there"},
      {"not UTF-8", part, kControl + 31, {0xC0}, "'Panl' 1, byte 51: a text that is not UTF-8"},
      {"children of a tree",
       part,
       kControl,
       {static_cast<uint8>(ControlKind::kTree)},
       "'Panl' 1, byte 74: a tree with controls in it"},
      {"children", part, kControl + 54, {0, 9}, "'Panl' 1, byte 74: a count of 9, for which 93 bytes are too few"},
      {"type", map, 12, {'r', 'e', '6', '4'}, "'PMap' 1, byte 12: a field of the unknown type 're64'"},
      {"fields", map, 6, {0, 3}, "'PMap' 1, byte 6: a count of 3, for which 24 bytes are too few"},
      {"same name", map, 23, {'A'}, "'PMap' 1, byte 28: two fields with the name \"fA\""},
  };
  for (const auto& row : kRows) {
    std::vector<uint8> bytes = row.fBytes;
    std::copy(row.fPut.begin(), row.fPut.end(), bytes.begin() + static_cast<std::ptrdiff_t>(row.fPlace));
    EXPECT_EQ(ProblemOfBytes(&row.fBytes == &part ? kPanelType : kParameterMapType, bytes), row.fProblem) << row.fLabel;
  }
}

TEST(ResourceCodec, RefusesControlsThatAreTooDeep) {
  ControlDescription control;
  for (int depth = 1; depth < kDeepestControl; ++depth) {
    ControlDescription parent;
    parent.fChildren.push_back(control);
    control = parent;
  }
  EXPECT_EQ(ProblemOfBytes(kPanelType, EncodePart({kPanelType, 1, "", {}, control})), "taken");
  ControlDescription parent;
  parent.fChildren.push_back(control);
  EXPECT_NE(ProblemOfBytes(kPanelType, EncodePart({kPanelType, 1, "", {}, parent})).find("more than 16 deep"),
            std::string::npos);
}

TEST(ResourceText, KnowsUtf8) {
  const struct {
    const char* fLabel;
    std::string fText;
    bool fIsGood;
  } kRows[] = {
      {"empty", "", true},
      {"one to four bytes", "a\u00e4\u20ac\U0001F600", true},
      {"the last character", "\xF4\x8F\xBF\xBF", true},
      {"above it", "\xF4\x90\x80\x80", false},
      {"a NUL", std::string(1, '\0'), false},
      {"half a character", "\xC3", false},
      {"a longer form of two bytes", "\xC1\xBF", false},
      {"of three", "\xE0\x9F\xBF", false},
      {"of four", "\xF0\x8F\xBF\xBF", false},
      {"half of a pair", "\xED\xA0\x80", false},
      {"a byte that continues nothing", "a\x80", false},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(IsUtf8Text(row.fText), row.fIsGood) << row.fLabel;
  }
}

}  // namespace
}  // namespace qlx::host
