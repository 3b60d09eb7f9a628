#include "UserServices.h"

#include <string>

#include "HostInterface.h"
#include "HostScene.h"
#include "MCCountedPtr.h"

namespace qlx::host {

void ShellService::SetShellState(uint32 /*inValue*/, uint8 /*inFlag1*/, uint8 /*inFlag2*/) {}

IMCUnknown* ShellService::EnsureObjectHolder(TreeElement* inTree) {
  // An element of this host answers the interface whenever it shows an object; nothing has to be prepared.
  auto holder = MCQuery<I3DShObjectHolder>(inTree);
  return holder && holder->GetHeldObject() ? holder.Detach() : nullptr;
}

bool ShellService::ChooseObject(TreeElement** /*outChosen*/, const TMCString& /*inTitle*/,
                                const TMCString& /*inPrompt*/, int32 /*inZero1*/, int32 /*inZero2*/,
                                int32 /*inZero3*/) {
  return false;
}

int32 AlertService::ShowAlert(int32 /*inKind*/, const char* inMessage, const char* inDetail1, const char* inDetail2,
                              const char* inDetail3, int32 inDefaultButton, const char* /*inButton1*/,
                              const char* /*inButton2*/, const char* /*inButton3*/) {
  std::string text = inMessage ? inMessage : "";
  for (const char* detail : {inDetail1, inDetail2, inDetail3}) {
    if (detail && *detail) {
      text.append(text.empty() ? "" : " ").append(detail);
    }
  }
  fDiagnostics.Warn(text);
  return inDefaultButton;
}

MCResult DialogFactory::CreateDialog(IMFPart** outDialog, MCID /*inKind*/, int32 /*inResourceId*/) {
  MCAssignCounted<IMFPart>(outDialog, nullptr);
  return MC_E_NOTCREATED;
}

bool FileService::ChooseFileToOpen(TMCString& /*outPath*/, MCID /*inCreator*/, MCID /*inType*/) {
  return false;
}

bool FileService::ChooseFileToSave(TMCString& /*outPath*/, MCID /*inCreator*/, MCID /*inType*/) {
  return false;
}

}  // namespace qlx::host
