// What the panel of a link does: its lists and title, the dialogs for curves and names, the choice of values and
// objects.
#include <gtest/gtest.h>

#include "FakeAttributes.h"
#include "LinkServices.h"
#include "LinkTest.h"
#include "MCMemoryStream.h"
#include "PropertyFill.h"
#include "QLXModifierTokens.h"
#include "QLXPropertyItem.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

using Texts = std::vector<std::string>;

// A link on the element "B" with the panel of a host: a title around panes with controls.
class QLXPanelTest : public testing::Test {
 protected:
  QLXPanelTest() {
    fLink->EditData().fAttributeMode = true;
    EXPECT_EQ(fLink->SetTreeElement(&fScene.fB), MC_S_OK);
    FakeControl& title = fPanel.Add("titl"_id, FakeControl::kLabelled);
    title.Add("clis"_id, FakeControl::kList);
    for (const MCID button : {"ChTL"_id, "sgrw"_id, "sdcy"_id, "sosc"_id, "slsp"_id, "slcp"_id, "slso"_id, "bosl"_id}) {
      title.Add("cps5"_id, FakeControl::kLabelled).Add("mps0"_id, FakeControl::kLabelled).Add(button);
    }
    title.Add("unit"_id, FakeControl::kPopup);
    title.Add("UnLm"_id, FakeControl::kPopup);
  }
  ~QLXPanelTest() override { EXPECT_EQ(fPanel.CountHeld(), 0); }

  void Open() { EXPECT_EQ(fLink->HandleEvent(1, fPanel.AsPart(), nullptr), MC_S_OK); }
  void Press(MCID inButton) { EXPECT_EQ(fLink->HandleEvent(5, fPanel[inButton].AsPart(), nullptr), MC_S_OK); }
  Texts Offered() { return fServices.OfferedRows().Labels(); }

  LinkScene fScene;
  LinkServices fServices;
  FakeControl fPanel{"panl"_id};
  TMCCountedPtr<QLXModifier> fLink = MCAdopt(new QLXModifier);
};

TEST_F(QLXPanelTest, OpeningFillsListsOnceAndNamesTheTitle) {
  fLink->EditData().fName = "Follow";
  fServices.fShell.fIsSuspended = true;
  Open();
  EXPECT_TRUE(fPanel["unit"_id].fTexts.empty());
  fServices.fShell.fIsSuspended = false;
  Open();
  const Texts units = {"<none>", "cm", "in", "ft", "m", "degrees", "radians", "percent"};
  EXPECT_EQ(fPanel["unit"_id].fTexts, units);
  EXPECT_EQ(fPanel["UnLm"_id].fTexts, units);
  EXPECT_EQ(fPanel["clis"_id].fTexts,
            (Texts{"  Basic", "  Advanced", "  Control", "  Modify", "  Time Based", "  Global"}));
  EXPECT_EQ(fPanel["titl"_id].fText, "") << "the opening comes from above the title";
  Press("clis"_id);
  EXPECT_EQ(fPanel["titl"_id].fText, "Follow");
  EXPECT_EQ(fPanel["titl"_id].fWrites, 1);
  fPanel["UnLm"_id].fTexts = {"mine"};
  Press("unit"_id);
  EXPECT_EQ(fPanel["unit"_id].fTexts, units) << "not filled twice";
  EXPECT_EQ(fPanel["UnLm"_id].fTexts, Texts{"mine"});
  EXPECT_EQ(fPanel["titl"_id].fWrites, 1) << "the label is the name already";
}

// Panes have labels and are no titles, and the lists of another panel are left alone.
TEST_F(QLXPanelTest, TheTitleIsItsOwn) {
  Press("ChTL"_id);
  EXPECT_EQ(fPanel["titl"_id].fText, "QLX");
  EXPECT_EQ(fPanel["cps5"_id].fText, "");
  EXPECT_EQ(fPanel["mps0"_id].fText, "");
  FakeControl window;
  FakeControl& other = window.Add("titl"_id, FakeControl::kLabelled);
  other.Add("unit"_id, FakeControl::kPopup);
  FakeControl& own = window.Add("titl"_id, FakeControl::kLabelled);
  EXPECT_EQ(fLink->HandleEvent(5, own.Add("LOAD"_id).AsPart(), nullptr), MC_S_OK);
  EXPECT_EQ(own.fText, "QLX");
  EXPECT_TRUE(other["unit"_id].fTexts.empty());
}

