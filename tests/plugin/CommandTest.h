// What tests of commands share: a context with a selection, over the scene and the services of links.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "CommandShell.h"
#include "LinkServices.h"
#include "LinkTest.h"
#include "PlainScene.h"

namespace qlx::test {

struct SelectedEntry {
  std::vector<MCID> fTypes;
  IMCUnknown* fObject = nullptr;
};

class CommandSelection final : public FakeObject<ISceneSelection> {
 public:
  uint32 MC_CALL GetEntryCount() override { return static_cast<uint32>(fEntries.size()); }
  const MCID* MC_CALL GetEntry(uint32 inIndex, uint32& outCount) override {
    const auto& types = fEntries.at(inIndex).fTypes;
    outCount = static_cast<uint32>(types.size());
    return types.data();
  }
  IMCUnknown* MC_CALL GetEntryObject(uint32 inIndex, int32) override { return fEntries.at(inIndex).fObject; }

  std::vector<SelectedEntry> fEntries;
};

// A context, its selection and a plain document. Nothing of it is held at its end.
class CommandHost final : public FakeObject<ISceneCommandContext, ISceneSelectionOwner> {
 public:
  explicit CommandHost(host::Scene& inScene) : fScene(inScene) {}
  ~CommandHost() override {
    EXPECT_EQ(fCount, 0);
    EXPECT_EQ(fSelection.fCount, 0);
    EXPECT_EQ(fScene.fCount, 0);
  }

  void MC_CALL GetScene(I3DShScene** outScene) override { MCAssignCounted<I3DShScene>(outScene, &fScene); }
  void MC_CALL GetSelectionOwner(ISceneSelectionOwner** outOwner) override {
    MCAssignCounted<ISceneSelectionOwner>(outOwner, this);
  }
  void MC_CALL GetDocument(IMCUnknown** outDocument) override {
    MCAssignCounted<IMCUnknown>(outDocument, fHasDocument ? static_cast<ISceneCommandContext*>(this) : nullptr);
  }
  void MC_CALL GetSelection(ISceneSelection** outSelection) override {
    MCAssignCounted<ISceneSelection>(outSelection, fHasSelection ? &fSelection : nullptr);
  }

  void Select(const std::vector<TreeElement*>& inElements) {
    fSelection.fEntries.clear();
    for (TreeElement* const element : inElements) {
      fSelection.fEntries.push_back({{"Objc"_id, "Tree"_id}, element});
    }
  }

  CommandSelection fSelection;
  PlainScene fScene;
  bool fHasDocument = true;
  bool fHasSelection = true;
};

class CommandTest : public testing::Test {
 protected:
  // A command as its host runs it, up to the end of its life.
  template <class Command>
  bool Run() {
    const auto command = MCAdopt(new Command);
    EXPECT_EQ(command->Init(&fHost), MC_S_OK);
    EXPECT_EQ(command->Prepare(), MC_S_OK);
    EXPECT_FALSE(command->BeforeDo());
    const bool result = command->Do();
    EXPECT_FALSE(command->AfterDo() || command->AfterUndo());
    EXPECT_TRUE(command->Finish());
    return result;
  }
  template <class Command>
  bool IsEnabled(ISceneCommandContext* inContext) {
    const auto command = MCAdopt(new Command);
    TMCCountedPtr<ISelfPrepareMenuCallBack> callBack;
    command->GetMenuCallBack(callBack.WriteInto());
    command->GetMenuCallBack(callBack.WriteInto());
    return callBack->SelfPrepare(inContext);
  }

  LinkScene fScene;
  LinkServices fServices;
  CommandHost fHost{*fScene.operator->()};
};

}  // namespace qlx::test
