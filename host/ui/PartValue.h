// Values of controls, and the forms in which they are asked for.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "MCTypes.h"

namespace qlx {
class TMCString;
}

namespace qlx::host {

// Forms: 'bool' (one byte), 'in32', 're32', 'VEC3' (three 32-bit reals), 'str ' (a `TMCString`).
using PartValue = std::variant<bool, int32, real32, std::array<real32, 3>, std::string>;

// The value's own form.
MCID FormOf(const PartValue& inValue);

// The value in another form; nothing where that makes no sense. Truth values and numbers become each other: true is 1,
// and every number but 0 is true; a real becomes the nearest whole number, when there is one. Every value has a text,
// and a text that is one of a value becomes that. Only reals that are finite come out.
std::optional<PartValue> Convert(const PartValue& inValue, MCID inForm);

// A value from and to a buffer of that form. Nothing, and false with the buffer as it was, for a form that does not
// exist or that the value does not have.
std::optional<PartValue> LoadValue(const void* inBuffer, MCID inForm);
bool StoreValue(const PartValue& inValue, MCID inForm, void* outBuffer);

// "true", "0.5", "1 2 3"; a text as it stands.
std::string TextOfValue(const PartValue& inValue);

// UTF-8 to and from a text of the other side. What does not fit is left out, up to the end of a character.
std::string TextFrom(const TMCString& inText);
void StoreText(std::string_view inText, TMCString& outText);

}  // namespace qlx::host
