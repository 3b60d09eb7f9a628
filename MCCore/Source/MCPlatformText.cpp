#include "MCPlatformText.h"

namespace qlx {

const PlatformText* gPlatformText = &kSystemText;

}  // namespace qlx
