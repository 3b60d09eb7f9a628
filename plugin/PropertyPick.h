// The choice of one value from a property tree.
#pragma once

#include "MCString.h"
#include "PropertyFill.h"
#include "QLXPropertyItem.h"

namespace qlx {

// The item of the first selected row, and the row; null when none is selected, or the row is none of a property tree.
TMCCountedPtr<QLXPropertyItem> GetSelectedProperty(IHierarchyList& inList, uint32& outRow);

struct PickedProperty {
  TMCString1023 fPath;
  TMCDynamicString fLabel;  // the row's, as it reads now: renaming the parameter later does not change it
};

// Lets a person choose from what an element offers. False when the element cannot be animated, the choice is cancelled,
// or no row is selected.
bool PickProperty(TreeElement& inElement, PropertyTree inTree, PickedProperty& outPicked);

}  // namespace qlx
