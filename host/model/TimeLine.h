// Time lines: the curves of animated values as components see and edit them.
//
// A time line may be held longer than what it animates; it is empty then, and edits do nothing.
#pragma once

#include <array>
#include <memory>
#include <unordered_map>
#include <vector>

#include "AnimatedValue.h"
#include "Channels.h"
#include "ElementChannel.h"
#include "HostObject.h"
#include "HostTimeLines.h"

namespace qlx::host {

// A value as its track holds it: `fUnits` units of the value are one of the track. Keys have the value's type.
struct Track {
  std::unique_ptr<AnimatedValue> fValue;
  MCID fID = 0;
  real64 fUnits = 1;
};

// A track, and the keys that a visitor of its time line deleted: they go together, in one edit.
class VisitedTrack {
 public:
  explicit VisitedTrack(Track inTrack)
      : fTrack(std::move(inTrack)), fType(fTrack.fValue->GetType()), fWidth(WidthOfType(fType)) {}

  MCID GetID() const { return fTrack.fID; }
  MCID GetType() const { return fType; }
  uint32 GetWidth() const { return fWidth; }
  real64 GetUnits() const { return fTrack.fUnits; }
  // The value and its curve, null where there is none, as all deletions left them.
  AnimatedValue& GetValue();
  const Curve* GetCurve(uint32 inNumber = 0) { return GetValue().GetCurve(inNumber); }

  // At once, or in a visit with the visit's end or the next request for the value.
  void DeleteKeyAt(int32 inTime);
  void BeginVisit() { ++fVisits; }
  void EndVisit();

 private:
  void DeleteKeys();

  Track fTrack;
  MCID fType;
  uint32 fWidth;
  int fVisits = 0;
  std::vector<int32> fDeleted;
};

class TimeLineKey;

class TimeLine final : public HostObject<ITimeLine, IAttribute> {
 public:
  explicit TimeLine(Track inTrack);
  ~TimeLine() override;

  // ITimeLine
  IAttribute* MC_CALL GetAttribute() override { return this; }
  MCResult MC_CALL InsertKey(int32 inTime, const void* inValue, MCID inTypeId) override;
  uint32 MC_CALL GetKeyCount() override;
  ITimeLineKey* MC_CALL GetKey(uint32 inIndex) override;
  void MC_CALL DeleteKeyAt(int32 inTime) override;
  void MC_CALL FindKeyAfter(int32 inTime, SceneTime& outTime, ITimeLineKey** outKey) override;
  void MC_CALL FindKeyBefore(int32 inTime, ITimeLineKey** outKey, int32 inZero) override;

  // IAttribute
  MCID MC_CALL GetAttributeId() override { return fTrack->GetID(); }

  void Visit(IForEachTimeLineCallback& inCallback);

 private:
  // How many key objects a time line keeps ready.
  static constexpr std::size_t kRecentKeys = 8;

  ITimeLineKey* GetKeyObject(const Curve& inCurve, const CurveKey& inKey);
  TimeLineKey& FindKeyObject(uint32 inSerial);
  void KeepHeldKey(uint32 inSerial, TMCCountedPtr<TimeLineKey> inKey);

  std::shared_ptr<VisitedTrack> fTrack;
  // A key is one object while somebody holds it. The objects asked for last, each of which becomes the object of
  // another key when nobody holds it: so a walk over any number of keys makes a few. And those that were still held
  // when it was their turn.
  std::array<uint32, kRecentKeys> fRecentSerials{};  // 0 is no key's
  std::array<TMCCountedPtr<TimeLineKey>, kRecentKeys> fRecent;
  std::size_t fNextRecent = 0;
  std::unordered_map<uint32, TMCCountedPtr<TimeLineKey>> fHeld;
  std::size_t fHeldRoom = 0;
};

// The time lines of all values of a thing.
class TimeLines {
 public:
  void Add(Track inTrack);
  void Visit(IForEachTimeLineCallback& inCallback) const;

 private:
  std::vector<TMCCountedPtr<TimeLine>> fTimeLines;
};

// Those of an element: one for each of its channels, and for each value that is attached to it.
class ElementTimeLines {
 public:
  explicit ElementTimeLines(Element& inElement);

  void Visit(IForEachTimeLineCallback& inCallback) const { fTimeLines.Visit(inCallback); }

 private:
  TimeLines fTimeLines;
};

}  // namespace qlx::host
