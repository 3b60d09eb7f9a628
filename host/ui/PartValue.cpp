#include "PartValue.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <system_error>
#include <type_traits>

#include "MCString.h"
#include "MCUtf8.h"

namespace qlx::host {

namespace {

using Vector = std::array<real32, 3>;

constexpr MCID kForms[] = {"bool"_id, "in32"_id, "re32"_id, "VEC3"_id, "str "_id};
static_assert(std::size(kForms) == std::variant_size_v<PartValue>);

std::string_view Trimmed(std::string_view inText) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = inText.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view()
                                         : inText.substr(first, inText.find_last_not_of(kBlanks) - first + 1);
}

template <class Number>
std::optional<Number> NumberAt(std::string_view& ioText) {
  ioText = Trimmed(ioText);
  Number number{};
  const char* const end = ioText.data() + ioText.size();
  const auto [rest, error] = std::from_chars(ioText.data(), end, number);
  if (error != std::errc() || (rest != end && *rest != ' ' && *rest != '\t')) {
    return std::nullopt;
  }
  ioText.remove_prefix(static_cast<std::size_t>(rest - ioText.data()));
  return number;
}

std::optional<real32> RealAt(std::string_view& ioText) {
  const std::optional<real64> number = NumberAt<real64>(ioText);
  constexpr auto kLargest = static_cast<real64>(std::numeric_limits<real32>::max());
  return number && *number >= -kLargest && *number <= kLargest ? std::optional(static_cast<real32>(*number))
                                                               : std::nullopt;
}

// The value when nothing stands behind it.
template <class Value>
std::optional<PartValue> Whole(const std::optional<Value>& inValue, std::string_view inRest) {
  return inValue && Trimmed(inRest).empty() ? std::optional<PartValue>(*inValue) : std::nullopt;
}

std::optional<PartValue> Parse(std::string_view inText, MCID inForm) {
  std::string_view rest = inText;
  switch (inForm) {
    case "bool"_id: {
      const std::string_view word = Trimmed(inText);
      return word == "true" || word == "false" ? std::optional<PartValue>(word == "true") : std::nullopt;
    }
    case "in32"_id: {
      const std::optional<int32> number = NumberAt<int32>(rest);
      return Whole(number, rest);
    }
    case "re32"_id: {
      const std::optional<real32> number = RealAt(rest);
      return Whole(number, rest);
    }
    case "VEC3"_id: {
      const std::optional<real32> x = RealAt(rest);
      const std::optional<real32> y = x ? RealAt(rest) : std::nullopt;
      const std::optional<real32> z = y ? RealAt(rest) : std::nullopt;
      return Whole(z ? std::optional(Vector{*x, *y, *z}) : std::nullopt, rest);
    }
    default:
      return std::nullopt;
  }
}

std::optional<PartValue> FromReal(real32 inValue, MCID inForm) {
  if (!std::isfinite(inValue)) {
    return std::nullopt;
  }
  switch (inForm) {
    case "bool"_id:
      return inValue != 0;
    case "in32"_id: {
      const real64 whole = std::round(static_cast<real64>(inValue));
      const bool fits =
          whole >= std::numeric_limits<int32>::min() && whole <= static_cast<real64>(std::numeric_limits<int32>::max());
      return fits ? std::optional<PartValue>(static_cast<int32>(whole)) : std::nullopt;
    }
    case "re32"_id:
      return inValue;
    default:
      return std::nullopt;
  }
}

std::optional<PartValue> FromWhole(int32 inValue, MCID inForm) {
  switch (inForm) {
    case "bool"_id:
      return inValue != 0;
    case "in32"_id:
      return inValue;
    case "re32"_id:
      return static_cast<real32>(inValue);
    default:
      return std::nullopt;
  }
}

bool IsFinite(const Vector& inVector) {
  return std::isfinite(inVector[0]) && std::isfinite(inVector[1]) && std::isfinite(inVector[2]);
}

template <class Value>
Value ReadBytes(const void* inBuffer) {
  Value value;
  std::memcpy(&value, inBuffer, sizeof value);
  return value;
}

}  // namespace

MCID FormOf(const PartValue& inValue) {
  return kForms[inValue.index()];
}

std::optional<PartValue> Convert(const PartValue& inValue, MCID inForm) {
  if (inForm == "str "_id) {
    return TextOfValue(inValue);
  }
  if (const auto* text = std::get_if<std::string>(&inValue)) {
    return Parse(*text, inForm);
  }
  if (const auto* vector = std::get_if<Vector>(&inValue)) {
    return inForm == "VEC3"_id && IsFinite(*vector) ? std::optional(inValue) : std::nullopt;
  }
  if (const auto* real = std::get_if<real32>(&inValue)) {
    return FromReal(*real, inForm);
  }
  const auto* whole = std::get_if<int32>(&inValue);
  return FromWhole(whole ? *whole : static_cast<int32>(std::get<bool>(inValue)), inForm);
}

std::optional<PartValue> LoadValue(const void* inBuffer, MCID inForm) {
  switch (inForm) {
    case "bool"_id:
      return ReadBytes<uint8>(inBuffer) != 0;  // a byte other than 0 and 1 is true, and no valid bool to copy
    case "in32"_id:
      return ReadBytes<int32>(inBuffer);
    case "re32"_id:
      return ReadBytes<real32>(inBuffer);
    case "VEC3"_id:
      return ReadBytes<Vector>(inBuffer);
    case "str "_id:
      return TextFrom(*static_cast<const TMCString*>(inBuffer));
    default:
      return std::nullopt;
  }
}

bool StoreValue(const PartValue& inValue, MCID inForm, void* outBuffer) {
  const std::optional<PartValue> value = Convert(inValue, inForm);
  if (!value) {
    return false;
  }
  if (const auto* text = std::get_if<std::string>(&*value)) {
    StoreText(*text, *static_cast<TMCString*>(outBuffer));
    return true;
  }
  const auto store = [outBuffer](const auto& plain) {
    if constexpr (std::is_trivially_copyable_v<std::decay_t<decltype(plain)>>) {
      std::memcpy(outBuffer, &plain, sizeof plain);
    }
  };
  std::visit(store, *value);
  return true;
}

std::string TextOfValue(const PartValue& inValue) {
  if (const auto* vector = std::get_if<Vector>(&inValue)) {
    return fmt::format("{} {} {}", (*vector)[0], (*vector)[1], (*vector)[2]);
  }
  if (const auto* text = std::get_if<std::string>(&inValue)) {
    return *text;
  }
  if (const auto* real = std::get_if<real32>(&inValue)) {
    return fmt::format("{}", *real);
  }
  const auto* whole = std::get_if<int32>(&inValue);
  return whole ? fmt::format("{}", *whole) : fmt::format("{}", std::get<bool>(inValue));
}

std::string TextFrom(const TMCString& inText) {
  return {inText.CStr(), inText.ByteLength()};
}

void StoreText(std::string_view inText, TMCString& outText) {
  std::size_t size = inText.size();
  if (size > outText.MaxLength() && size <= std::numeric_limits<int32>::max()) {
    outText.SetMaxLength(static_cast<uint32>(size));  // one of the forms grows
  }
  if (size > outText.MaxLength()) {
    size = outText.MaxLength();
    while (size > 0 && (static_cast<uint8>(inText[size]) & 0xC0) == 0x80) {
      --size;
    }
  }
  outText.Assign(inText.data(), size);
}

}  // namespace qlx::host
