#include "GltfAnimation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "GltfPointers.h"
#include "GltfUnits.h"

namespace qlx::host {

namespace {

// The keys of one sampler.
struct Keys {
  const std::vector<int32>* fTicks = nullptr;
  std::vector<real32> fValues;  // glTF's own: with cubic splines each key is in-tangent, value, out-tangent
  Interpolation fInterpolation = Interpolation::kLinear;
  std::size_t fWidth = 3;

  bool IsCubic() const { return fInterpolation == Interpolation::kCubicSpline; }
  std::size_t GetCount() const { return fTicks->size(); }

  // Part 0 is the in-tangent, 1 the value, 2 the out-tangent; tangents of other interpolations are 0.
  real64 Get(std::size_t inKey, std::size_t inPart, std::size_t inComponent) const {
    if (!IsCubic()) {
      return inPart == 1 ? static_cast<real64>(fValues[inKey * fWidth + inComponent]) : 0.0;
    }
    return static_cast<real64>(fValues[(inKey * 3 + inPart) * fWidth + inComponent]);
  }
  QuaternionValue GetQuaternion(std::size_t inKey, std::size_t inPart) const {
    return {Get(inKey, inPart, 0), Get(inKey, inPart, 1), Get(inKey, inPart, 2), Get(inKey, inPart, 3)};
  }
};

Interpolation InterpolationOf(const std::string& inName) {
  if (inName == "STEP") {
    return Interpolation::kStep;
  }
  return inName == "CUBICSPLINE" ? Interpolation::kCubicSpline : Interpolation::kLinear;
}

Channel ChannelAt(Channel inFirst, std::size_t inComponent) {
  return static_cast<Channel>(static_cast<std::size_t>(inFirst) + inComponent);
}

// One component of all keys. `inFactor` is what glTF's numbers are multiplied by.
void FillCurve(Curve& ioCurve, const Keys& inKeys, std::size_t inComponent, real64 inFactor) {
  ioCurve.Reserve(inKeys.GetCount());
  const auto get = [&](std::size_t inKey, std::size_t inPart) {
    return static_cast<real32>(inKeys.Get(inKey, inPart, inComponent) * inFactor);
  };
  for (std::size_t i = 0; i < inKeys.GetCount(); ++i) {
    CurveKey key;
    key.fTime = (*inKeys.fTicks)[i];
    key.fInTangent = get(i, 0);
    key.fValue = get(i, 1);
    key.fOutTangent = get(i, 2);
    key.fInterpolation = inKeys.fInterpolation;
    ioCurve.SetKey(key);
  }
}

// Translation or scale.
void FillVector(Element& ioElement, Channel inFirst, const Keys& inKeys, real64 inFactor) {
  for (std::size_t component = 0; component < 3; ++component) {
    FillCurve(ioElement.GetOrMakeCurve(ChannelAt(inFirst, component)), inKeys, component, inFactor);
  }
}

// The alpha of a colour that has none in glTF gets the same keys, all opaque, as all curves of a value have.
void FillValues(const ValueTarget& inTarget, const Keys& inKeys) {
  const std::size_t width = inTarget.fRule->fWidth;
  for (std::size_t i = 0; i < inTarget.fCount; ++i) {
    const std::size_t value = inTarget.fFirst + i;
    for (uint32 number = 0; number < WidthOfType(inTarget.fRule->fType); ++number) {
      Curve& curve = inTarget.fValues->GetOrMakeCurve(value, number);
      if (number < width) {
        FillCurve(curve, inKeys, i * width + number, inTarget.fRule->GetFactor());
      }
      for (std::size_t key = 0; number >= width && key < inKeys.GetCount(); ++key) {
        curve.SetKey({.fTime = (*inKeys.fTicks)[key], .fValue = inTarget.fValues->GetBase(value)[number]});
      }
      if (inTarget.fRule->fType == "bool"_id) {
        curve.MakeSteps();
      }
    }
  }
}

// How fast the angles change where the quaternion changes by `inTangent` a second.
TVector3 EulerTangent(const QuaternionValue& inValue, const QuaternionValue& inTangent, const TVector3& inAngles) {
  constexpr real64 kStep = 1e-3;  // seconds
  QuaternionValue later = inValue;
  for (std::size_t i = 0; i < later.size(); ++i) {
    later[i] += kStep * inTangent[i];
  }
  return (EulerOfQuaternion(later, inAngles) - inAngles) * static_cast<real32>(1.0 / kStep);
}

void FillRotation(Element& ioElement, const Keys& inKeys) {
  std::array<Curve*, 3> curves{};
  for (std::size_t i = 0; i < curves.size(); ++i) {
    curves[i] = &ioElement.GetOrMakeCurve(ChannelAt(Channel::kRotationX, i));
    curves[i]->Reserve(inKeys.GetCount());
  }
  std::vector<RotationKey> keys;
  TVector3 angles = ioElement.GetBase().GetRotation();
  for (std::size_t i = 0; i < inKeys.GetCount(); ++i) {
    const RotationKey key{(*inKeys.fTicks)[i], inKeys.GetQuaternion(i, 1), inKeys.GetQuaternion(i, 0),
                          inKeys.GetQuaternion(i, 2)};
    angles = EulerOfQuaternion(key.fValue, angles);
    TVector3 in;
    TVector3 out;
    if (inKeys.IsCubic()) {
      in = EulerTangent(key.fValue, key.fInTangent, angles);
      out = EulerTangent(key.fValue, key.fOutTangent, angles);
    }
    for (int axis = 0; axis < 3; ++axis) {
      curves[static_cast<std::size_t>(axis)]->SetKey(
          {key.fTime, angles[axis], in[axis], out[axis], inKeys.fInterpolation, false, 0});
    }
    keys.push_back(key);
  }
  ioElement.SetRotationCurve(std::make_unique<RotationCurve>(inKeys.fInterpolation, std::move(keys)));
}

std::vector<int32> TicksOf(const std::vector<real32>& inSeconds) {
  std::vector<int32> ticks;
  ticks.reserve(inSeconds.size());
  for (const real32 each : inSeconds) {
    const auto tick = static_cast<int32>(std::lround(static_cast<real64>(each) * kTicksPerSecond));
    ticks.push_back(ticks.empty() ? tick : std::max(tick, ticks.back() + 1));
  }
  return ticks;
}

class ClipReader {
 public:
  ClipReader(const Json& inDocument, const GltfModel& inModel, std::size_t inClip)
      : fDocument(inDocument),
        fChannels(inDocument["animations"][inClip]["channels"]),
        fModel(inModel),
        fClip(inModel.fParts.animations[inClip]) {
    for (const tinygltf::AnimationSampler& sampler : fClip.samplers) {
      if (!fTicks.contains(sampler.input)) {
        fTimes.push_back(ReadReals(fModel, sampler.input));
        fTicks[sampler.input] = TicksOf(fTimes.back());
      }
    }
  }

