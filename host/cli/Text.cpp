#include "Text.h"

#include <fmt/format.h>

namespace qlx::host {

std::string TextFromID(MCID inID) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto character = static_cast<unsigned char>(inID >> shift);
    if (character < 0x20 || character > 0x7E) {
      return fmt::format("0x{:08X}", inID);
    }
    text.push_back(static_cast<char>(character));
  }
  return text;
}

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
