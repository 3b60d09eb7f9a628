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

}  // namespace
}  // namespace qlx::host
