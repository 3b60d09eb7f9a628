// The shape of a glTF document: which members its objects have, of which type, and what their indices refer to.
//
// Members that the tables do not name pass unseen. Whole numbers written with a fraction of zero ("3.0") are made plain
// whole numbers in place; nothing else is changed.
#pragma once

#include "GltfJson.h"

namespace qlx::host {

// Throws `GltfProblem` for the first member that is missing, of a wrong type, out of its range, or an index without
// something that it refers to. After it every member named in the tables can be read without a check of its type.
void CheckSchema(Json& ioDocument);

}  // namespace qlx::host
