// The program `qlx`, as a function.
#pragma once

#include <string>
#include <vector>

#include "Console.h"

namespace qlx::host {

enum ExitCode : int {
  kExitDone = 0,
  kExitFailed = 1,  // a problem with what was given: one line on `fErr`, "qlx: scene.gltf: place: what is wrong"
  kExitUsage = 2    // the command line is wrong
};

// Runs the command that the arguments (without the program's name, UTF-8) ask for.
int RunQlx(std::vector<std::string> inArguments, Console& inConsole);

}  // namespace qlx::host
