#include "TimeLine.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Element.h"
#include "ValueParameters.h"

namespace qlx::host {

namespace {

// A track of positions holds a twelfth of the scene unit.
constexpr real64 kPositionUnits = 12.0;

// For how many held key objects there is room before a time line looks for those that are no longer held.
constexpr std::size_t kLeastHeldRoom = 32;

// The type of the track itself, and for a plain number also its other name.
bool Understands(MCID inType, MCID inTypeId) {
  return inTypeId == inType || (inType == "qfix"_id && inTypeId == "re32"_id);
}

}  // namespace

AnimatedValue& VisitedTrack::GetValue() {
  if (!fDeleted.empty()) {
    DeleteKeys();
  }
  return *fTrack.fValue;
}

void VisitedTrack::DeleteKeyAt(int32 inTime) {
  fDeleted.push_back(inTime);
  if (fVisits == 0) {
    DeleteKeys();
  }
}

void VisitedTrack::EndVisit() {
  --fVisits;
  GetValue();
}

void VisitedTrack::DeleteKeys() {
  std::vector<int32> times = std::exchange(fDeleted, {});
  if (!std::is_sorted(times.begin(), times.end())) {
    std::sort(times.begin(), times.end());
  }
  // Without a key there it is no edit, which would count as a change of the scene.
  const Curve* const curve = fTrack.fValue->GetCurve(0);
  const bool hasKey =
      curve != nullptr && std::any_of(times.begin(), times.end(), [&](int32 time) { return curve->HasKeyAt(time); });
  if (hasKey) {
    fTrack.fValue->EditCurves([&](Curve& edited, uint32 /*number*/) { edited.DeleteKeysAt(times); });
  }
}

// Found again by its serial, so a key that was deleted meanwhile does nothing.
class TimeLineKey final : public HostObject<ITimeLineKey, IKeyValue> {
 public:
  TimeLineKey(std::shared_ptr<VisitedTrack> inTrack, uint32 inSerial) : fTrack(std::move(inTrack)), fSerial(inSerial) {}

  int32 MC_CALL GetTime() override {
    const CurveKey* const key = Find();
    return key == nullptr ? 0 : key->fTime;
  }

  void MC_CALL SetTime(int32 inTime) override {
    const CurveKey* const key = Find();
    if (key != nullptr && key->fTime != inTime) {
      fTrack->GetValue().EditCurves([&](Curve& curve, uint32 /*number*/) { curve.MoveKey(fSerial, inTime, fHint); });
    }
  }

  bool MC_CALL IsSelected() override {
    const CurveKey* const key = Find();
    return key != nullptr && key->fSelected;
  }

  IKeyValue* MC_CALL GetValue() override { return this; }

  uint32 MC_CALL GetValueSize() override {
    return GetValueType() == "bool"_id ? sizeof(uint8) : fTrack->GetWidth() * sizeof(real32);
  }
  MCID MC_CALL GetValueType() override { return fTrack->GetType(); }

  MCResult MC_CALL ReadValue(void* outBuffer, MCID inTypeId, bool& /*outScratch*/) override {
    if (outBuffer == nullptr || !Understands(fTrack->GetType(), inTypeId)) {
      return MC_E_INVALIDARG;
    }
    ValueNumbers numbers{};
    const MCID type = fTrack->GetType();
    const real64 units = fTrack->GetUnits();
    for (uint32 i = 0; i < fTrack->GetWidth(); ++i) {
      const CurveKey* const key = Find(i);
      if (key == nullptr) {
        return MC_E_INVALIDARG;
      }
      numbers[i] = units == 1 ? key->fValue : static_cast<real32>(static_cast<real64>(key->fValue) / units);
    }
    if (type == "qfix"_id) {
      std::memcpy(outBuffer, numbers.data(), sizeof(real32));  // most are: at once
    } else {
      JoinValue(type, numbers, outBuffer);
    }
    return MC_S_OK;
  }

 private:
  const CurveKey* Find(uint32 inNumber = 0) {
    const Curve* const curve = fTrack->GetCurve(inNumber);
    if (curve == nullptr) {
      return nullptr;
    }
    const std::vector<CurveKey>& keys = curve->GetKeys();
    const bool isInPlace = fHint < keys.size() && keys[fHint].fSerial == fSerial;  // most are: at once
    return isInPlace ? &keys[fHint] : curve->FindSerial(fSerial, fHint);
  }

  std::shared_ptr<VisitedTrack> fTrack;
  uint32 fSerial;
  std::size_t fHint = 0;

