// Chains of links: the command that lays them, the list and the dialog of one link.
#include <gtest/gtest.h>

#include "CommandTest.h"
#include "CreateQLXChain.h"
#include "QLXChainDialog.h"
#include "QLXChainQLXSubDlg.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

// The controls of a link in the order of its record; a letter of those that are no switches says what they hold.
constexpr const char* kControls[] = {"cset",   "ccst", "cadd",   "csub",   "cmul",   "cdiv",  "madd", "msub",   "mmul",
                                     "mdiv",   "mcst", "mval r", "decy",   "grow",   "oscl",  "ltst", "lsvl i", "coff",
                                     "covl i", "dely", "dfrm i", "unit i", "BTal",   "BTno",  "BTso", "BTsX",   "BTsY",
                                     "BTsZ",   "BTiX", "BTiY",   "BTiZ",   "BRal",   "BRno",  "BRso", "BRsX",   "BRsY",
                                     "BRsZ",   "BRiX", "BRiY",   "BRiZ",   "BSun",   "BSsX",  "BSsY", "BSsZ",   "LMin",
                                     "MinL r", "LMax", "MaxL r", "CLim",   "CMin r", "CMax r"};

MCID ToID(const std::string& inText) {
  return TMCString15(inText.substr(0, 4).c_str()).ToID();
}

// The elements "A" and "B" and the chain "Hip", "Knee", "Toe" below "Body"; dialogs with all their controls.
class QLXChainTest : public CommandTest {
 protected:
  QLXChainTest() {
    MakeListDialog();
    MakeLinkDialog();
  }
  ~QLXChainTest() override {
    fServices.fDialogs[190].fExtension = nullptr;
    fServices.fDialogs[200].fExtension = nullptr;
  }

  void MakeListDialog() {
    FakeControl& dialog = fServices.fDialogs.Add(190, [this](FakeControl&) { return fOnChain(); });
    dialog.fExtension = static_cast<IMFExResponder*>(fList.Get());
    dialog.Add("cgrp"_id, false);
    FakeControl& group = dialog.Add("grup"_id);
    group.Add("clst"_id, FakeControl::kList);
    for (const MCID button : {"abtn"_id, "achb"_id, "ebtn"_id, "dbtn"_id, "ubtn"_id, "mdbt"_id, "othr"_id}) {
      group.Add(button);
    }
  }
  void MakeLinkDialog() {
    FakeControl& dialog = fServices.fDialogs.Add(200, [this](FakeControl&) { return fOnLink(); });
    dialog.fExtension = static_cast<IMFExResponder*>(fEditor.Get());
    for (const std::string id : kControls) {
      FakeControl& group = dialog.Add("grup"_id);
      id.ends_with(" r")   ? group.Add(ToID(id), 0.0f)
      : id.ends_with(" i") ? group.Add(ToID(id), int32{0})
                           : group.Add(ToID(id), false);
    }
    dialog.Add("uFRA"_id, false);
    dialog.Add("UnLm"_id, 0.0f);
    for (const MCID id : {"unit"_id, "UnLm"_id}) {
      dialog[id].fKind = FakeControl::kPopup;
    }
    for (const MCID id : {"TBno"_id, "sosc"_id, "sdcy"_id, "sgrw"_id}) {
      dialog.Add(id);
    }
  }

