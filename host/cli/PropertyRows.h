// Rows of a property tree by text path, as they stand in front of a person.
#pragma once

#include <string>
#include <vector>

#include "ui/TreeControl.h"

namespace qlx::host {

// The row that shows a value: "#12" for `Hand::Choose`. A text without a comma is a label ("Rotation Z") and comes back
// as it is. A path that no row has is a `UserError` at the place given, with the closest ones.
std::string RowOfPath(const TreeControl& inTree, const std::string& inPath, const std::string& inPlace);

// The text path of each row, from the top.
std::vector<std::string> PathsOfRows(const TreeControl& inTree);

}  // namespace qlx::host
