// Values behind parameters and time lines: what a parameter reads and writes, wherever the value lives.
#pragma once

#include <array>
#include <functional>

#include "Curve.h"
#include "MCTypes.h"

namespace qlx::host {

class AnimatedValue;

// A value of any type, as bytes of its type. It may outlive what it belongs to; it is dead then: reads and writes
// answer false and change nothing.
class ValueAccess {
 public:
  virtual ~ValueAccess() = default;

  virtual MCID GetType() const = 0;
  virtual bool Read(void* outValue) const = 0;
  // While the scene is being evaluated a write changes the evaluated value alone; else it is an edit. False for a value
  // that is not finite.
  virtual bool Write(const void* inValue) = 0;
  // The value as one that can have keys; null when it cannot.
  virtual AnimatedValue* AsAnimated() { return nullptr; }
};

// The numbers that a value is made of: four of a colour ('colo'), one of a truth value ('bool', 0 or 1), one of a
// number ('qfix'). Those past the width of the type are 0.
inline constexpr std::size_t kMostNumbers = 4;
using ValueNumbers = std::array<real32, kMostNumbers>;

uint32 WidthOfType(MCID inType);
// " red" for the first number of a colour; nothing for a value of one number.
const char* NameOfNumber(MCID inType, uint32 inNumber);
// Between numbers and the bytes of the type. A truth value is true from a half on.
ValueNumbers SplitValue(MCID inType, const void* inValue);
void JoinValue(MCID inType, const ValueNumbers& inNumbers, void* outValue);
bool IsFiniteValue(MCID inType, const ValueNumbers& inNumbers);

// A value of one of these types that can have keys. Each of its numbers has a curve; the curves have their keys at the
// same times, and with the same serials, as every edit goes through all of them.
class AnimatedValue : public ValueAccess {
 public:
  AnimatedValue* AsAnimated() override { return this; }
  uint32 GetWidth() const { return WidthOfType(GetType()); }

  // The base value shows where there are no keys. Writing it is an edit. Both are false when it is dead, and a write
  // for a value that is not finite.
  virtual bool ReadBase(void* outValue) const = 0;
  virtual bool WriteBase(const void* inValue) = 0;
  // From the curves, or the base value where there are no keys. False when it is dead.
  virtual bool SampleAt(int32 inTime, void* outValue) const = 0;
  // Null when it is dead or was never animated.
  virtual const Curve* GetCurve(uint32 inNumber) const = 0;
  // Runs the edit on the curve of each number, in order. False, with nothing done, when it is dead.
  virtual bool EditCurves(const std::function<void(Curve&, uint32)>& inEdit) = 0;

  // True while it is alive and has keys.
  bool HasKeys() const;
};

}  // namespace qlx::host
