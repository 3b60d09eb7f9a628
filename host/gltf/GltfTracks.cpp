#include "GltfTracks.h"

#include <algorithm>
#include <cmath>
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
Track DirectTrack(const std::vector<const Curve*>& inCurves, Interpolation inInterpolation, real64 inFactor) {
  Track track;
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
    } else if (inIsRotation || keys[i].fInterpolation == Interpolation::kCubicSpline) {
      InsertFramesBetween(keys[i].fTime, next, inFrameRate, ioTicks);
    }
  }
}

// With nothing but step keys at the same times the track stays one of steps, else it is linear.
Track SampledTrack(const Element& inElement, const NodePath& inPath, const std::vector<const Curve*>& inCurves,
                   real32 inFrameRate) {
  std::set<int32> ticks;
  Track track;
  if (CommonInterpolation(inCurves) == Interpolation::kStep) {
    track.fInterpolation = Interpolation::kStep;
    for (const CurveKey& key : inCurves[0]->GetKeys()) {
      ticks.insert(key.fTime);
    }
  } else {
    for (const Curve* curve : inCurves) {
      InsertTicks(*curve, IsRotation(inPath), inFrameRate, ticks);
    }
  }
  for (const int32 tick : ticks) {
    track.fTicks.push_back(tick);
    AppendPathValue(inPath, inElement.SampleAt(tick), track.fValues);
  }
  return track;
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

std::optional<Track> TrackOfCurves(const Element& inElement, const NodePath& inPath, real32 inFrameRate) {
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
  return SampledTrack(inElement, inPath, curves, inFrameRate);
}

Track TrackOfBake(const BakeResult& inBake, const BakedElement& inElement, const NodePath& inPath) {
  Track track;
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
