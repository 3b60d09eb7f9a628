// A host's services as links use them: files and objects that a person chooses, dialogs, alerts, updates.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "FakePanel.h"
#include "FakeRoot.h"
#include "HostInterface.h"
#include "HostScene.h"
#include "HostedComponent.h"
#include "MCString.h"
#include "TestMemory.h"

namespace qlx::test {

class LinkFiles final : public FakeObject<IFileService> {
 public:
  bool MC_CALL ChooseFileToOpen(TMCString& outPath, MCID inCreator, MCID inType) override {
    return Choose(outPath, inCreator, inType);
  }
  bool MC_CALL ChooseFileToSave(TMCString& outPath, MCID inCreator, MCID inType) override {
    return Choose(outPath, inCreator, inType);
  }

  std::string fChoice;  // empty: the person cancels
  int fAsked = 0;

 private:
  bool Choose(TMCString& outPath, MCID inCreator, MCID inType) {
    ++fAsked;
    if (fChoice.empty() || inCreator != "****"_id || inType != "text"_id) {
      return false;
    }
    outPath = fChoice.c_str();
    return true;
  }
};

class LinkAlerts final : public FakeObject<IAlertService> {
 public:
  int32 MC_CALL ShowAlert(int32, const char* inMessage, const char*, const char*, const char*, int32 inButton,
                          const char*, const char*, const char*) override {
    fMessages.emplace_back(inMessage);
    return inButton;
  }
  std::vector<std::string> fMessages;
};

class LinkUpdates final : public FakeObject<IUpdateService> {
 public:
  void MC_CALL ElementUpdated(ISceneMaster* inNotifier, TreeElement* inElement) override {
    fLastScene = inNotifier->GetMasterScene();
    fUpdated.push_back(inElement);
  }
  I3DShScene* fLastScene = nullptr;
  std::vector<TreeElement*> fUpdated;
};

class LinkShell final : public FakeObject<IShellUtilities> {
 public:
  bool MC_CALL IsEventHandlingSuspended() override { return fIsSuspended; }
  void MC_CALL SetShellState(uint32, uint8, uint8) override {}
  IMCUnknown* MC_CALL EnsureObjectHolder(TreeElement*) override { return MCShare(fHolder).Detach(); }
  bool MC_CALL ChooseObject(TreeElement** outChosen, const TMCString& inTitle, const TMCString& inPrompt, int32, int32,
                            int32) override {
    fTexts = TextOf(inTitle) + "|" + TextOf(inPrompt);
    if (fChoice) {
      MCAssignCounted(outChosen, fChoice);
    }
    return fChoice != nullptr;
  }
  bool fIsSuspended = false;
  IMCUnknown* fHolder = nullptr;   // of an element's object
  TreeElement* fChoice = nullptr;  // null: the person cancels
  std::string fTexts;              // of the last question
};

// Offers the services while it lives, beside the memory that the test has. Make it after that, and before an
// `AssertionGuard`.
class LinkServices final {
 public:
  ~LinkServices() {
    fDialogs.Clear();
    EXPECT_EQ(fCounted.fLiveCount, 0) << "a counted object is alive";
    EXPECT_TRUE(fDialogs.fContexts.empty()) << "a resource context is left";
  }

  // The dialog in which a value is chosen; the person selects the row with that label.
  FakeControl& OfferRow(std::string inLabel, bool inOk = true) {
    FakeControl& dialog = fDialogs.Add(140, [label = std::move(inLabel), inOk](FakeControl& ioDialog) {
      ioDialog["plst"_id].Select(label);
      return inOk;
    });
    dialog.Add("plst"_id, FakeControl::kTree);
    return dialog;
  }
  // Its rows, as they were at last.
  FakeControl& OfferedRows() { return fDialogs[140]["plst"_id]; }

  LinkShell fShell;
  LinkFiles fFiles;
  LinkAlerts fAlerts;
  LinkUpdates fUpdates;
  FakeDialogs fDialogs;
  HostedComponents fComponents;

 private:
  FakeRoot fRoot{{&fShell, &fFiles, &fAlerts, &fUpdates, static_cast<IDialogFactory*>(&fDialogs), &fComponents}};
  TestBookkeeping fCounted;
};

}  // namespace qlx::test
