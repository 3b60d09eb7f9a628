// One number in the value of a parameter: which one, by the value's type and the component that a path ends in.
//
//   type                   component                    number
//   'bool'                 any                          1 or 0
//   'in32' 'long' 'actn'   any                          the integer
//   'in16' 'shrt'          any                          the integer
//   're32' 'qfix'          any                          the real
//   're64'                 any                          the real, narrowed
//   'colo'                 redV grnV bluV alpV          that channel
//   'VEC2' 'qfv2'          vecX vecY                    that field
//   'VEC3' 'dire'          vecX vecY vecZ               that field
//
// Every other type and component has no number: it reads as 0, and storing does nothing. That goes for 'vec2', 'vec3',
// 'qfv3' and the signed reals, too, which links have never followed.
#pragma once

#include <cstddef>

#include "HostParameters.h"
#include "ParamHolder.h"

namespace qlx {

// Where the number of a component stands in values of a type.
struct QLXNumberPlace {
  enum class Kind : uint8 { kNone, kBool, kInt16, kInt32, kReal32, kReal64 };
  Kind fKind = Kind::kNone;
  uint8 fOffset = 0;
};
QLXNumberPlace FindNumber(MCID inType, MCID inComponent);

real32 ReadNumber(QLXNumberPlace inPlace, const void* inValue);
// A truth value is whether the number is not 0; an integer is truncated, stops at the ends of its range, and is 0 for
// NaN. The other numbers of the value stay.
void StoreNumber(QLXNumberPlace inPlace, real32 inNumber, void* ioValue);

// Null for an unknown word and without a registry.
ParamType* FindParamType(MCID inTypeWord);

// A value of any type in place, made and ended by its type.
class QLXValueBuffer {
 public:
  QLXValueBuffer() = default;
  explicit QLXValueBuffer(ParamType* inType) { SetType(inType); }
  QLXValueBuffer(const QLXValueBuffer&) = delete;
  QLXValueBuffer& operator=(const QLXValueBuffer&) = delete;
  ~QLXValueBuffer() { Clear(); }

  // A fresh value. None for a null type, and for one whose values are larger than any should be.
  void SetType(ParamType* inType);
  void Clear();

  bool HasValue() const { return fHolder.IsValid(); }
  ParamType* GetType() const { return fHolder.GetParamType(); }
  ParamHolder& GetHolder() { return fHolder; }
  const void* GetData() const { return fBytes; }
  void* GetData() { return fBytes; }

 private:
  ParamHolder fHolder;
  alignas(real64) alignas(void*) std::byte fBytes[ParamType::kMaxSize];  // no more than a host's memory is aligned
};

}  // namespace qlx
