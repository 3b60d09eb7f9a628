// What a link of class 'fQLX' says of itself in its private data: which values it ties, and whose.
#pragma once

#include <string>

#include "MCTypes.h"

namespace qlx::host {

struct LinkFacts {
  bool fTargetSet = false;
  bool fControllerSet = false;
  std::string fTargetPath;  // text paths
  std::string fControllerPath;
  uint32 fControllerID = 0;  // of elements; 0 for no reference, and for one that is no element's of this host
  uint32 fSourceID = 0;
  bool fHasControllerRef = false;
  bool fHasSourceRef = false;
};

// From the text that `PluginModifier::WritePrivate` gave. What is missing, or is not as it should be, stays empty.
LinkFacts ReadLinkFacts(const std::string& inPrivate);

}  // namespace qlx::host
