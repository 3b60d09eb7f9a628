// Property trees: the values of an element, or of a whole scene, as rows of a hierarchical list.
//
// A row's item is a `QLXPropertyItem` with the row's text path. What a person reads is the parameter's name, its id in
// parentheses and its type in brackets, "Rotation X (RotX) [re32]"; a component is "Red" or "X"; an element, a shader
// or a group of morphs is its name alone. What has no name reads "UNKNOWN".
//
// All throw `TMCException` with `MC_E_OUTOFMEMORY` when a row cannot be made; the rows before it stay.
#pragma once

#include "HostInterface.h"
#include "TextPathRows.h"

namespace qlx {

// The parameters of a holder, groups with what they hold, below a row whose path is the prefix of theirs.
void FillProperties(IHierarchyList& ioList, TimeBasedData& inAttributes, const TMCString& inKeyPrefix,
                    IMFHierarchyItem* inParent, TextPathFilter inFilter);
// The row "Morphs" with a row for each group and its morphs; nothing for an element without any.
void FillMorphs(IHierarchyList& ioList, TreeElement& inElement);
// The row "Shaders" with a row for each shader and its parameters; nothing for an element without any.
void FillShaders(IHierarchyList& ioList, TreeElement& inElement, TextPathFilter inFilter);

enum class PropertyTree : uint8 {
  kOwn,             // the element's parameters
  kOwnAndPosition,  // ahead of them its position in the scene, axis by axis
  kScene,           // the parameters of every element of its scene
};

// Replaces what the list holds by a tree with its first row open and the others folded. Morphs and shaders are those of
// the element.
void FillPropertyTree(IHierarchyList& ioList, TreeElement& inElement, PropertyTree inTree, TextPathFilter inFilter);

}  // namespace qlx
