#include "Person.h"

#include "model/Diagnostics.h"

namespace qlx::host {

bool CancellingPerson::RunDialog(Form& /*ioDialog*/) {
  return false;
}

Element* CancellingPerson::ChooseElement(const std::string& /*inTitle*/, const std::string& /*inPrompt*/,
                                         const std::vector<Element*>& /*inCandidates*/) {
  return nullptr;
}

std::optional<std::string> CancellingPerson::ChooseFile(FileChoice /*inChoice*/) {
  return std::nullopt;
}

int32 CancellingPerson::AnswerAlert(const Alert& inAlert) {
  fDiagnostics.Warn(inAlert.fText);
  return inAlert.fDefault;
}

}  // namespace qlx::host
