// What is wrong with a resource, or with the text that it is made from.
#pragma once

#include <stdexcept>
#include <string>

#include "MCTypes.h"

namespace qlx::host {

// `what()` is the whole line, with the place: "'Panl' 150, byte 34: a text of 70 bytes, of which 12 are there".
class ResourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// "'Panl'"; "0x00000001" for an id that is no text.
std::string QuotedID(MCID inID);

}  // namespace qlx::host
