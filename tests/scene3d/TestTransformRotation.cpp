#include <gtest/gtest.h>

#include "AssertionGuard.h"
#include "RealConstants.h"
#include "TransformEuler.h"
#include "TransformRotation.h"

namespace qlx::test {
namespace {

const TVector3 kAngles{0.3f, -0.5f, 1.1f};

TransformRotation MakeEuler(int32 inOrder, const TVector3& inAngles, bool inFlipped = false) {
  TransformRotation rotation(inOrder);
  rotation.SetEuler(inAngles, inFlipped);
  return rotation;
}

TransformRotation MakeMatrix(const TMatrix33& inMatrix) {
  TransformRotation rotation;
  rotation.SetMatrix(inMatrix);
  return rotation;
}

TEST(TransformRotation, SettersChooseThePrimaryFormAndConversionsDoNot) {
  TransformRotation rotation = MakeEuler(3, kAngles);
  EXPECT_TRUE(rotation.IsMatrixValid() && rotation.IsEulerValid() && !rotation.IsMatrixPrimary());
  rotation.SetMatrix(EulerToMatrix(3, kAngles, false));
  EXPECT_TRUE(rotation.IsMatrixValid() && !rotation.IsEulerValid() && rotation.IsMatrixPrimary());
  EXPECT_TRUE(rotation.GetEuler().IsEqual(kAngles, 1e-6f));
  EXPECT_TRUE(rotation.IsEulerValid() && rotation.IsMatrixPrimary());
  rotation.SetIdentity();
  EXPECT_TRUE(rotation.IsIdentity() && rotation.IsEulerValid() && rotation.IsMatrixPrimary());
}

TEST(TransformRotation, MirroredMatrixIsFlippedWithItsThirdRowNegated) {
  const TMatrix33 plain = EulerToMatrix(0, kAngles, false);
  TransformRotation rotation = MakeMatrix(TMatrix33::FromRows(plain.GetRow(0), plain.GetRow(1), -plain.GetRow(2)));
  EXPECT_FALSE(rotation.IsDirect());
  EXPECT_TRUE(rotation.IsFlipped());
  EXPECT_TRUE(rotation.GetEuler().IsEqual(kAngles, 1e-6f));
}

TEST(TransformRotation, InverseOfEulerNegatesTheAnglesAndKeepsTheMatrix) {
  const TransformRotation rotation = MakeEuler(0, kAngles);
  const TransformRotation inverse = rotation.GetInverse();
  EXPECT_EQ(inverse.GetEuler(), -kAngles);
  EXPECT_TRUE(inverse.IsMatrixValid());
  EXPECT_EQ(inverse.GetMatrix(), rotation.GetMatrix());
}

TEST(TransformRotation, InverseOfMatrixTransposesAndKeepsTheAngles) {
  const TransformRotation rotation = MakeMatrix(EulerToMatrix(0, kAngles, false));
  EXPECT_FALSE(rotation.GetInverse().IsEulerValid());
  const TVector3 angles = rotation.GetEuler();
  const TransformRotation inverse = rotation.GetInverse();
  EXPECT_EQ(inverse.GetMatrix(), rotation.GetMatrix().GetTranspose());
  EXPECT_EQ(inverse.GetEuler(), angles);
}

TEST(TransformRotation, EqualityComparesThePrimaryForm) {
  EXPECT_EQ(MakeEuler(0, kAngles), MakeEuler(0, kAngles));
  EXPECT_FALSE(MakeEuler(0, kAngles) == MakeEuler(1, kAngles));
  EXPECT_FALSE(MakeEuler(0, kAngles) == MakeEuler(0, kAngles, true));
  EXPECT_FALSE(MakeEuler(0, kAngles) == MakeEuler(0, kAngles + TVector3(kRealTwoPI, 0, 0)));
  EXPECT_FALSE(MakeEuler(0, kZeroVector) == MakeMatrix(kIdentityMatrix));
  EXPECT_EQ(MakeMatrix(EulerToMatrix(0, kAngles, false)), MakeMatrix(EulerToMatrix(0, kAngles, false)));
}

TEST(TransformRotation, ProductMayWriteItsOperands) {
  const TransformRotation left = MakeEuler(0, kAngles);
  const TransformRotation right = MakeEuler(2, {1, 0.2f, 0.3f});
  const TMatrix33 expected = left.GetMatrix() * right.GetMatrix();
  TransformRotation product = left;
  product.MultiplyRight(right);
  EXPECT_EQ(product.GetMatrix(), expected);
  EXPECT_TRUE(product.IsMatrixPrimary() && !product.IsEulerValid());
  product = right;
  product.MultiplyLeft(left);
  EXPECT_EQ(product.GetMatrix(), expected);
  EXPECT_EQ(product.GetOrder(), 2);
}

TEST(TransformRotation, NearestSolutionKeepsTurnsFlipAndTies) {
  for (const bool flip : {false, true}) {
    TransformRotation rotation = MakeEuler(0, {0.3f, 0.5f, 1.1f}, flip);
    const TVector3 reference{0.3f + kRealPI, kRealPI - 0.5f, 1.1f + 5 * kRealPI};
    rotation.SetNearestEuler(reference);
    EXPECT_TRUE(rotation.GetEuler().IsEqual(reference, 1e-5f));
    EXPECT_EQ(rotation.IsFlipped(), flip);
    EXPECT_FALSE(rotation.IsMatrixPrimary());
  }
  // Both solutions are as far: the first stays.
  TransformRotation tie = MakeEuler(0, kZeroVector);
  tie.SetNearestEuler({kRealHalfPI, kRealHalfPI, kRealHalfPI});
  EXPECT_EQ(tie.GetEuler(), kZeroVector);
}

TEST(TransformRotation, SecondSolutionOfOrdersTwoAndThreeIsAnotherRotation) {
  for (const int32 order : {2, 3}) {
    TransformRotation rotation = MakeEuler(order, kAngles);
    const TMatrix33 matrix = rotation.GetMatrix();
    TVector3 reference = kAngles + TVector3(kRealPI, kRealPI, kRealPI);
    const int index = GetMiddleIndex(order);
    reference[index] = (kAngles[index] > 0 ? kRealPI : -kRealPI) - kAngles[index];
    rotation.SetNearestEuler(reference);
    EXPECT_TRUE(rotation.GetEuler().IsEqual(reference, 1e-5f));
    EXPECT_FALSE(rotation.GetMatrix().IsEqual(matrix, 0.1f));

    TransformRotation kept = MakeEuler(order, kAngles);
    kept.SetNearestEquivalentEuler(reference);
    EXPECT_TRUE(kept.GetMatrix().IsEqual(matrix, 1e-5f));
  }
}

TEST(TransformRotation, OrderChangesTheAnglesAndNotTheRotation) {
  for (const bool flip : {false, true}) {
    TransformRotation rotation = MakeEuler(0, kAngles, flip);
    const TMatrix33 matrix = rotation.GetMatrix();
    rotation.SetOrder(4);
    EXPECT_TRUE(rotation.GetMatrix().IsEqual(matrix, 1e-6f));
    EXPECT_FALSE(rotation.GetEuler().IsEqual(kAngles, 0.1f));
    EXPECT_FALSE(rotation.IsMatrixPrimary());
  }
  AssertionGuard guard({"invalid joint order"});
  TransformRotation rotation(7);
  EXPECT_EQ(rotation.GetOrder(), 0);
}

TEST(TransformRotation, AMatrixThatIsNoRotationReportsAndIsStored) {
  AssertionGuard guard({"fabs(fabs(matrix.GetDeterminant()) - 1) < 1e-3f"});
  const TMatrix33 stretched = TMatrix33::FromDiagonal({2, 1, 1});
  EXPECT_EQ(MakeMatrix(stretched).GetMatrix(), stretched);
  TransformRotation fromAxes;
  fromAxes.SetMatrixFromAxes(kUnitX * 2, kUnitY, kUnitZ);  // says nothing
  EXPECT_EQ(fromAxes.GetMatrix(), stretched);
}

}  // namespace
}  // namespace qlx::test
