#include "TimeLine.h"

#include <cmath>
#include <cstring>

namespace qlx::host {

namespace {

// A track of positions holds a twelfth of the scene unit.
constexpr real64 kPositionUnits = 12.0;

bool IsNumberType(MCID inTypeId) {
  return inTypeId == "qfix"_id || inTypeId == "re32"_id;
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
    if (Find() != nullptr) {
      fTrack->fValue->EditCurve([&](Curve& curve) { curve.MoveKey(fSerial, inTime, fHint); });
    }
  }

  bool MC_CALL IsSelected() override {
    const CurveKey* const key = Find();
    return key != nullptr && key->fSelected;
  }

  IKeyValue* MC_CALL GetValue() override { return this; }

  uint32 MC_CALL GetValueSize() override { return sizeof(real32); }
  MCID MC_CALL GetValueType() override { return "qfix"_id; }

  MCResult MC_CALL ReadValue(void* outBuffer, MCID inTypeId, bool& /*outScratch*/) override {
    const CurveKey* const key = Find();
    if (key == nullptr || outBuffer == nullptr || !IsNumberType(inTypeId)) {
      return MC_E_INVALIDARG;
    }
    const auto value = static_cast<real32>(static_cast<real64>(key->fValue) / fTrack->fUnits);
    std::memcpy(outBuffer, &value, sizeof(value));
    return MC_S_OK;
  }

 private:
  const CurveKey* Find() {
    const Curve* const curve = fTrack->fValue->GetCurve();
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
  if (inValue == nullptr || !IsNumberType(inTypeId)) {
    return MC_E_INVALIDARG;
  }
  real32 given = 0;
  std::memcpy(&given, inValue, sizeof(given));
  const auto value = static_cast<real32>(static_cast<real64>(given) * fTrack->fUnits);
  if (!std::isfinite(value)) {
    return MC_E_INVALIDARG;
  }
  const bool isSet = fTrack->fValue->EditCurve([&](Curve& curve) { curve.SetKey({.fTime = inTime, .fValue = value}); });
  return isSet ? MC_S_OK : MC_E_NOTVALID;
}

uint32 TimeLine::GetKeyCount() {
  const Curve* const curve = fTrack->fValue->GetCurve();
  return curve == nullptr ? 0 : static_cast<uint32>(curve->GetKeys().size());
}

ITimeLineKey* TimeLine::GetKey(uint32 inIndex) {
  const Curve* const curve = fTrack->fValue->GetCurve();
  if (curve == nullptr || inIndex >= curve->GetKeys().size()) {
    return nullptr;
  }
  return GetKeyObject(curve->GetKeys()[inIndex]);
}

void TimeLine::DeleteKeyAt(int32 inTime) {
  const Curve* const curve = fTrack->fValue->GetCurve();
  if (curve != nullptr && !curve->IsEmpty()) {
    fTrack->fValue->EditCurve([&](Curve& edited) { edited.DeleteKeyAt(inTime); });
  }
}

void TimeLine::FindKeyAfter(int32 inTime, SceneTime& outTime, ITimeLineKey** outKey) {
  const Curve* const curve = fTrack->fValue->GetCurve();
  const CurveKey* const key = curve == nullptr ? nullptr : curve->FindAfter(inTime);
  if (key != nullptr) {
    outTime = SceneTime{key->fTime, 0};
  }
  StoreForCaller(outKey, key == nullptr ? nullptr : GetKeyObject(*key));
}

void TimeLine::FindKeyBefore(int32 inTime, ITimeLineKey** outKey, int32 /*inZero*/) {
  const Curve* const curve = fTrack->fValue->GetCurve();
  const CurveKey* const key = curve == nullptr ? nullptr : curve->FindBefore(inTime);
  StoreForCaller(outKey, key == nullptr ? nullptr : GetKeyObject(*key));
}

ITimeLineKey* TimeLine::GetKeyObject(const CurveKey& inKey) {
  const Curve& curve = *fTrack->fValue->GetCurve();
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

ElementTimeLines::ElementTimeLines(Element& inElement) : fLink(std::make_shared<ElementLink>(&inElement)) {
  for (std::size_t i = 0; i < kChannelCount; ++i) {
    const Channel channel = kChannels[i].fChannel;
    const bool isPosition = (MaskOf(channel) & kPositionMask) != 0;
    fTimeLines[i] = MakeHosted<TimeLine>(
        Track{std::make_unique<ElementChannel>(fLink, channel), kChannels[i].fID, isPosition ? kPositionUnits : 1.0});
  }
}

ElementTimeLines::~ElementTimeLines() {
  fLink->fElement = nullptr;
}

void ElementTimeLines::Visit(IForEachTimeLineCallback& inCallback) {
  for (const auto& timeLine : fTimeLines) {
    inCallback.Visit(timeLine.Get(), nullptr);
  }
}

}  // namespace qlx::host
