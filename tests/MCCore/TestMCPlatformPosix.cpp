// What a program asks of the system for its heap.
#if !defined(_WIN32)

#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "MCPlatform.h"

namespace qlx {
namespace {

// The system's word for large pages among the flags of the mapping that the address lies in.
bool HasLargePages(const void* inAddress) {
  const auto address = reinterpret_cast<std::uintptr_t>(inAddress);
  std::ifstream maps("/proc/self/smaps");
  bool isHere = false;
  for (std::string line; std::getline(maps, line);) {
    std::istringstream words(line);
    std::uintptr_t start = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    if (words >> std::hex >> start >> dash >> end && dash == '-') {
      isHere = start <= address && address < end;
    } else if (isHere && line.starts_with("VmFlags:")) {
      return line.find(" hg") != std::string::npos;
    }
  }
  return false;
}

TEST(MCPlatform, LargePagesAreAskedForWhatIsHandedOut) {
  if (sizeof(void*) < 8 || access("/sys/kernel/mm/transparent_hugepage", F_OK) != 0) {
    GTEST_SKIP() << "there are none";
  }
  if (mallopt(M_TRIM_THRESHOLD, 128 << 10) == 0) {
    GTEST_SKIP() << "the heap is a sanitizer's";
  }
  constexpr std::size_t kBlock = std::size_t{8} << 20;
  const auto run = [] {
    PreferLargePages();
    void* const block = std::malloc(kBlock);
    std::memset(block, 1, kBlock);
    const bool hasThem = HasLargePages(static_cast<char*>(block) + kBlock / 2);
    std::free(block);
    std::_Exit(hasThem ? 0 : 1);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace qlx

#endif
