// The elements of a subtree, depth first, parents before children; and the figure that an element belongs to.
#pragma once

#include "TreeWalk.h"

namespace qlx {

// Starts at the root, which the walk never leaves: its siblings are not visited. The tree must stay as it is meanwhile.
class TTreeElementIterator {
 public:
  enum class Start : uint8 { kAtRoot, kAfterRoot };

  explicit TTreeElementIterator(TreeElement& inRoot, Start inStart = Start::kAtRoot)
      : fRoot(inRoot), fNext(inStart == Start::kAtRoot ? &inRoot : NextBelow(inRoot, inRoot)) {}

  // Null at the end.
  TreeElement* Next() {
    TreeElement* const element = fNext;
    fNext = element ? NextBelow(fRoot, *element) : nullptr;
    return element;
  }

 private:
  TreeElement& fRoot;
  TreeElement* fNext;
};

// The root of the figure of a joint, or the nearest figure at or above any other element. Null for none.
TreeElement* FindFigureRoot(TreeElement* inElement);

}  // namespace qlx