  friend class TimeLine;
};

TimeLine::TimeLine(Track inTrack) : fTrack(std::make_shared<VisitedTrack>(std::move(inTrack))) {}

TimeLine::~TimeLine() = default;

MCResult TimeLine::InsertKey(int32 inTime, const void* inValue, MCID inTypeId) {
  if (inValue == nullptr || !Understands(fTrack->GetType(), inTypeId)) {
    return MC_E_INVALIDARG;
  }
  const MCID type = fTrack->GetType();
  ValueNumbers numbers = SplitValue(type, inValue);
  for (real32& number : numbers) {
    number = static_cast<real32>(static_cast<real64>(number) * fTrack->GetUnits());
  }
  if (!IsFiniteValue(type, numbers)) {
    return MC_E_INVALIDARG;
  }
  const bool isSet = fTrack->GetValue().EditCurves(
      [&](Curve& curve, uint32 number) { curve.SetKey({.fTime = inTime, .fValue = numbers[number]}); });
  return isSet ? MC_S_OK : MC_E_NOTVALID;
}

uint32 TimeLine::GetKeyCount() {
  const Curve* const curve = fTrack->GetCurve();
  return curve == nullptr ? 0 : static_cast<uint32>(curve->GetKeys().size());
}

ITimeLineKey* TimeLine::GetKey(uint32 inIndex) {
  const Curve* const curve = fTrack->GetCurve();
  if (curve == nullptr || inIndex >= curve->GetKeys().size()) {
    return nullptr;
  }
  return GetKeyObject(*curve, curve->GetKeys()[inIndex]);
}

void TimeLine::DeleteKeyAt(int32 inTime) {
  fTrack->DeleteKeyAt(inTime);
}

void TimeLine::FindKeyAfter(int32 inTime, SceneTime& outTime, ITimeLineKey** outKey) {
  const Curve* const curve = fTrack->GetCurve();
  const CurveKey* const key = curve == nullptr ? nullptr : curve->FindAfter(inTime);
  if (key != nullptr) {
    outTime = SceneTime{key->fTime, 0};
  }
  StoreForCaller(outKey, key == nullptr ? nullptr : GetKeyObject(*curve, *key));
}

void TimeLine::FindKeyBefore(int32 inTime, ITimeLineKey** outKey, int32 /*inZero*/) {
  const Curve* const curve = fTrack->GetCurve();
  const CurveKey* const key = curve == nullptr ? nullptr : curve->FindBefore(inTime);
  StoreForCaller(outKey, key == nullptr ? nullptr : GetKeyObject(*curve, *key));
}

void TimeLine::Visit(IForEachTimeLineCallback& inCallback) {
  const TMCCountedPtr<TimeLine> keep = MCShare(this);
  fTrack->BeginVisit();
  try {
    inCallback.Visit(this, nullptr);
  } catch (...) {
    fTrack->EndVisit();
    throw;
  }
  fTrack->EndVisit();
}

ITimeLineKey* TimeLine::GetKeyObject(const Curve& inCurve, const CurveKey& inKey) {
  TimeLineKey& object = FindKeyObject(inKey.fSerial);
  object.fHint = static_cast<std::size_t>(&inKey - inCurve.GetKeys().data());
  return &object;
}

TimeLineKey& TimeLine::FindKeyObject(uint32 inSerial) {
  std::size_t at = kRecentKeys;
  for (std::size_t i = 0; i < kRecentKeys; ++i) {  // all of them: faster than to stop
    at = fRecentSerials[i] == inSerial ? i : at;
  }
  if (at < kRecentKeys) {
    return *fRecent[at];
  }
  if (!fHeld.empty()) {
    if (const auto held = fHeld.find(inSerial); held != fHeld.end()) {
      return *held->second;
    }
  }
  at = fNextRecent++ % kRecentKeys;
  TMCCountedPtr<TimeLineKey>& recent = fRecent[at];
  if (!recent || recent->IsShared()) {
    auto fresh = MakeHosted<TimeLineKey>(fTrack, inSerial);
    if (recent) {
      KeepHeldKey(fRecentSerials[at], recent);
    }
    recent = std::move(fresh);
  }
  fRecentSerials[at] = recent->fSerial = inSerial;
  return *recent;
}

void TimeLine::KeepHeldKey(uint32 inSerial, TMCCountedPtr<TimeLineKey> inKey) {
  if (fHeld.size() >= fHeldRoom) {
    std::erase_if(fHeld, [](const auto& held) { return !held.second->IsShared(); });
    fHeldRoom = std::max(kLeastHeldRoom, 2 * fHeld.size());
  }
  fHeld.emplace(inSerial, std::move(inKey));
}

void TimeLines::Add(Track inTrack) {
  fTimeLines.push_back(MakeHosted<TimeLine>(std::move(inTrack)));
}

void TimeLines::Visit(IForEachTimeLineCallback& inCallback) const {
  for (const auto& timeLine : fTimeLines) {
    timeLine->Visit(inCallback);
  }
}

ElementTimeLines::ElementTimeLines(Element& inElement) {
  for (const ChannelInfo& info : kChannels) {
    const bool isPosition = (MaskOf(info.fChannel) & kPositionMask) != 0;
    fTimeLines.Add(
        {std::make_unique<ElementChannel>(inElement, info.fChannel), info.fID, isPosition ? kPositionUnits : 1.0});
  }
  for (const AttachedValues& attached : inElement.GetAttachedValues()) {
    AddTimeLines(fTimeLines, attached.fValues);
  }
}

}  // namespace qlx::host
