#include "QLXValues.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "COMSafeUtilities.h"
#include "MCFrameTime.h"

namespace qlx {

namespace {

using NumberKind = QLXNumberPlace::Kind;

QLXNumberPlace PlaceOf(MCID inComponent, std::initializer_list<MCID> inComponents) {
  const auto* const found = std::find(inComponents.begin(), inComponents.end(), inComponent);
  if (found == inComponents.end()) {
    return {};
  }
  return {NumberKind::kReal32,
          static_cast<uint8>(sizeof(real32) * static_cast<std::size_t>(found - inComponents.begin()))};
}

template <class Value>
Value Load(const void* inBytes) {
  Value value;
  std::memcpy(&value, inBytes, sizeof value);
  return value;
}

template <class Value>
void Store(void* outBytes, Value inValue) {
  std::memcpy(outBytes, &inValue, sizeof inValue);
}

}  // namespace

QLXNumberPlace FindNumber(MCID inType, MCID inComponent) {
  switch (inType) {
    case "bool"_id:
      return {NumberKind::kBool};
    case "in32"_id:
    case "long"_id:
    case "actn"_id:
      return {NumberKind::kInt32};
    case "in16"_id:
    case "shrt"_id:
      return {NumberKind::kInt16};
    case "re32"_id:
    case "qfix"_id:
      return {NumberKind::kReal32};
    case "re64"_id:
      return {NumberKind::kReal64};
    case "colo"_id:
      return PlaceOf(inComponent, {"redV"_id, "grnV"_id, "bluV"_id, "alpV"_id});
    case "VEC2"_id:
    case "qfv2"_id:
      return PlaceOf(inComponent, {"vecX"_id, "vecY"_id});
    case "VEC3"_id:
    case "dire"_id:
      return PlaceOf(inComponent, {"vecX"_id, "vecY"_id, "vecZ"_id});
    default:
      return {};
  }
}

real32 ReadNumber(QLXNumberPlace inPlace, const void* inValue) {
  const void* const bytes = static_cast<const std::byte*>(inValue) + inPlace.fOffset;
  switch (inPlace.fKind) {
    case NumberKind::kBool:
      return Load<uint8>(bytes) != 0 ? 1.0f : 0.0f;
    case NumberKind::kInt16:
      return static_cast<real32>(Load<int16>(bytes));
    case NumberKind::kInt32:
      return static_cast<real32>(Load<int32>(bytes));
    case NumberKind::kReal32:
      return Load<real32>(bytes);
    case NumberKind::kReal64:
      return static_cast<real32>(Load<real64>(bytes));
    case NumberKind::kNone:
      break;
  }
  return 0;
}

void StoreNumber(QLXNumberPlace inPlace, real32 inNumber, void* ioValue) {
  void* const bytes = static_cast<std::byte*>(ioValue) + inPlace.fOffset;
  switch (inPlace.fKind) {
    case NumberKind::kBool:
      Store<uint8>(bytes, inNumber != 0.0f ? 1 : 0);
      break;
    case NumberKind::kInt16:
      Store(bytes, static_cast<int16>(std::clamp<int32>(TruncateToInt32(static_cast<real64>(inNumber)),
                                                        std::numeric_limits<int16>::min(),
                                                        std::numeric_limits<int16>::max())));
      break;
    case NumberKind::kInt32:
      Store(bytes, TruncateToInt32(static_cast<real64>(inNumber)));
      break;
    case NumberKind::kReal32:
      Store(bytes, inNumber);
      break;
    case NumberKind::kReal64:
      Store(bytes, static_cast<real64>(inNumber));
      break;
    case NumberKind::kNone:
      break;
  }
}

ParamType* FindParamType(MCID inTypeWord) {
  ParamTypeRegistry* const registry = gParamTypeRegistry ? gParamTypeRegistry : GetParamTypeRegistry();
  return registry ? registry->GetParamType(inTypeWord) : nullptr;
}

void QLXValueBuffer::SetType(ParamType* inType) {
  Clear();
  if (inType && inType->GetDataSize() <= sizeof fBytes) {
    inType->ConstructData(fBytes);
    fHolder = ParamHolder(inType, fBytes);
  }
}

void QLXValueBuffer::Clear() {
  if (fHolder.IsValid()) {
    fHolder.GetParamType()->DestructData(fBytes);
    fHolder = {};
  }
}

}  // namespace qlx
