// The panels and dialogs of a plug-in, and which of their controls show which fields.
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "MCGuid.h"
#include "resources/Descriptions.h"

namespace qlx::host {

class FormLibrary {
 public:
  // Each takes the place of one with the same kind and number, or class. Forms that are open keep what they were built
  // from.
  void Add(PartDescription inPart);
  void Add(ParameterMapDescription inMap);
  void Clear();

  // Null for none. Kinds are 'Panl' and 'Dlog'.
  std::shared_ptr<const PartDescription> Find(MCID inKind, int32 inResourceId) const;
  const ParameterMapDescription* FindMap(MCID inClass) const;

 private:
  std::map<std::pair<MCID, int32>, std::shared_ptr<const PartDescription>> fParts;
  std::map<MCID, ParameterMapDescription> fMaps;
};

}  // namespace qlx::host
