// The scale of one axis: a range that holds the values, and round numbers to mark on it.
#pragma once

#include <string>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

struct ValueRange {
  real64 fLow = 0;
  real64 fHigh = 0;

  real64 GetSpan() const { return fHigh - fLow; }
  real64 GetMiddle() const { return fLow + (fHigh - fLow) / 2; }
};

// The least range of the finite values; {0, 0} when there is none.
ValueRange RangeOf(const std::vector<real64>& inValues);
ValueRange Union(const ValueRange& inA, const ValueRange& inB);
// The smallest span that is worth drawing about the range: below it what moves is rounding, not the scene.
real64 SmallestSpan(const ValueRange& inRange);

struct PlotScale {
  ValueRange fRange;
  std::vector<real64> fTicks;  // multiples of 1, 2 or 5 times a power of ten
  real64 fStep = 1;

  // A tick as text, with the decimals that the step needs.
  std::string Label(real64 inTick) const;
};

// A scale about the range, with about `inTicks` marks at least `inSmallestStep` apart.
PlotScale MakeScale(const ValueRange& inRange, int inTicks, real64 inSmallestStep = 0);

}  // namespace qlx::host
