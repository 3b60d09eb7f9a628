// A host's services as links use them: files that a person chooses, alerts, updates, and a panel's buttons.
#pragma once

#include <string>
#include <vector>

#include "COMSafeUtilities.h"
#include "FakeAttributes.h"
#include "HostInterface.h"
#include "HostScene.h"
#include "MCString.h"
#include "SilentReports.h"

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
  IMCUnknown* MC_CALL EnsureObjectHolder(TreeElement*) override { return nullptr; }
  bool MC_CALL ChooseObject(TreeElement**, const TMCString&, const TMCString&, int32, int32, int32) override {
    return false;
  }
  bool fIsSuspended = false;
};

// A button of the panel.
class LinkButton final : public FakeObject<IMFPart> {
 public:
  explicit LinkButton(MCID inID) : fID(inID) {}
  MCID MC_CALL GetPartId() override { return fID; }
  void MC_CALL FindChildPart(IMFPart**, MCID, int32) override {}
  void MC_CALL GetParentPart(IMFPart**) override {}
  MCResult MC_CALL GetPartValue(void*, MCID) override { return MC_E_NOTVALID; }
  MCResult MC_CALL SetPartValue(const void*, MCID, int32, int32) override { return MC_E_NOTVALID; }

 private:
  MCID fID;
};

// Offers the services while it lives, beside the memory that the test has. Make it after that, and before an
// `AssertionGuard`.
class LinkServices final : public IMCUnknown {
 public:
  LinkServices() {
    const SilentReports silence;  // most services are missing
    StartUtilities(this);
  }
  ~LinkServices() {
    EndUtilities();
    gMemoryUtilities = fMemory;
    gDebugUtilities = fDebug;
  }
  LinkServices(const LinkServices&) = delete;
  LinkServices& operator=(const LinkServices&) = delete;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    *outObject = inID == IShellUtilities::kInterfaceID    ? static_cast<void*>(static_cast<IShellUtilities*>(&fShell))
                 : inID == IFileService::kInterfaceID     ? static_cast<void*>(static_cast<IFileService*>(&fFiles))
                 : inID == IAlertService::kInterfaceID    ? static_cast<void*>(static_cast<IAlertService*>(&fAlerts))
                 : inID == IUpdateService::kInterfaceID   ? static_cast<void*>(static_cast<IUpdateService*>(&fUpdates))
                 : inID == IMemoryUtilities::kInterfaceID ? static_cast<void*>(fMemory)
                                                          : nullptr;
    return *outObject ? MC_S_OK : MC_E_NOINTERFACE;
  }
  uint32 MC_CALL AddRef() override { return 1; }
  uint32 MC_CALL Release() override { return 1; }

  LinkShell fShell;
  LinkFiles fFiles;
  LinkAlerts fAlerts;
  LinkUpdates fUpdates;

 private:
  IMemoryUtilities* fMemory = gMemoryUtilities;
  IDebugUtilities* fDebug = gDebugUtilities;
};

}  // namespace qlx::test
