#include "ParameterMap.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "MCAssert.h"
#include "MCString.h"

namespace qlx::host {

namespace {

struct TypeLayout {
  MCID fType;
  std::size_t fSize;
  std::size_t fAlignment;
};

constexpr TypeLayout kLayouts[] = {
    {"bool"_id, 1, 1},
    {"in32"_id, sizeof(int32), alignof(int32)},
    {"re32"_id, sizeof(real32), alignof(real32)},
    {"VEC3"_id, 3 * sizeof(real32), alignof(real32)},
    {"s255"_id, sizeof(TMCString255), alignof(TMCString255)},
};

const TypeLayout* FindLayout(MCID inType) {
  for (const TypeLayout& layout : kLayouts) {
    if (layout.fType == inType) {
      return &layout;
    }
  }
  return nullptr;
}

constexpr std::size_t RoundUp(std::size_t inSize, std::size_t inAlignment) {
  return (inSize + inAlignment - 1) / inAlignment * inAlignment;
}

MCID TypeOf(const ParameterValue& inValue) {
  constexpr MCID kTypes[] = {"bool"_id, "in32"_id, "re32"_id, "VEC3"_id, "s255"_id};
  static_assert(std::size(kTypes) == std::variant_size_v<ParameterValue>);
  return kTypes[inValue.index()];
}

// What a field of the value's type can hold.
bool IsStorable(const ParameterValue& inValue) {
  if (const auto* number = std::get_if<real32>(&inValue)) {
    return std::isfinite(*number);
  }
  if (const auto* vector = std::get_if<std::array<real32, 3>>(&inValue)) {
    return std::isfinite((*vector)[0]) && std::isfinite((*vector)[1]) && std::isfinite((*vector)[2]);
  }
  if (const auto* text = std::get_if<std::string>(&inValue)) {
    return text->size() <= kLongestFieldText && text->find('\0') == std::string::npos;
  }
  return true;
}

// A text field is an object with a table of operations: its bytes are the string class's alone.
TMCString& TextAt(const ParameterField& inField, void* ioBlock) {
  return *reinterpret_cast<TMCString255*>(static_cast<std::byte*>(ioBlock) + inField.fOffset);
}

const TMCString& TextAt(const ParameterField& inField, const void* inBlock) {
  return *reinterpret_cast<const TMCString255*>(static_cast<const std::byte*>(inBlock) + inField.fOffset);
}

void Store(const ParameterField& inField, const ParameterValue& inValue, void* ioBlock) {
  if (const auto* text = std::get_if<std::string>(&inValue)) {
    TextAt(inField, ioBlock).Assign(text->data(), text->size());
    return;
  }
  std::byte* bytes = static_cast<std::byte*>(ioBlock) + inField.fOffset;
  const auto store = [bytes](const auto& value) {
    if constexpr (std::is_trivially_copyable_v<std::decay_t<decltype(value)>>) {
      std::memcpy(bytes, &value, sizeof value);
    }
  };
  std::visit(store, inValue);
}

template <class Value>
Value ReadAs(const std::byte* inBytes) {
  Value value;
  std::memcpy(&value, inBytes, sizeof value);
  return value;
}

}  // namespace

ParameterMap::ParameterMap(std::initializer_list<Entry> inEntries) {
  std::size_t largest = 1;
  for (const Entry& entry : inEntries) {
    const TypeLayout* layout = FindLayout(entry.fType);
    if (!MC_ASSERT_TEXT(layout, "a parameter map has a field of an unknown type")) {
      continue;
    }
    fSize = RoundUp(fSize, layout->fAlignment);
    fFields.push_back({entry.fName, entry.fType, fSize});
    fSize += layout->fSize;
    largest = std::max(largest, layout->fAlignment);
  }
  fSize = RoundUp(fSize, largest);
}

const ParameterField* ParameterMap::Find(std::string_view inName) const {
  for (const ParameterField& field : fFields) {
    if (field.fName == inName) {
      return &field;
    }
  }
  return nullptr;
}

ParameterValue ParameterMap::Read(const ParameterField& inField, const void* inBlock) {
  const std::byte* bytes = static_cast<const std::byte*>(inBlock) + inField.fOffset;
  switch (inField.fType) {
    case "in32"_id:
      return ReadAs<int32>(bytes);
    case "re32"_id:
      return ReadAs<real32>(bytes);
    case "VEC3"_id:
      return ReadAs<std::array<real32, 3>>(bytes);
    case "s255"_id: {
      const TMCString& text = TextAt(inField, inBlock);
      return std::string(text.CStr(), text.ByteLength());
    }
    default:
      return ReadAs<uint8>(bytes) != 0;  // a byte other than 0 and 1 is true, and no valid bool to copy
  }
}

bool ParameterMap::Write(const ParameterField& inField, const ParameterValue& inValue, void* ioBlock) {
  if (TypeOf(inValue) != inField.fType || !IsStorable(inValue)) {
    return false;
  }
  Store(inField, inValue, ioBlock);
  return true;
}

void ParameterMap::Copy(const ParameterField& inField, const void* inSource, void* ioBlock) {
  if (inField.fType == "s255"_id) {
    TextAt(inField, ioBlock) = TextAt(inField, inSource);
  } else {
    Store(inField, Read(inField, inSource), ioBlock);
  }
}

const ParameterMap* FindParameterMap(MCID inClass) {
  // The pin's block as its panel binds it. The second vector is carried and never read.
  static const ParameterMap sPin{
      {"fPositionSet", "bool"_id}, {"fActive", "bool"_id},   {"fGlobal", "bool"_id},
      {"fPosition", "VEC3"_id},    {"fReserved", "VEC3"_id},
  };
  // The link's, from the texts that its panel shows to the range of its values.
  static const ParameterMap sLink{
      {"fTargetLabel", "s255"_id},
      {"fControllerName", "s255"_id},
      {"fControllerLabel", "s255"_id},
      {"fListAllProperties", "bool"_id},
      {"fListReserved", "bool"_id},
      {"fCombineReplace", "bool"_id},
      {"fCombineSelf", "bool"_id},
      {"fCombineAdd", "bool"_id},
      {"fCombineSubtract", "bool"_id},
      {"fCombineMultiply", "bool"_id},
      {"fCombineDivide", "bool"_id},
      {"fModifyAdd", "bool"_id},
      {"fModifySubtract", "bool"_id},
      {"fModifyMultiply", "bool"_id},
      {"fModifyDivide", "bool"_id},
      {"fModifySet", "bool"_id},
      {"fModifyValue", "re32"_id},
      {"fDecayOn", "bool"_id},
      {"fGrowOn", "bool"_id},
      {"fOscillateOn", "bool"_id},
      {"fStartOn", "bool"_id},
      {"fStartFrame", "in32"_id},
      {"fEndOn", "bool"_id},
      {"fEndFrame", "in32"_id},
      {"fDelayOn", "bool"_id},
      {"fDelayFrames", "in32"_id},
      {"fModifyUnit", "in32"_id},
      {"fMirrorTransform", "bool"_id},
      {"fSourceName", "s255"_id},
      {"fPositionAll", "bool"_id},
      {"fPositionNone", "bool"_id},
      {"fPositionCustom", "bool"_id},
      {"fPositionX", "bool"_id},
      {"fPositionY", "bool"_id},
      {"fPositionZ", "bool"_id},
      {"fPositionInvertX", "bool"_id},
      {"fPositionInvertY", "bool"_id},
      {"fPositionInvertZ", "bool"_id},
      {"fRotationAll", "bool"_id},
      {"fRotationNone", "bool"_id},
      {"fRotationCustom", "bool"_id},
      {"fRotationX", "bool"_id},
      {"fRotationY", "bool"_id},
      {"fRotationZ", "bool"_id},
      {"fRotationInvertX", "bool"_id},
      {"fRotationInvertY", "bool"_id},
      {"fRotationInvertZ", "bool"_id},
      {"fScaleUniform", "bool"_id},
      {"fScaleX", "bool"_id},
      {"fScaleY", "bool"_id},
      {"fScaleZ", "bool"_id},
      {"fAttributeMode", "bool"_id},
      {"fLowerLimitOn", "bool"_id},
      {"fLowerLimit", "re32"_id},
      {"fUpperLimitOn", "bool"_id},
      {"fUpperLimit", "re32"_id},
      {"fName", "s255"_id},
      {"fAbsolute", "bool"_id},
      {"fRelative", "bool"_id},
      {"fLimitUnit", "in32"_id},
      {"fBakeKeyframes", "bool"_id},
      {"fFindControllerByName", "bool"_id},
      {"fFindSourceByName", "bool"_id},
      {"fRangeOn", "bool"_id},
      {"fRangeMin", "re32"_id},
      {"fRangeMax", "re32"_id},
  };
  switch (inClass) {
    case "fPIN"_id:
      return &sPin;
    case "fQLX"_id:
      return &sLink;
    default:
      return nullptr;
  }
}

}  // namespace qlx::host
