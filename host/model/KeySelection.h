// The mark that a person puts on keys, in a time line editor, for commands that work on marked keys.
#pragma once

#include "MCTypes.h"

namespace qlx::host {

class Element;

// Marks the keys of an element's values, from a time to a time, both included, and takes the mark from all its others.
// Answers how many are marked. No edit: nothing that is saved changes.
std::size_t SelectKeys(Element& ioElement, int32 inFrom, int32 inTo);

}  // namespace qlx::host
