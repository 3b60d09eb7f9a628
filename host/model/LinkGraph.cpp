#include "LinkGraph.h"

#include <algorithm>
#include <limits>
#include <queue>
#include <unordered_map>

#include "AxisInfluence.h"
#include "Components.h"

namespace qlx::host {

namespace {

constexpr uint32 kNone = std::numeric_limits<uint32>::max();

// Modifiers come first among the points of the graph; behind them the values that something writes, the places of
// elements, and what moves all below an element.
class GraphBuilder {
 public:
  explicit GraphBuilder(const std::vector<LinkNode>& inNodes)
      : fNodes(inNodes), fAxes([this](const Element& element, Channel channel) {
          return fWritten.contains(LinkValue::OfChannel(element, channel));
        }) {
    fPoints = static_cast<uint32>(inNodes.size());
    fValues.resize(fPoints);
  }

  void Build() {
    AddPlainWrites();
    AddGlobalWrites();
    for (const auto& [value, point] : fWritten) {
      ConnectWriters(fWriters[point - Modifiers()], point);
    }
    for (uint32 node = 0; node < Modifiers(); ++node) {
      if (fNodes[node].fTrace != nullptr) {
        AddReads(node);
      }
    }
  }

  uint32 GetPointCount() const { return fPoints; }
  uint32 Modifiers() const { return static_cast<uint32>(fNodes.size()); }
  const std::vector<GraphEdge>& GetEdges() const { return fEdges; }
  bool ReadsPlaces() const { return !fPlaces.empty(); }
  // Of a point behind the modifiers; nothing where it stands for no value that has a name.
  const LinkValue* GetValue(uint32 inPoint) const {
    return fValues[inPoint].fOwner == nullptr ? nullptr : &fValues[inPoint];
  }

 private:
  uint32 AddPoint(const LinkValue& inValue) {
    fValues.push_back(inValue);
    return fPoints++;
  }
  void Connect(uint32 inFrom, uint32 inTo) { fEdges.push_back({inFrom, inTo}); }

  void AddWriter(const LinkValue& inValue, uint32 inNode) {
    const auto [place, isNew] = fWritten.try_emplace(inValue, fPoints);
    if (isNew) {
      AddPoint(inValue);
      fWriters.emplace_back();
    }
    std::vector<uint32>& writers = fWriters[place->second - Modifiers()];
    if (writers.empty() || writers.back() != inNode) {
      writers.push_back(inNode);
    }
  }

  // Rotations and scales are known before places are spread over positions.
  void AddPlainWrites() {
    ForEachWrite([this](const LinkValue& value, uint32 node) {
      if (value.fKind != LinkValue::Kind::kGlobal) {
        AddWriter(value, node);
      }
    });
  }

  void AddGlobalWrites() {
    ForEachWrite([this](const LinkValue& value, uint32 node) {
      if (value.fKind != LinkValue::Kind::kGlobal) {
        return;
      }
      const Element& element = *value.GetElement();
      const ChannelMask channels = fAxes.WrittenBy(element, value.fIndex);
      for (uint32 i = 0; i < 3; ++i) {
        if ((channels & (1U << i)) != 0) {
          AddWriter(LinkValue::OfChannel(element, static_cast<Channel>(i)), node);
        }
      }
    });
  }

  template <class Visit>
  void ForEachWrite(Visit&& inVisit) {
    for (uint32 node = 0; node < Modifiers(); ++node) {
      if (fNodes[node].fTrace != nullptr) {
        for (const LinkUse& use : fNodes[node].fTrace->fWrites) {
          inVisit(use.fValue, node);
        }
      }
    }
  }

  void ConnectWriters(std::vector<uint32>& ioWriters, uint32 inPoint) {
    std::ranges::sort(ioWriters);
    for (std::size_t i = 0; i < ioWriters.size(); ++i) {
      if (i > 0) {
        Connect(ioWriters[i - 1], ioWriters[i]);
      }
      Connect(ioWriters[i], inPoint);
    }
  }

  // Readers

  void AddReads(uint32 inNode) {
    for (const LinkUse& use : fNodes[inNode].fTrace->fReads) {
      if (use.fValue.fKind == LinkValue::Kind::kGlobal) {
        ReadPlace(use.fValue, inNode);
      } else {
        ReadValue(use.fValue, inNode);
      }
    }
    // Where an element is put in the scene depends on where those above it are.
    for (const LinkUse& use : fNodes[inNode].fTrace->fWrites) {
      if (use.fValue.fKind == LinkValue::Kind::kGlobal) {
        ConnectMaybe(FindAbove(use.fValue.GetElement()->GetParentElement(), use.fValue.fIndex), inNode);
      }
    }
  }

  void ReadValue(const LinkValue& inValue, uint32 inNode) {
    const auto found = fWritten.find(inValue);
    if (found != fWritten.end() && !std::ranges::binary_search(fWriters[found->second - Modifiers()], inNode)) {
      Connect(found->second, inNode);
    }
  }

