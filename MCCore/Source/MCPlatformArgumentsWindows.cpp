// A file of its own: only programs need the shell library.
#include <windows.h>

#include <shellapi.h>

#include "MCPlatform.h"
#include "MCPlatformWideWindows.h"

namespace qlx {

// `main` gets them in the code page of the machine, which lacks characters; the command line itself lacks none.
std::vector<std::string> Utf8Arguments(int inCount, const char* const* inArguments) {
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (!arguments) {
    return {inArguments, inArguments + inCount};
  }
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) {
    texts.push_back(detail::Utf8FromWide(arguments[i]));
  }
  LocalFree(arguments);
  return texts;
}

std::string ProgramFile() {
  std::wstring path(256, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return detail::Utf8FromWide(path.c_str());
    }
    path.resize(2 * path.size());  // it was cut
  }
}

std::string LibraryFileName(const std::string& inName) {
  return inName + ".dll";
}

}  // namespace qlx
