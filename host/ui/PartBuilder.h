// Makes the part of a description, with all that is inside it.
#pragma once

#include "Part.h"

namespace qlx::host {

TMCCountedPtr<Part> BuildPart(const std::shared_ptr<const ControlDescription>& inDescription);

}  // namespace qlx::host
