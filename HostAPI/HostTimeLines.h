// Time lines and their keys, as the host offers them. All are implemented by the host, except the callback.
//
// Time is in ticks, 180000 to the second. A time line speaks in the units of its track: the tracks 'XCOO', 'YCOO' and
// 'ZCOO' hold one twelfth of the scene unit, rotations hold radians.
#pragma once

#include "MCUnknown.h"

namespace qlx {

class ITimeLine;

// A moment of the scene.
struct SceneTime {
  int32 fTicks = 0;
  uint32 fExtra = 0;  // a second word, set to 0
};

// What a time line animates.
class IAttribute : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5D6641E1-5019-47BD-8A24-8C04F7B4DD1B"_guid;

  virtual MCID MC_CALL GetAttributeId() = 0;

 protected:
  ~IAttribute() = default;
};

// The value of a key, owned by it.
class IKeyValue : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "A510B677-55CA-4B2C-817C-FC90664C55C1"_guid;

  // Size in bytes. At most `kMaxSize`.
  virtual uint32 MC_CALL GetValueSize() = 0;
  // The type word; 'qfix' is a plain 32-bit real.
  virtual MCID MC_CALL GetValueType() = 0;
  // Copies the value into `outBuffer` in the form of `inTypeId`. An unknown type answers a failure and writes nothing.
  virtual MCResult MC_CALL ReadValue(void* outBuffer, MCID inTypeId, bool& outScratch) = 0;

  static constexpr uint32 kMaxSize = 64;

 protected:
  ~IKeyValue() = default;
};

// A key. It may be held after it was deleted: its operations then change nothing.
class ITimeLineKey : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "A626250B-DDBD-4C59-88C2-476038CC2DB0"_guid;

  virtual int32 MC_CALL GetTime() = 0;
  // Moves the key. A key that stands at that time already is replaced.
  virtual void MC_CALL SetTime(int32 inTime) = 0;
  // The selection mark of the time line editor.
  virtual bool MC_CALL IsSelected() = 0;
  // Owned by the key.
  virtual IKeyValue* MC_CALL GetValue() = 0;

 protected:
  ~ITimeLineKey() = default;
};

class ITimeLine : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "B60AB181-D48E-4FA2-9AB7-74B0FB59C011"_guid;

  // Owned by the time line; may be null.
  virtual IAttribute* MC_CALL GetAttribute() = 0;
  // Adds or replaces the key at this time, with linear interpolation. A type that the track cannot hold, and a value
  // that is not finite, is refused: nothing changes.
  virtual MCResult MC_CALL InsertKey(int32 inTime, const void* inValue, MCID inTypeId) = 0;
  // Keys in time order; null past the end. The answer is not counted: hold a key to keep it, as an object that nobody
  // holds may become the object of another key.
  virtual uint32 MC_CALL GetKeyCount() = 0;
  virtual ITimeLineKey* MC_CALL GetKey(uint32 inIndex) = 0;
  // Removes the key at exactly this time, if there is one.
  virtual void MC_CALL DeleteKeyAt(int32 inTime) = 0;
  // The first key after, the last key before this time, itself not included; null when there is none.
  virtual void MC_CALL FindKeyAfter(int32 inTime, SceneTime& outTime, ITimeLineKey** outKey) = 0;
  virtual void MC_CALL FindKeyBefore(int32 inTime, ITimeLineKey** outKey, int32 inZero) = 0;

 protected:
  ~ITimeLine() = default;
};

// Implemented by the plug-in as a local object: it has no identity and no count, and lives for one walk.
class IForEachTimeLineCallback {
 public:
  // The meaning of `inOther` is the host's.
  virtual void MC_CALL Visit(ITimeLine* inTimeLine, void* inOther) = 0;

 protected:
  ~IForEachTimeLineCallback() = default;
};

class ITimeLineOwner : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "A2C827B2-0956-4B13-85CB-0C9805E9B72F"_guid;

  // Visits the track of every animatable parameter once, empty ones too. Keys may be changed during the walk. Those
  // that a visit deletes are gone from the time line at once, and from all else that shows the parameter when the visit
  // ends.
  virtual void MC_CALL ForEachTimeLine(IForEachTimeLineCallback* inCallback) = 0;

 protected:
  ~ITimeLineOwner() = default;
};

// Answered by each object that can be animated, tree elements among them.
class I3DShAnimated : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5F6CCD2D-0541-4BB9-8038-3F662652DA4A"_guid;

  virtual ITimeLineOwner* MC_CALL GetTimeLineOwner() = 0;

 protected:
  ~I3DShAnimated() = default;
};

}  // namespace qlx
