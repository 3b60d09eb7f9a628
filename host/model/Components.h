// Directed graphs of numbered points: groups of points that lead to each other, and ways inside them.
#pragma once

#include <span>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

struct GraphEdge {
  uint32 fFrom;
  uint32 fTo;
};

class Graph {
 public:
  Graph(uint32 inPoints, const std::vector<GraphEdge>& inEdges);
  uint32 GetPointCount() const { return static_cast<uint32>(fStarts.size() - 1); }
  // Where the edges from a point lead, in the order in which they were given.
  std::span<const uint32> After(uint32 inPoint) const {
    return {fEnds.data() + fStarts[inPoint], fStarts[inPoint + 1] - fStarts[inPoint]};
  }

 private:
  std::vector<std::size_t> fStarts;
  std::vector<uint32> fEnds;
};

// The number of each point's group: points of one group lead to each other. Needs no stack, however long ways are.
std::vector<uint32> FindComponents(const Graph& inGraph);

// A shortest way from a point of a group of several back to itself, with that point at both ends.
std::vector<uint32> FindWayRound(const Graph& inGraph, const std::vector<uint32>& inGroups, uint32 inPoint);

}  // namespace qlx::host
