// What a person would see and choose. This host has no user interface: texts go to the diagnostics, and every choice
// is the one of a person who cancels.
#pragma once

#include "HostServices.h"
#include "model/Diagnostics.h"
#include "model/HostObject.h"

namespace qlx::host {

class ShellService final : public HostObject<IShellUtilities> {
 public:
  bool MC_CALL IsEventHandlingSuspended() override { return fSuspended; }
  void MC_CALL SetShellState(uint32 inValue, uint8 inFlag1, uint8 inFlag2) override;
  IMCUnknown* MC_CALL EnsureObjectHolder(TreeElement* inTree) override;
  bool MC_CALL ChooseObject(TreeElement** outChosen, const TMCString& inTitle, const TMCString& inPrompt, int32 inZero1,
                            int32 inZero2, int32 inZero3) override;

  // While true, components leave the messages of their panels alone: the host is filling them.
  void SetEventHandlingSuspended(bool inSuspended) { fSuspended = inSuspended; }

 private:
  bool fSuspended = false;
};

class AlertService final : public HostObject<IAlertService> {
 public:
  explicit AlertService(Diagnostics& inDiagnostics) : fDiagnostics(inDiagnostics) {}
  // A warning; answers the default button.
  int32 MC_CALL ShowAlert(int32 inKind, const char* inMessage, const char* inDetail1, const char* inDetail2,
                          const char* inDetail3, int32 inDefaultButton, const char* inButton1, const char* inButton2,
                          const char* inButton3) override;

 private:
  Diagnostics& fDiagnostics;
};

// There are no dialog resources: every answer is null.
class DialogFactory final : public HostObject<IDialogFactory> {
 public:
  MCResult MC_CALL CreateDialog(IMFPart** outDialog, MCID inKind, int32 inResourceId) override;
};

class FileService final : public HostObject<IFileService> {
 public:
  bool MC_CALL ChooseFileToOpen(TMCString& outPath, MCID inCreator, MCID inType) override;
  bool MC_CALL ChooseFileToSave(TMCString& outPath, MCID inCreator, MCID inType) override;
};

}  // namespace qlx::host
