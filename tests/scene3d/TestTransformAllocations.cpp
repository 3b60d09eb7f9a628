// Nothing of the transforms allocates, the singular value decomposition apart: neither from the host nor by operator
// new, which this program counts.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "AssertionGuard.h"
#include "TestMemory.h"
#include "TransformInputs.h"

namespace {

std::atomic<int> gNewCalls = 0;

void* CountedNew(std::size_t inSize) {
  ++gNewCalls;
  void* const block = std::malloc(inSize != 0 ? inSize : 1);
  return block != nullptr ? block : throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t inSize) {
  return CountedNew(inSize);
}
void* operator new[](std::size_t inSize) {
  return CountedNew(inSize);
}
void* operator new(std::size_t inSize, const std::nothrow_t&) noexcept {
  ++gNewCalls;
  return std::malloc(inSize != 0 ? inSize : 1);
}
void* operator new[](std::size_t inSize, const std::nothrow_t&) noexcept {
  ++gNewCalls;
  return std::malloc(inSize != 0 ? inSize : 1);
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

namespace qlx::test {
namespace {

void UseEverything(RandomValues& ioRandom, int32 inOrder) {
  TreeTransform first = MakeTestTransform(ioRandom, inOrder);
  const TreeTransform second = first * MakeTestTransform(ioRandom, inOrder);
  TreeTransform blend;
  blend.Interpolate(0.3f, first, second);
  blend.SetFromMatrix(first.GetLocalToParent());
  first.GetRotation().SetMatrix(first.GetRotation().GetMatrix());
  first.GetRotation().SetNearestEquivalentEuler(ioRandom.Vector(-9, 9));
  first.RotateAboutPivot(ioRandom.Vector(-9, 9), kUnitX, 1, 0.25f);
  if (blend.MakeRelative(first, first)) {
    blend.ApplyRelative(first);
  }
  GlobalTreeTransform global(first, second.GetParentToLocal());
  global.SetRotationKeepingAxis(second.GetLocalToParent().fMatrix, 1, true);
  const DecomposedTransform simple({first.GetRotation().GetMatrix(), {}});
  EXPECT_FALSE(simple.HasScalingAxes());
  first.GetBox({{-1, -1, -1}, {1, 1, 1}});
  first.GetLocalBox({{-1, -1, -1}, {1, 1, 1}});
}

TEST(TransformAllocations, NoneButForSingularValues) {
  TestMemory memory;
  RandomValues random(400);
  const int before = gNewCalls;
  for (int n = 0; n < 600; ++n) {
    UseEverything(random, n % 6 == 2 || n % 6 == 3 ? 0 : n % 6);
  }
  EXPECT_EQ(gNewCalls, before);
  const DecomposedTransform sheared(TOffsetMatrix33{TMatrix33(1, 0.5f, 0, 0, 1, 0, 0, 0, 1), {}});
  EXPECT_TRUE(sheared.HasScalingAxes());
  EXPECT_GT(gNewCalls, before) << "the counter counts nothing";
  EXPECT_EQ(memory.GetRequests(), 0);
}

}  // namespace
}  // namespace qlx::test
