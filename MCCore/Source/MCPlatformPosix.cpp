#include "MCPlatform.h"

#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace qlx {

uint32 CurrentThreadID() noexcept {
  return static_cast<uint32>(syscall(SYS_gettid));
}

void KeepThisLibraryLoaded() noexcept {
  Dl_info info = {};
  static const char sHere = 0;
  if (dladdr(&sHere, &info) && info.dli_fname) {
    dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
  }
}

std::vector<std::string> Utf8Arguments(int inCount, const char* const* inArguments) {
  return {inArguments, inArguments + inCount};
}

std::string ProgramFile() {
  std::string path(256, '\0');
  for (;;) {
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) {
      return {};
    }
    if (static_cast<std::size_t>(length) < path.size()) {
      path.resize(static_cast<std::size_t>(length));
      return path;
    }
    path.resize(2 * path.size());  // it was cut
  }
}

std::string LibraryFileName(const std::string& inName) {
  return "lib" + inName + ".so";
}

void* AllocateAligned(MCSize inSize, MCSize inAlignment) noexcept {
  void* block = nullptr;
  return posix_memalign(&block, inAlignment, inSize) == 0 ? block : nullptr;
}

}  // namespace qlx
