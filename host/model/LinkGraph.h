// What depends on what among the modifiers of a scene, and the order that follows from it.
#pragma once

#include <string>
#include <vector>

#include "LinkLook.h"

namespace qlx::host {

// A modifier in the plain order (elements in tree order, modifiers in list order), with what it reads and writes; a
// null trace for one that depends on nothing and on which nothing depends.
struct LinkNode {
  const LinkTrace* fTrace = nullptr;
};

struct LinkCycle {
  std::vector<uint32> fNodes;  // all that cannot be put in order among each other, in plain order
  // One way round, each value ahead of what it follows: "WheelL RotZ <- Cart GlbX <- WheelL RotZ".
  std::string fText;
};

struct LinkOrder {
  std::vector<uint32> fNodes;  // a source ahead of what follows it, else in plain order
  std::vector<LinkCycle> fCycles;
  bool fReadsPlaces = false;  // it follows from where axes point, too
};

// Takes time in proportion to the uses, and to the logarithm of the nodes. Several writers of one value keep their
// plain order, and so do the nodes of a cycle.
LinkOrder FindLinkOrder(const std::vector<LinkNode>& inNodes);

}  // namespace qlx::host
