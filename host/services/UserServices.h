// What a person sees and chooses, as components ask for it: each service asks the person of the host.
#pragma once

#include "HostServices.h"
#include "model/HostObject.h"

namespace qlx::host {

class Host;
class UserInterface;

class ShellService final : public HostObject<IShellUtilities> {
 public:
  explicit ShellService(UserInterface& inUser) : fUser(inUser) {}
  bool MC_CALL IsEventHandlingSuspended() override { return fSuspended; }
  void MC_CALL SetShellState(uint32 inValue, uint8 inFlag1, uint8 inFlag2) override;
  IMCUnknown* MC_CALL EnsureObjectHolder(TreeElement* inTree) override;
  // From the elements of the scene that is worked on, its root left out.
  bool MC_CALL ChooseObject(TreeElement** outChosen, const TMCString& inTitle, const TMCString& inPrompt, int32 inZero1,
                            int32 inZero2, int32 inZero3) override;

  // While true, components leave the messages of their panels alone: the host is filling them.
  void SetEventHandlingSuspended(bool inSuspended) { fSuspended = inSuspended; }

 private:
  UserInterface& fUser;
  bool fSuspended = false;
};

class AlertService final : public HostObject<IAlertService> {
 public:
  explicit AlertService(UserInterface& inUser) : fUser(inUser) {}
  // Buttons without a text are left out; with none there is "OK". An answer that is no button is the default one.
  int32 MC_CALL ShowAlert(int32 inKind, const char* inMessage, const char* inDetail1, const char* inDetail2,
                          const char* inDetail3, int32 inDefaultButton, const char* inButton1, const char* inButton2,
                          const char* inButton3) override;

 private:
  UserInterface& fUser;
};

class DialogFactory final : public HostObject<IDialogFactory> {
 public:
  explicit DialogFactory(Host& inHost) : fHost(inHost) {}
  // Null where the current resources lack the dialog, or none are current.
  MCResult MC_CALL CreateDialog(IMFPart** outDialog, MCID inKind, int32 inResourceId) override;

 private:
  Host& fHost;
};

class FileService final : public HostObject<IFileService> {
 public:
  explicit FileService(UserInterface& inUser) : fUser(inUser) {}
  // A path that the text has no room for is refused, with a warning: a shorter one would name another file.
  bool MC_CALL ChooseFileToOpen(TMCString& outPath, MCID inCreator, MCID inType) override;
  bool MC_CALL ChooseFileToSave(TMCString& outPath, MCID inCreator, MCID inType) override;

 private:
  UserInterface& fUser;
};

}  // namespace qlx::host
