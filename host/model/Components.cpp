#include "Components.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace qlx::host {

Graph::Graph(uint32 inPoints, const std::vector<GraphEdge>& inEdges)
    : fStarts(std::size_t{inPoints} + 1), fEnds(inEdges.size()) {
  for (const GraphEdge& edge : inEdges) {
    ++fStarts[edge.fFrom + 1];
  }
  for (std::size_t i = 1; i < fStarts.size(); ++i) {
    fStarts[i] += fStarts[i - 1];
  }
  std::vector<std::size_t> next(fStarts.begin(), fStarts.end() - 1);
  for (const GraphEdge& edge : inEdges) {
    fEnds[next[edge.fFrom]++] = edge.fTo;
  }
}

namespace {

// Tarjan's algorithm, with a list in the place of recursion.
class ComponentFinder {
 public:
  explicit ComponentFinder(const Graph& inGraph)
      : fGraph(inGraph), fNumbers(inGraph.GetPointCount()), fLowest(fNumbers.size()), fGroups(fNumbers.size(), kOpen) {}

  std::vector<uint32> Find() {
    for (uint32 point = 0; point < fNumbers.size(); ++point) {
      if (fNumbers[point] == 0) {
        Visit(point);
      }
    }
    return std::move(fGroups);
  }

 private:
  static constexpr uint32 kOpen = std::numeric_limits<uint32>::max();
  struct Step {
    uint32 fPoint;
    std::size_t fEdge;
  };

  void Enter(uint32 inPoint) {
    fNumbers[inPoint] = fLowest[inPoint] = ++fCount;
    fOpen.push_back(inPoint);
    fSteps.push_back({inPoint, 0});
  }

  void Visit(uint32 inStart) {
    Enter(inStart);
    while (!fSteps.empty()) {
      Step& step = fSteps.back();
      const uint32 point = step.fPoint;
      const auto after = fGraph.After(point);
      if (step.fEdge == after.size()) {
        Leave(point);
        continue;
      }
      const uint32 next = after[step.fEdge++];
      if (fNumbers[next] == 0) {
        Enter(next);
      } else if (fGroups[next] == kOpen) {
        fLowest[point] = std::min(fLowest[point], fNumbers[next]);
      }
    }
  }

  void Leave(uint32 inPoint) {
    fSteps.pop_back();
    if (!fSteps.empty()) {
      uint32& above = fLowest[fSteps.back().fPoint];
      above = std::min(above, fLowest[inPoint]);
    }
    if (fLowest[inPoint] != fNumbers[inPoint]) {
      return;
    }
    for (uint32 member = kOpen; member != inPoint;) {
      member = fOpen.back();
      fOpen.pop_back();
      fGroups[member] = fGroupCount;
    }
    ++fGroupCount;
  }

  const Graph& fGraph;
  std::vector<uint32> fNumbers;  // from 1, in the order of the first visit
  std::vector<uint32> fLowest;
  std::vector<uint32> fGroups;
  std::vector<uint32> fOpen;
  std::vector<Step> fSteps;
  uint32 fCount = 0;
  uint32 fGroupCount = 0;
};

}  // namespace

std::vector<uint32> FindComponents(const Graph& inGraph) {
  return ComponentFinder(inGraph).Find();
}

std::vector<uint32> FindWayRound(const Graph& inGraph, const std::vector<uint32>& inGroups, uint32 inPoint) {
  std::unordered_map<uint32, uint32> before;
  std::vector<uint32> pending{inPoint};
  for (std::size_t i = 0; i < pending.size() && !before.contains(inPoint); ++i) {
    for (const uint32 next : inGraph.After(pending[i])) {
      if (inGroups[next] == inGroups[inPoint] && before.try_emplace(next, pending[i]).second) {
        pending.push_back(next);
      }
    }
  }
  std::vector<uint32> way{inPoint};
  for (auto found = before.find(inPoint); found != before.end(); found = before.find(way.back())) {
    way.push_back(found->second);
    if (found->second == inPoint) {
      break;
    }
  }
  std::ranges::reverse(way);
  return way;
}

}  // namespace qlx::host
