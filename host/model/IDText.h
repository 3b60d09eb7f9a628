// Four-character ids as people read them.
#pragma once

#include <string>

#include "MCTypes.h"

namespace qlx::host {

// "RotX"; "0x00000001" for an id that is no text.
std::string TextFromID(MCID inID);

}  // namespace qlx::host
