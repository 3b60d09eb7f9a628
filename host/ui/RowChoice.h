// Finds the row that a person means.
#pragma once

#include "Lists.h"
#include "TreeControl.h"

namespace qlx::host {

// "Basic": without the blanks around it, which lists of pages indent their rows with.
std::string_view TrimmedRow(std::string_view inText);

// By text, or by number ("#3"). A `UserError` names the control and the closest rows, or those that the text fits.
int32 FindListRow(const RowsControl& inControl, const std::string& inRow);
// By label, up to its first bracket if need be, or by labels from above it ("Arm > Rotation X": rows between two may be
// left out), or by number.
TreeControl::Row& FindTreeRow(const TreeControl& inTree, const std::string& inRow);

}  // namespace qlx::host
