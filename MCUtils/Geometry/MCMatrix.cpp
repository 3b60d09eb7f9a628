#include "MCMatrix.h"

#include <cmath>
#include <limits>

#include "MCAssert.h"

namespace qlx {

namespace {

// The determinant that the rounding of 32-bit elements can bring about, beside the lengths of rows or columns.
constexpr real64 kRoundingSquared = 1.0 / (8388608.0 * 8388608.0);

// Looks at every element, which costs less than a branch at each.
template <int N>
bool AreElementsNear(const real32 (&inA)[N][N], const real32 (&inB)[N][N], real32 inTolerance) {
  constexpr real32 kLargest = std::numeric_limits<real32>::max();  // an infinite difference is never near
  const real32 allowed = inTolerance > kLargest ? kLargest : inTolerance;
  unsigned areNear = 1;
  for (int i = 0; i < N; ++i) {
    for (int j = 0; j < N; ++j) {
      areNear &= static_cast<unsigned>(std::fabs(inA[i][j] - inB[i][j]) <= allowed);
    }
  }
  return areNear != 0;
}

template <int N>
real32 LargestElement(const real32 (&inElements)[N][N]) {
  real32 largest = 0;
  for (const auto& row : inElements) {
    for (const real32 element : row) {
      largest = std::fmax(largest, std::fabs(element));
    }
  }
  return largest;
}

template <int N>
bool AreElementsNearRelative(const real32 (&inA)[N][N], const real32 (&inB)[N][N], real32 inTolerance) {
  return AreElementsNear(inA, inB, inTolerance * std::fmax(LargestElement(inA), LargestElement(inB)));
}

// The true test of a determinant whose square is small beside the size of the whole matrix.
template <int N>
bool IsRegularByRowsAndColumns(const real32 (&inElements)[N][N], real64 inSquaredDeterminant) {
  real64 rows = 1;
  real64 columns = 1;
  for (int i = 0; i < N; ++i) {
    real64 row = 0;
    real64 column = 0;
    for (int j = 0; j < N; ++j) {
      row += detail::Square(inElements[i][j]);
      column += detail::Square(inElements[j][i]);
    }
    rows *= row;
    columns *= column;
  }
  return inSquaredDeterminant > kRoundingSquared * std::fmin(rows, columns);
}

// A determinant that is not finite is not regular either: every comparison with NaN is false, and infinity is left
// out.
template <int N>
bool IsRegular(const real32 (&inElements)[N][N], real64 inDeterminant) {
  real64 sums[N] = {};
  for (int i = 0; i < N; ++i) {
    for (int j = 0; j < N; ++j) {
      sums[j] += detail::Square(inElements[i][j]);
    }
  }
  real64 sum = 0;
  for (const real64 part : sums) {
    sum += part;
  }
  constexpr real64 kPart = 1.0 / N;
  const real64 mean = sum * kPart;
  real64 power = mean;
  for (int i = 1; i < N; ++i) {
    power *= mean;
  }
  // No product of squared row or column lengths is above this power of their mean.
  const real64 squared = inDeterminant * inDeterminant;
  return std::fabs(inDeterminant) <= std::numeric_limits<real64>::max() &&
         (squared > kRoundingSquared * power || IsRegularByRowsAndColumns(inElements, squared));
}

template <int N>
bool AreElementsFinite(const real32 (&inElements)[N][N]) {
  real32 sum = 0;  // zero times what is not finite is NaN, and stays it
  for (const auto& row : inElements) {
    for (const real32 element : row) {
      sum += element * 0.0f;
    }
  }
  return sum == 0;
}

struct Row64 {
  real64 x;
  real64 y;
  real64 z;

  Row64(real64 inX, real64 inY, real64 inZ) : x(inX), y(inY), z(inZ) {}
  explicit Row64(const real32 (&inRow)[3]) : x(inRow[0]), y(inRow[1]), z(inRow[2]) {}

