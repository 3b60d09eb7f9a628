#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "ResourceTexts.h"
#include "resources/ControlKinds.h"
#include "resources/ResourceCodec.h"

namespace qlx::host {
namespace {

const Source& Shipped() {
  static const Source sSource = ShippedSource();
  return sSource;
}

// Four characters each, in the order of a text.
std::vector<MCID> IDsOf(const std::string& inText) {
  std::vector<MCID> ids;
  for (std::size_t i = 0; i + 4 <= inText.size(); i += 5) {
    MCID id = 0;
    for (const char each : inText.substr(i, 4)) {
      id = id << 8 | static_cast<uint8>(each);
    }
    ids.push_back(id);
  }
  return ids;
}

// What the plug-in's code asks for by id.
TEST(ShippedResources, HaveEveryControlOfItsKind) {
  using Kind = ControlKind;
  const struct {
    MCID fPart;
    int fID;
    Kind fControl;
    const char* fIDs;
  } kRows[] = {
      {kPanelType, 150, Kind::kTitle, "titl"},
      {kPanelType, 150, Kind::kList, "clis"},
      {kPanelType, 150, Kind::kPane, "cps0 cps1 cps2 cps3 cps4 cps5 mps0 mps1 mps2 mps3 mps4 mps5"},
      {kPanelType, 150, Kind::kPopup, "unit UnLm"},
      {kPanelType, 150, Kind::kButton, "ChTL sgrw sdcy sosc slsp slcp slso bosl LOAD SAVE SAVF"},
      {kPanelType, 155, Kind::kTitle, "titl"},
      {kPanelType, 156, Kind::kButton, "setp adkf"},
      {kPanelType, 159, Kind::kInteger, "minf maxf"},
      {kPanelType, 183, Kind::kSlider, "valu"},
      {kPanelType, 183, Kind::kNumber, "vmin vmax"},
      {kPanelType, 183, Kind::kButton, "sbtn"},
      {kDialogType, 131, Kind::kText, "ttlt"},
      {kDialogType, 140, Kind::kTree, "plst"},
      {kDialogType, 158, Kind::kRadio, "figu subt selo"},
      {kDialogType, 165, Kind::kRadio, "figu subt selo"},
      {kDialogType, 160, Kind::kRadio, "dlin dqua dcub dqut dcut"},
      {kDialogType, 160, Kind::kNumber, "dmax dmin"},
      {kDialogType, 170, Kind::kRadio, "glin gqua gcub gqut gcut"},
      {kDialogType, 170, Kind::kNumber, "gmax gmin"},
      {kDialogType, 180, Kind::kRadio, "osin ocos"},
      {kDialogType, 180, Kind::kNumber, "opho osca omax omin ospd"},
      {kDialogType, 181, Kind::kTree, "plst"},
      {kDialogType, 181, Kind::kNumber, "cVal nVal"},
      {kDialogType, 181, Kind::kButton, "upbn"},
      {kDialogType, 190, Kind::kCheckBox, "cgrp"},
      {kDialogType, 190, Kind::kList, "clst"},
      {kDialogType, 190, Kind::kButton, "abtn achb ebtn dbtn ubtn mdbt"},
      {kDialogType, 200, Kind::kRadio,
       "cset ccst cadd csub cmul cdiv madd msub mmul mdiv mcst BTal BTno BTso BRal BRno BRso"},
      {kDialogType, 200, Kind::kNumber, "mval MinL MaxL CMin CMax"},
      {kDialogType, 200, Kind::kInteger, "lsvl covl dfrm"},
      {kDialogType, 200, Kind::kPopup, "unit UnLm"},
      {kDialogType, 200, Kind::kCheckBox,
       "oscl ltst coff dely decy grow uFRA BTsX BTsY BTsZ BTiX BTiY BTiZ BRsX BRsY BRsZ BRiX BRiY BRiZ BSun BSsX BSsY "
       "BSsZ LMin LMax CLim"},
      {kDialogType, 200, Kind::kButton, "TBno sosc sdcy sgrw"},
  };
  for (const auto& row : kRows) {
    const PartDescription* part = FindPart(Shipped(), row.fPart, row.fID);
    ASSERT_NE(part, nullptr) << row.fID;
    for (const MCID id : IDsOf(row.fIDs)) {
      const auto way = WayTo(part->fRoot, id);
      ASSERT_FALSE(way.empty()) << row.fID << ' ' << QuotedID(id);
      EXPECT_EQ(way.back()->fKind, row.fControl) << row.fID << ' ' << QuotedID(id);
    }
  }
}

// The code goes up from a control by a fixed number of parts, and looks for another control below.
TEST(ShippedResources, NestAsTheCodeWalks) {
  const struct {
    MCID fPart;
    int fID;
    const char* fFrom;
    std::size_t fUp;
    const char* fWanted;
  } kRows[] = {
      {kPanelType, 183, "vmin vmax sbtn", 2, "valu"},
      {kDialogType, 181, "upbn plst", 2, "cVal nVal plst"},
      {kDialogType, 190, "abtn achb ebtn dbtn ubtn mdbt", 1, "clst"},
  };
  for (const auto& row : kRows) {
    const ControlDescription& root = FindPart(Shipped(), row.fPart, row.fID)->fRoot;
    for (const MCID from : IDsOf(row.fFrom)) {
      const auto way = WayTo(root, from);
      ASSERT_GT(way.size(), row.fUp) << QuotedID(from);
      for (const MCID wanted : IDsOf(row.fWanted)) {
        EXPECT_FALSE(WayTo(*way[way.size() - 1 - row.fUp], wanted).empty()) << QuotedID(from) << QuotedID(wanted);
      }
    }
  }
  // A panel's title is above all of its controls; a link's code passes over panes, and no other labelled control is
  // on the way. A pane of the second kind has nothing that can be used: the code would take it for the title.
  for (const PartSource& part : Shipped().fParts) {
    if (part.fPart.fKind == kPanelType) {
      EXPECT_EQ(part.fPart.fRoot.fKind, ControlKind::kTitle) << part.fPart.fResourceId;
    }
  }
  for (const MCID pane : IDsOf("mps0 mps1 mps2 mps3 mps4 mps5")) {
    const auto way = WayTo(FindPart(Shipped(), kPanelType, 150)->fRoot, pane);
    for (const ControlDescription& child : way.back()->fChildren) {
      EXPECT_EQ(child.fKind, ControlKind::kLabel) << QuotedID(pane);
    }
  }
}

TEST(ShippedResources, PanesStandInPairsByNumber) {
  const ControlDescription& root = FindPart(Shipped(), kPanelType, 150)->fRoot;
  for (const char* ids : {"cps0 cps1 cps2 cps3 cps4 cps5", "mps0 mps1 mps2 mps3 mps4 mps5"}) {
    int16 row = 0;
    for (const MCID id : IDsOf(ids)) {
      const ControlDescription& pane = *WayTo(root, id).back();
      EXPECT_EQ(pane.fPaneList, "clis"_id);
      EXPECT_EQ(pane.fPaneRow, row++) << QuotedID(id);
    }
  }
  // The code fills these when they are empty.
  for (const MCID id : IDsOf("clis unit UnLm")) {
    EXPECT_TRUE(WayTo(root, id).back()->fItems.empty()) << QuotedID(id);
  }
}

TEST(ShippedResources, RadioGroupsAreThoseThatTheHostKeeps) {
  const struct {
    MCID fPart;
    int fID;
    MCID fGroup;
    std::set<MCID> fMembers;
  } kRows[] = {
      {kPanelType, 150, "comb"_id, {"cset"_id, "ccst"_id, "cadd"_id, "csub"_id, "cmul"_id, "cdiv"_id}},
      {kPanelType, 150, "modf"_id, {"madd"_id, "msub"_id, "mmul"_id, "mdiv"_id, "mcst"_id}},
      {kPanelType, 150, "posi"_id, {"BTal"_id, "BTno"_id, "BTso"_id}},
      {kPanelType, 150, "rota"_id, {"BRal"_id, "BRno"_id, "BRso"_id}},
      {kPanelType, 150, "vgrp"_id, {"vabs"_id, "vrel"_id}},
      {kDialogType, 160, "curv"_id, {"dlin"_id, "dqua"_id, "dcub"_id, "dqut"_id, "dcut"_id}},
      {kDialogType, 180, "wave"_id, {"osin"_id, "ocos"_id}},
      {kDialogType, 200, "comb"_id, {"cset"_id, "ccst"_id, "cadd"_id, "csub"_id, "cmul"_id, "cdiv"_id}},
  };
  for (const auto& row : kRows) {
    std::set<MCID> found;
    const std::function<void(const ControlDescription&)> visit = [&](const ControlDescription& control) {
      if (control.fRadioGroup == row.fGroup) {
        found.insert(control.fID);
      }
      std::for_each(control.fChildren.begin(), control.fChildren.end(), visit);
    };
    visit(FindPart(Shipped(), row.fPart, row.fID)->fRoot);
    EXPECT_EQ(found, row.fMembers) << row.fID << ' ' << QuotedID(row.fGroup);
  }
}

// A person is told what a control does: every one that can be used has a label and a help.
TEST(ShippedResources, SayWhatEveryControlDoes) {
  for (const PartSource& part : Shipped().fParts) {
    const std::function<void(const ControlDescription&)> visit = [&](const ControlDescription& control) {
      const bool isUsed = !GetKindInfo(control.fKind).fHasChildren && control.fKind != ControlKind::kLabel;
      if (isUsed) {
        EXPECT_NE(control.fLabel, "") << part.fPart.fResourceId << QuotedID(control.fID);
        EXPECT_NE(control.fHelp, "") << part.fPart.fResourceId << QuotedID(control.fID);
      }
      std::for_each(control.fChildren.begin(), control.fChildren.end(), visit);
    };
    visit(part.fPart.fRoot);
  }
}

TEST(ShippedResources, OnlyTheSpareFieldOfThePinIsHidden) {
  std::vector<std::string> hidden;
  for (const ParameterMapSource& map : Shipped().fMaps) {
    for (const FieldDescription& field : map.fMap.fFields) {
      if (field.fControl == 0) {
        hidden.push_back(QuotedID(map.fMap.fClass) + field.fName);
      }
    }
  }
  EXPECT_EQ(hidden, std::vector<std::string>{"'fPIN'fReserved"});
  EXPECT_EQ(Shipped().fMaps[0].fMap.fFields.size(), 66U);
}

TEST(ShippedResources, ListTheClassesInTheirOrder) {
  const struct {
    const char* fName;
    const char* fFamilyAndID;
    MCGuid fClassID;
    int16 fResource;
  } kRows[] = {
      {"QLXModifier", "modi fQLX", "1F3AE15F-FDC2-001D-13E1-1FF121717497"_guid, 150},
      {"PinModifier", "modi fPIN", "203FF150-EDC1-991D-93E9-19E1A1710097"_guid, 156},
      {"SliderModifier", "modi fSLD", "203FF150-EDC1-991D-93E9-19E1A1710098"_guid, 183},
      {"AddQLXModifierCommand", "scmd aQLX", "10D400AB-1490-3211-DFF0-210FA01799B1"_guid, 155},
      {"AddPinModifierCommand", "scmd aPIN", "3759F866-BD74-4B85-AE16-4F022E419105"_guid, 155},
      {"AddSliderModifierCommand", "scmd aSLD", "3759F866-BD74-4B85-AE16-4F022E419106"_guid, 155},
      {"RemoveDupKeyframesCommand", "scmd rdup", "5D95B36C-C4BD-4242-96BB-067A18E44CDB"_guid, 158},
      {"WiggleKeyframesCommand", "scmd wigl", "AEE6DF60-DAB9-47F2-BCDF-0843BA52133A"_guid, 159},
      {"DeleteKeyframesCommand", "scmd dkey", "AE16DF61-D1B1-17F1-1C1F-18131A12131A"_guid, 0},
      {"QLXChainCommand", "scmd chai", "10E24BAB-1020-0121-0FFF-211F1212AABB"_guid, 0},
      {"QLXChainDialog", "part chdl", "10E24B1B-1020-0122-0FFF-211F1212AABC"_guid, 190},
      {"QLXChainQLXSubDlg", "part chsd", "10E24B1B-1020-0122-0FFF-211F1213ABBD"_guid, 200},
      {"PropertyExplorer", "scmd prex", "10E24B1C-1022-0123-1000-22201314ACBE"_guid, 0},
      {"PropertyExplorerDialog", "part pexd", "10E24B1C-1022-0123-1000-22201315ADBF"_guid, 181},
  };
  ASSERT_EQ(Shipped().fExtensions.size(), std::size(kRows));
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    const ExtensionRecord& record = Shipped().fExtensions[i].fRecord;
    EXPECT_EQ(record.fName, kRows[i].fName);
    EXPECT_EQ((std::vector<MCID>{record.fFamily, record.fID}), IDsOf(kRows[i].fFamilyAndID)) << record.fName;
    EXPECT_EQ(record.fClassID, kRows[i].fClassID) << record.fName;
    EXPECT_EQ(record.fResourceId, kRows[i].fResource) << record.fName;
    if (record.fFamily == "part"_id) {
      EXPECT_EQ(FindPart(Shipped(), kDialogType, record.fResourceId)->fExtension, record.fClassID) << record.fName;
    }
  }
}

}  // namespace
}  // namespace qlx::host
