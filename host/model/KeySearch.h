// Where a time stands among keys: shared by all curves.
#pragma once

#include <algorithm>
#include <cstddef>

#include "MCTypes.h"

namespace qlx::host {

// The index of the last key at or before the time, which must not be before the first key. `ioHint` is where the last
// search ended: time that goes forward by a key or two costs no search.
template <class Keys>
std::size_t FindKeyAtOrBefore(const Keys& inKeys, int32 inTime, std::size_t& ioHint) {
  constexpr std::size_t kStepsForward = 3;
  const std::size_t last = inKeys.size() - 1;
  std::size_t at = ioHint;
  if (at <= last && inKeys[at].fTime <= inTime) {
    for (std::size_t step = 0; step < kStepsForward; ++step) {
      if (at == last || inKeys[at + 1].fTime > inTime) {
        return ioHint = at;
      }
      ++at;
    }
  }
  const auto after = std::upper_bound(inKeys.begin(), inKeys.end(), inTime,
                                      [](int32 time, const auto& key) { return time < key.fTime; });
  return ioHint = static_cast<std::size_t>(after - inKeys.begin()) - 1;
}

// How far a time lies between two keys, 0 to 1, and their distance in seconds.
struct KeyStretch {
  real64 fPart;
  real64 fSeconds;
};

KeyStretch MeasureStretch(int32 inFrom, int32 inTo, int32 inTime);

// The four weights of the Hermite form: start value, start tangent, end tangent, end value. Tangents are a second.
struct HermiteWeights {
  real64 fFrom;
  real64 fFromTangent;
  real64 fToTangent;
  real64 fTo;
};

HermiteWeights GetHermiteWeights(const KeyStretch& inStretch);

}  // namespace qlx::host
