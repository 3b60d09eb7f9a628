#include "GltfTracks.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <set>

#include "GltfUnits.h"
#include "TinyGltf.h"

namespace qlx::host {

const std::array<NodePath, 3> kNodePaths{{{"translation", kPositionMask, TINYGLTF_TYPE_VEC3},
                                          {"rotation", kRotationMask, TINYGLTF_TYPE_VEC4},
                                          {"scale", kScaleMask, TINYGLTF_TYPE_VEC3}}};

namespace {

bool IsRotation(const NodePath& inPath) {
  return inPath.fChannels == kRotationMask;
}

// The curves of a path that have keys.
std::vector<const Curve*> KeyedCurves(const Element& inElement, const NodePath& inPath) {
  std::vector<const Curve*> curves;
  for (const ChannelInfo& info : kChannels) {
    const Curve* curve = (inPath.fChannels & MaskOf(info.fChannel)) == 0 ? nullptr : inElement.GetCurve(info.fChannel);
    if (curve != nullptr && !curve->IsEmpty()) {
      curves.push_back(curve);
    }
  }
  return curves;
}

// The interpolation that all keys have, the last one (after which nothing is interpolated) aside; nothing when they
// differ, or when the curves' keys stand at different times.
std::optional<Interpolation> CommonInterpolation(const std::vector<const Curve*>& inCurves) {
  const std::vector<CurveKey>& first = inCurves[0]->GetKeys();
  const Interpolation interpolation = first[0].fInterpolation;
  for (const Curve* curve : inCurves) {
    const std::vector<CurveKey>& keys = curve->GetKeys();
    const bool sameTimes = std::equal(keys.begin(), keys.end(), first.begin(), first.end(),
                                      [](const CurveKey& a, const CurveKey& b) { return a.fTime == b.fTime; });
    const bool sameKind = std::all_of(keys.begin(), keys.end() - 1,
                                      [&](const CurveKey& key) { return key.fInterpolation == interpolation; });
    if (!sameTimes || !sameKind || keys[0].fInterpolation != interpolation) {
      return std::nullopt;
    }
  }
  return interpolation;
}

// What a number of the path is multiplied by on the way to glTF.
real64 PathFactor(const Element& inElement, const NodePath& inPath) {
  return inPath.fChannels == kPositionMask ? 1.0 / kInchesPerMetre
                                           : static_cast<real64>(inElement.GetBase().GetUniformScale());
}

// Of three curves with keys at the same times.
GltfTrack DirectTrack(const std::vector<const Curve*>& inCurves, Interpolation inInterpolation, real64 inFactor) {
  GltfTrack track;
  track.fInterpolation = inInterpolation;
  const auto append = [&](std::size_t inKey, real32 CurveKey::*inPart) {
    for (const Curve* curve : inCurves) {
      track.fValues.push_back(static_cast<real32>(static_cast<real64>(curve->GetKeys()[inKey].*inPart) * inFactor));
    }
  };
  for (std::size_t i = 0; i < inCurves[0]->GetKeys().size(); ++i) {
    track.fTicks.push_back(inCurves[0]->GetKeys()[i].fTime);
    if (inInterpolation == Interpolation::kCubicSpline) {
      append(i, &CurveKey::fInTangent);
    }
    append(i, &CurveKey::fValue);
    if (inInterpolation == Interpolation::kCubicSpline) {
      append(i, &CurveKey::fOutTangent);
    }
  }
  return track;
}

void InsertFramesBetween(int32 inFrom, int32 inTo, real32 inFrameRate, std::set<int32>& ioTicks) {
  auto frame = static_cast<int32>(SecondsOfTicks(inFrom) * static_cast<real64>(inFrameRate));
  for (; FrameToTicks(frame, inFrameRate) < inTo; ++frame) {
    const int32 tick = FrameToTicks(frame, inFrameRate);
    if (tick > inFrom) {
      ioTicks.insert(tick);
    }
  }
}

// Nothing moves from the one key to the other.
bool IsStill(const CurveKey& inFrom, const CurveKey& inTo) {
  return inFrom.fValue == inTo.fValue &&
         (inFrom.fInterpolation != Interpolation::kCubicSpline || (inFrom.fOutTangent == 0 && inTo.fInTangent == 0));
}

void InsertTicks(const Curve& inCurve, bool inIsRotation, real32 inFrameRate, std::set<int32>& ioTicks) {
  const std::vector<CurveKey>& keys = inCurve.GetKeys();
  for (std::size_t i = 0; i < keys.size(); ++i) {
    ioTicks.insert(keys[i].fTime);
    if (i + 1 == keys.size()) {
      return;
    }
    const int32 next = keys[i + 1].fTime;
    if (keys[i].fInterpolation == Interpolation::kStep) {
      ioTicks.insert(std::max(keys[i].fTime, next - 1));
    } else if ((inIsRotation || keys[i].fInterpolation == Interpolation::kCubicSpline) &&
               !IsStill(keys[i], keys[i + 1])) {
      InsertFramesBetween(keys[i].fTime, next, inFrameRate, ioTicks);
    }
  }
}

// With nothing but step keys at the same times the track stays one of steps, else it is linear. `inAppend` adds the
// values of a time.
GltfTrack SampledTrack(const std::vector<const Curve*>& inCurves, bool inIsRotation, real32 inFrameRate,
                       const std::function<void(int32, std::vector<real32>&)>& inAppend) {
  std::set<int32> ticks;
  GltfTrack track;
  if (CommonInterpolation(inCurves) == Interpolation::kStep) {
    track.fInterpolation = Interpolation::kStep;
    for (const CurveKey& key : inCurves[0]->GetKeys()) {
      ticks.insert(key.fTime);
    }
  } else {
    for (const Curve* curve : inCurves) {
      InsertTicks(*curve, inIsRotation, inFrameRate, ticks);
    }
  }
  for (const int32 tick : ticks) {
    track.fTicks.push_back(tick);
    inAppend(tick, track.fValues);
  }
  return track;
}

// The curves of the numbers that glTF has, in its order; null for one without keys.
std::vector<const Curve*> CurvesOf(const ValueTarget& inTarget) {
  std::vector<const Curve*> curves;
  for (std::size_t i = 0; i < inTarget.fCount; ++i) {
    for (uint32 number = 0; number < inTarget.fRule->fWidth; ++number) {
      const Curve* const curve = inTarget.fValues->GetCurve(inTarget.fFirst + i, number);
      curves.push_back(curve == nullptr || curve->IsEmpty() ? nullptr : curve);
    }
  }
  return curves;
}

// Tangents have no limits: a spline may leave them between its keys.
void KeepWithinLimits(GltfTrack& ioTrack, const ValueTarget& inTarget) {
  const std::size_t width = inTarget.GetNumbersInKey();
  const bool isCubic = ioTrack.fInterpolation == Interpolation::kCubicSpline;
  for (std::size_t i = 0; i < ioTrack.fValues.size(); ++i) {
    const bool isTangent = isCubic && width != 0 && i / width % 3 != 1;
    if (!isTangent) {
      const real32 value = std::clamp(ioTrack.fValues[i], inTarget.fRule->fLeast, inTarget.fRule->fMost);
      ioTrack.fIsLimited |= value != std::exchange(ioTrack.fValues[i], value);
    }
  }
}

void AppendQuaternion(const TVector3& inAngles, std::vector<real32>& ioValues) {
  TQuaternion rotation = EulerToQuaternion(0, inAngles);
  const std::size_t size = ioValues.size();
  if (size >= 4 &&
      Dot(rotation, {ioValues[size - 4], ioValues[size - 3], ioValues[size - 2], ioValues[size - 1]}) < 0) {
    rotation = -rotation;
  }
  ioValues.insert(ioValues.end(), {rotation.x, rotation.y, rotation.z, rotation.w});
}

}  // namespace

void AppendPathValue(const NodePath& inPath, const ChannelValues& inValues, std::vector<real32>& ioValues) {
  if (IsRotation(inPath)) {
    return AppendQuaternion(inValues.GetRotation(), ioValues);
  }
  const bool isPosition = inPath.fChannels == kPositionMask;
  const TVector3 vector = isPosition ? inValues.GetPosition() : WholeScale(inValues);
  for (int i = 0; i < 3; ++i) {
    ioValues.push_back(isPosition ? MetresOfInches(vector[i]) : vector[i]);
  }
}

Json PathValue(const NodePath& inPath, const ChannelValues& inValues) {
  std::vector<real32> values;
  AppendPathValue(inPath, inValues, values);
  Json json = Json::array();
  for (const real32 value : values) {
    json.push_back(ShortNumber(value));
  }
  return json;
}

std::optional<GltfTrack> TrackOfCurves(const Element& inElement, const NodePath& inPath, real32 inFrameRate) {
  const std::vector<const Curve*> curves = KeyedCurves(inElement, inPath);
  if (curves.empty()) {
    return std::nullopt;
  }
  const Curve* uniform = inElement.GetCurve(Channel::kUniformScale);
  const bool isPlain = !IsRotation(inPath) && curves.size() == 3 &&
                       (inPath.fChannels == kPositionMask || uniform == nullptr || uniform->IsEmpty());
  const std::optional<Interpolation> interpolation = CommonInterpolation(curves);
  if (isPlain && interpolation) {
    return DirectTrack(curves, *interpolation, PathFactor(inElement, inPath));
  }
  return SampledTrack(curves, IsRotation(inPath), inFrameRate, [&](int32 tick, std::vector<real32>& values) {
    AppendPathValue(inPath, inElement.SampleAt(tick), values);
  });
}

std::optional<GltfTrack> TrackOfCurves(const ValueTarget& inTarget, real32 inFrameRate) {
  std::vector<const Curve*> curves = CurvesOf(inTarget);
  const std::size_t all = curves.size();
  std::erase(curves, nullptr);
  if (curves.empty()) {
    return std::nullopt;
  }
  const std::optional<Interpolation> interpolation = CommonInterpolation(curves);
  if (curves.size() == all && interpolation) {
    GltfTrack track = DirectTrack(curves, *interpolation, 1.0 / inTarget.fRule->GetFactor());
    KeepWithinLimits(track, inTarget);
    return track;
  }
  bool isWithin = true;
  GltfTrack track = SampledTrack(curves, false, inFrameRate, [&](int32 tick, std::vector<real32>& values) {
    for (std::size_t i = 0; i < inTarget.fCount; ++i) {
      isWithin &= AppendValue(*inTarget.fRule, inTarget.fValues->SampleAt(inTarget.fFirst + i, tick), values);
    }
  });
  track.fIsLimited = !isWithin;
  return track;
}

GltfTrack TrackOfBake(const BakeResult& inBake, const std::map<std::size_t, const BakedValue*>& inBaked,
                      const ValueTarget& inTarget) {
  GltfTrack track;
  track.fTicks = inBake.fTimes;
  if (inTarget.fRule->fType == "bool"_id) {
    track.fInterpolation = Interpolation::kStep;
  }
  for (std::size_t frame = 0; frame < inBake.fTimes.size(); ++frame) {
    for (std::size_t i = inTarget.fFirst; i < inTarget.fFirst + inTarget.fCount; ++i) {
      const auto baked = inBaked.find(i);
      const ValueNumbers numbers =
          baked == inBaked.end() ? inTarget.fValues->SampleAt(i, inBake.fTimes[frame]) : baked->second->fFrames[frame];
      track.fIsLimited |= !AppendValue(*inTarget.fRule, numbers, track.fValues);
    }
  }
  return track;
}

bool AppendValue(const ValueRule& inRule, const ValueNumbers& inNumbers, std::vector<real32>& ioValues) {
  bool isWithin = true;
  for (std::size_t i = 0; i < inRule.fWidth; ++i) {
    const auto number = static_cast<real32>(static_cast<real64>(inNumbers[i]) / inRule.GetFactor());
    ioValues.push_back(std::clamp(number, inRule.fLeast, inRule.fMost));
    isWithin &= ioValues.back() == number;
  }
  return isWithin;
}

GltfTrack TrackOfBake(const BakeResult& inBake, const BakedElement& inElement, const NodePath& inPath) {
  GltfTrack track;
  track.fTicks = inBake.fTimes;
  for (const ChannelValues& frame : inElement.fFrames) {
    AppendPathValue(inPath, frame, track.fValues);
  }
  return track;
}

std::vector<real32> SecondsOfTrack(std::span<const int32> inTicks) {
  std::vector<real32> seconds;
  seconds.reserve(inTicks.size());
  for (const int32 tick : inTicks) {
    const auto second = static_cast<real32>(SecondsOfTicks(tick));
    const bool ascends = seconds.empty() || second > seconds.back();
    seconds.push_back(ascends ? second : std::nextafter(seconds.back(), std::numeric_limits<real32>::infinity()));
  }
  return seconds;
}

}  // namespace qlx::host
