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
    {"sdyn"_id, sizeof(TMCDynamicString), alignof(TMCDynamicString)},
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

bool IsText(MCID inType) {
  return inType == "s255"_id || inType == "sdyn"_id;
}

bool IsOfType(const ParameterValue& inValue, MCID inType) {
  constexpr MCID kTypes[] = {"bool"_id, "in32"_id, "re32"_id, "VEC3"_id, "s255"_id};
  static_assert(std::size(kTypes) == std::variant_size_v<ParameterValue>);
  return kTypes[inValue.index()] == (IsText(inType) ? "s255"_id : inType);
}

// What a field of the type can hold.
bool IsStorable(const ParameterValue& inValue, MCID inType) {
  if (const auto* number = std::get_if<real32>(&inValue)) {
    return std::isfinite(*number);
  }
  if (const auto* vector = std::get_if<std::array<real32, 3>>(&inValue)) {
    return std::isfinite((*vector)[0]) && std::isfinite((*vector)[1]) && std::isfinite((*vector)[2]);
  }
  if (const auto* text = std::get_if<std::string>(&inValue)) {
    return text->size() <= LongestFieldText(inType) && text->find('\0') == std::string::npos;
  }
  return true;
}

// A text field is an object with a table of operations: its bytes are the string class's alone.
TMCString& TextAt(const ParameterField& inField, void* ioBlock) {
  std::byte* const bytes = static_cast<std::byte*>(ioBlock) + inField.fOffset;
  if (inField.fType == "sdyn"_id) {
    return *reinterpret_cast<TMCDynamicString*>(bytes);
  }
  return *reinterpret_cast<TMCString255*>(bytes);
}

const TMCString& TextAt(const ParameterField& inField, const void* inBlock) {
  return TextAt(inField, const_cast<void*>(inBlock));
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

ParameterMap::ParameterMap(std::span<const FieldDescription> inFields) {
  std::size_t largest = 1;
  for (const FieldDescription& entry : inFields) {
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
    case "s255"_id:
    case "sdyn"_id: {
      const TMCString& text = TextAt(inField, inBlock);
      return std::string(text.CStr(), text.ByteLength());
    }
    default:
      return ReadAs<uint8>(bytes) != 0;  // a byte other than 0 and 1 is true, and no valid bool to copy
  }
}

bool ParameterMap::Write(const ParameterField& inField, const ParameterValue& inValue, void* ioBlock) {
  if (!IsOfType(inValue, inField.fType) || !IsStorable(inValue, inField.fType)) {
    return false;
  }
  Store(inField, inValue, ioBlock);
  return true;
}

void ParameterMap::Copy(const ParameterField& inField, const void* inSource, void* ioBlock) {
  if (IsText(inField.fType)) {
    TextAt(inField, ioBlock) = TextAt(inField, inSource);
  } else {
    Store(inField, Read(inField, inSource), ioBlock);
  }
}

}  // namespace qlx::host
