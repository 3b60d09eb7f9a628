// The shell that commands share, and those that add a modifier.
#include <gtest/gtest.h>

#include "AddPinModifier.h"
#include "AddQLXModifier.h"
#include "AddSliderModifier.h"
#include "CommandTest.h"
#include "CreateQLXChain.h"
#include "DeleteKeyframes.h"
#include "PropertyExplorer.h"
#include "RemoveDupKeyframes.h"
#include "ThrownBy.h"
#include "TreeSelectionIterator.h"
#include "WiggleKeyframes.h"

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
  EXPECT_TRUE(Run<AddPinModifierCommand>() && Run<AddSliderModifierCommand>() && Run<AddQLXModifierCommand>())
      << "a host that makes no component";
  EXPECT_TRUE(Run<DeleteKeyframesCommand>() && Run<RemoveDupKeyframesCommand>() && Run<QLXChainCommand>() &&
              Run<PropertyExplorer>())
      << "nor a dialog";
  EXPECT_TRUE(ClassesOn(fScene.fA).empty());
}

// In spite of their name the callbacks ask for more than a selection.
TEST_F(AddModifierTest, IsEnabledByAnElementWithAParent) {
  TMCCountedPtr<IMCUnknown> object;
  fScene->GetRoot(object.WriteInto());
  const auto root = MCQuery<TreeElement>(object);
  FakeObject<IMCUnknown> noElement;
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
       {{{"Shdr"_id}, a}, {{"Tree"_id, "Shdr"_id}, a}, {{}, a}, {{"Tree"_id}, nullptr}, {{"Tree"_id}, &noElement}},
       false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    fHost.fSelection.fEntries = row.fEntries;
    EXPECT_EQ(IsEnabled<AddQLXModifierCommand>(&fHost), row.fIsEnabled);
    EXPECT_EQ(IsEnabled<AddPinModifierCommand>(&fHost), row.fIsEnabled);
    EXPECT_EQ(IsEnabled<AddSliderModifierCommand>(&fHost), row.fIsEnabled);
    EXPECT_EQ(IsEnabled<DeleteKeyframesCommand>(&fHost), row.fIsEnabled);
    EXPECT_EQ(IsEnabled<RemoveDupKeyframesCommand>(&fHost), row.fIsEnabled);
    EXPECT_TRUE(IsEnabled<WiggleKeyframesCommand>(&fHost)) << "whatever is selected";
  }
  EXPECT_FALSE(IsEnabled<AddPinModifierCommand>(nullptr) || IsEnabled<WiggleKeyframesCommand>(nullptr));
  fHost.fHasSelection = false;
  EXPECT_FALSE(IsEnabled<AddPinModifierCommand>(&fHost));
}

TEST_F(AddModifierTest, AContextThatLacksWhatEverySceneHasIsRefused) {
  const auto command = MCAdopt(new AddPinModifierCommand);
  EXPECT_EQ(command->Prepare(), MC_S_OK) << "without a context";
  command->Init(&fHost);
  const auto prepare = [&command] { command->Prepare(); };
  fHost.fScene.fHasMaster = fHost.fHasDocument = false;
  const Thrown withoutMaster = ThrownBy(prepare);
  EXPECT_EQ(withoutMaster, (Thrown{MC_E_INVALIDARG, "AddPinModifier", withoutMaster.fLine}));
  fHost.fScene.fHasMaster = true;
  EXPECT_EQ(ThrownBy(prepare), (Thrown{MC_E_INVALIDARG, "AddPinModifier", withoutMaster.fLine + 1}));
  fHost.fHasSelection = false;
  command->Init(&fHost);
  EXPECT_NE(ThrownBy([&command] { command->Do(); }), Thrown()) << "no selection to walk";
}

TEST_F(AddModifierTest, CallBackNeedsMemory) {
  const auto command = MCAdopt(new AddPinModifierCommand);
  TMCCountedPtr<ISelfPrepareMenuCallBack> callBack;
  command->GetMenuCallBack(callBack.WriteInto());
  auto& memory = static_cast<TestMemory&>(*gMemoryUtilities);
  memory.RefuseAfter(0);
  ISelfPrepareMenuCallBack* held = callBack.Detach();
  EXPECT_EQ(ThrownBy([&] { command->GetMenuCallBack(&held); }), (Thrown{MC_E_OUTOFMEMORY, "MCCountedPtrHelper", 166}));
  memory.RefuseNothing();
}

}  // namespace
}  // namespace qlx::test
