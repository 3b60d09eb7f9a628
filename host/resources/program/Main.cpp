// The program `qlx_rc`: text sources of panels, dialogs and records become a resource file.
#include <iostream>

#include "MCPlatform.h"
#include "resources/compiler/Compiler.h"

int main(int argc, char** argv) {
  std::vector<std::string> arguments = qlx::Utf8Arguments(argc, argv);
  if (!arguments.empty()) {
    arguments.erase(arguments.begin());
  }
  return qlx::host::RunCompiler(arguments, std::cerr);
}
