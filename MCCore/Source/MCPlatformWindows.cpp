#include "MCPlatform.h"

#include <windows.h>

#include <cstdlib>

#include "MCPlatformWideWindows.h"

namespace qlx {

namespace detail {

std::wstring WideFromUtf8(const char* inText) {
  const int length = MultiByteToWideChar(CP_UTF8, 0, inText, -1, nullptr, 0);  // with the end mark
  if (length <= 0) {
    return {};
  }
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, inText, -1, wide.data(), length);
  wide.pop_back();
  return wide;
}

std::string Utf8FromWide(const wchar_t* inText) {
  const int length = WideCharToMultiByte(CP_UTF8, 0, inText, -1, nullptr, 0, nullptr, nullptr);
  if (length <= 0) {
    return {};
  }
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, inText, -1, text.data(), length, nullptr, nullptr);
  text.pop_back();
  return text;
}

}  // namespace detail

uint32 CurrentThreadID() noexcept {
  return GetCurrentThreadId();
}

void KeepThisLibraryLoaded() noexcept {
  static const char sHere = 0;
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<const wchar_t*>(&sHere), &module);
}

void* AllocateAligned(MCSize inSize, MCSize /*inAlignment*/) noexcept {
  return std::malloc(inSize);
}

void PreferLargePages() noexcept {}

}  // namespace qlx