TEST_F(QLXPanelTest, RenamesTheLink) {
  const struct {
    const char* fLabel;
    std::string fEntered;
    bool fOk;
    std::string fName;
  } rows[] = {
      {"cancelled", "Other", false, "QLX"},
      {"OK", "Other", true, "Other"},
      {"too long: cut at the end of a character", std::string(254, 'a') + "\xC3\xA9", true, std::string(254, 'a')},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    fServices.fDialogs
        .Add(131,
             [&row](FakeControl& ioDialog) {
               EXPECT_EQ(ioDialog["ttlt"_id].fText, "QLX");
               ioDialog["ttlt"_id].fText = row.fEntered;
               return row.fOk;
             })
        .Add("ttlt"_id, "");
    fLink->EditData().fName = "QLX";
    Press("ChTL"_id);
    EXPECT_EQ(TextOf(fLink->EditData().fName), row.fName);
    EXPECT_EQ(fPanel["titl"_id].fText, row.fName);
    EXPECT_EQ(fServices.fDialogs[131].fCloses, 1);
    EXPECT_EQ(fServices.fDialogs[131].CountHeld(), 0);
  }
}

// Controls have the keys of their fields.
TEST_F(QLXPanelTest, CurveDialogsGoThroughEveryField) {
  const struct {
    MCID fButton;
    int32 fDialog;
    std::vector<std::string> fSwitches, fNumbers;
  } rows[] = {
      {"sgrw"_id, 170, {"glin", "gqua", "gcub", "gqut", "gcut"}, {"gmax", "gmin"}},
      {"sdcy"_id, 160, {"dlin", "dqua", "dcub", "dqut", "dcut"}, {"dmax", "dmin"}},
      {"sosc"_id, 180, {"osin", "ocos"}, {"opho", "osca", "omax", "omin", "ospd"}},
  };
  const auto written = [this](const std::string& id) {
    TMCMemoryStream saved;
    WriteTokens(saved, fLink->GetPrivateData());
    const std::string text(reinterpret_cast<const char*>(saved.GetData()), saved.GetSize());
    return std::stod(text.substr(text.find(id + " ") + 5));
  };
  for (const auto& row : rows) {
    FakeControl& dialog = fServices.fDialogs.Add(row.fDialog, nullptr);
    std::map<std::string, real64> before, entered;
    for (const std::string& id : row.fSwitches) {
      dialog.Add(TMCString15(id.c_str()).ToID(), false);
      before[id] = written(id);
      entered[id] = 1 - before[id];
    }
    for (const std::string& id : row.fNumbers) {
      dialog.Add(TMCString15(id.c_str()).ToID(), 0.0f);
      before[id] = written(id);
      entered[id] = 12 + 0.5 * static_cast<real64>(entered.size());
    }
    for (const bool isOk : {false, true}) {
      dialog.fOnRun = [&](FakeControl& ioDialog) {
        for (const auto& [id, number] : entered) {
          FakeControl& control = ioDialog[TMCString15(id.c_str()).ToID()];
          EXPECT_EQ(control.fNumber, before[id]) << id;
          control.fNumber = control.fForm == "bool"_id ? 2 * number : number;  // a truth value may be neither 0 nor 1
        }
        return isOk;
      };
      Press(row.fButton);
      for (const auto& [id, number] : entered) {
        EXPECT_EQ(written(id), isOk ? number : before[id]) << id;
      }
    }
    EXPECT_EQ(dialog.fCloses, 2);
  }
}

