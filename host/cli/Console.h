// Where a command writes. Results go to `fOut`, what a person is told on the way to `fErr`.
#pragma once

#include <ostream>

namespace qlx::host {

struct Console {
  std::ostream& fOut;
  std::ostream& fErr;
  bool fErrIsTerminal = false;  // progress is shown on a terminal alone
};

}  // namespace qlx::host
