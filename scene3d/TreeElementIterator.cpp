#include "TreeElementIterator.h"

#include "MCCountedPtr.h"

namespace qlx {

TreeElement* FindFigureRoot(TreeElement* inElement) {
  if (const auto member = MCQuery<I3DShFigureMember>(inElement)) {
    I3DShOwned* const owner = member->GetFigureOwner();
    TreeElement* const topmost = owner ? owner->GetOwnerElement() : nullptr;
    return topmost ? topmost->GetParentRaw() : nullptr;
  }
  TreeElement* element = inElement;
  while (element && !MCQuery<I3DShFigure>(element)) {
    element = element->GetParentRaw();
  }
  return element;
}

}  // namespace qlx
