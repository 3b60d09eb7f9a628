// Time lines: the curves of animated values as components see and edit them.
//
// A time line may be held longer than what it animates; it is empty then, and edits do nothing.
#pragma once

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
  MCID MC_CALL GetAttributeId() override { return fTrack->fID; }

 private:
  ITimeLineKey* GetKeyObject(const CurveKey& inKey);
  void ForgetDeletedKeys(const Curve& inCurve);

  std::shared_ptr<const Track> fTrack;
  // One object a key, made when it is asked for and kept while the key is there.
  std::unordered_map<uint32, TMCCountedPtr<TimeLineKey>> fKeys;
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
  ~ElementTimeLines();

  void Visit(IForEachTimeLineCallback& inCallback) const { fTimeLines.Visit(inCallback); }

 private:
  std::shared_ptr<ElementLink> fLink;
  TimeLines fTimeLines;
};

}  // namespace qlx::host
