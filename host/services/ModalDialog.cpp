#include "ModalDialog.h"

#include <fmt/format.h>

#include "ComponentCall.h"
#include "Host.h"
#include "UserInterface.h"

namespace qlx::host {

TMCCountedPtr<ModalDialog> ModalDialog::Create(Host& inHost, std::shared_ptr<const PartDescription> inDescription) {
  auto dialog = MakeHosted<ModalDialog>(inHost, std::move(inDescription));
  if (dialog->GetPartDescription().fExtension != MCGuid{} && !dialog->MakeExtension()) {
    dialog->CloseDialog();
    return nullptr;
  }
  return dialog;
}

ModalDialog::ModalDialog(Host& inHost, std::shared_ptr<const PartDescription> inDescription)
    : PartWith(std::move(inDescription), kDialogControlUsed), fHost(inHost) {
  SetListener(this);
  fHost.GetUser().DialogOpened(*this);
}

ModalDialog::~ModalDialog() {
  if (!fIsClosed) {
    fHost.GetUser().DialogClosed(*this);
  }
  SetListener(nullptr);
}

// True when the component's operation returned.
template <class Body>
bool ModalDialog::Call(const char* inOperation, const Body& inBody) {
  const auto failure = CallComponent(inOperation, inBody);
  if (failure) {
    fHost.GetDiagnostics().Warn(
        fmt::format("dialog {} \"{}\": {}", GetPartDescription().fResourceId, Form::GetLabel(), failure->GetText()));
  }
  return !failure;
}

bool ModalDialog::MakeExtension() {
  void* made = nullptr;
  const MCGuid& classID = GetPartDescription().fExtension;
  const MCResult result = fHost.GetPlugin()
                              ? fHost.GetPlugin()->Create(classID, nullptr, IMCUnknown::kInterfaceID, &made)
                              : MC_E_NOTCREATED;
  if (result != MC_S_OK || !made) {
    fHost.GetDiagnostics().Warn(fmt::format("dialog {} \"{}\": the plug-in does not make its code (0x{:08X})",
                                            GetPartDescription().fResourceId, Form::GetLabel(),
                                            static_cast<uint32>(result)));
    return false;
  }
  fExtension.Adopt(static_cast<IMCUnknown*>(made));
  Call("QueryInterface", [&] {
    fResponder = MCQuery<IMFExResponder>(fExtension);
    fPart = MCQuery<IMFExPart>(fExtension);
  });
  return !fPart || Call("Attach", [&] {
    fPart->Attach(static_cast<IMFPart*>(this));
    fPart->Created();
  });
}

MCResult ModalDialog::FindPart(const MCGuid& inID, void** outObject) {
  if (!fExtension || inID != GetPartDescription().fExtension) {
    return PartWith::FindPart(inID, outObject);
  }
  MCResult result = MC_E_NOINTERFACE;
  Call("QueryInterface", [&] { result = fExtension->QueryInterface(inID, outObject); });
  return result == MC_S_OK ? MC_S_OK : MCStoreNone(outObject);
}

bool ModalDialog::RunModal() {
  if (fIsClosed) {
    return false;
  }
  const auto self = MCShare(this);
  const auto show = [this](bool shown) {
    if (fPart) {
      Call("Shown", [&] { fPart->Shown(shown ? 1 : 0); });
    }
  };
  ShowFirstPages();
  show(true);
  const bool isOK = fHost.GetUser().AskPerson(false, [this](Person& person) { return person.RunDialog(*this); });
  show(false);
  return isOK;
}

void ModalDialog::CloseDialog() {
  if (fIsClosed) {
    return;
  }
  const auto self = MCShare(this);
  fIsClosed = true;
  fHost.GetUser().DialogClosed(*this);
  SetListener(nullptr);
  if (fPart) {
    Call("Destroy", [this] { fPart->Destroy(); });
  }
  Call("Release", [this] {
    fPart.Clear();
    fResponder.Clear();
    fExtension.Clear();
  });
}

void ModalDialog::Receive(uint32 inMessage, Part& inSource, void* inData) {
  if (fResponder) {
    const auto responder = fResponder;  // the dialog may be closed meanwhile
    Call("Receive", [&] { responder->Receive(inMessage, static_cast<IMFPart*>(&inSource), inData); });
  }
  fHost.GetUser().ThrowProblem();
}

bool ModalDialog::IsSelectable(IMFHierarchyItem& inItem) {
  return AskIfSelectable(inItem);
}

}  // namespace qlx::host
