#include "ElementChannel.h"

#include <cmath>
#include <cstring>

#include "Element.h"
#include "LinkLook.h"

namespace qlx::host {

Element* ElementChannel::Find() const {
  Element* const element = fLink->fElement;
  return element != nullptr && element->GetOwnScene() != nullptr ? element : nullptr;
}

bool ElementChannel::Read(void* outValue) const {
  const Element* const element = Find();
  if (element == nullptr) {
    return false;
  }
  const real32 value = element->GetValue(fChannel);
  if (LinkLook* const look = element->GetLook()) {
    look->Read(LinkValue::OfChannel(*element, fChannel));
  }
  std::memcpy(outValue, &value, sizeof(value));
  return true;
}

bool ElementChannel::Write(const void* inValue) {
  Element* const element = Find();
  real32 value = 0;
  std::memcpy(&value, inValue, sizeof(value));
  return element != nullptr && element->SetValue(fChannel, value);
}

bool ElementChannel::ReadBase(void* outValue) const {
  const Element* const element = Find();
  if (element == nullptr) {
    return false;
  }
  const real32 value = element->GetBase()[fChannel];
  std::memcpy(outValue, &value, sizeof(value));
  return true;
}

bool ElementChannel::WriteBase(const void* inValue) {
  Element* const element = Find();
  real32 value = 0;
  std::memcpy(&value, inValue, sizeof(value));
  if (element == nullptr || !std::isfinite(value)) {
    return false;
  }
  ChannelValues values = element->GetBase();
  values[fChannel] = value;
  element->SetBase(values);
  return true;
}

bool ElementChannel::SampleAt(int32 inTime, void* outValue) const {
  const Element* const element = Find();
  if (element == nullptr) {
    return false;
  }
  const real32 value = element->SampleAt(inTime)[fChannel];
  if (LinkLook* const look = element->GetLook()) {
    look->Read(LinkValue::OfChannel(*element, fChannel).AsKeys(true));
  }
  std::memcpy(outValue, &value, sizeof(value));
  return true;
}

const Curve* ElementChannel::GetCurve(uint32 /*inNumber*/) const {
  const Element* const element = Find();
  return element == nullptr ? nullptr : element->GetCurve(fChannel);
}

bool ElementChannel::EditCurves(const std::function<void(Curve&, uint32)>& inEdit) {
  Element* const element = Find();
  if (element != nullptr) {
    element->EditCurve(fChannel, [&inEdit](Curve& curve) { inEdit(curve, 0); });
  }
  return element != nullptr;
}

}  // namespace qlx::host
