// Text for people: lines of a terminal, counts.
#pragma once

#include <string>
#include <string_view>

namespace qlx::host {

// One line that a terminal shows as it is: control characters, which names in files may hold, become "\x1B".
std::string Printable(std::string_view inText);

// "1 element", "3 elements"
std::string Counted(std::size_t inCount, std::string_view inNoun);

}  // namespace qlx::host
