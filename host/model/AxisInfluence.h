// Along which axes of the scene the values of an element move those below it.
//
// A position in the scene depends on values of the element and of all above it, but not on every one: the height of an
// upright cart says nothing of how far it has come. What never turns is computed; where a rotation or a scale changes
// over time, every direction that it could lead to counts.
#pragma once

#include <functional>
#include <unordered_map>

#include "Element.h"

namespace qlx::host {

// Sets of axes of the scene: bit 0 is X.
using AxisMask = uint8;
inline constexpr AxisMask kAllAxes = 7;

class AxisInfluence {
 public:
  // Whether a modifier writes the channel of the element.
  using IsWritten = std::function<bool(const Element&, Channel)>;
  explicit AxisInfluence(IsWritten inIsWritten) : fIsWritten(std::move(inIsWritten)) {}

  // Along which axes a change of the channel moves the element's own place, and the places of elements below it.
  AxisMask OnItself(const Element& inElement, Channel inChannel);
  AxisMask OnThoseBelow(const Element& inElement, Channel inChannel);
  // The channels of its own position that a write of a component of its place in the scene changes.
  ChannelMask WrittenBy(const Element& inElement, uint32 inAxis);

 private:
  // Of a linear map: entry (row, column) is bit 3 * row + column.
  using Pattern = uint16;
  struct Space {
    bool fIsConstant = true;
    Pattern fPattern = 0;
  };

  static Pattern PatternOf(const TMatrix33& inMatrix);
  static Pattern Join(Pattern inOuter, Pattern inInner);
  static AxisMask RowsWith(Pattern inPattern, uint32 inColumn);
  bool Varies(const Element& inElement, Channel inChannel) const;
  Pattern TurnsOf(const Element& inElement, int inChanging) const;
  const Space& SpaceOf(const Element* inElement);

  IsWritten fIsWritten;
  std::unordered_map<const Element*, Space> fSpaces;
};

}  // namespace qlx::host
