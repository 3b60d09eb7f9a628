// A curve of keys over time: what a time line holds.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

enum class Interpolation : uint8 { kStep, kLinear, kCubicSpline };

// Values are in the units of the parameter that the curve belongs to, times in ticks. The interpolation rules the
// stretch from this key to the next. Tangents are used by cubic splines alone, in units a second.
struct CurveKey {
  int32 fTime = 0;
  real32 fValue = 0;
  real32 fInTangent = 0;
  real32 fOutTangent = 0;
  Interpolation fInterpolation = Interpolation::kLinear;
  bool fSelected = false;
  uint32 fSerial = 0;  // unique in the curve; finds the key again after it moved
};

// Keys in strictly ascending time order. Before the first key the curve has its value, after the last one its.
// Sampling: step holds the key's value; linear is a + t*(b - a) in 64-bit reals; cubic spline is the Hermite form with
// the tangents scaled by the stretch in seconds.
class Curve {
 public:
  bool IsEmpty() const { return fKeys.empty(); }
  const std::vector<CurveKey>& GetKeys() const { return fKeys; }

  // The curve must have a key. `ioHint` keeps the place between calls that go forward in time; any value is safe.
  real32 Sample(int32 inTime, std::size_t& ioHint) const;
  real32 Sample(int32 inTime) const;

  // Adds a key, or replaces the one at its time; its value must be finite. The key gets a serial of its own. Linear
  // time when keys come in order.
  uint32 SetKey(CurveKey inKey);
  bool HasKeyAt(int32 inTime) const;
  // True when there was one at exactly this time.
  bool DeleteKeyAt(int32 inTime);
  // All keys at exactly these times, which ascend; in one go over the keys. True when there was one.
  bool DeleteKeysAt(std::span<const int32> inTimes);
  // Moves a key, replacing what stands at the new time. False for an unknown serial.
  bool MoveKey(uint32 inSerial, int32 inTime);
  bool MoveKey(uint32 inSerial, int32 inTime, std::size_t& ioHint);
  bool SelectKey(int32 inTime, bool inSelected);
  void Clear() { fKeys.clear(); }
  // Takes the keys of an earlier copy of this curve, with their serials; serials given since are not given again.
  void Restore(const Curve& inSaved);
  // The same keys, whatever is selected. Values are compared by their bits.
  bool HasSameKeys(const Curve& inCurve) const;
  // Lets every key hold its value up to the next one.
  void MakeSteps();
  void Reserve(std::size_t inCount) { fKeys.reserve(inCount); }

  // Null for a key that is gone. `ioHint` is the index at which the key was last; any value is safe.
  const CurveKey* FindSerial(uint32 inSerial) const;
  const CurveKey* FindSerial(uint32 inSerial, std::size_t& ioHint) const;
  // The first key after, the last key before a time, itself not included; null when there is none.
  const CurveKey* FindAfter(int32 inTime) const;
  const CurveKey* FindBefore(int32 inTime) const;

 private:
  std::vector<CurveKey> fKeys;
  uint32 fNextSerial = 1;
};

}  // namespace qlx::host
