// The records of the plug-in's classes and parameter maps that stand in the program itself, for when the resource file
// beside a library is missing or damaged. The compiler makes their source from the same texts as the file.
#pragma once

#include <span>

#include "MCTypes.h"

namespace qlx::host {

struct BuiltInResource {
  MCID fType;
  int16 fID;
  std::span<const uint8> fBytes;
};

// Those of the types 'Extn' and 'PMap', in their order.
std::span<const BuiltInResource> GetBuiltInResources();

}  // namespace qlx::host
