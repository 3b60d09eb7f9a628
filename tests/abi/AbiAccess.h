// What tests of the binary boundary look at: bytes of objects, and places in their tables.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qlx::abi {

template <class Value>
Value ValueAt(const void* inObject, std::size_t inOffset) {
  Value value;
  std::memcpy(&value, static_cast<const char*>(inObject) + inOffset, sizeof value);
  return value;
}

// The place of a virtual operation in its class's table. A pointer to one holds its byte offset in the table plus 1.
template <class Operation>
std::size_t SlotOf(Operation inOperation) {
  std::uintptr_t word = 0;
  static_assert(sizeof inOperation >= sizeof word);
  std::memcpy(&word, &inOperation, sizeof word);
  return (word - 1) / sizeof(void*);
}

// The operations follow one another in their table from a place on.
template <class... Operation>
void ExpectInOrder(std::size_t inFirst, Operation... inOperations) {
  const std::size_t slots[] = {SlotOf(inOperations)...};
  for (std::size_t i = 0; i < sizeof...(inOperations); ++i) {
    EXPECT_EQ(slots[i], inFirst + i) << "operation " << i;
  }
}

}  // namespace qlx::abi
