// Fields of a component's public block, and the controls of a form that show them.
#pragma once

#include <optional>
#include <vector>

#include "ParameterMap.h"
#include "ui/Form.h"

namespace qlx::host {

class Host;

struct FieldControl {
  const ParameterField* fField;
  Part* fControl;

  // What the control holds, as a value of the field; nothing for one that the field cannot have.
  std::optional<ParameterValue> GetValue() const;
};

// In the order of the fields. A field that the map binds to a control that the form lacks is left out; one of a control
// that cannot show it is told by a warning. None for a class without a map. The form and the map outlive them.
std::vector<FieldControl> BindFields(Host& inHost, MCID inClass, const ParameterMap& inMap, Form& inForm);

}  // namespace qlx::host
