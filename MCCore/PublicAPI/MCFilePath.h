// File paths as text: UTF-8 with forward slashes, on every system.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qlx {

// What the system calls by another separator is written with '/', which every system takes back.
inline std::string PathText(const std::filesystem::path& inPath) {
  const std::u8string text = inPath.generic_u8string();
  return {text.begin(), text.end()};
}

inline std::filesystem::path PathOfText(std::string_view inText) {
  return {std::u8string(inText.begin(), inText.end())};
}

}  // namespace qlx
