// Everything that a resource file says, as descriptions.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "Descriptions.h"

namespace qlx::host {

struct ResourceContents {
  std::vector<ExtensionRecord> fExtensions;
  std::vector<ParameterMapDescription> fMaps;
  std::vector<std::shared_ptr<const PartDescription>> fParts;

  // Decodes one resource; of other types nothing is taken. `ResourceError` leaves this as it was.
  void Add(MCID inType, int16 inID, std::span<const uint8> inBytes);
};

}  // namespace qlx::host
