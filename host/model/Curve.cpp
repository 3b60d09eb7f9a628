#include "Curve.h"

#include "KeySearch.h"
#include "MCFrameTime.h"

namespace qlx::host {

KeyStretch MeasureStretch(int32 inFrom, int32 inTo, int32 inTime) {
  const real64 ticks = static_cast<real64>(inTo) - static_cast<real64>(inFrom);
  return {(static_cast<real64>(inTime) - static_cast<real64>(inFrom)) / ticks, ticks / kTicksPerSecond};
}

HermiteWeights GetHermiteWeights(const KeyStretch& inStretch) {
  const real64 t = inStretch.fPart;
  const real64 t2 = t * t;
  const real64 t3 = t2 * t;
  return {2 * t3 - 3 * t2 + 1, inStretch.fSeconds * (t3 - 2 * t2 + t), inStretch.fSeconds * (t3 - t2), 3 * t2 - 2 * t3};
}

namespace {

auto LowerBound(auto& inKeys, int32 inTime) {
  return std::lower_bound(inKeys.begin(), inKeys.end(), inTime,
                          [](const CurveKey& key, int32 time) { return key.fTime < time; });
}

real32 SampleStretch(const CurveKey& inFrom, const CurveKey& inTo, int32 inTime) {
  const real64 from = static_cast<real64>(inFrom.fValue);
  const real64 to = static_cast<real64>(inTo.fValue);
  const KeyStretch stretch = MeasureStretch(inFrom.fTime, inTo.fTime, inTime);
  if (inFrom.fInterpolation == Interpolation::kLinear) {
    return static_cast<real32>(from + stretch.fPart * (to - from));
  }
  const HermiteWeights weights = GetHermiteWeights(stretch);
  return static_cast<real32>(weights.fFrom * from + weights.fFromTangent * static_cast<real64>(inFrom.fOutTangent) +
                             weights.fToTangent * static_cast<real64>(inTo.fInTangent) + weights.fTo * to);
}

}  // namespace

real32 Curve::Sample(int32 inTime, std::size_t& ioHint) const {
  if (inTime <= fKeys.front().fTime) {
    return fKeys.front().fValue;
  }
  const std::size_t at = FindKeyAtOrBefore(fKeys, inTime, ioHint);
  const CurveKey& from = fKeys[at];
  if (from.fTime == inTime || at + 1 == fKeys.size() || from.fInterpolation == Interpolation::kStep) {
    return from.fValue;
  }
  return SampleStretch(from, fKeys[at + 1], inTime);
}

real32 Curve::Sample(int32 inTime) const {
  std::size_t hint = fKeys.size();
  return Sample(inTime, hint);
}

uint32 Curve::SetKey(CurveKey inKey) {
  inKey.fSerial = fNextSerial++;
  if (fKeys.empty() || fKeys.back().fTime < inKey.fTime) {
    fKeys.push_back(inKey);
    return inKey.fSerial;
  }
  const auto at = LowerBound(fKeys, inKey.fTime);
  if (at->fTime == inKey.fTime) {
    *at = inKey;
  } else {
    fKeys.insert(at, inKey);
  }
  return inKey.fSerial;
}

bool Curve::HasKeyAt(int32 inTime) const {
  const auto at = LowerBound(fKeys, inTime);
  return at != fKeys.end() && at->fTime == inTime;
}

bool Curve::DeleteKeyAt(int32 inTime) {
  const auto at = LowerBound(fKeys, inTime);
  if (at == fKeys.end() || at->fTime != inTime) {
    return false;
  }
  fKeys.erase(at);
  return true;
}

bool Curve::DeleteKeysAt(std::span<const int32> inTimes) {
  if (inTimes.empty()) {
    return false;
  }
  const auto first = LowerBound(fKeys, inTimes.front());
  auto last = LowerBound(fKeys, inTimes.back());
  last += last != fKeys.end() && last->fTime == inTimes.back() ? 1 : 0;
  const auto end = std::remove_if(first, last, [&](const CurveKey& key) {
    while (!inTimes.empty() && inTimes.front() < key.fTime) {
      inTimes = inTimes.subspan(1);
    }
    return !inTimes.empty() && inTimes.front() == key.fTime;
  });
  const bool hasDeleted = end != last;
  fKeys.erase(end, last);
  return hasDeleted;
}

bool Curve::MoveKey(uint32 inSerial, int32 inTime) {
  std::size_t hint = 0;
  return MoveKey(inSerial, inTime, hint);
}

bool Curve::MoveKey(uint32 inSerial, int32 inTime, std::size_t& ioHint) {
  const CurveKey* const found = FindSerial(inSerial, ioHint);
  if (found == nullptr) {
    return false;
  }
  if (found->fTime == inTime) {
    return true;
  }
  CurveKey moved = *found;
  moved.fTime = inTime;
  // Only the keys between the old place and the new one change places.
  const auto from = fKeys.begin() + (found - fKeys.data());
  const auto to = LowerBound(fKeys, inTime);
  if (to != fKeys.end() && to->fTime == inTime) {
    ioHint = static_cast<std::size_t>(to - fKeys.begin()) - (from < to ? 1 : 0);
    *to = moved;
    fKeys.erase(from);
  } else if (from < to) {
    *std::rotate(from, from + 1, to) = moved;
    ioHint = static_cast<std::size_t>(to - fKeys.begin()) - 1;
  } else {
    std::rotate(to, from, from + 1);
    *to = moved;
    ioHint = static_cast<std::size_t>(to - fKeys.begin());
  }
  return true;
}

bool Curve::SelectKey(int32 inTime, bool inSelected) {
  const auto at = LowerBound(fKeys, inTime);
  if (at == fKeys.end() || at->fTime != inTime) {
    return false;
  }
  at->fSelected = inSelected;
  return true;
}

void Curve::MakeSteps() {
  for (CurveKey& key : fKeys) {
    key.fInterpolation = Interpolation::kStep;
  }
}

const CurveKey* Curve::FindSerial(uint32 inSerial) const {
  std::size_t hint = 0;
  return FindSerial(inSerial, hint);
}

const CurveKey* Curve::FindSerial(uint32 inSerial, std::size_t& ioHint) const {
  const std::size_t count = fKeys.size();
  if (count == 0) {
    return nullptr;
  }
  // A key moves by few places between two searches: look outwards from where it was.
  const std::size_t start = std::min(ioHint, count - 1);
  for (std::size_t distance = 0; distance < count; ++distance) {
    for (const std::size_t at : {start - distance, start + distance}) {
      if (at < count && fKeys[at].fSerial == inSerial) {
        ioHint = at;
        return &fKeys[at];
      }
    }
  }
  return nullptr;
}

const CurveKey* Curve::FindAfter(int32 inTime) const {
  const auto at = std::upper_bound(fKeys.begin(), fKeys.end(), inTime,
                                   [](int32 time, const CurveKey& key) { return time < key.fTime; });
  return at == fKeys.end() ? nullptr : &*at;
}

const CurveKey* Curve::FindBefore(int32 inTime) const {
  const auto at = LowerBound(fKeys, inTime);
  return at == fKeys.begin() ? nullptr : &*(at - 1);
}

}  // namespace qlx::host