  FakeControl& List() { return fServices.fDialogs[190]["clst"_id]; }
  FakeControl& Link(MCID inID) { return fServices.fDialogs[200][inID]; }
  void Press(MCID inButton) {
    EXPECT_EQ(fList->Receive(9, fServices.fDialogs[190][inButton].AsPart(), nullptr), MC_S_OK);
  }
  // The person changes a control of the link.
  void Enter(MCID inID, real64 inValue) {
    Link(inID).fNumber = inValue;
    EXPECT_EQ(fEditor->Receive(9, Link(inID).AsPart(), nullptr), MC_S_OK);
  }
  void AddFor(TreeElement& inElement) {
    fServices.fShell.fChoice = &inElement;
    Press("abtn"_id);
  }
  const QLXModifierData& Edited() const { return fEditor->GetLink().fData; }
  static std::vector<QLXModifier*> LinksOn(host::Element& inElement) {
    std::vector<QLXModifier*> links;
    for (const auto& modifier : inElement.GetModifiers()) {
      links.push_back(MCQuery<QLXModifier>(static_cast<I3DShModifier*>(modifier.Get())).Get());
    }
    return links;
  }
  // The element that a link in object mode follows, by name and by reference; "" for none.
  std::string Followed(QLXModifier& inLink) {
    TMCCountedPtr<TreeElement> source;
    fScene->FindElementByRef(source.WriteInto(), inLink.GetPrivateData().fSourceRef);
    const std::string name = TextOf(inLink.EditData().fSourceName);
    EXPECT_EQ(source ? TextOf(source->GetName()) : "", name);
    return name;
  }

  host::Element& fBody = fScene.Add("Body");
  host::Element& fHip = fScene->AddElement(fBody, "Hip");
  host::Element& fKnee = fScene->AddElement(fHip, "Knee");
  host::Element& fToe = fScene->AddElement(fKnee, "Toe");
  TMCCountedPtr<QLXChainDialog> fList = MCAdopt(new QLXChainDialog);
  TMCCountedPtr<QLXChainQLXSubDlg> fEditor = MCAdopt(new QLXChainQLXSubDlg);
  std::function<bool()> fOnChain = [] { return true; };
  std::function<bool()> fOnLink = [] { return true; };
};

