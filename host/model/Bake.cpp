#include "Bake.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>

#include "MCFrameTime.h"

namespace qlx::host {

namespace {

// The frame at a time when it lies within a tick of one, else the one before or after.
int32 FrameNear(int32 inTime, real32 inRate, bool inAfter) {
  const real64 frame = static_cast<real64>(inTime) * static_cast<real64>(inRate) / kTicksPerSecond;
  const real64 aTick = static_cast<real64>(inRate) / kTicksPerSecond;
  const real64 nearest = std::round(frame);
  if (std::fabs(frame - nearest) <= aTick) {
    return TruncateToInt32(nearest);
  }
  return TruncateToInt32(inAfter ? std::ceil(frame) : std::floor(frame));
}

[[noreturn]] void ThrowBadRange(BakeRange inRange, const char* inProblem) {
  throw UserError("frames " + std::to_string(inRange.fFirst) + " to " + std::to_string(inRange.fLast), inProblem);
}

std::vector<int32> TimesOf(BakeRange inRange, real32 inRate) {
  if (inRange.fFirst > inRange.fLast) {
    ThrowBadRange(inRange, "the range is empty");
  }
  constexpr const char* kTooFar =
      "the frames are too far from the start, or too many a second, to have times of their own";
  // Times that do not fit stop at the last tick that there is: seen at the ends, before room is made for all of them.
  if (inRange.fFirst < inRange.fLast &&
      (FrameToTicks(inRange.fLast - 1, inRate) == FrameToTicks(inRange.fLast, inRate) ||
       FrameToTicks(inRange.fFirst, inRate) == FrameToTicks(inRange.fFirst + 1, inRate))) {
    ThrowBadRange(inRange, kTooFar);
  }
  std::vector<int32> times;
  times.reserve(static_cast<std::size_t>(int64{inRange.fLast} - inRange.fFirst + 1));
  for (int64 frame = inRange.fFirst; frame <= inRange.fLast; ++frame) {
    const int32 time = FrameToTicks(static_cast<int32>(frame), inRate);
    if (!times.empty() && time <= times.back()) {
      ThrowBadRange(inRange, kTooFar);
    }
    times.push_back(time);
  }
  return times;
}

// Collects the rows of a bake, frame by frame. An element gets rows with its first change; its frames up to then are
// what its curves and base values give.
class Baker {
 public:
  Baker(Scene& inScene, BakeRange inRange) : fScene(inScene) {
    fResult.fRange = inRange;
    fResult.fTimes = TimesOf(inRange, inScene.GetFrameRate());
  }

  void AddFrame(std::size_t inFrame) {
    fScene.Evaluate(fResult.fTimes[inFrame]);
    for (const Element* const element : fScene.GetAnimated()) {
      Check(*element, inFrame);
    }
    fNextPlace = 0;
    for (Element* const element : fScene.GetTouched()) {
      const ChannelMask modified = element->GetModifiedChannels();
      if (modified != 0) {
        Check(*element, inFrame);
        Find(*element, inFrame).fChannels |= modified;
      }
    }
    for (BakedElement& baked : fResult.fElements) {
      baked.fFrames.push_back(baked.fElement->GetEvaluated());
      baked.fBefore.push_back(baked.fElement->GetUnmodified());
    }
    AddValues(inFrame);
  }

  BakeResult Finish() {
    std::unordered_map<const Element*, std::size_t> places;
    const auto& order = fScene.GetTreeOrder();
    for (std::size_t i = 0; i < order.size(); ++i) {
      places.emplace(order[i], i);
    }
    std::ranges::sort(fResult.fElements, {},
                      [&places](const BakedElement& baked) { return places.at(baked.fElement); });
    std::unordered_map<const ValueSet*, std::size_t> sets;
    for (const auto& values : fScene.GetValueSets()) {
      sets.emplace(values.get(), sets.size());
    }
    std::ranges::sort(fResult.fValues, {}, [&sets](const BakedValue& baked) {
      return std::pair(sets.at(baked.fValues.get()), baked.fIndex);
    });
    return std::move(fResult);
  }

 private:
  void Check(const Element& inElement, std::size_t inFrame) const {
    for (const ChannelInfo& info : kChannels) {
      if (!std::isfinite(inElement.GetValue(info.fChannel))) {
        ThrowNotFinite("element \"" + inElement.GetNameText() + "\", " + info.fName, inFrame);
      }
    }
  }

