// How the fields of a modifier's public block are named and laid out, so that they can be saved, shown and copied field
// by field. Offsets follow from the types and their order: one map serves every target.
#pragma once

#include <array>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "resources/Descriptions.h"

namespace qlx::host {

// Type words: 'bool' (one byte), 'in32', 're32', 'VEC3' (three 32-bit reals), 's255' (a `TMCString255`), 'sdyn' (a
// `TMCDynamicString`).
struct ParameterField {
  std::string fName;  // "fPositionSet"
  MCID fType = 0;
  std::size_t fOffset = 0;
};

// A text is UTF-8 as it came; one that is read from a block may end inside a character, cut where its field ends.
using ParameterValue = std::variant<bool, int32, real32, std::array<real32, 3>, std::string>;

// Bytes that a text field of the type takes. A text that grows is one of a `TMCString1023` where it is used.
constexpr std::size_t LongestFieldText(MCID inType) {
  return inType == "sdyn"_id ? 1023 : 255;
}

class ParameterMap {
 public:
  // Lays the fields out in order, each aligned to its type.
  explicit ParameterMap(std::span<const FieldDescription> inFields);
  ParameterMap(std::initializer_list<FieldDescription> inFields) : ParameterMap(std::span(inFields)) {}

  const std::vector<ParameterField>& GetFields() const { return fFields; }
  const ParameterField* Find(std::string_view inName) const;
  std::size_t GetSize() const { return fSize; }

  // The block is a component's, of the map's size: the objects of its text fields are alive there.
  static ParameterValue Read(const ParameterField& inField, const void* inBlock);
  // False, with nothing written, when the value is of another type, not finite, a longer text, or one with a NUL.
  static bool Write(const ParameterField& inField, const ParameterValue& inValue, void* ioBlock);
  // Copies one field from block to block as it stands.
  static void Copy(const ParameterField& inField, const void* inSource, void* ioBlock);

 private:
  std::vector<ParameterField> fFields;
  std::size_t fSize = 0;
};

}  // namespace qlx::host
