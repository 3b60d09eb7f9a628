// The walk through the tree of a scene, parents before children and siblings in order. Counts and allocates nothing;
// the tree must stay as it is while it is walked.
#pragma once

#include "HostScene.h"

namespace qlx {

// The element after one that is the root or lies below it; null at the end. The walk starts at the root itself, which
// is not given again.
inline TreeElement* NextBelow(TreeElement& inRoot, TreeElement& inElement) {
  if (TreeElement* const child = inElement.GetFirstChild()) {
    return child;
  }
  for (TreeElement* element = &inElement; element && element != &inRoot; element = element->GetParentRaw()) {
    if (TreeElement* const sibling = element->GetNextSibling()) {
      return sibling;
    }
  }
  return nullptr;
}

}  // namespace qlx
