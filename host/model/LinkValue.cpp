#include "LinkValue.h"

#include <array>

#include "Element.h"
#include "IDText.h"
#include "ValueSet.h"

namespace qlx::host {

namespace {

constexpr std::array kGlobalNames{"GlbX", "GlbY", "GlbZ", "placement"};

std::string KeyOf(const LinkValue& inValue) {
  switch (inValue.fKind) {
    case LinkValue::Kind::kChannel:
      return TextFromID(kChannels[inValue.fIndex].fID);
    case LinkValue::Kind::kGlobal:
      return kGlobalNames[inValue.fIndex];
    default:
      return TextFromID(inValue.GetValues()->GetInfo(inValue.fIndex).fID);
  }
}

}  // namespace

LinkValue LinkValue::OfChannel(const Element& inElement, Channel inChannel) {
  return {.fKind = Kind::kChannel, .fIndex = static_cast<uint32>(inChannel), .fOwner = &inElement};
}

LinkValue LinkValue::OfGlobal(const Element& inElement, uint32 inComponent) {
  return {.fKind = Kind::kGlobal, .fIndex = inComponent, .fOwner = &inElement};
}

LinkValue LinkValue::OfNumber(const ValueSet& inValues, std::size_t inIndex) {
  return {.fKind = Kind::kNumber, .fIndex = static_cast<uint32>(inIndex), .fOwner = &inValues};
}

const Element* LinkValue::GetElement() const {
  return fKind == Kind::kNumber ? nullptr : static_cast<const Element*>(fOwner);
}

const ValueSet* LinkValue::GetValues() const {
  return fKind == Kind::kNumber ? static_cast<const ValueSet*>(fOwner) : nullptr;
}

LinkValue LinkValue::AsKeys(bool inIsKeys) const {
  LinkValue value = *this;
  value.fIsKeys = inIsKeys;
  return value;
}

std::string OwnerOfLinkValue(const LinkValue& inValue) {
  const Element* const element = inValue.GetElement();
  return element != nullptr ? element->GetNameText() : inValue.GetValues()->GetLabel();
}

std::string TextOfLinkValue(const LinkValue& inValue) {
  return OwnerOfLinkValue(inValue) + " " + KeyOf(inValue);
}

std::string PathOfLinkValue(const LinkValue& inValue) {
  return inValue.fKind == LinkValue::Kind::kChannel ? kChannels[inValue.fIndex].fPath : KeyOf(inValue);
}

}  // namespace qlx::host
