#include "TestMemory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace qlx::test {

TestMemory::TestMemory() : fEarlier(std::exchange(gMemoryUtilities, this)) {}

TestMemory::~TestMemory() {
  gMemoryUtilities = fEarlier;
  EXPECT_EQ(fLive, 0) << "blocks that were never freed, or (below 0) freed twice";
}

MCResult MC_CALL TestMemory::QueryInterface(const MCGuid& inID, void** outObject) {
  const bool known = inID == IMCUnknown::kInterfaceID || inID == IMemoryUtilities::kInterfaceID;
  *outObject = known ? static_cast<IMemoryUtilities*>(this) : nullptr;
  return known ? MC_S_OK : MC_E_NOINTERFACE;
}

bool TestMemory::Refuses() {
  ++fRequests;
  // Counts down to the one refusal and stays below 0 from then on.
  if (fUntilRefusal < 0 || fUntilRefusal-- > 0) {
    return false;
  }
  fRefused = true;
  return true;
}

void* TestMemory::Request(MCSize inSize) {
  if (Refuses() || inSize > fLargest) {
    return nullptr;
  }
  void* const block = std::malloc(inSize ? inSize : 1);
  if (block) {
    std::memset(block, 0xCD, inSize);
    ++fLive;
  }
  return block;
}

void* MC_CALL TestMemory::Reallocate(void* inBlock, MCSize inSize) {
  if (!inBlock || Refuses()) {
    return nullptr;
  }
  return std::realloc(inBlock, inSize ? inSize : 1);
}

void TestMemory::GiveBack(void* inBlock) {
  if (inBlock) {
    --fLive;
    std::free(inBlock);
  }
}

}  // namespace qlx::test
