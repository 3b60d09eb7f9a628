#include "FormLibrary.h"

namespace qlx::host {

void FormLibrary::Add(PartDescription inPart) {
  const std::pair<MCID, int32> key{inPart.fKind, inPart.fResourceId};
  fParts[key] = std::make_shared<const PartDescription>(std::move(inPart));
}

void FormLibrary::Add(ParameterMapDescription inMap) {
  const MCID key = inMap.fClass;
  fMaps[key] = std::move(inMap);
}

void FormLibrary::Clear() {
  fParts.clear();
  fMaps.clear();
}

std::shared_ptr<const PartDescription> FormLibrary::Find(MCID inKind, int32 inResourceId) const {
  const auto found = fParts.find({inKind, inResourceId});
  return found == fParts.end() ? nullptr : found->second;
}

const ParameterMapDescription* FormLibrary::FindMap(MCID inClass) const {
  const auto found = fMaps.find(inClass);
  return found == fMaps.end() ? nullptr : &found->second;
}

}  // namespace qlx::host
