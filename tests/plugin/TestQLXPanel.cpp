// What the panel of a link does: its lists and title, the dialogs for curves and names, the choice of values and
// objects.
#include <gtest/gtest.h>

#include "LinkServices.h"
#include "LinkTest.h"
#include "MCException.h"
#include "MCMemoryStream.h"
#include "PropertyFill.h"
#include "QLXModifierTokens.h"
#include "QLXPropertyItem.h"

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
  // The dialog in which a value is chosen; the person selects the row with that label.
  FakeControl& PickRow(std::string inLabel, bool inOk = true) {
    FakeControl& dialog =
        fServices.fDialogs.Add(140, [this, inLabel = std::move(inLabel), inOk](FakeControl& ioDialog) {
          FakeControl& list = ioDialog["plst"_id];
          fOffered = list.Labels();
          fFirstIsOpen = list.fRows.at(0).fIsExpanded;
          fOthersFolded = true;
          for (const FakeRow& row : list.fRows) {
            fOthersFolded = fOthersFolded && (!row.fIsExpanded || row.fDepth == 0);
          }
          list.Select(inLabel);
          return inOk;
        });
    dialog.Add("plst"_id, FakeControl::kTree);
    return dialog;
  }

  LinkScene fScene;
  LinkServices fServices;
  FakeControl fPanel{"panl"_id};
  TMCCountedPtr<QLXModifier> fLink = MCAdopt(new QLXModifier);
  Texts fOffered;
  bool fFirstIsOpen = false;
  bool fOthersFolded = false;
};