  void ReadPlace(const LinkValue& inValue, uint32 inNode) {
    if (inValue.fIndex != LinkValue::kWholePlacement) {
      ConnectMaybe(FindPlace(inValue), inNode);
      return;
    }
    const Element& element = *inValue.GetElement();
    for (uint32 i = 0; i < 3; ++i) {
      ConnectMaybe(FindPlace(LinkValue::OfGlobal(element, i)), inNode);
    }
    for (const ChannelInfo& info : kChannels) {
      ReadValue(LinkValue::OfChannel(element, info.fChannel), inNode);
    }
    ConnectMaybe(FindAbove(element.GetParentElement(), LinkValue::kWholePlacement), inNode);
  }

  void ConnectMaybe(uint32 inFrom, uint32 inTo) {
    if (inFrom != kNone) {
      Connect(inFrom, inTo);
    }
  }

  // The point of a component of an element's place.
  uint32 FindPlace(const LinkValue& inValue) {
    const auto [place, isNew] = fPlaces.try_emplace(inValue, kNone);
    if (isNew) {
      const Element& element = *inValue.GetElement();
      const uint32 above = FindAbove(element.GetParentElement(), inValue.fIndex);
      fPlaces[inValue] = MakePoint(element, inValue, above, [&](Channel channel) {
        return (fAxes.OnItself(element, channel) >> inValue.fIndex & 1) != 0;
      });
    }
    return fPlaces[inValue];
  }

  // The point of what an element and those above it do to an axis of the places below; `kWholePlacement` for what they
  // do to rotations and scales there.
  uint32 FindAbove(const Element* inElement, uint32 inAxis) {
    std::vector<const Element*> unknown;
    for (; inElement != nullptr && !fAbove[inAxis].contains(inElement); inElement = inElement->GetParentElement()) {
      unknown.push_back(inElement);
    }
    uint32 point = inElement == nullptr ? kNone : fAbove[inAxis].at(inElement);
    for (; !unknown.empty(); unknown.pop_back()) {
      const Element& element = *unknown.back();
      point = MakePoint(element, {}, point, [&](Channel channel) {
        return inAxis == LinkValue::kWholePlacement ? static_cast<uint32>(channel) >= 3
                                                    : (fAxes.OnThoseBelow(element, channel) >> inAxis & 1) != 0;
      });
      fAbove[inAxis].emplace(&element, point);
    }
    return point;
  }

  // A point behind the written channels that count and what is above; that point itself, or none, where no channel is
  // written.
  template <class Counts>
  uint32 MakePoint(const Element& inElement, const LinkValue& inValue, uint32 inAbove, Counts&& inCounts) {
    std::vector<uint32> sources;
    for (const ChannelInfo& info : kChannels) {
      const auto found = fWritten.find(LinkValue::OfChannel(inElement, info.fChannel));
      if (found != fWritten.end() && inCounts(info.fChannel)) {
        sources.push_back(found->second);
      }
    }
    if (sources.empty() && (inAbove == kNone || inValue.fOwner == nullptr)) {
      return inAbove;
    }
    const uint32 point = AddPoint(inValue);
    ConnectMaybe(inAbove, point);
    for (const uint32 source : sources) {
      Connect(source, point);
    }
    return point;
  }

  const std::vector<LinkNode>& fNodes;
  AxisInfluence fAxes;
  uint32 fPoints = 0;
  std::vector<LinkValue> fValues;
  std::vector<GraphEdge> fEdges;
  std::unordered_map<LinkValue, uint32, LinkValueHash> fWritten;
  std::vector<std::vector<uint32>> fWriters;  // of each written value, in the order of the points
  std::unordered_map<LinkValue, uint32, LinkValueHash> fPlaces;
  std::unordered_map<const Element*, uint32> fAbove[4];
};

// The order: groups of points that depend on each other are kept together in what they wait for, and modifiers come in
// the plain order wherever they may.
class Sorter {
 public:
  Sorter(const GraphBuilder& inBuilder, const Graph& inGraph, const std::vector<uint32>& inGroups)
      : fModifiers(inBuilder.Modifiers()), fGraph(inGraph), fGroups(inGroups) {
    const uint32 count = inGroups.empty() ? 0 : *std::ranges::max_element(inGroups) + 1;
    fMembers.resize(count);
    fPoints.resize(count);
    fWaits.resize(count);
    for (uint32 point = 0; point < inGroups.size(); ++point) {
      (point < fModifiers ? fMembers : fPoints)[inGroups[point]].push_back(point);
      for (const uint32 next : inGraph.After(point)) {
        fWaits[inGroups[next]] += inGroups[next] != inGroups[point] ? 1 : 0;
      }
    }
  }

