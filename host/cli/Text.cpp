#include "Text.h"

#include <fmt/format.h>

namespace qlx::host {

std::string Printable(std::string_view inText) {
  std::string text;
  for (const char character : inText) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) {
      text += fmt::format("\\x{:02X}", byte);
    } else {
      text.push_back(character);
    }
  }
  return text;
}

std::string Counted(std::size_t inCount, std::string_view inNoun) {
  return fmt::format("{} {}{}", inCount, inNoun, inCount == 1 ? "" : "s");
}

}  // namespace qlx::host