TEST_F(QLXPanelTest, OffersTheOwnValuesOfTheElement) {
  host::SceneObject& head = fScene->AddObject("Head");
  head.AddMorphGroup("Mouth", {"Smile"}, {0});
  head.SetShaders({&fScene->AddShader("Paint")});
  fScene.fB.SetShownObject(&head);
  fServices.OfferRow("Global Y Position");
  Press("slsp"_id);
  const Texts offered = Offered();
  ASSERT_GT(offered.size(), 12U);
  EXPECT_EQ((Texts{offered.begin(), offered.begin() + 4}),
            (Texts{"B", "  Global X Position", "  Global Y Position", "  Global Z Position"}));
  const auto contains = [&](const char* inRow) { return std::ranges::find(offered, inRow) != offered.end(); };
  for (const char* const row : {"      Rotation (ROTA)", "        Rotation X (RotX) [qfix]", "Morphs", "  Mouth",
                                "    Smile (S1dN) [qfix]", "Shaders", "  Paint"}) {
    EXPECT_TRUE(contains(row)) << row << " in " << testing::PrintToString(offered);
  }
  EXPECT_TRUE(fServices.OfferedRows().fRows[0].fIsExpanded);
  const QLXPrivateData& data = fLink->GetPrivateData();
  EXPECT_TRUE(data.fTargetPathSet && data.fTargetPath == "GlbY") << TextOf(data.fTargetPath);
  EXPECT_EQ(TextOf(fLink->EditData().fTargetLabel), "Global Y Position");
  EXPECT_FALSE(data.fControllerPathSet);
}

TEST_F(QLXPanelTest, AChoiceThatIsNoneChangesNothing) {
  for (const bool isOk : {false, true}) {
    FakeControl& dialog = fServices.OfferRow(isOk ? "no such row" : "Global X Position", isOk);
    Press("slsp"_id);
    Press("slcp"_id);
    EXPECT_EQ(dialog.fCloses, 2);
    EXPECT_FALSE(fLink->GetPrivateData().fTargetPathSet || fLink->GetPrivateData().fControllerPathSet);
    EXPECT_TRUE(fLink->EditData().fTargetLabel.IsEmpty());
  }
}

TEST_F(QLXPanelTest, TheControllersValuesAreThoseOfItsElement) {
  const auto offered = [this](MCID button) {
    fServices.OfferRow("Global X Position");
    Press(button);
    return Offered().at(0);
  };
  EXPECT_EQ(offered("slcp"_id), "B") << "none is chosen: the own element";
  EXPECT_TRUE(fLink->GetPrivateData().fControllerPathSet);
  ObjectReference toA;
  fLink->SetControllerRef(fScene.fA.GetObjectReference(toA));
  EXPECT_EQ(offered("slcp"_id), "A");
  EXPECT_EQ(offered("slsp"_id), "B") << "the target is the link's own element, whatever it follows";
  fLink->SetControllerRef({});
  fLink->EditData().fFindControllerByName = true;
  fLink->EditData().fControllerName = "A";
  EXPECT_EQ(offered("slcp"_id), "A") << "by name";
  fLink->EditData().fControllerName = "C";
  EXPECT_EQ(offered("slcp"_id), "B") << "by a name that nobody has";
}

TEST_F(QLXPanelTest, WhatWasChosenWorksAtOnce) {
  fScene.fA.SetBase(MakeValues({7, 8, 9}));
  fServices.fShell.fChoice = &fScene.fA;
  Press("slso"_id);
  EXPECT_EQ(fServices.fShell.fTexts, "Choose controller|Choose Object");
  EXPECT_EQ(TextOf(fLink->EditData().fControllerName), "A");
  fServices.OfferRow("Global X Position");
  Press("slsp"_id);
  fServices.OfferRow("Global Y Position");
  Press("slcp"_id);
  fScene.Play(1);
  fLink->SetTreeElement(&fScene.fB);
  EXPECT_EQ(ValueOf(fScene.fB, host::Channel::kPositionX), 8);
  fServices.OfferRow("Global Z Position");
  Press("slcp"_id);
  fScene.Play(2);
  fLink->SetTreeElement(&fScene.fB);
  EXPECT_EQ(ValueOf(fScene.fB, host::Channel::kPositionX), 9);
}

TEST_F(QLXPanelTest, ChoosesTheSourceOfObjectMode) {
  for (host::Element* const choice : {static_cast<host::Element*>(nullptr), &fScene.fA}) {
    fServices.fShell.fChoice = choice;
    Press("bosl"_id);
    EXPECT_EQ(TextOf(fLink->EditData().fSourceName), choice ? "A" : "");
    EXPECT_EQ(fLink->GetPrivateData().fSourceRef.GetElemCount() != 0, choice != nullptr);
    EXPECT_TRUE(fLink->EditData().fControllerName.IsEmpty());
  }
}

