// Square matrices of 32-bit reals, stored row by row: element (i, j) is row i, column j, and `M * v` gives component i
// as the dot product of row i with v. So the axes of a matrix (the images of the unit vectors) are its COLUMNS.
// A vector times a matrix is the transposed product. The default of every matrix is the identity.
//
// Equality has three forms under three names, as for vectors (MCVector.h); the relative form measures by the largest
// element of both matrices.
//
//   Operation              singular                      NaN or infinite element
//   GetDeterminant         0, or rounding near it        NaN or infinity
//   GetInverse(out)        false, `out` unchanged        false, `out` unchanged
//   MakeOrthonormal(axis)  false, matrix unchanged       false, matrix unchanged
//     (a keep-axis out of range reports, and axis 0 is kept)
//   GetRow, GetAxis        an index out of range gives the last one
//
// A matrix counts as singular when its determinant is so small beside its rows or its columns that the rounding of
// 32-bit elements alone could have made it (2^-23). Scale does not matter: a thousandth of the identity is regular.
#pragma once

#include "MCVector.h"

namespace qlx {

struct TMatrix22 {
  real32 fElements[2][2] = {{1, 0}, {0, 1}};

  constexpr TMatrix22() = default;
  constexpr TMatrix22(real32 in00, real32 in01, real32 in10, real32 in11) : fElements{{in00, in01}, {in10, in11}} {}

  constexpr real32& operator()(int inRow, int inColumn) { return fElements[inRow][inColumn]; }
  constexpr real32 operator()(int inRow, int inColumn) const { return fElements[inRow][inColumn]; }

  real32 GetDeterminant() const;
  constexpr TMatrix22 GetTranspose() const {
    return {fElements[0][0], fElements[1][0], fElements[0][1], fElements[1][1]};
  }
  [[nodiscard]] bool GetInverse(TMatrix22& outInverse) const;

