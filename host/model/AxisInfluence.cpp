#include "AxisInfluence.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace qlx::host {

namespace {

constexpr uint16 kIdentity = 0b100'010'001;
constexpr uint16 kEverything = 0b111'111'111;
// Of a turn about an axis: what it mixes, and the axis that it leaves alone.
constexpr uint16 kMixed[3] = {0b110'110'000, 0b101'000'101, 0b000'011'011};
constexpr uint16 kKept[3] = {0b000'000'001, 0b000'010'000, 0b100'000'000};

// A direction that rounding alone makes counts as none.
constexpr real32 kNoDirection = 1e-6f;

constexpr Channel kTurns[3] = {Channel::kRotationX, Channel::kRotationY, Channel::kRotationZ};

}  // namespace

AxisInfluence::Pattern AxisInfluence::PatternOf(const TMatrix33& inMatrix) {
  if (!inMatrix.IsFinite()) {
    return kEverything;
  }
  real32 largest = 0;
  for (int i = 0; i < 9; ++i) {
    largest = std::max(largest, std::fabs(inMatrix(i / 3, i % 3)));
  }
  Pattern pattern = 0;
  for (int i = 0; i < 9; ++i) {
    if (std::fabs(inMatrix(i / 3, i % 3)) > kNoDirection * largest) {
      pattern |= static_cast<Pattern>(1U << i);
    }
  }
  return pattern;
}

AxisInfluence::Pattern AxisInfluence::Join(Pattern inOuter, Pattern inInner) {
  Pattern joined = 0;
  for (uint32 row = 0; row < 3; ++row) {
    for (uint32 middle = 0; middle < 3; ++middle) {
      if ((inOuter >> (3 * row + middle) & 1) != 0) {
        joined |= static_cast<Pattern>((inInner >> (3 * middle) & 7) << (3 * row));
      }
    }
  }
  return joined;
}

AxisMask AxisInfluence::RowsWith(Pattern inPattern, uint32 inColumn) {
  AxisMask rows = 0;
  for (uint32 row = 0; row < 3; ++row) {
    rows |= static_cast<AxisMask>((inPattern >> (3 * row + inColumn) & 1) << row);
  }
  return rows;
}

bool AxisInfluence::Varies(const Element& inElement, Channel inChannel) const {
  return inElement.HasKeys(inChannel) || fIsWritten(inElement, inChannel);
}

// The element's rotation, which acts about X, then Y, then Z; with `inChanging` what a change of that angle alone does.
AxisInfluence::Pattern AxisInfluence::TurnsOf(const Element& inElement, int inChanging) const {
  Pattern turns = kIdentity;
  for (int axis = 0; axis < 3; ++axis) {
    const bool isTurned = inElement.GetValue(kTurns[axis]) != 0 || Varies(inElement, kTurns[axis]);
    Pattern turn = isTurned ? static_cast<Pattern>(kMixed[axis] | kKept[axis]) : kIdentity;
    turn = axis == inChanging ? kMixed[axis] : turn;
    turns = Join(turn, turns);
  }
  return turns;
}

// From the axes of the element to those of the scene. Climbs to what is known and comes back down.
const AxisInfluence::Space& AxisInfluence::SpaceOf(const Element* inElement) {
  static constexpr Space kScene{true, kIdentity};
  std::vector<const Element*> unknown;
  const Element* known = inElement;
  while (known != nullptr && !fSpaces.contains(known)) {
    unknown.push_back(known);
    known = known->GetParentElement();
  }
  const Space* above = known == nullptr ? &kScene : &fSpaces.at(known);
  for (; !unknown.empty(); unknown.pop_back()) {
    const Element& element = *unknown.back();
    const bool varies = std::ranges::any_of(kChannels, [&](const ChannelInfo& info) {
      return (MaskOf(info.fChannel) & kPositionMask) == 0 && Varies(element, info.fChannel);
    });
    Space space{above->fIsConstant && !varies, 0};
    space.fPattern =
        space.fIsConstant ? PatternOf(element.GetGlobalMatrix().fMatrix) : Join(above->fPattern, TurnsOf(element, -1));
    above = &fSpaces.emplace(&element, space).first->second;
  }
  return *above;
}

AxisMask AxisInfluence::OnThoseBelow(const Element& inElement, Channel inChannel) {
  const Pattern above = SpaceOf(inElement.GetParentElement()).fPattern;
  const uint32 index = IndexOf(inChannel);
  if (index < 3) {
    return RowsWith(above, index);
  }
  Pattern moved = TurnsOf(inElement, index < 6 ? static_cast<int>(index) - 3 : -1);
  moved = Join(above, moved);
  if (index > IndexOf(Channel::kUniformScale)) {
    return RowsWith(moved, index - IndexOf(Channel::kScaleX));
  }
  return RowsWith(moved, 0) | RowsWith(moved, 1) | RowsWith(moved, 2);
}

AxisMask AxisInfluence::OnItself(const Element& inElement, Channel inChannel) {
  const bool movesItself = IndexOf(inChannel) < 3 || inElement.GetHotPoint() != kZeroVector;
  return movesItself ? OnThoseBelow(inElement, inChannel) : AxisMask{0};
}

ChannelMask AxisInfluence::WrittenBy(const Element& inElement, uint32 inAxis) {
  const Element* const parent = inElement.GetParentElement();
  const Space& above = SpaceOf(parent);
  TMatrix33 inverse;
  if (parent != nullptr && above.fIsConstant && parent->GetGlobalMatrix().fMatrix.GetInverse(inverse)) {
    return RowsWith(PatternOf(inverse), inAxis);
  }
  return static_cast<ChannelMask>(above.fPattern >> (3 * inAxis) & 7);  // turns: the inverse is the transposed
}

}  // namespace qlx::host
