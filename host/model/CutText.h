// Texts that have to fit into what holds them.
#pragma once

#include <cstddef>
#include <string_view>

#include "MCUtf8.h"

namespace qlx::host {

// At most so many bytes of a text, up to a NUL, without a part of a character at the end.
inline std::string_view CutText(std::string_view inText, std::size_t inLongest) {
  const std::string_view text = inText.substr(0, inText.find('\0'));
  if (text.size() <= inLongest) {
    return text;
  }
  std::size_t end = inLongest;
  while (end > 0 && !MCUtf8BeginsCharacter(static_cast<uint8>(text[end]))) {
    --end;
  }
  return text.substr(0, end);
}

}  // namespace qlx::host
