// The start of every line that the token format writes.
#pragma once

#include "MCToken.h"

namespace qlx::tokens {

void WriteIndentation(TMCStream& ioStream);
// Indentation, the id, one blank.
void BeginLine(TMCStream& ioStream, MCID inID);

}  // namespace qlx::tokens
