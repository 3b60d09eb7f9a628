#include "ElementChannel.h"

#include <cmath>
#include <cstring>

#include "Element.h"
#include "LinkLook.h"

namespace qlx::host {

ElementChannel::ElementChannel(Element& inElement, Channel inChannel) : fElement(&inElement), fChannel(inChannel) {
  inElement.GetChannels().Add(*this);
}

ElementChannel::~ElementChannel() {
  if (fElement != nullptr) {
    fElement->GetChannels().Remove(*this);
  }
}

Element* ElementChannel::Find() const {
  return fElement != nullptr && fElement->GetOwnScene() != nullptr ? fElement : nullptr;
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

ElementChannels::~ElementChannels() {
  for (ElementChannel* channel = fFirst; channel != nullptr; channel = channel->fNext) {
    channel->fElement = nullptr;
  }
}

void ElementChannels::Add(ElementChannel& inChannel) {
  inChannel.fNext = fFirst;
  if (fFirst != nullptr) {
    fFirst->fPrevious = &inChannel;
  }
  fFirst = &inChannel;
}

void ElementChannels::Remove(ElementChannel& inChannel) {
  (inChannel.fPrevious == nullptr ? fFirst : inChannel.fPrevious->fNext) = inChannel.fNext;
  if (inChannel.fNext != nullptr) {
    inChannel.fNext->fPrevious = inChannel.fPrevious;
  }
}

}  // namespace qlx::host