TEST_F(QLXPanelTest, OpeningFillsListsOnceAndNamesTheTitle) {
  fLink->EditData().fName = "Follow";
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

// Panes have labels and are no titles, and another panel's title above this one's is not met.
TEST_F(QLXPanelTest, ThePanesOnTheWayUpAreNoTitles) {
  Press("ChTL"_id);
  EXPECT_EQ(fPanel["titl"_id].fText, "QLX");
  EXPECT_EQ(fPanel["cps5"_id].fText, "");
  EXPECT_EQ(fPanel["mps0"_id].fText, "");
}

TEST_F(QLXPanelTest, ListsOfOtherPanelsAreLeftAlone) {
  FakeControl window;
  FakeControl& other = window.Add("titl"_id, FakeControl::kLabelled);
  other.Add("unit"_id, FakeControl::kPopup);
  FakeControl& own = window.Add("titl"_id, FakeControl::kLabelled);
  FakeControl& button = own.Add("LOAD"_id);
  EXPECT_EQ(fLink->HandleEvent(5, button.AsPart(), nullptr), MC_S_OK);
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

// What a person enters stands in the field at once, is saved with the link, and works in the next evaluation.
TEST_F(QLXPanelTest, CurveDialogsGoThroughEveryField) {
  const QLXPrivateData& data = fLink->GetPrivateData();
  const QLXCurves& curves = data.fCurves;
  const struct {
    MCID fButton;
    int32 fDialog;
    std::vector<std::pair<MCID, const bool*>> fSwitches;
    std::vector<std::pair<MCID, const real32*>> fNumbers;
  } rows[] = {
      {"sgrw"_id,
       170,
       {{"glin"_id, &curves.fGrowth.fGrowLinear},
        {"gqua"_id, &curves.fGrowth.fGrowQuadratic},
        {"gcub"_id, &curves.fGrowth.fGrowCubic},
        {"gqut"_id, &curves.fGrowth.fGrowQuadraticOnly},
        {"gcut"_id, &curves.fGrowth.fGrowCubicOnly}},
       {{"gmax"_id, &curves.fGrowth.fGrowMax}, {"gmin"_id, &curves.fGrowth.fGrowMin}}},
      {"sdcy"_id,
       160,
       {{"dlin"_id, &curves.fDecay.fDecayLinear},
        {"dqua"_id, &curves.fDecay.fDecayQuadratic},
        {"dcub"_id, &curves.fDecay.fDecayCubic},
        {"dqut"_id, &curves.fDecay.fDecayQuadraticOnly},
        {"dcut"_id, &curves.fDecay.fDecayCubicOnly}},
       {{"dmax"_id, &curves.fDecay.fDecayMax}, {"dmin"_id, &curves.fDecay.fDecayMin}}},
      {"sosc"_id,
       180,
       {{"osin"_id, &curves.fOscillator.fOscillatorSine}, {"ocos"_id, &curves.fOscillator.fOscillatorCosine}},
       {{"opho"_id, &curves.fOscillator.fOscillatorPhase},
        {"osca"_id, &curves.fOscillator.fOscillatorScale},
        {"omax"_id, &curves.fOscillator.fOscillatorMax},
        {"omin"_id, &curves.fOscillator.fOscillatorMin},
        {"ospd"_id, &curves.fOscillator.fOscillatorSpeed}}},
  };
  for (const auto& row : rows) {
    for (const bool ok : {false, true}) {
      SCOPED_TRACE(row.fDialog * 10 + (ok ? 1 : 0));
      FakeControl& dialog = fServices.fDialogs.Add(row.fDialog, [&](FakeControl& ioDialog) {
        real64 number = 0.375;
        for (const auto& [id, field] : row.fSwitches) {
          EXPECT_EQ(ioDialog[id].fNumber, *field ? 1 : 0);
          ioDialog[id].fNumber = *field ? 0 : 2;  // a truth value that is neither 0 nor 1
        }
        for (const auto& [id, field] : row.fNumbers) {
          EXPECT_EQ(ioDialog[id].fNumber, static_cast<real64>(*field));
          ioDialog[id].fNumber = number *= 2;
        }
        return ok;
      });
      for (const auto& [id, field] : row.fSwitches) {
        dialog.Add(id, false);
      }
      for (const auto& [id, field] : row.fNumbers) {
        dialog.Add(id, 0.0f);
      }
      const bool before = *row.fSwitches[0].second;
      Press(row.fButton);
      EXPECT_EQ(*row.fSwitches[0].second, ok ? !before : before);
      real64 number = 0.375;
      for (const auto& [id, field] : row.fNumbers) {
        number *= 2;
        EXPECT_EQ(static_cast<real64>(*field) == number, ok);
      }
      EXPECT_EQ(dialog.fRuns, 1);
      EXPECT_EQ(dialog.fCloses, 1);
    }
  }
  TMCMemoryStream saved;
  WriteTokens(saved, data);
  const std::string text(reinterpret_cast<const char*>(saved.GetData()), saved.GetSize());
  EXPECT_NE(text.find("osin 0"), std::string::npos) << text;
  EXPECT_NE(text.find("ospd 12"), std::string::npos) << text;
}

TEST_F(QLXPanelTest, OffersTheOwnValuesOfTheElement) {
  host::SceneObject& head = fScene->AddObject("Head");
  head.AddMorphGroup("Mouth", {"Smile"}, {0});
  head.SetShaders({&fScene->AddShader("Paint")});
  fScene.fB.SetShownObject(&head);
  PickRow("Global Y Position");
  Press("slsp"_id);
  ASSERT_GT(fOffered.size(), 12U);
  EXPECT_EQ((Texts{fOffered.begin(), fOffered.begin() + 4}),
            (Texts{"B", "  Global X Position", "  Global Y Position", "  Global Z Position"}));
  const auto contains = [&](const char* inRow) { return std::ranges::find(fOffered, inRow) != fOffered.end(); };
  for (const char* const row : {"      Rotation (ROTA)", "        Rotation X (RotX) [qfix]", "Morphs", "  Mouth",
                                "    Smile (S1dN) [qfix]", "Shaders", "  Paint"}) {
    EXPECT_TRUE(contains(row)) << row << " in " << testing::PrintToString(fOffered);
  }
  EXPECT_TRUE(fFirstIsOpen);
  const QLXPrivateData& data = fLink->GetPrivateData();
  EXPECT_TRUE(data.fTargetPathSet && data.fTargetPath == "GlbY") << TextOf(data.fTargetPath);
  EXPECT_EQ(TextOf(fLink->EditData().fTargetLabel), "Global Y Position");
  EXPECT_FALSE(data.fControllerPathSet);
}

TEST_F(QLXPanelTest, AChoiceThatIsNoneChangesNothing) {
  const struct {
    const char* fLabel;
    const char* fRow;
    bool fOk;
  } rows[] = {{"cancelled", "Global X Position", false}, {"nothing selected", "no such row", true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    FakeControl& dialog = PickRow(row.fRow, row.fOk);
    Press("slsp"_id);
    Press("slcp"_id);
    EXPECT_EQ(dialog.fRuns, 2);
    EXPECT_EQ(dialog.fCloses, 2);
    EXPECT_FALSE(fLink->GetPrivateData().fTargetPathSet || fLink->GetPrivateData().fControllerPathSet);
    EXPECT_TRUE(fLink->EditData().fTargetLabel.IsEmpty());
  }
}

TEST_F(QLXPanelTest, TheControllersValuesAreThoseOfItsElement) {
  using Change = std::function<void(QLXModifier&)>;
  ObjectReference toA;
  fScene.fA.GetObjectReference(toA);
  const struct {
    const char* fLabel;
    Change fChange;
    const char* fElement;
  } rows[] = {
      {"none is chosen: the own element", [](QLXModifier&) {}, "B"},
      {"by reference", [&](QLXModifier& l) { l.SetControllerRef(toA); }, "A"},
      {"by name",
       [](QLXModifier& l) {
         l.EditData().fFindControllerByName = true;
         l.EditData().fControllerName = "A";
       },
       "A"},
      {"by a name that nobody has", [](QLXModifier& l) { l.EditData().fControllerName = "C"; }, "B"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    row.fChange(*fLink);
    PickRow("Global X Position");
    Press("slcp"_id);
    EXPECT_EQ(fOffered.at(0), row.fElement);
    EXPECT_TRUE(fLink->GetPrivateData().fControllerPathSet);
    Press("slsp"_id);
    EXPECT_EQ(fOffered.at(0), "B") << "the target is the link's own element, whatever it follows";
  }
}

TEST_F(QLXPanelTest, WhatWasChosenWorksAtOnce) {
  fScene.fA.SetBase(MakeValues({7, 8, 9}));
  fServices.fShell.fChoice = &fScene.fA;
  Press("slso"_id);
  EXPECT_EQ(fServices.fShell.fTexts, "Choose controller|Choose Object");
  EXPECT_EQ(TextOf(fLink->EditData().fControllerName), "A");
  PickRow("Global X Position");
  Press("slsp"_id);
  PickRow("Global Y Position");
  Press("slcp"_id);
  fScene.Play(1);
  fLink->SetTreeElement(&fScene.fB);
  EXPECT_EQ(ValueOf(fScene.fB, host::Channel::kPositionX), 8);
  PickRow("Global Z Position");
  Press("slcp"_id);
  fScene.Play(2);
  fLink->SetTreeElement(&fScene.fB);
  EXPECT_EQ(ValueOf(fScene.fB, host::Channel::kPositionX), 9);
}

TEST_F(QLXPanelTest, ChoosesObjects) {
  Press("bosl"_id);
  EXPECT_TRUE(fLink->EditData().fSourceName.IsEmpty()) << "cancelled";
  EXPECT_EQ(fLink->GetPrivateData().fSourceRef.GetElemCount(), 0U);
  fServices.fShell.fChoice = &fScene.fA;
  Press("bosl"_id);
  EXPECT_EQ(TextOf(fLink->EditData().fSourceName), "A");
  EXPECT_NE(fLink->GetPrivateData().fSourceRef.GetElemCount(), 0U);
  EXPECT_TRUE(fLink->EditData().fControllerName.IsEmpty());
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
  FakeHolder noPart({});
  EXPECT_EQ(fLink->HandleEvent(1, static_cast<TimeBasedData*>(&noPart), nullptr), MC_S_OK);
  const SilentReports silence;
  EXPECT_THROW(fLink->HandleEvent(5, static_cast<TimeBasedData*>(&noPart), nullptr), TMCException);
}

TEST_F(QLXPanelTest, NothingHappensWhileEventsAreSuspended) {
  fServices.fShell.fIsSuspended = true;
  Open();
  EXPECT_TRUE(fPanel["unit"_id].fTexts.empty());
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
  PickRow("E9999");
  Press("slsp"_id);
  EXPECT_EQ(fOffered.at(0), "Scene");
  EXPECT_EQ(fOffered.at(1), "  A");
  EXPECT_EQ(std::ranges::count_if(fOffered, [](const std::string& inRow) { return inRow.starts_with("  E"); }),
            kElements);
  EXPECT_TRUE(fFirstIsOpen && fOthersFolded);
  EXPECT_EQ(TextOf(fLink->GetPrivateData().fTargetPath), "aset,<E9999>");
}

}  // namespace
}  // namespace qlx::test
