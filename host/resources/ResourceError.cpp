#include "ResourceError.h"

#include <fmt/format.h>

namespace qlx::host {

std::string QuotedID(MCID inID) {
  std::string text = "'";
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto character = static_cast<unsigned char>(inID >> shift);
    if (character < 0x20 || character > 0x7E) {
      return fmt::format("0x{:08X}", inID);
    }
    text.push_back(static_cast<char>(character));
  }
  return text + '\'';
}

}  // namespace qlx::host
