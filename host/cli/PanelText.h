// A panel or dialog as text: its groups and pages, and each control with its id, label, value and what it takes.
#pragma once

#include <string>

#include "JsonText.h"
#include "ui/Form.h"

namespace qlx::host {

std::string TextOfForm(const Form& inForm);
// The controls as a plain list, each with the page that it is on.
Json JsonOfForm(const Form& inForm);

}  // namespace qlx::host
