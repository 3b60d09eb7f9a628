// The shell that commands share, and those that add a modifier.
#include <gtest/gtest.h>

#include "AddPinModifier.h"
#include "AddQLXModifier.h"
#include "AddSliderModifier.h"
#include "CommandTest.h"
#include "TreeSelectionIterator.h"

namespace qlx::test {
namespace {

using AddModifierTest = CommandTest;

// The classes of the modifiers on an element, in the order of its list.
std::vector<MCID> ClassesOn(host::Element& inElement) {
  std::vector<MCID> classes;
  for (const auto& modifier : inElement.GetModifiers()) {
    classes.push_back(modifier->GetModifierClass());
  }
  return classes;
}

TEST_F(AddModifierTest, PutsTheModifierBehindTheOthersOfTheFirstElement) {
  LinkScene::AddBare(fScene.fA);
  fHost.Select({&fScene.fA, &fScene.fB});
  EXPECT_TRUE(Run<AddPinModifierCommand>());
  EXPECT_TRUE(Run<AddSliderModifierCommand>());
  EXPECT_TRUE(Run<AddQLXModifierCommand>());
  EXPECT_TRUE(Run<AddPinModifierCommand>());
  EXPECT_EQ(ClassesOn(fScene.fA), (std::vector<MCID>{"fQLX"_id, "fPIN"_id, "fSLD"_id, "fQLX"_id, "fPIN"_id}));
  EXPECT_TRUE(ClassesOn(fScene.fB).empty());
  EXPECT_EQ(fHost.fScene.fRefreshes, 0);
}

TEST_F(AddModifierTest, NothingToServeIsNoFault) {
  EXPECT_TRUE(Run<AddPinModifierCommand>()) << "an empty selection";
  fHost.Select({&fScene.fA});
  fServices.fComponents.fRefuses = true;
  EXPECT_TRUE(Run<AddPinModifierCommand>()) << "a host that makes no component";
  EXPECT_TRUE(ClassesOn(fScene.fA).empty());
}

TEST_F(AddModifierTest, HasNoRecordAndPanel155) {
  const auto command = MCAdopt(new AddSliderModifierCommand);
  EXPECT_EQ(command->GetExtensionDataBuffer(), nullptr);
  EXPECT_EQ(command->GetExtensionDataSize(), 0U);
  EXPECT_EQ(command->GetResourceId(), 155);
}

// In spite of their name the callbacks ask for more than a selection.
TEST_F(AddModifierTest, IsEnabledByAnElementWithAParent) {
  TMCCountedPtr<IMCUnknown> object;
  fScene->GetRoot(object.WriteInto());
  const auto root = MCQuery<TreeElement>(object);
  FakeHolder other({});
  auto* const noElement = static_cast<TimeBasedData*>(&other);
  auto* const a = static_cast<TreeElement*>(&fScene.fA);
  const SelectedEntry element = {{"Tree"_id}, a};
  const SelectedEntry rootEntry = {{"Tree"_id}, root.Get()};
  const struct {
    const char* fLabel;
    std::vector<SelectedEntry> fEntries;
    bool fIsEnabled;
  } rows[] = {
      {"nothing", {}, false},
      {"an element", {element}, true},
      {"the root", {rootEntry}, false},
      {"the root and an element", {rootEntry, element}, true},
      {"an element and the root", {element, rootEntry}, true},
      {"other types",
       {{{"Shdr"_id}, a}, {{"Tree"_id, "Shdr"_id}, a}, {{}, a}, {{"Tree"_id}, nullptr}, {{"Tree"_id}, noElement}},
       false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    fHost.fSelection.fEntries = row.fEntries;
    EXPECT_EQ(IsEnabled<AddQLXModifierCommand>(&fHost), row.fIsEnabled);
    EXPECT_EQ(IsEnabled<AddPinModifierCommand>(&fHost), row.fIsEnabled);
    EXPECT_EQ(IsEnabled<AddSliderModifierCommand>(&fHost), row.fIsEnabled);
  }
  EXPECT_FALSE(IsEnabled<AddPinModifierCommand>(nullptr));
  fHost.fHasSelection = false;
  EXPECT_FALSE(IsEnabled<AddPinModifierCommand>(&fHost));
}

TEST_F(AddModifierTest, AContextThatLacksWhatEverySceneHasIsRefused) {
  const SilentReports silence;
  int32 lines[2] = {};
  for (const bool hasMaster : {false, true}) {
    fHost.fScene.fHasMaster = hasMaster;
    fHost.fHasDocument = false;
    const auto command = MCAdopt(new AddPinModifierCommand);
    EXPECT_EQ(command->Prepare(), MC_S_OK) << "without a context";
    command->Init(&fHost);
    try {
      command->Prepare();
      ADD_FAILURE();
    } catch (const TMCException& exception) {
      EXPECT_EQ(exception.GetCode(), MC_E_INVALIDARG);
      EXPECT_STREQ(exception.GetFileName(), "AddPinModifier");
      lines[hasMaster ? 1 : 0] = exception.GetLine();
    }
  }
  EXPECT_EQ(lines[1], lines[0] + 1);
  fHost.fHasSelection = false;
  const auto command = MCAdopt(new AddPinModifierCommand);
  command->Init(&fHost);
  EXPECT_THROW(command->Do(), TMCException) << "no selection to walk";
}

TEST_F(AddModifierTest, CallBackNeedsMemory) {
  const SilentReports silence;
  const auto command = MCAdopt(new AddPinModifierCommand);
  TMCCountedPtr<ISelfPrepareMenuCallBack> callBack;
  command->GetMenuCallBack(callBack.WriteInto());
  auto& memory = static_cast<TestMemory&>(*gMemoryUtilities);
  memory.RefuseAfter(0);
  try {
    ISelfPrepareMenuCallBack* held = callBack.Detach();
    command->GetMenuCallBack(&held);
    ADD_FAILURE();
  } catch (const TMCException& exception) {
    EXPECT_EQ(exception.GetCode(), MC_E_OUTOFMEMORY);
    EXPECT_STREQ(exception.GetFileName(), "MCCountedPtrHelper");
    EXPECT_EQ(exception.GetLine(), 166);
  }
  memory.RefuseNothing();
}

}  // namespace
}  // namespace qlx::test
