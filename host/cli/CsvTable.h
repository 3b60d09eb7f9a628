// The values that modifiers changed, as a table for other programs.
//
// One row a frame: "frame", "seconds", then one column for each changed value, named by element, value id and unit:
// "Hand XCOO (inches)", or what is no transform by what has it: `shader "Paint" Base colour red`. Numbers are the
// shortest that read back as the same 32-bit real. Fields with a comma, a quote or a line end are quoted, lines end in
// "\n".
#pragma once

#include <string>

#include "model/Bake.h"

namespace qlx::host {

std::string MakeCsv(const BakeResult& inBake);

}  // namespace qlx::host
