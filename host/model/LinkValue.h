// The values that modifiers read and write, as the host sees them.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "Channels.h"

namespace qlx::host {

class Element;
class ValueSet;

// A channel of an element; a component of its position in the scene (0 to 2), or its whole placement there
// (`kWholePlacement`); a value of a set. Names its owner without holding it: good while the tree of the scene stands.
struct LinkValue {
  enum class Kind : uint8 { kChannel, kGlobal, kNumber };
  static constexpr uint32 kWholePlacement = 3;

  Kind fKind = Kind::kChannel;
  bool fIsKeys = false;  // not the value of the moment but its keys
  uint32 fIndex = 0;
  const void* fOwner = nullptr;

  static LinkValue OfChannel(const Element& inElement, Channel inChannel);
  static LinkValue OfGlobal(const Element& inElement, uint32 inComponent);
  static LinkValue OfNumber(const ValueSet& inValues, std::size_t inIndex);

  // Null for a value of a set, and of an element.
  const Element* GetElement() const;
  const ValueSet* GetValues() const;
  LinkValue AsKeys(bool inIsKeys) const;
  bool operator==(const LinkValue&) const = default;
};

// "WheelL RotZ", "Cart GlbX", "shader "Paint" BCol"
std::string TextOfLinkValue(const LinkValue& inValue);
// "self,amet,TRAN,ROTA,RotZ", "GlbX", "BCol"
std::string PathOfLinkValue(const LinkValue& inValue);
// "WheelL", "shader "Paint""
std::string OwnerOfLinkValue(const LinkValue& inValue);

struct LinkValueHash {
  std::size_t operator()(const LinkValue& inValue) const {
    const std::size_t more =
        inValue.fIndex * 8 + static_cast<std::size_t>(inValue.fKind) * 2 + (inValue.fIsKeys ? 1 : 0);
    return std::hash<const void*>()(inValue.fOwner) * 31 + more;
  }
};

}  // namespace qlx::host