  static Row64 Cross(const Row64& inA, const Row64& inB) {
    return {inA.y * inB.z - inA.z * inB.y, inA.z * inB.x - inA.x * inB.z, inA.x * inB.y - inA.y * inB.x};
  }
};

// What the quick way of `GetInverse` leaves: ill-conditioned, very large or small, singular, not finite.
bool InvertIn64Bits(const TMatrix33& inMatrix, TMatrix33& outInverse) {
  const Row64 a(inMatrix.fElements[0]);
  const Row64 b(inMatrix.fElements[1]);
  const Row64 c(inMatrix.fElements[2]);
  const Row64 column0 = Row64::Cross(b, c);
  const Row64 column1 = Row64::Cross(c, a);
  const Row64 column2 = Row64::Cross(a, b);
  const real64 determinant = a.x * column0.x + a.y * column0.y + a.z * column0.z;
  if (!IsRegular(inMatrix.fElements, determinant)) {
    return false;
  }
  const real64 factor = 1.0 / determinant;
  const auto over = [factor](real64 inCofactor) { return static_cast<real32>(inCofactor * factor); };
  const TMatrix33 inverse{over(column0.x), over(column1.x), over(column2.x), over(column0.y), over(column1.y),
                          over(column2.y), over(column0.z), over(column1.z), over(column2.z)};
  if (!inverse.IsFinite()) {
    return false;
  }
  outInverse = inverse;
  return true;
}

}  // namespace

real32 TMatrix22::GetDeterminant() const {
  return static_cast<real32>(static_cast<real64>(fElements[0][0]) * static_cast<real64>(fElements[1][1]) -
                             static_cast<real64>(fElements[0][1]) * static_cast<real64>(fElements[1][0]));
}

bool TMatrix22::GetInverse(TMatrix22& outInverse) const {
  const real64 determinant = static_cast<real64>(fElements[0][0]) * static_cast<real64>(fElements[1][1]) -
                             static_cast<real64>(fElements[0][1]) * static_cast<real64>(fElements[1][0]);
  if (!IsRegular(fElements, determinant)) {
    return false;
  }
  const auto over = [determinant](real32 inElement) {
    return static_cast<real32>(static_cast<real64>(inElement) / determinant);
  };
  const TMatrix22 inverse{over(fElements[1][1]), over(-fElements[0][1]), over(-fElements[1][0]), over(fElements[0][0])};
  if (!AreElementsFinite(inverse.fElements)) {
    return false;
  }
  outInverse = inverse;
  return true;
}

bool TMatrix22::IsEqual(const TMatrix22& inOther, real32 inTolerance) const {
  return AreElementsNear(fElements, inOther.fElements, inTolerance);
}

bool TMatrix22::IsEqualRelative(const TMatrix22& inOther, real32 inTolerance) const {
  return AreElementsNearRelative(fElements, inOther.fElements, inTolerance);
}

bool TMatrix33::GetInverse(TMatrix33& outInverse) const {
  // The rows are a, b and c; the columns of the inverse are b x c, c x a and a x b, over the determinant.
  const auto& m = fElements;
  const real32 m00 = m[1][1] * m[2][2] - m[1][2] * m[2][1];
  const real32 m10 = m[1][2] * m[2][0] - m[1][0] * m[2][2];
  const real32 m20 = m[1][0] * m[2][1] - m[1][1] * m[2][0];
  const real32 determinant = m[0][0] * m00 + m[0][1] * m10 + m[0][2] * m20;
  const real32 sum = (m[0][0] * m[0][0] + m[0][1] * m[0][1] + m[0][2] * m[0][2]) +
                     (m[1][0] * m[1][0] + m[1][1] * m[1][1] + m[1][2] * m[1][2]) +
                     (m[2][0] * m[2][0] + m[2][1] * m[2][1] + m[2][2] * m[2][2]);
  // A matrix of everyday size that loses no more than a digit to cancellation is inverted in 32 bits. The cube of a
  // third of the sum is above every square of a determinant.
  if (!(sum > 1e-6f && sum < 1e6f && determinant * determinant > 4e-4f * (sum * sum * sum))) {
    return InvertIn64Bits(*this, outInverse);
  }
  const real32 f = 1.0f / determinant;
  outInverse = {m00 * f, (m[0][2] * m[2][1] - m[0][1] * m[2][2]) * f, (m[0][1] * m[1][2] - m[0][2] * m[1][1]) * f,
                m10 * f, (m[0][0] * m[2][2] - m[0][2] * m[2][0]) * f, (m[0][2] * m[1][0] - m[0][0] * m[1][2]) * f,
                m20 * f, (m[0][1] * m[2][0] - m[0][0] * m[2][1]) * f, (m[0][0] * m[1][1] - m[0][1] * m[1][0]) * f};
  return true;
}

bool TMatrix33::MakeOrthonormal(int inKeepAxis) {
  if (!MC_ASSERT_TEXT(inKeepAxis >= 0 && inKeepAxis < 3, "keepAxis >= 0 && keepAxis < 3")) {
    inKeepAxis = 0;
  }
  const int nextAxis = (inKeepAxis + 1) % 3;
  const int lastAxis = (inKeepAxis + 2) % 3;
  TVector3 kept = GetAxis(inKeepAxis);
  TVector3 next = GetAxis(nextAxis);
  // Each is brought to unit length first, so that scale plays no part in what counts as parallel.
  if (!IsFinite() || !kept.Normalize(0) || !next.Normalize(0)) {
    return false;
  }
  TVector3 last = Cross(kept, next);
  if (!last.Normalize()) {
    return false;
  }
  next = Cross(last, kept);
  if (!next.Normalize()) {
    return false;
  }
  const bool isMirrored = GetDeterminant64() < 0;
  SetAxis(inKeepAxis, kept);
  SetAxis(nextAxis, next);
  SetAxis(lastAxis, isMirrored ? -last : last);
  return true;
}

bool TMatrix33::IsFinite() const {
  return AreElementsFinite(fElements);
}

real32 TMatrix33::GetLargestSize() const {
  return LargestElement(fElements);
}

bool TMatrix33::IsEqual(const TMatrix33& inOther, real32 inTolerance) const {
  return AreElementsNear(fElements, inOther.fElements, inTolerance);
}

bool TMatrix33::IsEqualRelative(const TMatrix33& inOther, real32 inTolerance) const {
  return AreElementsNearRelative(fElements, inOther.fElements, inTolerance);
}

namespace {

// The six 2x2 determinants of two neighbouring rows, columns in the order 01, 02, 03, 12, 13, 23.
struct RowPairMinors {
  real64 f[6];

