#include "UserInterface.h"

#include <utility>

#include "ComponentCall.h"
#include "ModalDialog.h"

namespace qlx::host {

void UserInterface::ThrowProblem() {
  if (fProblem) {
    std::rethrow_exception(std::exchange(fProblem, nullptr));
  }
}

void UserInterface::DialogClosed(const ModalDialog& inDialog) {
  std::erase(fDialogs, &inDialog);
}

void UserInterface::CloseDialogs() {
  while (!fDialogs.empty()) {
    ModalDialog* const dialog = fDialogs.back();
    fDialogs.pop_back();
    dialog->CloseDialog();
  }
}

bool AskIfSelectable(IMFHierarchyItem& inItem) {
  bool isSelectable = false;
  return !CallComponent("IsSelectable", [&] { isSelectable = inItem.IsSelectable(); }) && isSelectable;
}

}  // namespace qlx::host