  void AddValues(std::size_t inFrame) {
    for (const ValueSet* const values : fScene.GetAnimatedValues()) {
      Check(*values, inFrame);
    }
    for (ValueSet* const values : fScene.GetTouchedValues()) {
      for (std::size_t i = 0; i < values->GetCount(); ++i) {
        if (values->IsModified(i)) {
          FindValue(*values, i, inFrame);
        }
      }
    }
    for (BakedValue& baked : fResult.fValues) {
      baked.fFrames.push_back(baked.fValues->GetEvaluated(baked.fIndex));
      baked.fBefore.push_back(baked.fValues->GetUnmodified(baked.fIndex));
    }
  }

  // A write that is not finite is refused, but a curve may run past the largest number.
  void Check(const ValueSet& inValues, std::size_t inFrame) const {
    for (std::size_t i = 0; i < inValues.GetCount(); ++i) {
      const ValueInfo& info = inValues.GetInfo(i);
      if (!IsFiniteValue(info.fType, inValues.GetEvaluated(i))) {
        ThrowNotFinite(inValues.GetLabel() + ", " + info.fName, inFrame);
      }
    }
  }

  void FindValue(ValueSet& inValues, std::size_t inIndex, std::size_t inFrame) {
    const auto [place, isNew] = fValuePlaces.try_emplace({&inValues, inIndex}, fResult.fValues.size());
    if (isNew) {
      BakedValue& baked = fResult.fValues.emplace_back();
      baked.fValues = inValues.shared_from_this();
      baked.fIndex = inIndex;
      for (std::size_t frame = 0; frame < inFrame; ++frame) {
        baked.fBefore.push_back(inValues.SampleAt(inIndex, fResult.fTimes[frame]));
      }
      baked.fFrames = baked.fBefore;
    }
  }

  [[noreturn]] void ThrowNotFinite(const std::string& inWhat, std::size_t inFrame) const {
    const int64 frame = int64{fResult.fRange.fFirst} + static_cast<int64>(inFrame);
    throw UserError(inWhat + ", frame " + std::to_string(frame), "the value is not a finite number");
  }

  // Modifiers write in much the same order at each frame: most are behind the one that was found last.
  BakedElement& Find(Element& inElement, std::size_t inFrame) {
    if (fNextPlace < fResult.fElements.size() && fResult.fElements[fNextPlace].fElement == &inElement) {
      return fResult.fElements[fNextPlace++];
    }
    const auto [place, isNew] = fPlaces.try_emplace(&inElement, fResult.fElements.size());
    if (isNew) {
      BakedElement& baked = fResult.fElements.emplace_back();
      baked.fElement = &inElement;
      baked.fFrames.reserve(fResult.fTimes.size());
      baked.fBefore.reserve(fResult.fTimes.size());
      for (std::size_t frame = 0; frame < inFrame; ++frame) {
        baked.fBefore.push_back(inElement.SampleAt(fResult.fTimes[frame]));
      }
      baked.fFrames = baked.fBefore;
    }
    fNextPlace = place->second + 1;
    return fResult.fElements[place->second];
  }

  Scene& fScene;
  BakeResult fResult;
  std::unordered_map<const Element*, std::size_t> fPlaces;
  std::size_t fNextPlace = 0;  // where `Find` looks first
  std::map<std::pair<const ValueSet*, std::size_t>, std::size_t> fValuePlaces;
};

}  // namespace

BakeRange FramesOf(const Scene& inScene) {
  Scene& scene = const_cast<Scene&>(inScene);  // the interface's own operation is not const
  const real32 rate = scene.GetFrameRate();
  return {FrameNear(inScene.GetStart(), rate, false), FrameNear(inScene.GetEnd(), rate, true)};
}

BakeResult Bake(Scene& inScene, BakeRange inRange, const std::function<void(int32, int32)>& inProgress) {
  Baker baker(inScene, inRange);
  const int64 total = int64{inRange.fLast} - inRange.fFirst + 1;
  for (int64 frame = 0; frame < total; ++frame) {
    baker.AddFrame(static_cast<std::size_t>(frame));
    if (inProgress) {
      inProgress(static_cast<int32>(frame + 1), static_cast<int32>(total));
    }
  }
  return baker.Finish();
}

}  // namespace qlx::host
