#include "UserServices.h"

#include <algorithm>
#include <string>

#include "Host.h"
#include "HostInterface.h"
#include "HostScene.h"
#include "MCCountedPtr.h"
#include "ModalDialog.h"
#include "UserInterface.h"
#include "model/Scene.h"

namespace qlx::host {

namespace {

bool ChooseFile(UserInterface& ioUser, FileChoice inChoice, TMCString& outPath) {
  const std::optional<std::string> path = ioUser.AskPerson(
      std::optional<std::string>(), [inChoice](Person& person) { return person.ChooseFile(inChoice); });
  if (!path) {
    return false;
  }
  const std::string before = TextFrom(outPath);
  StoreText(*path, outPath);
  if (TextFrom(outPath) == *path) {
    return true;
  }
  StoreText(before, outPath);
  ioUser.GetDiagnostics().Warn(*path + ": the path is too long");
  return false;
}

// Ids are of 16 bits; a number that is none names nothing.
std::shared_ptr<const PartDescription> FindDialog(const Host& inHost, MCID inKind, int32 inResourceId) {
  const auto id = static_cast<int16>(inResourceId);
  return id == inResourceId ? inHost.GetCatalog()->FindPart(inKind, id) : nullptr;
}

}  // namespace

void ShellService::SetShellState(uint32 /*inValue*/, uint8 /*inFlag1*/, uint8 /*inFlag2*/) {}

IMCUnknown* ShellService::EnsureObjectHolder(TreeElement* inTree) {
  // An element of this host answers the interface whenever it shows an object; nothing has to be prepared.
  auto holder = MCQuery<I3DShObjectHolder>(inTree);
  return holder && holder->GetHeldObject() ? holder.Detach() : nullptr;
}

bool ShellService::ChooseObject(TreeElement** outChosen, const TMCString& inTitle, const TMCString& inPrompt,
                                int32 /*inZero1*/, int32 /*inZero2*/, int32 /*inZero3*/) {
  const Scene* const scene = fUser.GetScene();
  if (!scene || !outChosen) {
    return false;
  }
  std::vector<Element*> candidates = scene->GetTreeOrder();
  std::erase(candidates, &scene->GetRootElement());
  Element* const none = nullptr;
  Element* const chosen = fUser.AskPerson(
      none, [&](Person& person) { return person.ChooseElement(TextFrom(inTitle), TextFrom(inPrompt), candidates); });
  if (!chosen) {
    return false;
  }
  StoreForCaller<TreeElement>(outChosen, chosen);
  return true;
}

int32 AlertService::ShowAlert(int32 /*inKind*/, const char* inMessage, const char* inDetail1, const char* inDetail2,
                              const char* inDetail3, int32 inDefaultButton, const char* inButton1,
                              const char* inButton2, const char* inButton3) {
  Alert alert{inMessage ? inMessage : "", {}, inDefaultButton};
  for (const char* detail : {inDetail1, inDetail2, inDetail3}) {
    if (detail && *detail) {
      alert.fText.append(alert.fText.empty() ? "" : " ").append(detail);
    }
  }
  for (const char* button : {inButton1, inButton2, inButton3}) {
    if (button && *button) {
      alert.fButtons.emplace_back(button);
    }
  }
  if (alert.fButtons.empty()) {
    alert.fButtons.emplace_back("OK");
  }
  const int32 answer = fUser.AskPerson(inDefaultButton, [&](Person& person) { return person.AnswerAlert(alert); });
  const bool isButton = answer >= 1 && static_cast<std::size_t>(answer) <= alert.fButtons.size();
  return isButton ? answer : inDefaultButton;
}

MCResult DialogFactory::CreateDialog(IMFPart** outDialog, MCID inKind, int32 inResourceId) {
  UserInterface& user = fHost.GetUser();
  const bool hasForms = !user.fContexts.empty() && user.fContexts.back().fHasForms;
  auto description = hasForms ? FindDialog(fHost, inKind, inResourceId) : nullptr;
  const auto dialog = description ? ModalDialog::Create(fHost, std::move(description)) : nullptr;
  StoreForCaller<IMFPart>(outDialog, dialog.Get());
  return dialog ? MC_S_OK : MC_E_NOTCREATED;
}

bool FileService::ChooseFileToOpen(TMCString& outPath, MCID /*inCreator*/, MCID /*inType*/) {
  return ChooseFile(fUser, FileChoice::kOpen, outPath);
}

bool FileService::ChooseFileToSave(TMCString& outPath, MCID /*inCreator*/, MCID /*inType*/) {
  return ChooseFile(fUser, FileChoice::kSave, outPath);
}

}  // namespace qlx::host
