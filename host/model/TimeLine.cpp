#include "TimeLine.h"

#include <algorithm>

#include "Element.h"
#include "ValueParameters.h"

namespace qlx::host {

namespace {

// A track of positions holds a twelfth of the scene unit.
constexpr real64 kPositionUnits = 12.0;

// The type of the track itself, and for a plain number also its other name.
bool Understands(const Track& inTrack, MCID inTypeId) {
  const MCID type = inTrack.fValue->GetType();
  return inTypeId == type || (type == "qfix"_id && inTypeId == "re32"_id);
}

bool HasKeyAt(const Curve& inCurve, int32 inTime) {
  const std::vector<CurveKey>& keys = inCurve.GetKeys();
  const auto at = std::lower_bound(keys.begin(), keys.end(), inTime,
                                   [](const CurveKey& inKey, int32 inBound) { return inKey.fTime < inBound; });
  return at != keys.end() && at->fTime == inTime;
}

}  // namespace

// Found again by its serial, so a key that was deleted meanwhile does nothing.
class TimeLineKey final : public HostObject<ITimeLineKey, IKeyValue> {
 public:
  TimeLineKey(std::shared_ptr<const Track> inTrack, uint32 inSerial) : fTrack(std::move(inTrack)), fSerial(inSerial) {}

  int32 MC_CALL GetTime() override {
    const CurveKey* const key = Find();
    return key == nullptr ? 0 : key->fTime;
  }

  void MC_CALL SetTime(int32 inTime) override {
    const CurveKey* const key = Find();
    if (key != nullptr && key->fTime != inTime) {
      fTrack->fValue->EditCurves([&](Curve& curve, uint32 /*number*/) { curve.MoveKey(fSerial, inTime, fHint); });
    }
  }

  bool MC_CALL IsSelected() override {
    const CurveKey* const key = Find();
    return key != nullptr && key->fSelected;
  }

  IKeyValue* MC_CALL GetValue() override { return this; }

  uint32 MC_CALL GetValueSize() override {
    return GetValueType() == "bool"_id ? sizeof(uint8) : WidthOfType(GetValueType()) * sizeof(real32);
  }
  MCID MC_CALL GetValueType() override { return fTrack->fValue->GetType(); }

  MCResult MC_CALL ReadValue(void* outBuffer, MCID inTypeId, bool& /*outScratch*/) override {
    if (outBuffer == nullptr || !Understands(*fTrack, inTypeId)) {
      return MC_E_INVALIDARG;
    }
    ValueNumbers numbers{};
    for (uint32 i = 0; i < fTrack->fValue->GetWidth(); ++i) {
      const CurveKey* const key = Find(i);
      if (key == nullptr) {
        return MC_E_INVALIDARG;
      }
      numbers[i] = static_cast<real32>(static_cast<real64>(key->fValue) / fTrack->fUnits);
    }
    JoinValue(GetValueType(), numbers, outBuffer);
    return MC_S_OK;
  }

 private:
  const CurveKey* Find(uint32 inNumber = 0) {
    const Curve* const curve = fTrack->fValue->GetCurve(inNumber);
    return curve == nullptr ? nullptr : curve->FindSerial(fSerial, fHint);
  }

  std::shared_ptr<const Track> fTrack;
  uint32 fSerial;
  std::size_t fHint = 0;

