#include "MCHostUtilities.h"

namespace qlx {

IMemoryUtilities* gMemoryUtilities = nullptr;
IDebugUtilities* gDebugUtilities = nullptr;
IShSafeUtilities* gShSafeUtilities = nullptr;
IShellUtilities* gShellUtilities = nullptr;

}  // namespace qlx
