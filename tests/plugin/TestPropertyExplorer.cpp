// The explorer: what it lists, shows and sets.
#include <gtest/gtest.h>

#include "CommandTest.h"
#include "PropertyExplorer.h"
#include "PropertyExplorerDialog.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

using host::Channel;

class ExplorerTest : public CommandTest {
 protected:
  ExplorerTest() {
    FakeControl& dialog = fServices.fDialogs.Add(181, [this](FakeControl&) {
      fOnRun();
      return false;
    });
    dialog.fExtension = static_cast<IMFExResponder*>(fExplorer.Get());
    dialog.Add("grup"_id).Add("plst"_id, FakeControl::kTree);
    FakeControl& group = dialog.Add("grup"_id);
    group.Add("cVal"_id, -1.0f);
    group.Add("nVal"_id, -1.0f);
    group.Add("upbn"_id);
    fScene.fA.SetBase(MakeValues({1, 2, 3}, {4, 5, 6}));
    fHost.Select({&fScene.fA, &fScene.fB});
  }
  ~ExplorerTest() override { fServices.fDialogs[181].fExtension = nullptr; }

  FakeControl& Control(MCID inID) { return fServices.fDialogs[181][inID]; }
  void Send(uint32 inMessage, MCID inID) {
    EXPECT_EQ(fExplorer->Receive(inMessage, Control(inID).AsPart(), nullptr), MC_S_OK);
  }
  void Choose(const char* inRow) {
    Control("plst"_id).fSelected.clear();
    Control("plst"_id).Select(inRow);
    Send(9, "plst"_id);
  }
  void RunDialog(std::function<void()> inBody) {
    fOnRun = std::move(inBody);
    EXPECT_TRUE(Run<PropertyExplorer>());
    EXPECT_EQ(fServices.fDialogs[181].fCloses, fServices.fDialogs[181].fRuns);
  }

  TMCCountedPtr<PropertyExplorerDialog> fExplorer = MCAdopt(new PropertyExplorerDialog);
  std::function<void()> fOnRun = [] {};
};

TEST_F(ExplorerTest, ListsTheFirstSelectedElement) {
  RunDialog([this] {
    const auto labels = Control("plst"_id).Labels();
    ASSERT_GT(labels.size(), 10U);
    EXPECT_EQ((std::vector<std::string>{labels.begin(), labels.begin() + 5}),
              (std::vector<std::string>{"A", "  Global X Position", "  Global Y Position", "  Global Z Position",
                                        "  Element (amet)"}));
  });
  EXPECT_EQ(fServices.fDialogs[181].fRuns, 1);
  EXPECT_TRUE(IsEnabled<PropertyExplorer>(&fHost));
  fHost.Select({});
  EXPECT_FALSE(IsEnabled<PropertyExplorer>(&fHost));
  RunDialog([] { ADD_FAILURE() << "there is no element"; });
}

TEST_F(ExplorerTest, ShowsAndSetsTheChosenValue) {
  const struct {
    const char* fRow;
    real32 fNow, fNew;
    Channel fChannel;
  } rows[] = {
      {"Rotation X (RotX) [qfix]", 4, 7, Channel::kRotationX},
      {"Global Y Position", 2, 20, Channel::kPositionY},
      {"Position Z (ZCOO) [qfix]", 3, 30, Channel::kPositionZ},
  };
  RunDialog([&] {
    for (const auto& row : rows) {
      SCOPED_TRACE(row.fRow);
      Choose(row.fRow);
      EXPECT_EQ(Control("cVal"_id).fNumber, static_cast<real64>(row.fNow));
      EXPECT_EQ(Control("nVal"_id).fNumber, static_cast<real64>(row.fNow));
      Control("nVal"_id).fNumber = static_cast<real64>(row.fNew);
      Send(9, "nVal"_id);
      EXPECT_EQ(ValueOf(fScene.fA, row.fChannel), row.fNow) << "nothing changes until the button is used";
      Send(9, "upbn"_id);
      EXPECT_EQ(ValueOf(fScene.fA, row.fChannel), row.fNew);
      EXPECT_EQ(Control("cVal"_id).fNumber, static_cast<real64>(row.fNew));
    }
  });
  EXPECT_EQ(ValueOf(fScene.fA, Channel::kPositionX), 1) << "the other axes stay";
}

TEST_F(ExplorerTest, NothingIsSetWithoutAChoice) {
  RunDialog([&] {
    for (const char* const row : {"no row", "A", "Transform (TRAN)"}) {
      Choose(row);
      Control("nVal"_id).fNumber = 9;
      Send(9, "upbn"_id);
      EXPECT_EQ(Control("cVal"_id).fNumber, -1) << row;
    }
    Choose("Rotation X (RotX) [qfix]");
    Control("nVal"_id).fNumber = 9;
    Send(5, "upbn"_id);
    EXPECT_EQ(fExplorer->Receive(9, nullptr, nullptr), MC_S_OK);
    FakeObject<IMCUnknown> noPart;
    EXPECT_EQ(ThrownBy([&] { fExplorer->Receive(9, &noPart, nullptr); }).fCode, MC_E_INVALIDARG);
  });
  Send(9, "upbn"_id);
  EXPECT_EQ(ValueOf(fScene.fA, Channel::kRotationX), 4) << "the dialog is over and has no element";
  EXPECT_TRUE(fScene.fA.GetModifiers().empty());
}

TEST_F(ExplorerTest, TellsTheMorphs) {
  host::SceneObject& face = fScene->AddObject("Face");
  face.AddMorphGroup("Mouth", {"Smile"}, {0.5f});
  fScene.fA.SetShownObject(&face);
  PlainMorphs morphs;
  PlainElement element(fScene.fA, &fHost.fScene);
  element.fMorphs = &morphs;
  fHost.Select({&element});
  RunDialog([&] {
    Choose("Rotation X (RotX) [qfix]");
    Send(9, "upbn"_id);
    EXPECT_EQ(morphs.fChanged, 0);
    Choose("Smile (S1dN) [qfix]");
    EXPECT_EQ(Control("cVal"_id).fNumber, 0.5);
    Control("nVal"_id).fNumber = 1;
    Send(9, "upbn"_id);
  });
  EXPECT_EQ(morphs.fChanged, 1);
  EXPECT_EQ(fHost.fScene.fRefreshes, 2) << "as often as something was set";
  EXPECT_EQ(element.fCount, 1);
}

}  // namespace
}  // namespace qlx::test