  friend class TimeLine;
};

TimeLine::TimeLine(Track inTrack) : fTrack(std::make_shared<const Track>(std::move(inTrack))) {}

TimeLine::~TimeLine() = default;

MCResult TimeLine::InsertKey(int32 inTime, const void* inValue, MCID inTypeId) {
  if (inValue == nullptr || !Understands(*fTrack, inTypeId)) {
    return MC_E_INVALIDARG;
  }
  const MCID type = fTrack->fValue->GetType();
  ValueNumbers numbers = SplitValue(type, inValue);
  for (real32& number : numbers) {
    number = static_cast<real32>(static_cast<real64>(number) * fTrack->fUnits);
  }
  if (!IsFiniteValue(type, numbers)) {
    return MC_E_INVALIDARG;
  }
  const bool isSet = fTrack->fValue->EditCurves(
      [&](Curve& curve, uint32 number) { curve.SetKey({.fTime = inTime, .fValue = numbers[number]}); });
  return isSet ? MC_S_OK : MC_E_NOTVALID;
}

uint32 TimeLine::GetKeyCount() {
  const Curve* const curve = fTrack->fValue->GetCurve(0);
  return curve == nullptr ? 0 : static_cast<uint32>(curve->GetKeys().size());
}

ITimeLineKey* TimeLine::GetKey(uint32 inIndex) {
  const Curve* const curve = fTrack->fValue->GetCurve(0);
  if (curve == nullptr || inIndex >= curve->GetKeys().size()) {
    return nullptr;
  }
  return GetKeyObject(curve->GetKeys()[inIndex]);
}

void TimeLine::DeleteKeyAt(int32 inTime) {
  // Without a key there it is no edit, which would count as a change of the scene.
  if (fTrack->fValue->HasKeys() && HasKeyAt(*fTrack->fValue->GetCurve(0), inTime)) {
    fTrack->fValue->EditCurves([&](Curve& edited, uint32 /*number*/) { edited.DeleteKeyAt(inTime); });
  }
}

void TimeLine::FindKeyAfter(int32 inTime, SceneTime& outTime, ITimeLineKey** outKey) {
  const Curve* const curve = fTrack->fValue->GetCurve(0);
  const CurveKey* const key = curve == nullptr ? nullptr : curve->FindAfter(inTime);
  if (key != nullptr) {
    outTime = SceneTime{key->fTime, 0};
  }
  StoreForCaller(outKey, key == nullptr ? nullptr : GetKeyObject(*key));
}

void TimeLine::FindKeyBefore(int32 inTime, ITimeLineKey** outKey, int32 /*inZero*/) {
  const Curve* const curve = fTrack->fValue->GetCurve(0);
  const CurveKey* const key = curve == nullptr ? nullptr : curve->FindBefore(inTime);
  StoreForCaller(outKey, key == nullptr ? nullptr : GetKeyObject(*key));
}

ITimeLineKey* TimeLine::GetKeyObject(const CurveKey& inKey) {
  const Curve& curve = *fTrack->fValue->GetCurve(0);
  if (fKeys.size() > 2 * curve.GetKeys().size()) {
    ForgetDeletedKeys(curve);
  }
  TMCCountedPtr<TimeLineKey>& object = fKeys[inKey.fSerial];
  if (!object) {
    object = MakeHosted<TimeLineKey>(fTrack, inKey.fSerial);
  }
  object->fHint = static_cast<std::size_t>(&inKey - curve.GetKeys().data());
  return object.Get();
}

void TimeLine::ForgetDeletedKeys(const Curve& inCurve) {
  std::unordered_map<uint32, TMCCountedPtr<TimeLineKey>> kept;
  for (const CurveKey& key : inCurve.GetKeys()) {
    if (const auto found = fKeys.find(key.fSerial); found != fKeys.end()) {
      kept.insert(std::move(*found));
    }
  }
  fKeys.swap(kept);
}

void TimeLines::Add(Track inTrack) {
  fTimeLines.push_back(MakeHosted<TimeLine>(std::move(inTrack)));
}

void TimeLines::Visit(IForEachTimeLineCallback& inCallback) const {
  for (const auto& timeLine : fTimeLines) {
    inCallback.Visit(timeLine.Get(), nullptr);
  }
}

ElementTimeLines::ElementTimeLines(Element& inElement) : fLink(std::make_shared<ElementLink>(&inElement)) {
  for (const ChannelInfo& info : kChannels) {
    const bool isPosition = (MaskOf(info.fChannel) & kPositionMask) != 0;
    fTimeLines.Add(
        {std::make_unique<ElementChannel>(fLink, info.fChannel), info.fID, isPosition ? kPositionUnits : 1.0});
  }
  for (const AttachedValues& attached : inElement.GetAttachedValues()) {
    AddTimeLines(fTimeLines, attached.fValues);
  }
}

ElementTimeLines::~ElementTimeLines() {
  fLink->fElement = nullptr;
}

}  // namespace qlx::host
