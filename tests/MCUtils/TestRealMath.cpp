#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "Angles.h"
#include "AssertionGuard.h"
#include "NotFinite.h"
#include "OrthonormalBasis.h"
#include "RandomValues.h"
#include "SingularValues.h"
#include "Trigonometry.h"

namespace qlx::test {
namespace {

TEST(Angles, ShiftKeepsWhatIsNearAndTurnsWhatIsFar) {
  const std::tuple<const char*, real32, real32, real32> rows[] = {
      {"near", 3, 0, 3},
      {"half a turn stays", kRealPI, 0, kRealPI},
      {"one turn above", 7, 0, 7 - kRealTwoPI},
      {"one turn below", -4, 0, -4 + kRealTwoPI},
      {"turns of the reference are kept", 0.5f, 10 * kRealTwoPI, 0.5f + 10 * kRealTwoPI},
      {"infinite", kInfinity, 0, kInfinity},
      {"infinite reference", 1, -kInfinity, 1},
  };
  for (const auto& [label, angle, reference, expected] : rows) {
    EXPECT_FLOAT_EQ(ShiftByWholeTurns(angle, reference), expected) << label;
  }
  EXPECT_TRUE(std::isnan(ShiftByWholeTurns(kNaN, 0)));
}

TEST(Angles, NormalizeEndsForEveryNumber) {
  AssertionGuard guard({"x <= kRealPI"});
  for (const real32 angle : {1e9f, -1e15f, 1e30f, std::numeric_limits<real32>::max()}) {
    EXPECT_LE(std::fabs(NormalizeAngle(angle)), kRealPI) << angle;
  }
  EXPECT_EQ(NormalizeAngle(kInfinity), kInfinity);
}

TEST(Angles, ArcTangentOfNothingReports) {
  AssertionGuard guard({"(valueY != 0.0) || (valueX != 0.0)"});
  EXPECT_EQ(Angle(0, 0), 0);
  EXPECT_FLOAT_EQ(Angle(1, -1), 0.75f * kRealPI);
}

TEST(Trigonometry, AgreesWithTheLibraryEverywhere) {
  RandomValues random(14);
  for (int n = 0; n < 100000; ++n) {
    const auto size = static_cast<real64>(random.Between(0, 1));
    const real64 x = (n % 2 == 0 ? 12.0 : 2e6) * size * (random.Coin() ? 1 : -1);
    const TSineCosine both = SineCosine(x);
    ASSERT_NEAR(both.fSine, std::sin(x), 1e-10) << x;
    ASSERT_NEAR(both.fCosine, std::cos(x), 1e-10) << x;
    const real64 y = static_cast<real64>(random.Between(-1, 1)) * (random.Coin() ? 1e-6 : 10);
    ASSERT_NEAR(ArcTangent(y, x), std::atan2(y, x), 1e-11) << y << " over " << x;
  }
  for (const real64 y : {0.0, -0.0, 1.0, -1.0, 1e308, HUGE_VAL, -HUGE_VAL}) {
    for (const real64 x : {0.0, -0.0, 1.0, -1.0, 1e308, HUGE_VAL, -HUGE_VAL}) {
      EXPECT_NEAR(ArcTangent(y, x), std::atan2(y, x), 1e-11) << y << " over " << x;
      EXPECT_EQ(std::signbit(ArcTangent(y, x)), std::signbit(y)) << y << " over " << x;
    }
  }
  EXPECT_TRUE(std::isnan(ArcTangent(1, std::nan(""))));
  EXPECT_TRUE(std::isnan(SineCosine(HUGE_VAL).fSine) && std::isnan(SineCosine(std::nan("")).fCosine));
}

void ExpectBasis(const TVector3& inX, const TVector3& inY, const TVector3& inZ) {
  const TMatrix33 m = TMatrix33::FromAxes(inX, inY, inZ);
  EXPECT_TRUE((m * m.GetTranspose()).IsEqual(kIdentityMatrix, 1e-6f));
  EXPECT_GT(m.GetDeterminant(), 0);
}

TEST(OrthonormalBasis, AboutZ) {
  TVector3 x, y, z;
  for (const TVector3& direction : {TVector3(1, 2, 3), TVector3(-5, 0, 0), TVector3(1, 1e-8f, 0), kUnitY}) {
    FormOrthonormalBasisAboutZAxis(direction, x, y, z);
    ExpectBasis(x, y, z);
    EXPECT_GT(Dot(z, direction), 0);
  }
  FormOrthonormalBasisAboutZAxis(kUnitX, x, y, z);
  EXPECT_EQ(x, -kUnitZ);  // the unit Y vector stood in
  AssertionGuard guard({"Could not normalize vector in FormOrthonormalBasisAboutZAxis()",
                        "Could not normalize vector in FormOrthonormalBasisAboutZAxis()"});
  for (const TVector3& direction : {kZeroVector, TVector3(kNaN, 0, 0)}) {
    FormOrthonormalBasisAboutZAxis(direction, x, y, z);
    EXPECT_EQ(TMatrix33::FromAxes(x, y, z), kIdentityMatrix);
  }
}

TEST(OrthonormalBasis, OfThreeVectors) {
  const struct {
    const char* fLabel;
    TVector3 fA, fB, fC;
    TMatrix33 fExpected;
  } rows[] = {
      {"perpendicular", {2, 0, 0}, {0, 3, 0}, {0, 0, 4}, kIdentityMatrix},
      {"first missing", {0, 0, 0}, {0, 3, 0}, {0, 0, 4}, kIdentityMatrix},
      {"second missing", {2, 0, 0}, {0, 0, 0}, {0, 0, 4}, kIdentityMatrix},
      {"third missing", {2, 0, 0}, {0, 3, 0}, {0, 0, 0}, kIdentityMatrix},
      {"parallel, the last of the longest",
       {0, 0, 2},
       {0, 0, 2},
       {0, 0, -2},
       TMatrix33::FromAxes(kUnitY, kUnitX, -kUnitZ)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    TVector3 x, y, z;
    FormOrthonormalBasis(row.fA, row.fB, row.fC, x, y, z);
    ExpectBasis(x, y, z);
    EXPECT_TRUE(TMatrix33::FromAxes(x, y, z).IsEqual(row.fExpected, 1e-6f));
  }
}

TEST(SingularValues, EndForEveryMatrix) {
  const TMatrix33 shear{1, 2, 0, 0, 1, 0.5f, 0, 0, 1};
  for (const real32 factor : {1.0f, 1e-30f, 1e-44f, 1e37f}) {
    SingularValues33 parts;
    ASSERT_TRUE(ComputeSingularValues(shear * factor, parts));
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) {
        real64 sum = 0;
        for (int k = 0; k < 3; ++k) {
          sum += parts.fU[i][k] * parts.fValues[k] * parts.fV[j][k];
        }
        EXPECT_NEAR(sum / static_cast<real64>((shear * factor)(0, 0)),
                    static_cast<real64>((shear * factor)(i, j) / (shear * factor)(0, 0)), 1e-6)
            << factor;
      }
    }
  }
}

TEST(SingularValues, RefusesWhatIsNotFinite) {
  SingularValues33 parts;
  EXPECT_FALSE(ComputeSingularValues(TMatrix33::FromDiagonal({1, kNaN, 1}), parts));
  EXPECT_FALSE(ComputeSingularValues(TMatrix33::FromDiagonal({1, kInfinity, 1}), parts));
  ASSERT_TRUE(ComputeSingularValues(TMatrix33::FromDiagonal(kZeroVector), parts));
  EXPECT_EQ(parts.fValues[0], 0);
}

}  // namespace
}  // namespace qlx::test
