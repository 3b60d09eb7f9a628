#include <gtest/gtest.h>

#include <tuple>

#include "AssertionGuard.h"
#include "MCMatrix.h"
#include "NotFinite.h"
#include "RandomValues.h"

namespace qlx::test {
namespace {

constexpr TMatrix33 kCounting{1, 2, 3, 4, 5, 6, 7, 8, 10};

template <class M, int N>
M RandomMatrix(RandomValues& ioRandom) {
  M m;
  for (auto& row : m.fElements) {
    for (real32& element : row) {
      element = ioRandom.Between(-3, 3);
    }
  }
  return m;
}

template <class M, int N>
void ExpectInversesUndo() {
  RandomValues random(17);
  for (int n = 0; n < 1000; ++n) {
    const M m = RandomMatrix<M, N>(random);
    M inverse;
    if (std::fabs(m.GetDeterminant()) > 0.5f) {
      ASSERT_TRUE(m.GetInverse(inverse));
      ASSERT_TRUE((m * inverse).IsEqual(M(), 2e-4f)) << "input " << n;
      ASSERT_TRUE((inverse * m).IsEqual(M(), 2e-4f)) << "input " << n;
      ASSERT_NEAR(m.GetDeterminant() * inverse.GetDeterminant(), 1, 1e-4) << "input " << n;
    }
  }
}

TEST(Matrix, VectorsAreColumnsAndAxesToo) {
  EXPECT_EQ(kCounting * TVector3(1, 10, 100), TVector3(321, 654, 1087));
  EXPECT_EQ(TVector3(1, 10, 100) * kCounting, TVector3(741, 852, 1063));
  EXPECT_EQ(kCounting.GetAxis(1), kCounting * kUnitY);
  EXPECT_EQ(kCounting.GetRow(1), TVector3(4, 5, 6));
  EXPECT_EQ(TMatrix33::FromAxes({1, 4, 7}, {2, 5, 8}, {3, 6, 10}), kCounting);
  EXPECT_EQ(kCounting.GetDeterminant(), -3);
  EXPECT_EQ((kCounting * TMatrix33(0, 1, 0, 0, 0, 1, 1, 0, 0)), TMatrix33(3, 1, 2, 6, 4, 5, 10, 7, 8));
}

TEST(Matrix, InverseUndoes) {
  ExpectInversesUndo<TMatrix22, 2>();
  ExpectInversesUndo<TMatrix33, 3>();
  ExpectInversesUndo<TMatrix44, 4>();
}

TEST(Matrix, SingularMatricesHaveNoInverse) {
  const std::tuple<const char*, TMatrix33, bool> rows[] = {
      {"zero", TMatrix33::FromDiagonal(kZeroVector), false},
      {"flat", TMatrix33::FromDiagonal({1, 0, 1}), false},
      {"rank two", {1, 2, 3, 4, 5, 6, 7, 8, 9}, false},
      {"rank two but for rounding", {0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.5f, 0.7f, 0.9f}, false},
      {"infinite", TMatrix33::FromDiagonal({1, kInfinity, 1}), false},
      {"not a number", TMatrix33::FromDiagonal({1, kNaN, 1}), false},
      {"inverse too large", TMatrix33::FromDiagonal({1e-40f, 1, 1}), false},
      {"very small", TMatrix33::FromDiagonal({1e-30f, 1e-30f, 1e-30f}), true},
      {"very large", TMatrix33::FromDiagonal({1e30f, 1e30f, 1e30f}), true},
      {"uneven", TMatrix33::FromDiagonal({1e-12f, 1, 1e12f}), true},
  };
  for (const auto& [label, matrix, isRegular] : rows) {
    SCOPED_TRACE(label);
    TMatrix33 inverse = kCounting;
    EXPECT_EQ(matrix.GetInverse(inverse), isRegular);
    if (isRegular) {
      EXPECT_TRUE((matrix * inverse).IsEqual(kIdentityMatrix, 1e-6f));
    } else {
      EXPECT_EQ(inverse, kCounting);
    }
  }
}

TEST(Matrix, OffsetMatrixMapsByTheRightOneFirst) {
  const TOffsetMatrix33 a{kCounting, {1, 2, 3}};
  const TOffsetMatrix33 b{TMatrix33::FromDiagonal({2, 1, 1}), {0, 0, 5}};
  const TVector3 point{1, -1, 2};
  EXPECT_EQ((a * b).MapPoint(point), a.MapPoint(b.MapPoint(point)));
  TOffsetMatrix33 inverse;
  ASSERT_TRUE(a.GetInverse(inverse));
  EXPECT_TRUE(inverse.MapPoint(a.MapPoint(point)).IsEqual(point, 1e-4f));
}

TEST(Matrix, OrthonormalKeepsItsAxisAndHandedness) {
  RandomValues random(3);
  for (int n = 0; n < 1000; ++n) {
    TMatrix33 m = RandomMatrix<TMatrix33, 3>(random);
    const int axis = random.Below(3);
    TVector3 direction = m.GetAxis(axis);
    const bool isDirect = m.GetDeterminant() > 0;
    if (std::fabs(m.GetDeterminant()) < 0.1f || !direction.Normalize()) {
      continue;
    }
    ASSERT_TRUE(m.MakeOrthonormal(axis));
    ASSERT_TRUE((m * m.GetTranspose()).IsEqual(kIdentityMatrix, 1e-6f)) << "input " << n;
    ASSERT_EQ(m.GetAxis(axis), direction) << "input " << n;
    ASSERT_EQ(m.GetDeterminant() > 0, isDirect) << "input " << n;
  }
}

TEST(Matrix, OrthonormalRefusesWhatHasNoPlane) {
  for (const TMatrix33& refused :
       {TMatrix33::FromAxes(kUnitX, kUnitX * 2, kUnitZ), TMatrix33::FromAxes(kZeroVector, kUnitY, kUnitZ),
        TMatrix33::FromDiagonal({1, 1, kInfinity})}) {
    TMatrix33 m = refused;
    EXPECT_FALSE(m.MakeOrthonormal(0));
    EXPECT_EQ(m, refused);
  }
  AssertionGuard guard({"keepAxis >= 0 && keepAxis < 3"});
  TMatrix33 m = TMatrix33::FromDiagonal({2, 3, 4});
  EXPECT_TRUE(m.MakeOrthonormal(3));
  EXPECT_EQ(m, kIdentityMatrix);
}

}  // namespace
}  // namespace qlx::test
