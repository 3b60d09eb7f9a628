#include <windows.h>

#include "MCLibrary.h"
#include "MCPlatformWideWindows.h"

namespace qlx {

namespace {

std::wstring FullPath(const char* inPath) {
  const std::wstring path = detail::WideFromUtf8(inPath);
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

std::string TextOfError(DWORD inError) {
  wchar_t text[512] = L"";
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, inError, 0, text,
                 static_cast<DWORD>(std::size(text)), nullptr);
  std::string result = detail::Utf8FromWide(text);
  while (!result.empty() && (result.back() == '\n' || result.back() == '\r' || result.back() == ' ')) {
    result.pop_back();
  }
  return result.empty() ? "error " + std::to_string(inError) : result;
}

}  // namespace

bool MCLibrary::Open(const char* inPath) {
  Close();
  fErrorText.clear();
  const std::wstring path = FullPath(inPath);
  DWORD mode = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &mode);
  // With a full path this flag also looks for the libraries that it needs beside it.
  fHandle = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  const DWORD error = GetLastError();
  SetThreadErrorMode(mode, nullptr);
  if (!fHandle) {
    fErrorText = std::string(inPath) + ": " + TextOfError(error);
  }
  return IsOpen();
}

void MCLibrary::Close() noexcept {
  if (fHandle) {
    FreeLibrary(static_cast<HMODULE>(fHandle));
    fHandle = nullptr;
  }
}

void* MCLibrary::FindSymbol(const char* inName) const noexcept {
  return fHandle ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(fHandle), inName)) : nullptr;
}

}  // namespace qlx
