// Values behind parameters and time lines: what a parameter reads and writes, wherever the value lives.
#pragma once

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

// One animatable number ('qfix').
class AnimatedValue : public ValueAccess {
 public:
  MCID GetType() const override { return "qfix"_id; }
  AnimatedValue* AsAnimated() override { return this; }

  // From the curve, or the base value where there are no keys. False when it is dead.
  virtual bool SampleAt(int32 inTime, real32& outValue) const = 0;
  // Null when it is dead or was never animated.
  virtual const Curve* GetCurve() const = 0;
  // False, with nothing done, when it is dead.
  virtual bool EditCurve(const std::function<void(Curve&)>& inEdit) = 0;
};

}  // namespace qlx::host
