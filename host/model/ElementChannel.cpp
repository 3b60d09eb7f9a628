#include "ElementChannel.h"

#include <cstring>

#include "Element.h"

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
  std::memcpy(outValue, &value, sizeof(value));
  return true;
}

bool ElementChannel::Write(const void* inValue) {
  Element* const element = Find();
  real32 value = 0;
  std::memcpy(&value, inValue, sizeof(value));
  return element != nullptr && element->SetValue(fChannel, value);
}

bool ElementChannel::SampleAt(int32 inTime, real32& outValue) const {
  const Element* const element = Find();
  if (element == nullptr) {
    return false;
  }
  outValue = element->SampleAt(inTime)[fChannel];
  return true;
}

const Curve* ElementChannel::GetCurve() const {
  const Element* const element = Find();
  return element == nullptr ? nullptr : element->GetCurve(fChannel);
}

bool ElementChannel::EditCurve(const std::function<void(Curve&)>& inEdit) {
  Element* const element = Find();
  if (element != nullptr) {
    element->EditCurve(fChannel, inEdit);
  }
  return element != nullptr;
}

}  // namespace qlx::host
