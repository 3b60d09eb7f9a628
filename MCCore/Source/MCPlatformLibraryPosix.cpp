#include <dlfcn.h>

#include <cstring>

#include "MCLibrary.h"

namespace qlx {

bool MCLibrary::Open(const char* inPath) {
  Close();
  fErrorText.clear();
  // Without a slash the system would search its own folders.
  const std::string path = std::strchr(inPath, '/') ? inPath : std::string("./") + inPath;
  // Everything is bound now, so that a missing symbol is an error here and not an end later.
  fHandle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!fHandle) {
    const char* text = dlerror();
    fErrorText = text ? text : "unknown error";
  }
  return IsOpen();
}

void MCLibrary::Close() noexcept {
  if (fHandle) {
    dlclose(fHandle);
    fHandle = nullptr;
  }
}

void* MCLibrary::FindSymbol(const char* inName) const noexcept {
  return fHandle ? dlsym(fHandle, inName) : nullptr;
}

}  // namespace qlx
