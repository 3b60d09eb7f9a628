// The element that a modifier sits on, as the modifier's outer object says it.
#pragma once

#include "HostExtensions.h"
#include "HostScene.h"
#include "MCCountedPtr.h"

namespace qlx {

// Null for a modifier without such an outer object, and for one that sits on nothing.
inline TMCCountedPtr<TreeElement> FindModifiedElement(I3DExModifier& inModifier) {
  TMCCountedPtr<TreeElement> element;
  if (const auto holder = MCQuery<I3DShModifierHolder>(&inModifier)) {
    holder->GetModifiedElement(element.WriteInto());
  }
  return element;
}

}  // namespace qlx
