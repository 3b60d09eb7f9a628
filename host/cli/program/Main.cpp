// The program `qlx`: everything is in `RunQlx`, which tests call as well.
#include <iostream>

#include "MCPlatform.h"
#include "MCTerminal.h"
#include "cli/Qlx.h"

int main(int argc, char** argv) {
  qlx::PreferLargePages();
  qlx::PrepareTerminal();
  std::vector<std::string> arguments = qlx::Utf8Arguments(argc, argv);
  if (!arguments.empty()) {
    arguments.erase(arguments.begin());
  }
  qlx::host::Console console{std::cout, std::cerr, qlx::IsErrorTerminal()};
  return qlx::host::RunQlx(std::move(arguments), console);
}
