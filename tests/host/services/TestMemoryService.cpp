#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "MCDeceased.h"
#include "services/MemoryService.h"

namespace qlx::host {
namespace {

TEST(MemoryService, CountsBlocksOfEveryKind) {
  const auto memory = MakeHosted<MemoryService>();
  void* plain = memory->Allocate(10);
  void* flagged = memory->AllocateWithFlags(10, 3);
  void* object = memory->NewObject(10);
  void* array = memory->NewArray(0);
  EXPECT_NE(array, nullptr) << "an empty block has an address";
  EXPECT_EQ(memory->GetAllocations(), 4U);
  EXPECT_EQ(memory->GetAlive(), 4U);
  plain = memory->Reallocate(plain, 100000);
  void* fresh = memory->Reallocate(nullptr, 8);
  EXPECT_EQ(memory->GetAlive(), 5U);
  memory->Free(plain);
  memory->Free(flagged);
  memory->Free(fresh);
  memory->DeleteObject(object);
  memory->DeleteArray(array);
  memory->Free(nullptr);
  memory->DeleteObject(nullptr);
  memory->DeleteArray(nullptr);
  EXPECT_EQ(memory->GetAlive(), 0U);
  EXPECT_EQ(memory->GetAllocations(), 6U);
}

TEST(MemoryService, AnswersNullWithoutMemoryAndKeepsTheBlock) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer ends the process when memory is refused";
#endif
  constexpr MCSize kTooMuch = static_cast<MCSize>(-1) - 0xFFFF;  // more than any system gives
  const auto memory = MakeHosted<MemoryService>();
  EXPECT_EQ(memory->Allocate(kTooMuch), nullptr);
  EXPECT_EQ(memory->NewObject(kTooMuch), nullptr);
  auto* block = static_cast<char*>(memory->Allocate(4));
  std::memcpy(block, "abc", 4);
  EXPECT_EQ(memory->Reallocate(block, kTooMuch), nullptr);
  EXPECT_STREQ(block, "abc");
  memory->Free(block);
  EXPECT_EQ(memory->GetAlive(), 0U);
  EXPECT_EQ(memory->GetAllocations(), 1U);
}

TEST(MemoryService, FreedObjectsCarryTheMark) {
  if constexpr (MemoryService::kKept == 0) {
    GTEST_SKIP() << "the sanitizer watches freed blocks in this build";
  } else {
    const auto memory = MakeHosted<MemoryService>();
    std::vector<void*> objects;
    for (std::size_t i = 0; i < MemoryService::kKept; ++i) {
      objects.push_back(memory->NewObject(1));
    }
    for (void* object : objects) {
      memory->DeleteObject(object);
    }
    for (void* object : objects) {
      ASSERT_TRUE(MCCheckDeceased(MCFirstWord(object)));
    }
  }
}

TEST(MemoryService, ThreadsMayShareIt) {
  const auto memory = MakeHosted<MemoryService>();
  const auto work = [&] {
    for (int i = 0; i < 2000; ++i) {
      memory->DeleteObject(memory->NewObject(32));
      memory->Free(memory->Allocate(8));
    }
  };
  std::thread other(work);
  work();
  other.join();
  EXPECT_EQ(memory->GetAllocations(), 8000U);
  EXPECT_EQ(memory->GetAlive(), 0U);
}

}  // namespace
}  // namespace qlx::host
