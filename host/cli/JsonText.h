// JSON for the `--json` of the commands: members keep their order, and every text comes out as valid UTF-8.
#pragma once

#include <string>

#include "gltf/GltfJson.h"

namespace qlx::host {

inline std::string JsonText(const Json& inValue) {
  return inValue.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

// A value on one line.
inline std::string JsonLine(const Json& inValue) {
  return inValue.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace qlx::host