TEST_F(QLXPanelTest, MissingControlsAndDialogsLeaveTheirStepOut) {
  FakeControl lone;
  for (const MCID id : {"ChTL"_id, "sgrw"_id, "sdcy"_id, "sosc"_id, "slsp"_id, "slcp"_id, "slso"_id, "bosl"_id}) {
    for (const int32 dialog : {0, 131, 140, 160, 170, 180}) {
      fServices.fDialogs.Add(dialog, [](FakeControl&) { return true; });
      FakeControl button(id);
      EXPECT_EQ(fLink->HandleEvent(5, button.AsPart(), nullptr), MC_S_OK);
      EXPECT_EQ(fLink->HandleEvent(id, nullptr, nullptr), MC_S_OK) << "as a message of its own";
    }
  }
  EXPECT_EQ(TextOf(fLink->EditData().fName), "QLX");
  EXPECT_FALSE(fLink->GetPrivateData().fTargetPathSet);
  FakeObject<IMCUnknown> noPart;
  EXPECT_EQ(fLink->HandleEvent(1, &noPart, nullptr), MC_S_OK);
  EXPECT_EQ(fLink->HandleEvent(5, nullptr, nullptr), MC_S_OK);
  EXPECT_EQ(ThrownBy([&] { fLink->HandleEvent(5, &noPart, nullptr); }).fCode, MC_E_INVALIDARG);
}

TEST_F(QLXPanelTest, RowsAreLabelledByNameIdAndType) {
  FakeParam colour("tint"_id, "colo"_id);
  FakeParam vector("dirc"_id, "dire"_id);
  FakeParam nameless(0, "re32"_id);
  FakeParam text("text"_id, "str "_id);
  FakeParam inGroup("size"_id, "in32"_id);
  FakeParam hiddenToo("fraF"_id, "in32"_id);
  FakeHolder group({&inGroup, &hiddenToo});
  FakeParam groupParam("grup"_id, 0, &group);
  FakeHolder hidden({&nameless});
  FakeParam hiddenGroup("fiOp"_id, 0, &hidden);
  FakeHolder holder({&colour, &vector, &nameless, &text, &groupParam, &hiddenGroup});
  colour.fName = "Tint";
  groupParam.fName = "Group";
  FakeControl list(0, FakeControl::kTree);
  FillProperties(list, holder, TMCString15("self"), nullptr, TextPathFilter::kEditable);
  EXPECT_EQ(list.Labels(),
            (Texts{"Tint (tint) [colo]", "  Red", "  Green", "  Blue", "  Alpha", "UNKNOWN (dirc) [dire]", "  X", "  Y",
                   "  Z", "UNKNOWN [re32]", "Group (grup)", "  UNKNOWN (size) [in32]"}));
  const auto item = MCQuery<QLXPropertyItem>(list.fRows[3].fItem);
  ASSERT_TRUE(item);
  EXPECT_EQ(TextOf(item->GetText()), "self,tint,bluV");
  list.ClearList(0);
  FillProperties(list, holder, TMCString15("self"), nullptr, TextPathFilter::kAll);
  EXPECT_EQ(list.fRows.size(), 13U) << "with the text";
}

// Ten thousand elements in one chain: each is met once and nothing goes deep.
TEST_F(QLXPanelTest, TheWholeSceneIsOneBranchAnElement) {
  constexpr int kElements = 10000;
  host::Element* element = &fScene.fB;
  for (int i = 0; i < kElements; ++i) {
    element = &fScene->AddElement(*element, "E" + std::to_string(i));
  }
  fLink->EditData().fListAllProperties = true;
  fServices.OfferRow("E9999");
  Press("slsp"_id);
  const Texts offered = Offered();
  EXPECT_EQ(offered.at(0), "Scene");
  EXPECT_EQ(offered.at(1), "  A");
  EXPECT_EQ(std::ranges::count_if(offered, [](const std::string& inRow) { return inRow.starts_with("  E"); }),
            kElements);
  const auto& rows = fServices.OfferedRows().fRows;
  EXPECT_TRUE(rows[0].fIsExpanded);
  EXPECT_TRUE(std::ranges::none_of(rows, [](const FakeRow& inRow) { return inRow.fDepth > 0 && inRow.fIsExpanded; }));
  EXPECT_EQ(TextOf(fLink->GetPrivateData().fTargetPath), "aset,<E9999>");
}

}  // namespace
}  // namespace qlx::test
