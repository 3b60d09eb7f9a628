#include "MatrixQuaternion.h"

#include <cstddef>

#include "MCAssert.h"

namespace qlx {

struct MatrixQuaternionLayout {
  static_assert(offsetof(MatrixQuaternion, fQuaternion) == 36);
  static_assert(offsetof(MatrixQuaternion, fFlipped) == 52);
  static_assert(offsetof(MatrixQuaternion, fFlags) == 53);
  static_assert(sizeof(MatrixQuaternion) == 56);
};

namespace {

TMatrix33 WithThirdRowNegated(const TMatrix33& inMatrix) {
  return TMatrix33::FromRows(inMatrix.GetRow(0), inMatrix.GetRow(1), -inMatrix.GetRow(2));
}

// The rotation as a mirror in the XY plane shows it.
TQuaternion Mirrored(const TQuaternion& inQ) {
  return {-inQ.x, -inQ.y, inQ.z, inQ.w};
}

}  // namespace

void MatrixQuaternion::MakeMatrixValid() const {
  if (IsMatrixValid()) {
    return;
  }
  MC_ASSERT_TEXT(IsQuaternionValid(), "fFlags&kQuaternionValid");
  fMatrix = fQuaternion.GetMatrix();
  if (fFlipped) {
    fMatrix = WithThirdRowNegated(fMatrix);
  }
  fFlags |= kMatrixValid;
}

void MatrixQuaternion::MakeQuaternionValid() const {
  if (IsQuaternionValid()) {
    return;
  }
  MC_ASSERT_TEXT(IsMatrixValid(), "fFlags&kMatrixValid");
  fFlipped = fMatrix.GetDeterminant64() < 0;
  fQuaternion = TQuaternion::FromMatrix(fFlipped ? WithThirdRowNegated(fMatrix) : fMatrix);
  fFlags |= kQuaternionValid;
}

// The mirror of a flipped second operand is carried across the first rotation to the left end of the product. That
// mirrors the first rotation; mirroring the second and then the whole product comes to the same.
MatrixQuaternion operator*(const MatrixQuaternion& inFirst, const MatrixQuaternion& inSecond) {
  const bool isMirrored = inSecond.IsFlipped();
  const TQuaternion& second = inSecond.GetQuaternion();
  TQuaternion product = inFirst.GetQuaternion() * (isMirrored ? Mirrored(second) : second);
  if (isMirrored) {
    product = Mirrored(product);
  }
  const MatrixQuaternion result(product, inFirst.IsFlipped() != isMirrored);
  MC_ASSERT_TEXT((inFirst.GetMatrix() * inSecond.GetMatrix()).IsEqual(result.GetMatrix(), 1e-4f),
                 "(m1*m2).IsEqual(m3, 1e-4f)");
  return result;
}

MatrixQuaternion SphericalInterpolate(real32 inT, const MatrixQuaternion& inFrom, const MatrixQuaternion& inTo) {
  return {SphericalInterpolate(inT, inFrom.GetQuaternion(), inTo.GetQuaternion()), inFrom.IsFlipped()};
}

MatrixQuaternion ScaledDifference(const MatrixQuaternion& inFirst, const MatrixQuaternion& inSecond, real32 inFactor) {
  const TQuaternion& a = inFirst.GetQuaternion();
  const TQuaternion& b = inSecond.GetQuaternion();
  const TQuaternion difference{(a.x - b.x) * inFactor, (a.y - b.y) * inFactor, (a.z - b.z) * inFactor,
                               (a.w - b.w) * inFactor};
  return {difference, inFirst.IsFlipped()};
}

}  // namespace qlx