  bool IsEqual(const TMatrix22& inOther, real32 inTolerance) const;
  bool IsEqualRelative(const TMatrix22& inOther, real32 inTolerance) const;
  friend constexpr bool operator==(const TMatrix22&, const TMatrix22&) = default;
};

struct TMatrix33 {
  real32 fElements[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

  constexpr TMatrix33() = default;
  constexpr TMatrix33(real32 in00, real32 in01, real32 in02, real32 in10, real32 in11, real32 in12, real32 in20,
                      real32 in21, real32 in22)
      : fElements{{in00, in01, in02}, {in10, in11, in12}, {in20, in21, in22}} {}

  static constexpr TMatrix33 FromRows(const TVector3& inRow0, const TVector3& inRow1, const TVector3& inRow2) {
    return {inRow0.x, inRow0.y, inRow0.z, inRow1.x, inRow1.y, inRow1.z, inRow2.x, inRow2.y, inRow2.z};
  }
  static constexpr TMatrix33 FromAxes(const TVector3& inX, const TVector3& inY, const TVector3& inZ) {
    return {inX.x, inY.x, inZ.x, inX.y, inY.y, inZ.y, inX.z, inY.z, inZ.z};
  }
  static constexpr TMatrix33 FromDiagonal(const TVector3& inDiagonal) {
    return {inDiagonal.x, 0, 0, 0, inDiagonal.y, 0, 0, 0, inDiagonal.z};
  }

  // Indices are 0 to 2.
  constexpr real32& operator()(int inRow, int inColumn) { return fElements[inRow][inColumn]; }
  constexpr real32 operator()(int inRow, int inColumn) const { return fElements[inRow][inColumn]; }

  constexpr TVector3 GetRow(int inRow) const {
    const real32* row = fElements[inRow == 0 || inRow == 1 ? inRow : 2];
    return {row[0], row[1], row[2]};
  }
  constexpr TVector3 GetAxis(int inAxis) const {
    const int column = inAxis == 0 || inAxis == 1 ? inAxis : 2;
    return {fElements[0][column], fElements[1][column], fElements[2][column]};
  }
  constexpr void SetAxis(int inAxis, const TVector3& inValue) {
    const int column = inAxis == 0 || inAxis == 1 ? inAxis : 2;
    fElements[0][column] = inValue.x;
    fElements[1][column] = inValue.y;
    fElements[2][column] = inValue.z;
  }

  real32 GetDeterminant() const { return static_cast<real32>(GetDeterminant64()); }
  // The determinant in 64 bits: cannot overflow or vanish for want of range.
  constexpr real64 GetDeterminant64() const;
  constexpr TMatrix33 GetTranspose() const {
    return {fElements[0][0], fElements[1][0], fElements[2][0], fElements[0][1], fElements[1][1],
            fElements[2][1], fElements[0][2], fElements[1][2], fElements[2][2]};
  }
  [[nodiscard]] bool GetInverse(TMatrix33& outInverse) const;

  // Makes the axes perpendicular unit vectors. The kept axis keeps its direction, the one after it (in the circle
  // 0, 1, 2) turns within the plane of the two, and the third follows; the handedness stays what it was.
  [[nodiscard]] bool MakeOrthonormal(int inKeepAxis);

  bool IsIdentity() const { return *this == TMatrix33(); }
  bool IsFinite() const;
  real32 GetLargestSize() const;
  bool IsEqual(const TMatrix33& inOther, real32 inTolerance) const;
  bool IsEqualRelative(const TMatrix33& inOther, real32 inTolerance) const;
  friend constexpr bool operator==(const TMatrix33&, const TMatrix33&) = default;
};

struct TMatrix44 {
  real32 fElements[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

  constexpr real32& operator()(int inRow, int inColumn) { return fElements[inRow][inColumn]; }
  constexpr real32 operator()(int inRow, int inColumn) const { return fElements[inRow][inColumn]; }

  real32 GetDeterminant() const;
  TMatrix44 GetTranspose() const;
  [[nodiscard]] bool GetInverse(TMatrix44& outInverse) const;

  bool IsEqual(const TMatrix44& inOther, real32 inTolerance) const;
  bool IsEqualRelative(const TMatrix44& inOther, real32 inTolerance) const;
  friend constexpr bool operator==(const TMatrix44&, const TMatrix44&) = default;
};

// A matrix with offset: maps the point p to fMatrix * p + fOffset, and a vector by the matrix alone.
struct TOffsetMatrix33 {
  TMatrix33 fMatrix;
  TVector3 fOffset;

  constexpr TVector3 MapPoint(const TVector3& inPoint) const;
  constexpr TVector3 MapVector(const TVector3& inVector) const;
  // False, with `outInverse` unchanged, when the matrix is singular or anything is not finite.
  [[nodiscard]] bool GetInverse(TOffsetMatrix33& outInverse) const;

