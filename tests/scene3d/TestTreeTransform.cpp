#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "AssertionGuard.h"
#include "NotFinite.h"
#include "RealConstants.h"
#include "TransformSnap.h"
#include "Transforms.h"

namespace qlx::test {
namespace {

// Every field away from its default.
TreeTransform MakeFull(int32 inMode, int32 inOrder = 0) {
  TreeTransform transform;
  transform.SetMode(inMode);
  transform.SetHotPoint({1, 2, 3});
  transform.SetScalingAxes(EulerToMatrix(0, {0.4f, 0.1f, -0.7f}, false));
  TransformRotation rotation(inOrder);
  rotation.SetEuler({0.3f, -0.5f, 1.1f});
  transform.SetRotation(rotation);
  transform.SetPosition({-4, 5, 6});
  transform.SetUniformScale(1.5f);
  transform.SetScaling({2, 0.5f, 1});
  return transform;
}

TreeTransform MakeUnknownMode() {
  TreeTransform transform = MakeFull(kTorvane);
  const int32 mode = 2;
  std::memcpy(static_cast<void*>(&transform), &mode, sizeof(mode));  // as a host with more modes would send it
  return transform;
}

TEST(TreeTransform, EachModeMapsByItsFormula) {
  const TVector3 p{0.5f, -1, 2};
  const TreeTransform torvane = MakeFull(kTorvane);
  const TMatrix33 axes = torvane.GetScalingAxes();
  const TMatrix33 rotation = torvane.GetRotation().GetMatrix();
  const TVector3 q = TMatrix33::FromDiagonal(torvane.GetScaling()) * (axes * (p - torvane.GetHotPoint())) * 1.5f;
  EXPECT_TRUE(torvane.LocalToParent(p).IsEqual(rotation * q + torvane.GetPosition(), 1e-5f));
  const TreeTransform poser = MakeFull(kPoser);
  const TVector3 expected = axes.GetTranspose() * (rotation * q) + poser.GetHotPoint() + poser.GetPosition();
  EXPECT_TRUE(poser.LocalToParent(p).IsEqual(expected, 1e-5f));
}

TEST(TreeTransform, FactorsMultiplyToTheMappingAndTheirInverses) {
  for (const int32 mode : {kTorvane, kPoser}) {
    const TreeTransform transform = MakeFull(mode);
    const TMatrix33 forward = transform.GetRotationMatrix(false) * transform.GetScalingMatrix(false) * 1.5f;
    EXPECT_TRUE(transform.GetLocalToParent().fMatrix.IsEqual(forward, 1e-5f));
    EXPECT_TRUE(forward.IsEqual(
        transform.GetAxesMatrix(false) * transform.GetRotation().GetMatrix() * transform.GetScalingMatrix(false) * 1.5f,
        1e-5f));
    for (const auto& [factor, inverse] :
         {std::pair(transform.GetRotationMatrix(false), transform.GetRotationMatrix(true)),
          std::pair(transform.GetAxesMatrix(false), transform.GetAxesMatrix(true)),
          std::pair(transform.GetScalingAxesMatrix(false), transform.GetScalingAxesMatrix(true)),
          std::pair(transform.GetScalingMatrix(false), transform.GetScalingMatrix(true))}) {
      EXPECT_TRUE((factor * inverse).IsEqual(kIdentityMatrix, 1e-5f)) << mode;
    }
  }
}

TEST(TreeTransform, BoxesHoldEveryMappedCorner) {
  TreeTransform quarter;
  quarter.GetRotation().SetEuler({0, 0, kRealHalfPI});
  quarter.SetPosition({10, 0, 0});
  const TBox3 box{{0, 0, 0}, {1, 2, 3}};
  const TBox3 mapped = quarter.GetBox(box);
  EXPECT_TRUE(mapped.fMinimum.IsEqual({8, 0, 0}, 1e-5f));
  EXPECT_TRUE(mapped.fMaximum.IsEqual({10, 1, 3}, 1e-5f));
  const TBox3 back = quarter.GetLocalBox(mapped);
  EXPECT_TRUE(back.fMinimum.IsEqual(box.fMinimum, 1e-5f));
  EXPECT_TRUE(back.fMaximum.IsEqual(box.fMaximum, 1e-5f));
}

TEST(TreeTransform, ModeThereAndBackKeepsAnglesAndTurns) {
  AssertionGuard guard;
  for (const int32 order : {0, 1, 4, 5}) {
    TreeTransform transform = MakeFull(kTorvane, order);
    const TVector3 angles{0.3f + 2 * kRealTwoPI, -0.5f, 1.1f - kRealTwoPI};
    transform.GetRotation().SetEuler(angles);
    const TOffsetMatrix33 placement = transform.GetLocalToParent();
    transform.SetMode(kPoser);
    EXPECT_TRUE(transform.GetLocalToParent().IsEqual(placement, 1e-4f)) << order;
    EXPECT_FALSE(transform.GetRotation().IsMatrixPrimary());
    transform.SetMode(kTorvane);
    EXPECT_TRUE(transform.GetRotation().GetEuler().IsEqual(angles, 1e-4f)) << order;
    EXPECT_TRUE(transform.GetPosition().IsEqual({-4, 5, 6}, 1e-5f));
  }
}

TEST(TreeTransform, AnUnknownModeReportsAndChangesNothing) {
  const std::string unknown = "Unknown transform mode";
  AssertionGuard guard(
      {"mode == kPoser", "mode == kTorvane", "Unknown tree transform mode", unknown, unknown, unknown, unknown});
  for (const int32 mode : {kTorvane, kPoser}) {
    TreeTransform transform = MakeFull(mode);
    transform.SetMode(mode);
    transform.SetMode(2);
    EXPECT_EQ(transform, MakeFull(mode)) << "nor does the present one";
  }
  TreeTransform transform = MakeUnknownMode();
  const TreeTransform before = transform;
  transform.SetMode(kPoser);
  transform.MoveByLocalDelta(kOnesVector);
  transform.RotateAboutPivotAxis(kZeroVector, 0, 1);
  EXPECT_EQ(transform, before);
  EXPECT_EQ(transform.LocalToParent(kUnitX), kUnitX);
  EXPECT_EQ(transform.GetRotationMatrix(true), kIdentityMatrix);
}

TEST(TreeTransform, FromMatrixRebuildsThePlacement) {
  AssertionGuard guard({"matrix.IsFinite()", "matrix.IsFinite()"});
  for (const TVector3& scaling : {TVector3(2, 0.5f, 3), TVector3(2, -0.5f, 3), TVector3(1e-6f, 1e-6f, 2e-6f)}) {
    TreeTransform source;
    source.GetRotation().SetEuler({0.3f, -0.5f, 1.1f});
    source.SetPosition({7, 8, 9});
    source.SetScaling(scaling);
    TreeTransform rebuilt = MakeFull(kPoser);
    rebuilt.SetFromMatrix(source.GetLocalToParent());
    EXPECT_EQ(rebuilt.GetMode(), kTorvane);
    EXPECT_TRUE(rebuilt.GetLocalToParent().IsEqualRelative(source.GetLocalToParent(), 1e-6f)) << scaling.x;
    EXPECT_EQ(rebuilt.GetRotation().IsFlipped(), scaling.y < 0);
  }
  TreeTransform defaults;
  defaults.SetUniformScale(0);
  TreeTransform flat = MakeFull(kPoser);
  flat.SetFromMatrix({TMatrix33::FromDiagonal({1, 0, 1}), {1, 2, 3}});
  EXPECT_EQ(flat, defaults);
  for (const real32 bad : {kNaN, kInfinity}) {
    TreeTransform transform = MakeFull(kPoser);
    transform.SetFromMatrix({TMatrix33::FromDiagonal({1, bad, 1}), {1, 2, 3}});
    EXPECT_EQ(transform, TreeTransform());
  }
}

TEST(TreeTransform, MovesByTheDeltaOfEitherSpace) {
  const TVector3 delta{1, -2, 3};
  const TVector3 p{0.5f, 1, 2};
  TreeTransform byLocal = MakeFull(kTorvane);
  byLocal.MoveByLocalDelta(delta);
  EXPECT_EQ(byLocal.GetHotPoint(), MakeFull(kTorvane).GetHotPoint() + delta);
  EXPECT_TRUE(byLocal.LocalToParent(p).IsEqual(MakeFull(kTorvane).LocalToParent(p), 1e-5f));
  TreeTransform byParent = MakeFull(kTorvane);
  byParent.MoveByParentDelta(delta);
  EXPECT_EQ(byParent.GetPosition(), MakeFull(kTorvane).GetPosition() + delta);
  EXPECT_TRUE(byParent.LocalToParent(p).IsEqual(MakeFull(kTorvane).LocalToParent(p), 1e-5f));
  TreeTransform poser = MakeFull(kPoser);
  poser.MoveByParentDelta(delta);
  EXPECT_EQ(poser.GetHotPoint(), MakeFull(kPoser).GetHotPoint());
  EXPECT_TRUE(poser.LocalToParent(p).IsEqual(MakeFull(kPoser).LocalToParent(p) + delta, 1e-5f));
}

TEST(TreeTransform, TurnsAboutAPivotInBothModes) {
  const TVector3 pivot{1, 0, 0};
  for (const int32 mode : {kTorvane, kPoser}) {
    TreeTransform transform = MakeFull(mode);
    transform.SetHotPoint(kZeroVector);
    TreeTransform turned = transform;
    turned.RotateAboutPivotAxis(pivot, 2, kRealHalfPI);
    const TMatrix33 turn = MakeAxisRotation(2, kRealHalfPI);
    const TVector3 p{0.5f, 1, 2};
    EXPECT_TRUE(turned.LocalToParent(p).IsEqual(pivot + turn * (transform.LocalToParent(p) - pivot), 1e-5f)) << mode;
    TreeTransform byAxis = transform;
    byAxis.RotateAboutPivot(pivot, {0, 0, 4}, kRealHalfPI);
    EXPECT_TRUE(byAxis.GetLocalToParent().IsEqual(turned.GetLocalToParent(), 1e-5f)) << mode;
  }
}

TEST(TreeTransform, NothingGuardsTheWayBackAgainstAZeroScale) {
  AssertionGuard guard;
  TreeTransform transform;
  transform.SetScaling({1, 0, 1});
  const TVector3 local = transform.ParentToLocalVector({3, 1, 5});
  EXPECT_TRUE(std::isinf(local.y) || std::isnan(local.y));
}

TreeTransform MakePlaced(const TVector3& inAngles, const TVector3& inPosition, real32 inScale, int32 inMode) {
  TreeTransform transform;
  transform.SetMode(inMode);
  transform.GetRotation().SetEuler(inAngles);
  transform.SetPosition(inPosition);
  transform.SetUniformScale(inScale);
  return transform;
}

TEST(TreeTransform, RelativeTurnsTheFirstIntoTheSecond) {
  AssertionGuard guard;
  for (const int32 mode : {kTorvane, kPoser}) {
    TreeTransform first = MakePlaced({0.3f, -0.5f, 1.1f}, {1, 2, 3}, 2, mode);
    TreeTransform second = MakePlaced({1, 0.2f, 0}, {-3, 0, 5}, 0.5f, mode);
    const TMatrix33 axes = EulerToMatrix(0, {0.4f, 0.1f, -0.7f}, false);
    for (TreeTransform* each : {&first, &second}) {
      each->SetScalingAxes(axes);
      each->SetScaling({1, 2, 3});
    }
    TreeTransform relative;
    ASSERT_TRUE(relative.MakeRelative(first, second));
    EXPECT_EQ(relative.GetScaling(), kOnesVector);
    EXPECT_EQ(relative.GetScalingAxes(), mode == kPoser ? axes : kIdentityMatrix);
    TreeTransform applied = first;
    EXPECT_TRUE(applied.ApplyRelative(relative));
    EXPECT_TRUE(applied.GetLocalToParent().IsEqual(second.GetLocalToParent(), 1e-5f)) << mode;
  }
}

TEST(TreeTransform, RelativeOfAStretchDividesTheScalings) {
  TreeTransform first;
  first.SetScaling({2, 0, 4});
  TreeTransform second;
  second.SetScaling({1, 5, 2});
  TreeTransform relative;
  ASSERT_TRUE(relative.MakeRelative(first, second));
  EXPECT_EQ(relative.GetScaling(), TVector3(0.5f, 0, 0.5f));
}

TEST(TreeTransform, RelativeThatDoesNotExistChangesNothing) {
  const TreeTransform plain = MakePlaced({0.3f, 0, 0}, {1, 2, 3}, 1, kTorvane);
  TreeTransform otherMode = plain;
  otherMode.SetMode(kPoser);
  TreeTransform otherAxes = plain;
  otherAxes.SetScalingAxes(EulerToMatrix(0, {0.01f, 0, 0}, false));
  TreeTransform tiny = plain;
  tiny.SetUniformScale(6.1e-05f);
  TreeTransform stretched = plain;
  stretched.SetScaling({1, 2, 1});
  const struct {
    const char* fLabel;
    TreeTransform fFirst, fSecond;
  } rows[] = {{"modes differ", plain, otherMode},
              {"axes differ", plain, otherAxes},
              {"uniform scale below 2^-14", tiny, plain},
              {"stretched and turned", plain, stretched}};
  for (const auto& row : rows) {
    TreeTransform relative = stretched;
    EXPECT_FALSE(relative.MakeRelative(row.fFirst, row.fSecond)) << row.fLabel;
    EXPECT_EQ(relative, stretched) << row.fLabel;
  }
  tiny.SetUniformScale(kRealEpsilon);
  EXPECT_TRUE(TreeTransform().MakeRelative(tiny, plain));
}

TEST(TreeTransform, ProductLeavesTheLeftStretchOut) {
  TreeTransform left = MakePlaced({0, 0, kRealHalfPI}, {10, 0, 0}, 2, kTorvane);
  left.SetHotPoint({1, 0, 0});
  TreeTransform right = MakePlaced({0.5f, 0, 0}, {3, 0, 0}, 3, kPoser);
  right.SetHotPoint({7, 8, 9});
  right.SetScaling({1, 2, 3});
  right.SetScalingAxes(EulerToMatrix(0, {0.4f, 0, 0}, false));
  const TreeTransform product = left * right;
  EXPECT_TRUE(product.GetPosition().IsEqual({10, 4, 0}, 1e-5f));
  EXPECT_EQ(product.GetUniformScale(), 6);
  EXPECT_EQ(product.GetHotPoint(), right.GetHotPoint());
  EXPECT_EQ(product.GetScaling(), right.GetScaling());
  EXPECT_EQ(product.GetScalingAxes(), kIdentityMatrix);
  EXPECT_EQ(product.GetMode(), kTorvane);
  EXPECT_EQ(product.GetRotation().GetMatrix(), left.GetRotation().GetMatrix() * right.GetRotation().GetMatrix());

  TreeTransform stretched = left;
  stretched.SetScaling({5, 6, 7});
  stretched.SetScalingAxes(EulerToMatrix(0, {0, 1, 0}, false));
  EXPECT_EQ(stretched * right, product);
}

TEST(TreeTransform, InterpolationBlendsEveryPart) {
  TreeTransform from = MakePlaced({0, 0, 3}, {0, 0, 0}, 1, kPoser);
  TreeTransform to = MakePlaced({0, 0, -3}, {4, 8, 0}, 3, kPoser);
  to.SetHotPoint({8, 0, 0});
  to.SetScaling({3, 1, 1});
  to.SetScalingAxes(EulerToMatrix(0, {0.8f, 0, 0}, false));
  TreeTransform blend;
  blend.Interpolate(0.25f, from, to);
  EXPECT_EQ(blend.GetPosition(), TVector3(1, 2, 0));
  EXPECT_EQ(blend.GetHotPoint(), TVector3(2, 0, 0));
  EXPECT_EQ(blend.GetScaling(), TVector3(1.5f, 1, 1));
  EXPECT_EQ(blend.GetUniformScale(), 1.5f);
  EXPECT_EQ(blend.GetMode(), kPoser);
  EXPECT_TRUE(blend.GetRotation().IsMatrixPrimary());
  // From 3 to -3 the shorter way leads through the half turn.
  const real32 angle = 3 + 0.25f * (kRealTwoPI - 6);
  EXPECT_TRUE(blend.GetRotation().GetMatrix().IsEqual(MakeAxisRotation(2, angle), 1e-5f));
  EXPECT_TRUE(blend.GetScalingAxes().IsEqual(MakeAxisRotation(0, 0.2f), 1e-5f));
}

TEST(TransformSnap, TheTwoFormsDifferForAnOddNegativeStep) {
  EXPECT_EQ(SnapAngleByDivision(4 / 65536.0f, -3 / 65536.0f), 3 / 65536.0f);
  EXPECT_EQ(SnapAngleByShift(4 / 65536.0f, -3 / 65536.0f), 0);
}

TEST(TransformSnap, RoundsToTheStepInFixedPoint) {
  const struct {
    const char* fLabel;
    real32 fAngle;
    real32 fStep;
    real32 fByDivision;
    real32 fByShift;
  } rows[] = {
      {"up", 0.9f, 0.25f, 1, 1},
      {"down", 0.8f, 0.25f, 0.75f, 0.75f},
      {"towards zero below zero", -0.9f, 0.25f, -0.75f, -0.75f},
      {"a step that is zero in fixed point", 0.9f, 1e-6f, 0.9f, 0.9f},
      {"no step", 0.9f, 0, 0.9f, 0.9f},
      {"an angle that fixed point cannot hold", 40000, 0.25f, 40000, 40000},
      {"a step that it cannot hold", 1, kInfinity, 1, 1},
      {"the largest of both", 32767.5f, 32767.5f, 32767.5f, 32767.5f},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SnapAngleByDivision(row.fAngle, row.fStep), row.fByDivision) << row.fLabel;
    EXPECT_EQ(SnapAngleByShift(row.fAngle, row.fStep), row.fByShift) << row.fLabel;
  }
  EXPECT_TRUE(std::isnan(SnapAngleByShift(kNaN, 1)));
}

TEST(TreeChainTransform, ScenePositionGoesThroughPivotAndParent) {
  TTreeChainTransform chain;
  chain.GetTransform() = MakeFull(kPoser);
  chain.SetPivot({1, 2, 3});
  chain.SetParentMatrix(TMatrix33::FromDiagonal({1, 2, 3}));
  chain.SetParentOffset({100, 0, 0});
  EXPECT_EQ(chain.GetScenePosition(), TVector3(-4 + 1 + 100, 2 * (5 + 2), 3 * (6 + 3)));
}

}  // namespace
}  // namespace qlx::test
