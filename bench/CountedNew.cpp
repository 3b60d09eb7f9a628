#include "CountedNew.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> gNewCount{0};

void* CountedBlock(std::size_t inSize) noexcept {
  gNewCount.fetch_add(1, std::memory_order_relaxed);
  return std::malloc(inSize != 0 ? inSize : 1);
}

void* CountedNew(std::size_t inSize) {
  if (void* const block = CountedBlock(inSize)) {
    return block;
  }
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t inSize) {
  return CountedNew(inSize);
}
void* operator new[](std::size_t inSize) {
  return CountedNew(inSize);
}
void* operator new(std::size_t inSize, const std::nothrow_t&) noexcept {
  return CountedBlock(inSize);
}
void* operator new[](std::size_t inSize, const std::nothrow_t&) noexcept {
  return CountedBlock(inSize);
}
void operator delete(void* inBlock) noexcept {
  std::free(inBlock);
}
void operator delete[](void* inBlock) noexcept {
  std::free(inBlock);
}
void operator delete(void* inBlock, std::size_t) noexcept {
  std::free(inBlock);
}
void operator delete[](void* inBlock, std::size_t) noexcept {
  std::free(inBlock);
}

namespace qlx::bench {

uint64 GetNewCount() {
  return gNewCount;
}

}  // namespace qlx::bench