  // What is neither a transform nor one of the values passes through.
  void Fill(const std::vector<Element*>& inElements, const ValueTargets& inValues) const {
    for (std::size_t i = 0; i < fChannels.size(); ++i) {
      const auto target = TargetOf(fDocument, fChannels[i], Place());
      if (!target) {
        continue;
      }
      if (const ValueTarget* const values = inValues.Find(target->fPointer)) {
        FillValues(*values, KeysOf(i, values->GetNumbersInKey()));
      } else if (target->fNode) {
        FillTransform(*inElements[*target->fNode], target->fPath, i);
      }
    }
  }

  const std::vector<std::vector<real32>>& GetTimes() const { return fTimes; }

  int32 GetFirst() const {
    int32 first = 0;
    for (const auto& [input, ticks] : fTicks) {
      first = std::min(first, ticks.front());
    }
    return first;
  }
  int32 GetLast() const {
    int32 last = 0;
    for (const auto& [input, ticks] : fTicks) {
      last = std::max(last, ticks.back());
    }
    return last;
  }

 private:
  void FillTransform(Element& ioElement, const std::string& inPath, std::size_t inChannel) const {
    if (inPath == "rotation") {
      FillRotation(ioElement, KeysOf(inChannel, 4));
    } else if (inPath == "translation") {
      FillVector(ioElement, Channel::kPositionX, KeysOf(inChannel, 3), kInchesPerMetre);
    } else if (inPath == "scale") {
      FillVector(ioElement, Channel::kScaleX, KeysOf(inChannel, 3), 1.0);
    }
  }

  Keys KeysOf(std::size_t inChannel, std::size_t inWidth) const {
    const auto number = static_cast<std::size_t>(fClip.channels[inChannel].sampler);
    const tinygltf::AnimationSampler& sampler = fClip.samplers[number];
    return {&fTicks.at(sampler.input), ReadReals(fModel, sampler.output), InterpolationOf(sampler.interpolation),
            inWidth};
  }

  const Json& fDocument;
  const Json& fChannels;
  const GltfModel& fModel;
  const tinygltf::Animation& fClip;
  std::map<int, std::vector<int32>> fTicks;  // of each accessor of key times
  std::vector<std::vector<real32>> fTimes;
};

bool AllOnFrames(const std::vector<std::vector<real32>>& inTimes, real64 inRate) {
  constexpr real64 kTolerance = 1e-3;   // of a frame
  constexpr real64 kRounding = 1.2e-7;  // what a 32-bit time is off at most, in proportion
  for (const auto& times : inTimes) {
    for (const real32 time : times) {
      const real64 frame = static_cast<real64>(time) * inRate;
      if (std::fabs(frame - std::round(frame)) > kTolerance + kRounding * std::fabs(frame)) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

std::vector<std::string> ListClipNames(const GltfModel& inModel) {
  std::vector<std::string> names;
  for (const tinygltf::Animation& clip : inModel.fParts.animations) {
    names.push_back(clip.name.empty() ? "Animation" + std::to_string(names.size()) : clip.name);
  }
  return names;
}

void ReadClip(const Json& inDocument, const GltfModel& inModel, std::size_t inClip,
              const std::vector<Element*>& inElements, const ValueTargets& inValues, std::optional<real32> inFrameRate,
              Scene& ioScene) {
  const ClipReader reader(inDocument, inModel, inClip);
  reader.Fill(inElements, inValues);
  ioScene.SetFrameRate(inFrameRate ? *inFrameRate : GuessFrameRate(reader.GetTimes()));
  ioScene.SetTimeRange(reader.GetFirst(), reader.GetLast());
}

real32 GuessFrameRate(const std::vector<std::vector<real32>>& inTimes) {
  for (const real32 rate : {24.0f, 25.0f, 30.0f, 48.0f, 50.0f, 60.0f, 100.0f, 120.0f}) {
    if (AllOnFrames(inTimes, static_cast<real64>(rate))) {
      return rate;
    }
  }
  return 30.0f;
}

}  // namespace qlx::host
