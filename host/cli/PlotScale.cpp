#include "PlotScale.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qlx::host {

namespace {

// The least of 1, 2, 5 times a power of ten that is not below.
real64 RoundStep(real64 inStep) {
  const real64 power = std::pow(10.0, std::floor(std::log10(inStep)));
  for (const real64 factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= inStep * (1.0 - 1e-9)) {
      return factor * power;
    }
  }
  return 10.0 * power;
}

}  // namespace

ValueRange RangeOf(const std::vector<real64>& inValues) {
  ValueRange range;
  bool first = true;
  for (const real64 value : inValues) {
    if (std::isfinite(value)) {
      range = first ? ValueRange{value, value} : Union(range, {value, value});
      first = false;
    }
  }
  return range;
}

ValueRange Union(const ValueRange& inA, const ValueRange& inB) {
  return {std::min(inA.fLow, inB.fLow), std::max(inA.fHigh, inB.fHigh)};
}

real64 SmallestSpan(const ValueRange& inRange) {
  return 1e-3 * std::max({std::fabs(inRange.fLow), std::fabs(inRange.fHigh), 0.1});
}

PlotScale MakeScale(const ValueRange& inRange, int inTicks, real64 inSmallestStep) {
  PlotScale scale;
  scale.fRange = inRange;
  if (inRange.GetSpan() <= 0) {
    scale.fTicks = {inRange.fLow};
    return scale;
  }
  scale.fStep = RoundStep(std::max(inRange.GetSpan() / inTicks, inSmallestStep));
  const real64 tolerance = scale.fStep * 1e-6;
  for (real64 n = std::ceil((inRange.fLow - tolerance) / scale.fStep); n * scale.fStep <= inRange.fHigh + tolerance;
       n += 1) {
    scale.fTicks.push_back(n * scale.fStep);
  }
  return scale;
}

std::string PlotScale::Label(real64 inTick) const {
  const real64 value = std::fabs(inTick) < fStep * 1e-6 ? 0.0 : inTick;  // no "-0.0"
  if (fStep < 1e-6 || std::fabs(value) >= 1e7) {
    return fmt::format("{:.6g}", value);
  }
  const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(fStep) + 1e-9)));
  return fmt::format("{:.{}f}", value, decimals);
}

}  // namespace qlx::host
