// Nothing of the transforms allocates, the singular value decomposition apart: neither from the host nor by operator
// new, which this program counts.
#include <gtest/gtest.h>

#include "CountedNew.h"
#include "TestMemory.h"
#include "TransformInputs.h"

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
  const uint64 before = bench::GetNewCount();
  for (int n = 0; n < 600; ++n) {
    UseEverything(random, n % 6 == 2 || n % 6 == 3 ? 0 : n % 6);
  }
  EXPECT_EQ(bench::GetNewCount(), before);
  const DecomposedTransform sheared(TOffsetMatrix33{TMatrix33(1, 0.5f, 0, 0, 1, 0, 0, 0, 1), {}});
  EXPECT_TRUE(sheared.HasScalingAxes());
  EXPECT_GT(bench::GetNewCount(), before) << "the counter counts nothing";
  EXPECT_EQ(memory.GetRequests(), 0);
}

}  // namespace
}  // namespace qlx::test
