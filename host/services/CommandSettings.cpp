#include "CommandSettings.h"

#include "FieldControls.h"
#include "Host.h"
#include "UserInterface.h"
#include "model/HostObject.h"
#include "ui/Hand.h"

namespace qlx::host {

bool EditSettings(Host& inHost, MCID inClass, const ParameterMap& inMap, std::shared_ptr<const PartDescription> inPanel,
                  void* ioBlock) {
  const auto form = MakeHosted<Form>(std::move(inPanel), kPanelControlUsed);
  const std::vector<FieldControl> fields = BindFields(inHost, inClass, inMap, *form);
  if (fields.empty()) {
    return true;
  }
  for (const FieldControl& field : fields) {
    field.fControl->SetValue(ParameterMap::Read(*field.fField, ioBlock));
  }
  form->ShowFirstPages();
  const bool isOK = inHost.GetUser().AskPerson(false, [&form](Person& person) { return person.RunDialog(*form); });
  inHost.GetUser().ThrowProblem();
  for (const FieldControl& field : fields) {
    const std::optional<ParameterValue> value = field.GetValue();
    if (isOK && !(value && ParameterMap::Write(*field.fField, *value, ioBlock))) {
      throw UserError(NameOf(*field.fControl), "this is no value for " + field.fField->fName);
    }
  }
  return isOK;
}

}  // namespace qlx::host