TEST_F(QLXChainTest, EachLinkFollowsTheFirstOrTheOneBefore) {
  const struct {
    const char* fLabel;
    bool fFollowsFirst;
    std::vector<host::Element*> fTargets;
    host::Element* fGone;  // by the time of OK
    std::vector<std::string> fFollowed;
  } rows[] = {
      {"one link keeps what it has", false, {&fHip}, nullptr, {""}},
      {"the one before", false, {&fHip, &fKnee, &fToe}, nullptr, {"", "Hip", "Knee"}},
      {"the first", true, {&fHip, &fKnee, &fToe}, nullptr, {"", "Hip", "Hip"}},
      {"an element twice", false, {&fHip, &fHip}, nullptr, {"", "Hip"}},
      {"one that is gone is left out", false, {&fHip, &fScene.fA, &fKnee}, &fScene.fA, {"", "Hip"}},
      {"so is the first", true, {&fScene.fB, &fHip, &fKnee}, &fScene.fB, {"", "Hip"}},
      {"no links", false, {}, nullptr, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    fList = MCAdopt(new QLXChainDialog);
    MakeListDialog();
    LinkScene::AddBare(fHip);
    fServices.fDialogs[190]["cgrp"_id].fNumber = row.fFollowsFirst ? 1 : 0;
    fOnChain = [&] {
      for (host::Element* const target : row.fTargets) {
        AddFor(*target);
      }
      fHost.fScene.fGone = row.fGone;
      return true;
    };
    EXPECT_TRUE(Run<QLXChainCommand>());
    EXPECT_EQ(fServices.fDialogs[190].fCloses, 1);
    std::vector<std::string> followed;
    std::map<host::Element*, std::size_t> seen = {{&fHip, 1}};  // behind what was there
    for (host::Element* const target : row.fTargets) {
      if (target != row.fGone) {
        QLXModifier& link = *LinksOn(*target).at(seen[target]++);
        EXPECT_TRUE(link.EditData().fMirrorTransform);
        followed.push_back(Followed(link));
      }
    }
    EXPECT_EQ(followed, row.fFollowed);
    for (host::Element* const element : {&fHip, &fKnee, &fToe}) {
      EXPECT_EQ(LinksOn(*element).size(), seen[element]);
      element->RemoveAllModifiers();
    }
  }
}

TEST_F(QLXChainTest, CancelledItLeavesTheScene) {
  fOnChain = [this] {
    AddFor(fHip);
    return false;
  };
  EXPECT_TRUE(Run<QLXChainCommand>());
  EXPECT_TRUE(LinksOn(fHip).empty());
  EXPECT_EQ(fServices.fDialogs[190].fCloses, 1);
  EXPECT_TRUE(IsEnabled<QLXChainCommand>(&fHost)) << "whatever is selected";
  EXPECT_FALSE(IsEnabled<QLXChainCommand>(nullptr));
  EXPECT_EQ(MCAdopt(new QLXChainCommand)->GetResourceId(), 0);
}

TEST_F(QLXChainTest, ButtonsWorkOnTheCurrentRow) {
  using Rows = std::vector<std::string>;
  fList->SetScene(fScene.operator->());
  for (const MCID button : {"achb"_id, "ebtn"_id, "dbtn"_id, "ubtn"_id, "mdbt"_id, "othr"_id}) {
    List().fCurrent = 0;  // a row that the list does not have
    Press(button);
    EXPECT_TRUE(fList->GetLinks().GetElemCount() == 0 && List().fTexts.empty());
  }
  AddFor(fHip);
  AddFor(fKnee);
  fServices.fShell.fChoice = nullptr;
  Press("abtn"_id);
  EXPECT_EQ(fServices.fShell.fTexts, "Choose Object|Choose Control Target");
  fOnLink = [] { return false; };
  AddFor(fToe);
  fOnLink = [] { return true; };
  const struct {
    const char* fLabel;
    MCID fButton;
    std::optional<uint32> fRow;
    Rows fRows;
    std::optional<uint32> fCurrent;
  } rows[] = {
      {"two were added, two cancelled", "ubtn"_id, {}, {"Hip", "Knee"}, {}},
      {"the first does not go up", "ubtn"_id, 0, {"Hip", "Knee"}, 0},
      {"the last does not go down", "mdbt"_id, 1, {"Hip", "Knee"}, 1},
      {"up, and stays current", "ubtn"_id, 1, {"Knee", "Hip"}, 0},
      {"down", "mdbt"_id, 0, {"Hip", "Knee"}, 1},
      {"no row: nothing is removed", "dbtn"_id, {}, {"Hip", "Knee"}, {}},
      {"edited", "ebtn"_id, 1, {"Hip", "Knee"}, 1},
      {"all below, without the element itself", "achb"_id, 0, {"Hip", "Knee", "Knee", "Toe"}, 0},
      {"nothing is below", "achb"_id, 3, {"Hip", "Knee", "Knee", "Toe"}, 3},
      {"removed", "dbtn"_id, 2, {"Hip", "Knee", "Toe"}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    List().fCurrent = row.fRow;
    Press(row.fButton);
    EXPECT_EQ(List().fTexts, row.fRows);
    EXPECT_EQ(List().fCurrent, row.fCurrent);
    Rows targets;
    for (const QLXChainLink& link : fList->GetLinks()) {
      TMCCountedPtr<TreeElement> target;
      fScene->FindElementByTreePath(target.WriteInto(), link.fTargetPath);
      targets.push_back(TextOf(target->GetName()));
    }
    EXPECT_EQ(targets, row.fRows) << "rows and links go together";
  }
}

TEST_F(QLXChainTest, LinksBelowHaveTheSettingsThatWereEdited) {
  fList->SetScene(fScene.operator->());
  AddFor(fHip);
  List().fCurrent = 0;
  fOnLink = [this] {
    Enter("mval"_id, 0.5);
    return true;
  };
  Press("achb"_id);
  ASSERT_EQ(fList->GetLinks().GetElemCount(), 3U);
  EXPECT_EQ(fList->GetLinks()[0].fData.fModifyValue, 0) << "the row's own link stays";
  EXPECT_EQ(fList->GetLinks()[1].fData.fModifyValue, 0.5f);
  EXPECT_EQ(fList->GetLinks()[2].fData.fModifyValue, 0.5f);
  fOnLink = [this] {
    Enter("mval"_id, 7);
    return false;
  };
  Press("ebtn"_id);
  EXPECT_EQ(fList->GetLinks()[0].fData.fModifyValue, 0) << "cancelled";
}

TEST_F(QLXChainTest, OtherMessagesAndSourcesAreNotHeard) {
  EXPECT_EQ(fList->Receive(5, nullptr, nullptr), MC_S_OK);
  EXPECT_EQ(fEditor->Receive(5, nullptr, nullptr), MC_S_OK);
  fServices.fShell.fChoice = &fHip;
  fList->Receive(8, fServices.fDialogs[190]["abtn"_id].AsPart(), nullptr);
  EXPECT_EQ(fList->GetLinks().GetElemCount(), 0U);
  Enter("mval"_id, 3);
  EXPECT_EQ(Edited().fModifyValue, 0) << "there is no link yet";
  FakeObject<IMCUnknown> noPart;
  EXPECT_EQ(ThrownBy([&] { fEditor->Receive(9, &noPart, nullptr); }).fCode, MC_E_INVALIDARG);
  EXPECT_EQ(ThrownBy([&] { fList->Receive(9, &noPart, nullptr); }), (Thrown{MC_E_INVALIDARG, "CreateQLXChain", 225}));
}

TEST_F(QLXChainTest, EveryControlHasItsField) {
  const QLXModifierData& d = Edited();
  const auto bytes = [&d] {
    const auto* const start = reinterpret_cast<const uint8*>(&d);
    return std::vector<uint8>(start, start + sizeof d);
  };
  fOnLink = [&] {
    EXPECT_EQ(Link("cset"_id).fNumber, 1) << "shown with its defaults";
    EXPECT_EQ(Link("unit"_id).fNumber, -1);
    EXPECT_EQ(Link("unit"_id).fTexts.size(), 8U);
    EXPECT_EQ(Link("UnLm"_id).fTexts.size(), 8U) << "filled once";
    std::size_t last = 0;
    for (const char* const id : kControls) {
      const std::vector<uint8> before = bytes();
      Enter(ToID(id), Link(ToID(id)).fNumber == 1 ? 0 : 1);
      const std::vector<uint8> after = bytes();
      const auto changed = static_cast<std::size_t>(
          std::mismatch(before.rbegin(), before.rend(), after.rbegin()).first.base() - before.begin());
      EXPECT_GT(changed, last) << id << ": each field lies behind the one before";
      last = changed;
    }
    Enter("CMax"_id, 19);
    Enter("UnLm"_id, kUnitDegrees);
    EXPECT_EQ(d.fLimitUnit, kUnitDegrees) << "the code, not the bits of a real";
    return true;
  };
  fList->SetScene(fScene.operator->());
  AddFor(fHip);
  ASSERT_EQ(fList->GetLinks().GetElemCount(), 1U);
  const QLXModifierData& made = fList->GetLinks()[0].fData;
  EXPECT_TRUE(made.fRangeOn && made.fRangeMax == 19 && made.fLimitUnit == kUnitDegrees);
  fOnLink = [this] {
    EXPECT_EQ(Link("CMax"_id).fNumber, 19);
    EXPECT_EQ(Link("UnLm"_id).fNumber, 5);
    EXPECT_EQ(Link("unit"_id).fTexts.size(), 8U);
    return true;
  };
  List().fCurrent = 0;
  Press("ebtn"_id);
}

// Position and rotation clear what their tables say and no more; what the host turns off beside it is read from there.
TEST_F(QLXChainTest, ChoicesClearOneAnother) {
  const struct {
    const char* fOn;       // on the screen and in the copy before
    MCID fUsed;            // turned on
    const char* fOnAfter;  // of the group
  } rows[] = {
      {"cset", "ccst"_id, "ccst"},      {"ccst", "cdiv"_id, "cdiv"},      {"madd", "mcst"_id, "mcst"},
      {"BTso", "BTal"_id, "BTal"},      {"BTal", "BTno"_id, "BTno"},      {"BTal", "BTso"_id, "BTso"},
      {"BTso", "BTno"_id, "BTno BTso"}, {"BRso", "BRal"_id, "BRal"},      {"BRso", "BRno"_id, "BRno"},
      {"BRal", "BRso"_id, "BRso"},      {"BRal", "BRno"_id, "BRal BRno"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.fOn << " before " << row.fOnAfter);
    std::vector<const char*> group;
    for (const char* const id : {"cset", "ccst", "cadd", "csub", "cmul", "cdiv", "madd", "msub", "mmul", "mdiv", "mcst",
                                 "BTal", "BTno", "BTso", "BRal", "BRno", "BRso"}) {
      if (id[0] == row.fOn[0] && (id[0] != 'B' || id[1] == row.fOn[1])) {
        group.push_back(id);
      }
    }
    const auto shown = [&] {
      std::string on;
      for (const char* const id : group) {
        on += Link(ToID(id)).fNumber != 0 ? (on.empty() ? "" : " ") + std::string(id) : "";
      }
      return on;
    };
    fEditor->Start(nullptr, QLXChainLink());
    fEditor->ShowLink(fServices.fDialogs[200].AsPart());
    for (const char* const id : group) {
      Link(ToID(id)).fNumber = std::string(id) == row.fOn ? 1 : 0;
    }
    Enter(row.fUsed, 1);
    EXPECT_EQ(shown(), row.fOnAfter);
    fEditor->ShowLink(fServices.fDialogs[200].AsPart());
    EXPECT_EQ(shown(), row.fOnAfter) << "in the copy";
  }
}

TEST_F(QLXChainTest, TheIdsBesideTheTable) {
  const QLXModifierData& d = Edited();
  fEditor->Start(nullptr, QLXChainLink());
  Enter("uFRA"_id, 1);
  EXPECT_TRUE(d.fStartOn && d.fEndOn && Link("ltst"_id).fNumber == 1 && Link("coff"_id).fNumber == 1);
  Enter("uFRA"_id, 0);
  EXPECT_FALSE(d.fStartOn || d.fEndOn);

  Enter("BTsX"_id, 1);
  Enter("BTal"_id, 1);
  Enter("TBno"_id, 0);  // a button
  EXPECT_TRUE(d.fPositionNone && !d.fPositionAll && !d.fPositionCustom && !d.fPositionX);
  EXPECT_EQ(Link("BTsX"_id).fNumber, 0);
  Link("TBno"_id).fForm = "bool"_id;
  Enter("BTsX"_id, 1);
  Enter("BTal"_id, 1);
  Enter("TBno"_id, 1);
  EXPECT_TRUE(d.fPositionNone && !d.fPositionAll && d.fPositionX) << "as 'BTno'";

  const auto edit = [this](MCID inButton, int32 inDialog, MCID inField) {
    fServices.fDialogs
        .Add(inDialog,
             [inField](FakeControl& ioDialog) {
               ioDialog[inField].fNumber = 0.25;
               return true;
             })
        .Add(inField, 0.0f);
    Enter(inButton, 0);
  };
  edit("sosc"_id, 180, "osca"_id);
  edit("sdcy"_id, 160, "dmin"_id);
  edit("sgrw"_id, 170, "gmin"_id);
  const QLXCurves& curves = fEditor->GetLink().fCurves;
  EXPECT_EQ(curves.fOscillator.fOscillatorScale, 0.25f);
  EXPECT_EQ(curves.fDecay.fDecayMin, 0.25f);
  EXPECT_EQ(curves.fGrowth.fGrowMin, 0.25f);
}

}  // namespace
}  // namespace qlx::test
