#include "Part.h"

#include "PartBuilder.h"

namespace qlx::host {

Part::Part(std::shared_ptr<const ControlDescription> inDescription) : fDescription(std::move(inDescription)) {
  for (const ControlDescription& child : fDescription->fChildren) {
    Adopt(BuildPart(std::shared_ptr<const ControlDescription>(fDescription, &child)));
  }
}

Part::~Part() {
  for (const auto& child : fChildren) {
    child->fParent = nullptr;
  }
}

Part* Part::Find(MCID inID) const {
  if (inID == 0) {
    return nullptr;
  }
  for (const auto& child : fChildren) {
    Part* const found = child->fDescription->fID == inID ? child.Get() : child->Find(inID);
    if (found) {
      return found;
    }
  }
  return nullptr;
}

bool Part::SetValue(const PartValue& inValue) {
  const std::optional<PartValue> own = GetValueForm() == 0 ? std::nullopt : FromForm(inValue);
  return own && TakeValue(*own);
}

void Part::Adopt(TMCCountedPtr<Part> inChild) {
  inChild->fParent = this;
  fChildren.push_back(std::move(inChild));
}

void Part::SetForm(Form* inForm) {
  fForm = inForm;
  for (const auto& child : fChildren) {
    child->SetForm(inForm);
  }
}

void Part::FindChildPart(IMFPart** outPart, MCID inID, int32 /*inZero*/) {
  StoreForCaller<IMFPart>(outPart, Find(inID));
}

void Part::GetParentPart(IMFPart** outPart) {
  StoreForCaller<IMFPart>(outPart, fParent);
}

MCResult Part::GetPartValue(void* outBuffer, MCID inTypeId) {
  if (!outBuffer) {
    return MC_E_INVALIDARG;
  }
  const std::optional<PartValue> value = GetValueForm() == 0 ? std::nullopt : ToForm(inTypeId);
  return value && StoreValue(*value, inTypeId, outBuffer) ? MC_S_OK : MC_E_NOTVALID;
}

MCResult Part::SetPartValue(const void* inBuffer, MCID inTypeId, int32 /*inOne1*/, int32 /*inOne2*/) {
  if (!inBuffer) {
    return MC_E_INVALIDARG;
  }
  const std::optional<PartValue> value = LoadValue(inBuffer, inTypeId);
  return value && SetValue(*value) ? MC_S_OK : MC_E_NOTVALID;
}

}  // namespace qlx::host
