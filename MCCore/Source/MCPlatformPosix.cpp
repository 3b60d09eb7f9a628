#include "MCPlatform.h"

#include <dlfcn.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>

namespace qlx {

#if defined(__GLIBC__)
namespace {

constexpr std::uintptr_t kLargePage = std::uintptr_t{2} << 20;

std::size_t GetRoomForLargePages() noexcept {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  const auto pages = static_cast<std::size_t>(std::max(sysconf(_SC_PHYS_PAGES), 0L));
  const auto pageSize = static_cast<std::size_t>(std::max(sysconf(_SC_PAGESIZE), 0L));
  return std::min(kMost, pages / 8 * pageSize);
}

void AskForLargePages(void* inFirst, void* inEnd, std::size_t inMost) noexcept {
  const std::uintptr_t first = (reinterpret_cast<std::uintptr_t>(inFirst) + kLargePage - 1) / kLargePage * kLargePage;
  const auto end = reinterpret_cast<std::uintptr_t>(inEnd);
  if (first < end && end - first <= inMost) {
    madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
  }
}

}  // namespace
#endif

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

// One step of the heap's growth takes the whole room: only a range that is there can be spoken of to the system.
void PreferLargePages() noexcept {
#if defined(__GLIBC__)
  constexpr int kLargestInHeap = 32 << 20;  // the most that the runtime allows
  constexpr int kUsualStep = 128 << 10;
  const std::size_t room = GetRoomForLargePages();
  if (sizeof(void*) < 8 || mallopt(M_MMAP_THRESHOLD, kLargestInHeap) == 0 || mallopt(M_TRIM_THRESHOLD, INT_MAX) == 0 ||
      mallopt(M_TOP_PAD, static_cast<int>(room)) == 0) {
    return;
  }
  void* const grows = std::malloc(kLargePage);
  mallopt(M_TOP_PAD, kUsualStep);
  if (grows) {
    AskForLargePages(grows, sbrk(0), room + 2 * kLargePage);
  }
  std::free(grows);
#endif
}

}  // namespace qlx
