#include <gtest/gtest.h>

#include "BasicMCFCOMImplementations.h"
#include "Describe.h"
#include "ProblemOf.h"
#include "TestMemory.h"
#include "model/Diagnostics.h"
#include "ui/Hand.h"
#include "ui/TreeControl.h"

namespace qlx::host::test {
namespace {

using Item = TSimpleHierarchyItem<TMCString1023>;

class TreeControlTest : public testing::Test {
 protected:
  TreeControlTest() { fList->AddRow(Make("a"), Labels("Arm"), 1, nullptr); }

  // Held by the test, so that rows can be added below it.
  Item* Make(const char* inKey) {
    auto item = MCAdopt(new Item);
    item->SetText(TMCString255(inKey));
    fItems.push_back(item);
    return item.Get();
  }
  const TMCString* const* Labels(const char* inLabel) {
    fLabel = inLabel;
    return &fLabels;
  }
  std::string Order() const {
    std::string order;
    TMCString255 label;
    for (uint32 i = 0; i < fList->GetRowCount(); ++i) {
      fList->GetRowLabel(label, i);
      order += TextFrom(label) + (fTree->GetRows()[i]->IsVisible() ? " " : "- ");
    }
    return order;
  }
  std::vector<uint32> Selected() const {
    TMCArray<uint32> rows;
    return {fList->GetSelectedRows(rows).begin(), rows.end()};
  }

  const qlx::test::TestMemory fMemory;
  const qlx::test::TestBookkeeping fBookkeeping;
  TMCCountedPtr<Form> fForm =
      MakeForm(Describe(ControlKind::kGroup, 0, "", {Describe(ControlKind::kTree, "plst"_id, "Properties")}),
               kDialogControlUsed);
  TreeControl* fTree = static_cast<TreeControl*>(fForm->Find("plst"_id));
  TMCCountedPtr<IHierarchyList> fList = MCQuery<IHierarchyList>(fTree);
  std::vector<TMCCountedPtr<Item>> fItems;
  TMCString255 fLabel;
  const TMCString* fLabels = &fLabel;
};

TEST_F(TreeControlTest, RowsAreNumberedFromTheTopWhateverTheOrderTheyCameIn) {
  Item* const arm = fItems[0].Get();
  Item* const leg = Make("l");
  fList->AddRow(leg, Labels("Leg"), 1, nullptr);
  fList->AddRow(Make("x"), Labels("X"), 1, arm);  // between two that are there
  Item* const y = Make("y");
  fList->AddRow(y, Labels("Y"), 1, arm);
  fList->AddRow(Make("z"), Labels("Z"), 1, leg);
  fList->AddRow(Make("deep"), Labels("Deep"), 1, y);
  fList->AddRow(nullptr, nullptr, 0, Make("in no row"));
  EXPECT_EQ(Order(), "Arm X Y Deep Leg Z  ") << "the last row has no label, and is at the top";
  EXPECT_EQ(fList->GetRowItem(2), y);
  EXPECT_EQ(fList->GetRowItem(6), nullptr);
  EXPECT_EQ(fList->GetRowItem(7), nullptr);
  EXPECT_EQ(fTree->GetRows()[3]->GetDepth(), 2U);
}

TEST_F(TreeControlTest, FoldedRowsCountAndAreNotSeen) {
  fList->AddRow(Make("x"), Labels("X"), 1, fItems[0].Get());
  TMCArray<uint32> rows;
  rows.AddElem(0);
  rows.AddElem(77);  // there is none
  fList->SetRowsExpanded(rows, false);
  EXPECT_EQ(Order(), "Arm X- ");
  Hand(*fForm).Choose("plst", "X");
  EXPECT_EQ(Order(), "Arm X ") << "a person opens what is above a row to select it";
  EXPECT_EQ(Selected(), std::vector<uint32>{1});
  Hand(*fForm).Choose("plst", "#0");
  EXPECT_EQ(Selected(), std::vector<uint32>{0}) << "one at a time";
  Hand(*fForm).Expand("plst", "Arm", false);
  EXPECT_EQ(Order(), "Arm X- ");
}

TEST_F(TreeControlTest, ItemsAreHeldUntilTheListIsCleared) {
  Item* const arm = fItems[0].Get();
  fItems.clear();
  arm->AddRef();
  EXPECT_EQ(arm->Release(), 1U) << "the list's";
  arm->AddRef();
  fList->ClearList(0);
  EXPECT_EQ(fList->GetRowCount(), 0U);
  EXPECT_TRUE(Selected().empty());
  EXPECT_EQ(arm->Release(), 0U);
}

TEST_F(TreeControlTest, APersonNamesARowByWhatIsAboveIt) {
  const char* const limbs[] = {"Arm", "Leg"};
  fList->ClearList(0);
  for (const char* limb : limbs) {
    Item* const top = Make(limb);
    fList->AddRow(top, Labels(limb), 1, nullptr);
    Item* const turn = Make("t");
    fList->AddRow(turn, Labels("Rotation"), 1, top);
    fList->AddRow(Make("x"), Labels("X"), 1, turn);
  }
  NotingListener listener;
  fForm->SetListener(&listener);
  struct Row {
    const char* fRow;
    const char* fAnswer;
  };
  const Row rows[] = {
      {"Leg > Rotation > X", "5"},
      {"Leg > X", "5"},
      {"Arm > X", "2"},
      {"X",
       "plst (\"Properties\"): 2 rows are \"X\" (#2, #5): say which by a row above it, as in \"Arm > Rotation X\""},
      {"Rotation > Leg", "plst (\"Properties\"): its row \"Leg\" is not below \"Rotation\" but at the top"},
      {"Arm > Rotaton", "plst (\"Properties\"): it has no row \"Rotaton\"; the closest is \"Rotation\""},
      {"#6", "plst (\"Properties\"): it has no row #6: its rows are #0 to #5"},
  };
  for (const Row& row : rows) {
    const std::string problem = qlx::test::ProblemOf([&] { Hand(*fForm).Choose("plst", row.fRow); });
    EXPECT_EQ(problem.empty() ? std::to_string(Selected().at(0)) : problem, row.fAnswer);
  }
  EXPECT_EQ(listener.fTold, std::vector<std::string>(3, "9 plst"));
  listener.fSelectable = false;
  EXPECT_THROW(Hand(*fForm).Choose("plst", "#0"), UserError);
  EXPECT_EQ(Selected(), std::vector<uint32>{2});
  fForm->SetListener(nullptr);
}

}  // namespace
}  // namespace qlx::host::test