  RowPairMinors(const real32 (&inTop)[4], const real32 (&inBottom)[4]) {
    int next = 0;
    for (int i = 0; i < 3; ++i) {
      for (int j = i + 1; j < 4; ++j) {
        f[next++] = static_cast<real64>(inTop[i]) * static_cast<real64>(inBottom[j]) -
                    static_cast<real64>(inTop[j]) * static_cast<real64>(inBottom[i]);
      }
    }
  }
};

real64 Determinant44(const RowPairMinors& inTop, const RowPairMinors& inBottom) {
  return inTop.f[0] * inBottom.f[5] - inTop.f[1] * inBottom.f[4] + inTop.f[2] * inBottom.f[3] +
         inTop.f[3] * inBottom.f[2] - inTop.f[4] * inBottom.f[1] + inTop.f[5] * inBottom.f[0];
}

}  // namespace

real32 TMatrix44::GetDeterminant() const {
  return static_cast<real32>(Determinant44({fElements[0], fElements[1]}, {fElements[2], fElements[3]}));
}

TMatrix44 TMatrix44::GetTranspose() const {
  TMatrix44 result;
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      result(i, j) = (*this)(j, i);
    }
  }
  return result;
}

bool TMatrix44::GetInverse(TMatrix44& outInverse) const {
  const RowPairMinors top(fElements[0], fElements[1]);
  const RowPairMinors bottom(fElements[2], fElements[3]);
  const real64 determinant = Determinant44(top, bottom);
  if (!IsRegular(fElements, determinant)) {
    return false;
  }
  // Three elements of a row with the three minors of the columns that the element's own column leaves.
  static constexpr int kOthers[4][3] = {{1, 2, 3}, {0, 2, 3}, {0, 1, 3}, {0, 1, 2}};
  static constexpr int kMinors[4][3] = {{5, 4, 3}, {5, 2, 1}, {4, 2, 0}, {3, 1, 0}};
  // Column j of the inverse leaves row j out: the other row of its pair, with the minors of the other pair.
  static constexpr int kPartner[4] = {1, 0, 3, 2};
  TMatrix44 inverse;
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      const real32(&row)[4] = fElements[kPartner[j]];
      const real64(&minors)[6] = j < 2 ? bottom.f : top.f;
      const auto term = [&](int k) { return static_cast<real64>(row[kOthers[i][k]]) * minors[kMinors[i][k]]; };
      const real64 cofactor = term(0) - term(1) + term(2);
      inverse(i, j) = static_cast<real32>(((i + j) % 2 == 0 ? cofactor : -cofactor) / determinant);
    }
  }
  if (!AreElementsFinite(inverse.fElements)) {
    return false;
  }
  outInverse = inverse;
  return true;
}

bool TMatrix44::IsEqual(const TMatrix44& inOther, real32 inTolerance) const {
  return AreElementsNear(fElements, inOther.fElements, inTolerance);
}

bool TMatrix44::IsEqualRelative(const TMatrix44& inOther, real32 inTolerance) const {
  return AreElementsNearRelative(fElements, inOther.fElements, inTolerance);
}

TMatrix44 operator*(const TMatrix44& inA, const TMatrix44& inB) {
  TMatrix44 result;
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      result(i, j) = inA(i, 0) * inB(0, j) + inA(i, 1) * inB(1, j) + inA(i, 2) * inB(2, j) + inA(i, 3) * inB(3, j);
    }
  }
  return result;
}

bool TOffsetMatrix33::GetInverse(TOffsetMatrix33& outInverse) const {
  TOffsetMatrix33 inverse;
  if (!fMatrix.GetInverse(inverse.fMatrix)) {
    return false;
  }
  inverse.fOffset = -(inverse.fMatrix * fOffset);
  if (!inverse.fOffset.IsFinite()) {
    return false;
  }
  outInverse = inverse;
  return true;
}

}  // namespace qlx
