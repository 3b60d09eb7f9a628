#include "AnimatedValue.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qlx::host {

uint32 WidthOfType(MCID inType) {
  return inType == "colo"_id ? 4 : 1;
}

const char* NameOfNumber(MCID inType, uint32 inNumber) {
  constexpr std::array kOfColour{" red", " green", " blue", " alpha"};
  return inType == "colo"_id && inNumber < kOfColour.size() ? kOfColour[inNumber] : "";
}

ValueNumbers SplitValue(MCID inType, const void* inValue) {
  ValueNumbers numbers{};
  if (inType == "bool"_id) {
    numbers[0] = *static_cast<const uint8*>(inValue) != 0 ? 1.0f : 0.0f;
  } else {
    std::memcpy(numbers.data(), inValue, WidthOfType(inType) * sizeof(real32));
  }
  return numbers;
}

void JoinValue(MCID inType, const ValueNumbers& inNumbers, void* outValue) {
  if (inType == "bool"_id) {
    *static_cast<uint8*>(outValue) = inNumbers[0] >= 0.5f ? 1 : 0;
  } else {
    std::memcpy(outValue, inNumbers.data(), WidthOfType(inType) * sizeof(real32));
  }
}

bool IsFiniteValue(MCID inType, const ValueNumbers& inNumbers) {
  return std::all_of(inNumbers.begin(), inNumbers.begin() + static_cast<std::ptrdiff_t>(WidthOfType(inType)),
                     [](real32 each) { return std::isfinite(each); });
}

bool AnimatedValue::HasKeys() const {
  const Curve* const curve = GetCurve(0);
  return curve != nullptr && !curve->IsEmpty();
}

}  // namespace qlx::host
