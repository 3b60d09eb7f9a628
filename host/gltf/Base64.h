// Base 64 text of bytes, as data URIs hold it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

std::string EncodeBase64(std::span<const uint8> inBytes);

// Strict: the length is a multiple of four, padding stands at the end alone, nothing else is in the text. Null else.
std::optional<std::vector<uint8>> DecodeBase64(std::string_view inText);

}  // namespace qlx::host
