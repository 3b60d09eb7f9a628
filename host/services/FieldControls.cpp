#include "FieldControls.h"

#include <fmt/format.h>

#include "Host.h"
#include "model/IDText.h"
#include "ui/Hand.h"

namespace qlx::host {

namespace {

// The form in which a control holds a field's type.
MCID FormOfField(MCID inType) {
  return inType == "s255"_id || inType == "sdyn"_id ? "str "_id : inType;
}

bool IsNumber(MCID inForm) {
  return inForm == "in32"_id || inForm == "re32"_id;
}

bool CanShow(const Part& inControl, const ParameterField& inField) {
  const MCID control = inControl.GetValueForm();
  const MCID field = FormOfField(inField.fType);
  return control == field || (IsNumber(control) && IsNumber(field));
}

}  // namespace

std::optional<ParameterValue> FieldControl::GetValue() const {
  return Convert(fControl->GetValue(), FormOfField(fField->fType));
}

std::vector<FieldControl> BindFields(Host& inHost, MCID inClass, const ParameterMap& inMap, Form& inForm) {
  std::vector<FieldControl> bound;
  const ParameterMapDescription* const described = inHost.GetCatalog()->FindMapDescription(inClass);
  if (!described) {
    return bound;
  }
  for (const FieldDescription& row : described->fFields) {
    const ParameterField* const field = inMap.Find(row.fName);
    Part* const control = inForm.Find(row.fControl);
    if (field && control && CanShow(*control, *field)) {
      bound.push_back({field, control});
    } else if (field && control) {
      inHost.GetDiagnostics().Warn(fmt::format("panel {} \"{}\": the control {} cannot show {}, a '{}'",
                                               inForm.GetPartDescription().fResourceId, inForm.GetLabel(),
                                               NameOf(*control), row.fName, TextFromID(field->fType)));
    }
  }
  return bound;
}

}  // namespace qlx::host