  bool IsFinite() const { return fMatrix.IsFinite() && fOffset.IsFinite(); }
  bool IsEqual(const TOffsetMatrix33& inOther, real32 inTolerance) const {
    return fMatrix.IsEqual(inOther.fMatrix, inTolerance) && fOffset.IsEqual(inOther.fOffset, inTolerance);
  }
  // Matrix and offset are measured apart, each by its own largest element.
  bool IsEqualRelative(const TOffsetMatrix33& inOther, real32 inTolerance) const {
    return fMatrix.IsEqualRelative(inOther.fMatrix, inTolerance) &&
           fOffset.IsEqualRelative(inOther.fOffset, inTolerance);
  }
  friend constexpr bool operator==(const TOffsetMatrix33&, const TOffsetMatrix33&) = default;
};

static_assert(sizeof(TMatrix22) == 16 && sizeof(TMatrix33) == 36 && sizeof(TMatrix44) == 64);
static_assert(sizeof(TOffsetMatrix33) == 48);

inline constexpr TMatrix33 kIdentityMatrix{};

constexpr TVector2 operator*(const TMatrix22& inM, const TVector2& inV) {
  return {inM(0, 0) * inV.x + inM(0, 1) * inV.y, inM(1, 0) * inV.x + inM(1, 1) * inV.y};
}

constexpr TVector3 operator*(const TMatrix33& inM, const TVector3& inV) {
  return {inM(0, 0) * inV.x + inM(0, 1) * inV.y + inM(0, 2) * inV.z,
          inM(1, 0) * inV.x + inM(1, 1) * inV.y + inM(1, 2) * inV.z,
          inM(2, 0) * inV.x + inM(2, 1) * inV.y + inM(2, 2) * inV.z};
}

constexpr TVector4 operator*(const TMatrix44& inM, const TVector4& inV) {
  TVector4 result;
  for (int i = 0; i < 4; ++i) {
    result[i] = inM(i, 0) * inV.x + inM(i, 1) * inV.y + inM(i, 2) * inV.z + inM(i, 3) * inV.w;
  }
  return result;
}

constexpr TVector2 operator*(const TVector2& inV, const TMatrix22& inM) {
  return inM.GetTranspose() * inV;
}
constexpr TVector3 operator*(const TVector3& inV, const TMatrix33& inM) {
  return inM.GetTranspose() * inV;
}
inline TVector4 operator*(const TVector4& inV, const TMatrix44& inM) {
  return inM.GetTranspose() * inV;
}

constexpr TMatrix22 operator*(const TMatrix22& inA, const TMatrix22& inB) {
  return {inA(0, 0) * inB(0, 0) + inA(0, 1) * inB(1, 0), inA(0, 0) * inB(0, 1) + inA(0, 1) * inB(1, 1),
          inA(1, 0) * inB(0, 0) + inA(1, 1) * inB(1, 0), inA(1, 0) * inB(0, 1) + inA(1, 1) * inB(1, 1)};
}

constexpr TMatrix33 operator*(const TMatrix33& inA, const TMatrix33& inB) {
  return TMatrix33::FromAxes(inA * inB.GetAxis(0), inA * inB.GetAxis(1), inA * inB.GetAxis(2));
}

TMatrix44 operator*(const TMatrix44& inA, const TMatrix44& inB);

constexpr TMatrix33 operator*(const TMatrix33& inM, real32 inFactor) {
  return TMatrix33::FromAxes(inM.GetAxis(0) * inFactor, inM.GetAxis(1) * inFactor, inM.GetAxis(2) * inFactor);
}

constexpr TMatrix33 operator/(const TMatrix33& inM, real32 inDivisor) {
  return TMatrix33::FromAxes(inM.GetAxis(0) / inDivisor, inM.GetAxis(1) / inDivisor, inM.GetAxis(2) / inDivisor);
}

// Maps by the right one first.
constexpr TOffsetMatrix33 operator*(const TOffsetMatrix33& inA, const TOffsetMatrix33& inB) {
  return {inA.fMatrix * inB.fMatrix, inA.MapPoint(inB.fOffset)};
}

constexpr real64 TMatrix33::GetDeterminant64() const {
  const auto element = [this](int inRow, int inColumn) { return static_cast<real64>(fElements[inRow][inColumn]); };
  return element(0, 0) * (element(1, 1) * element(2, 2) - element(1, 2) * element(2, 1)) -
         element(0, 1) * (element(1, 0) * element(2, 2) - element(1, 2) * element(2, 0)) +
         element(0, 2) * (element(1, 0) * element(2, 1) - element(1, 1) * element(2, 0));
}

constexpr TVector3 TOffsetMatrix33::MapPoint(const TVector3& inPoint) const {
  return fMatrix * inPoint + fOffset;
}

constexpr TVector3 TOffsetMatrix33::MapVector(const TVector3& inVector) const {
  return fMatrix * inVector;
}

}  // namespace qlx
