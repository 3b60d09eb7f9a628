// One evaluation of a link: reads the controller, maps its value, writes the target, and tells the host.
//
// Nothing that fails is reported or thrown: a link that cannot work writes nothing.
#pragma once

#include "QLXLookups.h"
#include "QLXMapping.h"

namespace qlx {

// What an evaluation works on, all of one modifier.
struct QLXLinkState {
  const QLXModifierData& fData;
  const QLXPrivateData& fPrivate;
  QLXMemory& fMemory;
  QLXLookups& fLookups;
};

// Brings the target up to date for the present time of the element's scene.
void EvaluateLink(const QLXLinkState& inLink, TreeElement& inElement);

}  // namespace qlx
