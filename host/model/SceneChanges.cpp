#include "SceneChanges.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <set>
#include <span>
#include <unordered_map>

#include "Bake.h"
#include "MCFrameTime.h"
#include "ParameterRows.h"
#include "ValueParameters.h"

namespace qlx::host {

namespace {

using Curves = std::span<const Curve>;

// ---- places ----

TrackPlace PlaceOf(const Element& inElement, const ChannelInfo& inChannel) {
  return {inElement.GetNameText(), inChannel.fPath, "qfix"_id};
}

// Where the values of sets stand, looked up when the first one is asked for: few commands change any.
class SetPlaces {
 public:
  explicit SetPlaces(const Scene& inScene) : fScene(inScene) {}

  TrackPlace Find(const ValueSet& inSet, std::size_t inIndex) {
    if (fPaths.empty()) {
      for (Element* const element : fScene.GetTreeOrder()) {
        Note(*element);
      }
    }
    const auto found = fPaths.find({&inSet, inIndex});
    const ValueInfo& info = inSet.GetInfo(inIndex);
    return found == fPaths.end() ? TrackPlace{inSet.GetLabel(), info.fName, info.fType} : found->second;
  }

 private:
  void Note(Element& inElement) {
    ForEachParameter(inElement, [&](const ParameterRow& row) {
      const FoundParameter found = FindParameter(inElement, row.fPath);
      const auto* const value =
          found.fParameter ? dynamic_cast<SetValue*>(found.fParameter->GetValueAccess()) : nullptr;
      if (value != nullptr) {  // the value itself comes ahead of its numbers, and is kept
        fPaths.try_emplace({&value->GetSet(), value->GetIndex()},
                           TrackPlace{inElement.GetNameText(), row.fPath, row.fType});
      }
    });
  }

  const Scene& fScene;
  std::map<std::pair<const ValueSet*, std::size_t>, TrackPlace> fPaths;
};

// ---- keys ----

bool IsSameNumber(real32 inA, real32 inB) {
  return std::bit_cast<uint32>(inA) == std::bit_cast<uint32>(inB);
}

bool IsSameNumbers(const ValueNumbers& inA, const ValueNumbers& inB) {
  return std::equal(inA.begin(), inA.end(), inB.begin(), IsSameNumber);
}

// All curves of a value have the same keys.
KeyState KeyOf(Curves inCurves, std::size_t inKey) {
  KeyState key{inCurves[0].GetKeys()[inKey].fTime, {}};
  for (std::size_t i = 0; i < inCurves.size(); ++i) {
    key.fNumbers[i] = inCurves[i].GetKeys()[inKey].fValue;
  }
  return key;
}

bool IsSameKey(Curves inBefore, std::size_t inKeyBefore, Curves inAfter, std::size_t inKeyAfter) {
  for (std::size_t i = 0; i < inBefore.size(); ++i) {
    const CurveKey& before = inBefore[i].GetKeys()[inKeyBefore];
    const CurveKey& after = inAfter[i].GetKeys()[inKeyAfter];
    if (before.fTime != after.fTime || before.fInterpolation != after.fInterpolation ||
        !IsSameNumber(before.fValue, after.fValue) || !IsSameNumber(before.fInTangent, after.fInTangent) ||
        !IsSameNumber(before.fOutTangent, after.fOutTangent)) {
      return false;
    }
  }
  return true;
}

std::size_t CountKeys(Curves inCurves) {
  return inCurves.empty() ? 0 : inCurves[0].GetKeys().size();
}

// Pairs a track's keys of before with those of after: a key is the same one by its serial, which it keeps when it
// moves; a key that was set anew is the one that stood at its time.
class KeyPairs {
 public:
  KeyPairs(Curves inBefore, Curves inAfter) : fBefore(inBefore), fAfter(inAfter) {
    std::unordered_map<uint32, std::size_t> bySerial;
    std::map<int32, std::size_t> newByTime;
    for (std::size_t i = 0; i < CountKeys(fAfter); ++i) {
      bySerial.emplace(fAfter[0].GetKeys()[i].fSerial, i);
    }
    std::vector<std::size_t> gone;
    for (std::size_t i = 0; i < CountKeys(fBefore); ++i) {
      const auto found = bySerial.find(fBefore[0].GetKeys()[i].fSerial);
      if (found == bySerial.end()) {
        gone.push_back(i);
      } else {
        AddPair(i, found->second);
        bySerial.erase(found);
      }
    }
    for (const auto& [serial, key] : bySerial) {
      newByTime.emplace(fAfter[0].GetKeys()[key].fTime, key);
    }
    for (const std::size_t key : gone) {
      const auto found = newByTime.find(fBefore[0].GetKeys()[key].fTime);
      if (found == newByTime.end()) {
        fChanges.push_back({KeyOf(fBefore, key), std::nullopt});
      } else {
        AddPair(key, found->second);
        newByTime.erase(found);
      }
    }
    for (const auto& [time, key] : newByTime) {
      fChanges.push_back({std::nullopt, KeyOf(fAfter, key)});
    }
  }

