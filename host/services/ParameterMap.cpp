#include "ParameterMap.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "MCAssert.h"

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
  constexpr MCID kTypes[] = {"bool"_id, "in32"_id, "re32"_id, "VEC3"_id};
  static_assert(std::size(kTypes) == std::variant_size_v<ParameterValue>);
  return kTypes[inValue.index()];
}

bool IsFinite(const ParameterValue& inValue) {
  if (const auto* number = std::get_if<real32>(&inValue)) {
    return std::isfinite(*number);
  }
  if (const auto* vector = std::get_if<std::array<real32, 3>>(&inValue)) {
    return std::isfinite((*vector)[0]) && std::isfinite((*vector)[1]) && std::isfinite((*vector)[2]);
  }
  return true;
}

void Store(const ParameterField& inField, const ParameterValue& inValue, void* ioBlock) {
  std::byte* bytes = static_cast<std::byte*>(ioBlock) + inField.fOffset;
  std::visit([bytes](const auto& value) { std::memcpy(bytes, &value, sizeof value); }, inValue);
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
    default:
      return ReadAs<uint8>(bytes) != 0;  // a byte other than 0 and 1 is true, and no valid bool to copy
  }
}

bool ParameterMap::Write(const ParameterField& inField, const ParameterValue& inValue, void* ioBlock) {
  if (TypeOf(inValue) != inField.fType || !IsFinite(inValue)) {
    return false;
  }
  Store(inField, inValue, ioBlock);
  return true;
}

void ParameterMap::Copy(const ParameterField& inField, const void* inSource, void* ioBlock) {
  Store(inField, Read(inField, inSource), ioBlock);
}

const ParameterMap* FindParameterMap(MCID inClass) {
  // The pin's block as its panel binds it. The second vector is carried and never read.
  static const ParameterMap sPin{
      {"fPositionSet", "bool"_id}, {"fActive", "bool"_id},   {"fGlobal", "bool"_id},
      {"fPosition", "VEC3"_id},    {"fReserved", "VEC3"_id},
  };
  return inClass == "fPIN"_id ? &sPin : nullptr;
}

}  // namespace qlx::host
