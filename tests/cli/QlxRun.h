// `qlx`, run in this process: what it answered and what it wrote.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "cli/Qlx.h"
#include "gltf/GltfFiles.h"

namespace qlx::host {

struct QlxRun {
  int fCode;
  std::string fOut;
  std::string fErr;
};

inline QlxRun RunInProcess(std::vector<std::string> inArguments) {
  std::ostringstream out;
  std::ostringstream err;
  Console console{out, err};
  const int code = RunQlx(std::move(inArguments), console);
  return {code, out.str(), err.str()};
}

inline std::string Example(const char* inName) {
  return std::string(QLX_EXAMPLES "/") + inName;
}

}  // namespace qlx::host
