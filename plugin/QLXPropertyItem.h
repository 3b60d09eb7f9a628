// One row of a property tree. Its text is the row's text path (scene3d/TextPath.h), "self" for the root of an element.
#pragma once

#include "BasicMCFCOMImplementations.h"

namespace qlx {

class QLXPropertyItem final : public TSimpleHierarchyItem<TMCString1023> {
 public:
  static constexpr MCGuid kInterfaceID = "8C2E41B7-5D0A-4F7E-9A63-2B91D4E07C15"_guid;

  // Answers the class id with the object itself.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (inID == kInterfaceID) {
      return MCStoreCounted<QLXPropertyItem>(this, outObject);
    }
    return TSimpleHierarchyItem::QueryInterface(inID, outObject);
  }
};

}  // namespace qlx
