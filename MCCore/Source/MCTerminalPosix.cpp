#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "MCTerminal.h"

namespace qlx {

void PrepareTerminal() noexcept {}

bool IsErrorTerminal() noexcept {
  const char* const kind = std::getenv("TERM");
  return isatty(STDERR_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

}  // namespace qlx
