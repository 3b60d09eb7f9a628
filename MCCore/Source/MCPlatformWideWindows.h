// The system's UTF-16 and our UTF-8. What is not valid becomes the replacement character.
#pragma once

#include <string>

namespace qlx::detail {

std::wstring WideFromUtf8(const char* inText);
std::string Utf8FromWide(const wchar_t* inText);

}  // namespace qlx::detail
