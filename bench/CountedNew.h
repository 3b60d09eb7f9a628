// How often `operator new` was called in this program, by anybody.
#pragma once

#include "MCTypes.h"

namespace qlx::bench {

uint64 GetNewCount();

}  // namespace qlx::bench