  std::vector<uint32> Sort() {
    fNext.resize(fMembers.size());
    for (uint32 group = 0; group < fMembers.size(); ++group) {
      if (fWaits[group] == 0) {
        Advance(group);
      }
    }
    Settle();
    std::vector<uint32> order;
    order.reserve(fModifiers);
    while (!fReady.empty()) {
      const uint32 node = fReady.top();
      fReady.pop();
      order.push_back(node);
      Advance(fGroups[node]);
      Settle();
    }
    return order;
  }

  const std::vector<std::vector<uint32>>& GetMembers() const { return fMembers; }

 private:
  // Offers the next modifier of a group; past the last one, what waited for the group goes on.
  void Advance(uint32 inGroup) {
    if (fNext[inGroup] < fMembers[inGroup].size()) {
      fReady.push(fMembers[inGroup][fNext[inGroup]++]);
    } else {
      fDone.push_back(inGroup);
    }
  }

  void Settle() {
    while (!fDone.empty()) {
      const uint32 group = fDone.back();
      fDone.pop_back();
      for (const auto* points : {&fMembers[group], &fPoints[group]}) {
        for (const uint32 point : *points) {
          for (const uint32 next : fGraph.After(point)) {
            if (fGroups[next] != group && --fWaits[fGroups[next]] == 0) {
              Advance(fGroups[next]);
            }
          }
        }
      }
    }
  }

  uint32 fModifiers;
  const Graph& fGraph;
  const std::vector<uint32>& fGroups;
  std::vector<std::vector<uint32>> fMembers;  // modifiers of each group, in plain order
  std::vector<std::vector<uint32>> fPoints;   // and its other points
  std::vector<uint32> fWaits;
  std::vector<std::size_t> fNext;
  std::vector<uint32> fDone;
  std::priority_queue<uint32, std::vector<uint32>, std::greater<>> fReady;
};

// Cycles in words

constexpr std::size_t kMostNames = 200;

// The value as its writer names it: a component of a place rather than the channels that it comes to.
std::string TextOfWritten(const LinkTrace& inTrace, const LinkValue& inValue) {
  for (const LinkUse& use : inTrace.fWrites) {
    if (use.fValue.fKind == LinkValue::Kind::kGlobal && use.fValue.fOwner == inValue.fOwner &&
        inValue.fKind == LinkValue::Kind::kChannel && inValue.fIndex < 3) {
      return TextOfLinkValue(use.fValue);
    }
  }
  return TextOfLinkValue(inValue);
}

// `inWay` leads along the edges from a modifier back to itself.
std::string TextOfCycle(const std::vector<uint32>& inWay, const GraphBuilder& inBuilder,
                        const std::vector<LinkNode>& inNodes) {
  std::vector<std::string> names;
  const auto add = [&names](std::string name) {
    if (names.empty() || names.back() != name) {
      names.push_back(std::move(name));
    }
  };
  // From what the first modifier writes, back against the edges.
  for (std::size_t at = 0; at + 2 < inWay.size(); ++at) {
    const std::size_t i = at == 0 ? 1 : inWay.size() - 1 - at;
    const uint32 point = inWay[i];
    const LinkValue* const value = point < inBuilder.Modifiers() ? nullptr : inBuilder.GetValue(point);
    if (value == nullptr) {
      continue;
    }
    const uint32 before = inWay[i - 1];
    const bool isWritten = before < inBuilder.Modifiers();
    add(isWritten && value->fKind != LinkValue::Kind::kGlobal ? TextOfWritten(*inNodes[before].fTrace, *value)
                                                              : TextOfLinkValue(*value));
  }
  if (names.empty()) {
    return {};
  }
  if (names.size() == 1 || names.front() != names.back()) {
    names.push_back(names.front());
  }
  std::string text = names.front();
  for (std::size_t i = 1; i < names.size(); ++i) {
    if (i == kMostNames && names.size() > kMostNames + 1) {
      text += " <- (" + std::to_string(names.size() - 1 - kMostNames) + " more)";
      i = names.size() - 1;
    }
    text += " <- " + names[i];
  }
  return text;
}

}  // namespace

LinkOrder FindLinkOrder(const std::vector<LinkNode>& inNodes) {
  GraphBuilder builder(inNodes);
  builder.Build();
  const Graph graph(builder.GetPointCount(), builder.GetEdges());
  const std::vector<uint32> groups = FindComponents(graph);
  Sorter sorter(builder, graph, groups);
  LinkOrder order;
  order.fNodes = sorter.Sort();
  order.fReadsPlaces = builder.ReadsPlaces();
  for (const std::vector<uint32>& members : sorter.GetMembers()) {
    if (members.size() > 1) {
      const std::vector<uint32> way = FindWayRound(graph, groups, members.front());
      order.fCycles.push_back({members, TextOfCycle(way, builder, inNodes)});
    }
  }
  std::ranges::sort(order.fCycles, {}, [](const LinkCycle& cycle) { return cycle.fNodes.front(); });
  return order;
}

}  // namespace qlx::host
