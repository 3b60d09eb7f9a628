// A box along the axes, by its least and greatest corner.
#pragma once

#include <algorithm>

#include "MCVector.h"

namespace qlx {

struct TBox3 {
  TVector3 fMinimum;
  TVector3 fMaximum;

  // The eight corners; bits 0, 1 and 2 of the index choose the greatest along X, Y and Z.
  constexpr TVector3 GetCorner(int inIndex) const {
    return {(inIndex & 1) != 0 ? fMaximum.x : fMinimum.x, (inIndex & 2) != 0 ? fMaximum.y : fMinimum.y,
            (inIndex & 4) != 0 ? fMaximum.z : fMinimum.z};
  }
  constexpr void Extend(const TVector3& inPoint) {
    fMinimum = {std::min(fMinimum.x, inPoint.x), std::min(fMinimum.y, inPoint.y), std::min(fMinimum.z, inPoint.z)};
    fMaximum = {std::max(fMaximum.x, inPoint.x), std::max(fMaximum.y, inPoint.y), std::max(fMaximum.z, inPoint.z)};
  }
  friend constexpr bool operator==(const TBox3&, const TBox3&) = default;
};

static_assert(sizeof(TBox3) == 24);

}  // namespace qlx
