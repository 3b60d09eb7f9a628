#include "CountedNew.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
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

// In front of the aligned block stands the address of the one that it lies in.
void* CountedNew(std::size_t inSize, std::align_val_t inAlignment) {
  const auto alignment = static_cast<std::size_t>(inAlignment);
  if (inSize > std::numeric_limits<std::size_t>::max() - alignment - sizeof(void*)) {
    throw std::bad_alloc();
  }
  void* const whole = CountedNew(inSize + alignment + sizeof(void*));
  void* block = static_cast<void**>(whole) + 1;
  std::size_t room = inSize + alignment;
  std::align(alignment, inSize, block, room);
  std::memcpy(static_cast<std::byte*>(block) - sizeof(void*), &whole, sizeof(whole));
  return block;
}

void FreeAligned(void* inBlock) noexcept {
  void* whole = nullptr;
  if (inBlock != nullptr) {
    std::memcpy(&whole, static_cast<std::byte*>(inBlock) - sizeof(void*), sizeof(whole));
  }
  std::free(whole);
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
void* operator new(std::size_t inSize, std::align_val_t inAlignment) {
  return CountedNew(inSize, inAlignment);
}
void* operator new[](std::size_t inSize, std::align_val_t inAlignment) {
  return CountedNew(inSize, inAlignment);
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
void operator delete(void* inBlock, std::align_val_t) noexcept {
  FreeAligned(inBlock);
}
void operator delete[](void* inBlock, std::align_val_t) noexcept {
  FreeAligned(inBlock);
}
void operator delete(void* inBlock, std::size_t, std::align_val_t) noexcept {
  FreeAligned(inBlock);
}
void operator delete[](void* inBlock, std::size_t, std::align_val_t) noexcept {
  FreeAligned(inBlock);
}

namespace qlx::bench {

uint64 GetNewCount() {
  return gNewCount;
}

}  // namespace qlx::bench