  std::vector<KeyChange> Take() {
    const auto time = [](const KeyChange& change) { return (change.fBefore ? change.fBefore : change.fAfter)->fTime; };
    std::stable_sort(fChanges.begin(), fChanges.end(),
                     [&](const KeyChange& a, const KeyChange& b) { return time(a) < time(b); });
    return std::move(fChanges);
  }

 private:
  void AddPair(std::size_t inBefore, std::size_t inAfter) {
    if (!IsSameKey(fBefore, inBefore, fAfter, inAfter)) {
      fChanges.push_back({KeyOf(fBefore, inBefore), KeyOf(fAfter, inAfter)});
    }
  }

  Curves fBefore;
  Curves fAfter;
  std::vector<KeyChange> fChanges;
};

TrackChange CompareTrack(Curves inBefore, Curves inAfter, const ValueNumbers& inBaseBefore,
                         const ValueNumbers& inBaseAfter) {
  return {{},           CountKeys(inBefore), KeyPairs(inBefore, inAfter).Take(),
          inBaseBefore, inBaseAfter,         !IsSameNumbers(inBaseBefore, inBaseAfter)};
}

void KeepChange(TrackChange inChange, TrackPlace inPlace, std::vector<TrackChange>& ioChanges) {
  inChange.fPlace = std::move(inPlace);
  ioChanges.push_back(std::move(inChange));
}

bool IsChange(const TrackChange& inChange) {
  return !inChange.fKeys.empty() || inChange.fIsBaseChanged;
}

Curves CurvesOf(const SavedElement& inSaved, Channel inChannel) {
  return inSaved.fCurves.empty() ? Curves() : Curves(&inSaved.fCurves[IndexOf(inChannel)], 1);
}

void CompareElement(const Element& inElement, const SavedElement& inBefore, std::vector<TrackChange>& ioChanges) {
  const SavedElement after = inElement.SaveValues();
  for (const ChannelInfo& info : kChannels) {
    TrackChange change = CompareTrack(CurvesOf(inBefore, info.fChannel), CurvesOf(after, info.fChannel),
                                      {inBefore.fBase[info.fChannel]}, {after.fBase[info.fChannel]});
    if (IsChange(change)) {
      KeepChange(std::move(change), PlaceOf(inElement, info), ioChanges);
    }
  }
}

void CompareSet(const ValueSet& inSet, const SavedValueSet& inBefore, SetPlaces& ioPlaces,
                std::vector<TrackChange>& ioChanges) {
  const SavedValueSet after = inSet.SaveValues();
  for (std::size_t i = 0; i < inBefore.fValues.size(); ++i) {
    TrackChange change = CompareTrack(inBefore.fValues[i].fCurves, after.fValues[i].fCurves, inBefore.fValues[i].fBase,
                                      after.fValues[i].fBase);
    if (IsChange(change)) {
      KeepChange(std::move(change), ioPlaces.Find(inSet, i), ioChanges);
    }
  }
}

using Modifiers = std::vector<TMCCountedPtr<Modifier>>;

void CompareModifiers(Element& inElement, const Modifiers& inBefore, std::vector<ModifierChange>& ioChanges) {
  const auto missing = [&](const Modifiers& from, const Modifiers& in, bool isAdded) {
    for (const TMCCountedPtr<Modifier>& each : from) {
      if (std::none_of(in.begin(), in.end(), [&](const auto& other) { return other.Get() == each.Get(); })) {
        ioChanges.push_back({&inElement, each, isAdded});
      }
    }
  };
  missing(inBefore, inElement.GetModifiers(), false);
  missing(inElement.GetModifiers(), inBefore, true);
}

// ---- motion ----

void AddKeyTimes(Curves inCurves, std::set<int32>& ioTimes) {
  for (std::size_t i = 0; i < CountKeys(inCurves); ++i) {
    ioTimes.insert(inCurves[0].GetKeys()[i].fTime);
  }
}

std::set<int32> TimesOfFrames(Scene& ioScene) {
  const BakeRange range = FramesOf(ioScene);
  std::set<int32> times;
  for (int64 frame = range.fFirst; frame <= range.fLast; ++frame) {
    times.insert(FrameToTicks(static_cast<int32>(frame), ioScene.GetFrameRate()));
  }
  return times;
}

// The values of a thing at some times, and then the same with its values of before.
template <class Sample, class Thing, class Saved>
auto SampleBoth(Thing& ioThing, const Saved& inBefore, const std::set<int32>& inTimes, const Sample& inSample) {
  const auto all = [&] {
    std::vector<decltype(inSample(0))> rows;
    rows.reserve(inTimes.size());
    for (const int32 time : inTimes) {
      rows.push_back(inSample(time));
    }
    return rows;
  };
  auto after = all();
  const Saved now = ioThing.SaveValues();
  ioThing.RestoreValues(inBefore);
  auto before = all();
  ioThing.RestoreValues(now);
  return std::pair(std::move(before), std::move(after));
}

// `inGet(row)` is the number of a row that is compared.
template <class Rows, class Get>
MotionChange FindMost(const Rows& inBefore, const Rows& inAfter, const std::set<int32>& inTimes, const Get& inGet) {
  MotionChange most;
  std::size_t row = 0;
  for (const int32 time : inTimes) {
    const real32 away = std::abs(inGet(inAfter[row]) - inGet(inBefore[row]));
    ++row;
    if (away > most.fMost) {
      most.fMost = away;
      most.fTime = time;
    }
  }
  return most;
}

void AddMotion(MotionChange inMotion, TrackPlace inPlace, std::vector<MotionChange>& ioMotions) {
  if (inMotion.fMost > 0) {
    inMotion.fPlace = std::move(inPlace);
    ioMotions.push_back(std::move(inMotion));
  }
}

void CompareMotion(Element& ioElement, const SavedElement& inBefore, std::set<int32> inTimes,
                   std::vector<MotionChange>& ioMotions) {
  const SavedElement after = ioElement.SaveValues();
  for (const ChannelInfo& info : kChannels) {
    AddKeyTimes(CurvesOf(inBefore, info.fChannel), inTimes);
    AddKeyTimes(CurvesOf(after, info.fChannel), inTimes);
  }
  const auto [then, now] =
      SampleBoth(ioElement, inBefore, inTimes, [&](int32 time) { return ioElement.SampleAt(time); });
  for (const ChannelInfo& info : kChannels) {
    AddMotion(FindMost(then, now, inTimes, [&](const ChannelValues& row) { return row[info.fChannel]; }),
              PlaceOf(ioElement, info), ioMotions);
  }
}

void CompareMotion(ValueSet& ioSet, const SavedValueSet& inBefore, const std::set<int32>& inTimes, SetPlaces& ioPlaces,
                   std::vector<MotionChange>& ioMotions) {
  const SavedValueSet after = ioSet.SaveValues();
  for (std::size_t i = 0; i < inBefore.fValues.size(); ++i) {
    std::set<int32> times = inTimes;
    AddKeyTimes(inBefore.fValues[i].fCurves, times);
    AddKeyTimes(after.fValues[i].fCurves, times);
    const auto [then, now] = SampleBoth(ioSet, inBefore, times, [&](int32 time) { return ioSet.SampleAt(i, time); });
    for (std::size_t number = 0; number < WidthOfType(ioSet.GetInfo(i).fType); ++number) {
      MotionChange motion = FindMost(then, now, times, [&](const ValueNumbers& row) { return row[number]; });
      motion.fNumber = number;
      AddMotion(std::move(motion), ioPlaces.Find(ioSet, i), ioMotions);
    }
  }
}

}  // namespace

std::size_t TrackChange::CountRemoved() const {
  return static_cast<std::size_t>(
      std::count_if(fKeys.begin(), fKeys.end(), [](const KeyChange& change) { return !change.fAfter; }));
}

SceneCopy::SceneCopy(Scene& inScene) : fScene(inScene) {
  for (Element* const element : fScene.GetTreeOrder()) {
    fElements.push_back({MCShare(element), element->SaveValues(), element->GetModifiers()});
  }
  for (const std::shared_ptr<ValueSet>& set : fScene.GetValueSets()) {
    fSets.push_back({set, set->SaveValues()});
  }
}

SceneChanges SceneCopy::FindChanges() const {
  SceneChanges changes;
  SetPlaces places(fScene);
  for (const CopiedElement& copy : fElements) {
    if (!copy.fElement->HasValues(copy.fValues)) {
      CompareElement(*copy.fElement, copy.fValues, changes.fTracks);
    }
    CompareModifiers(*copy.fElement, copy.fModifiers, changes.fModifiers);
  }
  for (const CopiedSet& copy : fSets) {
    if (!copy.fSet->HasValues(copy.fValues)) {
      CompareSet(*copy.fSet, copy.fValues, places, changes.fTracks);
    }
  }
  return changes;
}

std::vector<MotionChange> SceneCopy::FindMotion() const {
  std::vector<MotionChange> motions;
  SetPlaces places(fScene);
  const std::set<int32> times = TimesOfFrames(fScene);
  for (const CopiedElement& copy : fElements) {
    if (!copy.fElement->HasValues(copy.fValues)) {
      CompareMotion(*copy.fElement, copy.fValues, times, motions);
    }
  }
  for (const CopiedSet& copy : fSets) {
    if (!copy.fSet->HasValues(copy.fValues)) {
      CompareMotion(*copy.fSet, copy.fValues, times, places, motions);
    }
  }
  return motions;
}

}  // namespace qlx::host
