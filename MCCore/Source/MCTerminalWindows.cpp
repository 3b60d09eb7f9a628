#include <windows.h>

#include "MCTerminal.h"

namespace qlx {

namespace {

// Older toolchains lack the name.
constexpr DWORD kVirtualTerminal = 0x0004;

bool GetErrorMode(HANDLE& outHandle, DWORD& outMode) {
  outHandle = GetStdHandle(STD_ERROR_HANDLE);
  return outHandle != nullptr && outHandle != INVALID_HANDLE_VALUE && GetConsoleMode(outHandle, &outMode) != 0;
}

}  // namespace

void PrepareTerminal() noexcept {
  SetConsoleOutputCP(CP_UTF8);
  HANDLE handle = nullptr;
  DWORD mode = 0;
  if (GetErrorMode(handle, mode)) {
    SetConsoleMode(handle, mode | kVirtualTerminal);
  }
}

bool IsErrorTerminal() noexcept {
  HANDLE handle = nullptr;
  DWORD mode = 0;
  return GetErrorMode(handle, mode) && (mode & kVirtualTerminal) != 0;
}

}  // namespace qlx
