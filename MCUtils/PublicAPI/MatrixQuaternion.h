// A rotation, or a rotation with a mirror, kept as a matrix and as a quaternion side by side. Each form has a valid
// bit and is made from the other on first use, so a value must not be read by two threads unless both are valid.
//
// A flipped value is the quaternion's rotation followed by a mirror in the XY plane: its matrix has the third row
// negated. The bit belongs to the quaternion form: a matrix carries its mirror in the sign of its determinant.
//
//   Operation                     singular matrix, zero quaternion   NaN or infinite element
//   GetMatrix, from a quaternion  identity                           identity
//   GetQuaternion, from a matrix  some unit quaternion               identity, not flipped
//   Product                       as above, and reports              reports
//   SphericalInterpolate          the first one's rotation           the first one's rotation
#pragma once

#include "MCQuaternion.h"

namespace qlx {

class MatrixQuaternion {
 public:
  static constexpr uint8 kMatrixValid = 1;
  static constexpr uint8 kQuaternionValid = 2;

  // The identity, with the matrix valid alone.
  MatrixQuaternion() = default;
  explicit MatrixQuaternion(const TMatrix33& inMatrix) : fMatrix(inMatrix) {}
  MatrixQuaternion(const TQuaternion& inQuaternion, bool inFlipped)
      : fQuaternion(inQuaternion), fFlipped(inFlipped), fFlags(kQuaternionValid) {}

  const TMatrix33& GetMatrix() const {
    MakeMatrixValid();
    return fMatrix;
  }
  const TQuaternion& GetQuaternion() const {
    MakeQuaternionValid();
    return fQuaternion;
  }
  bool IsFlipped() const {
    MakeQuaternionValid();
    return fFlipped;
  }
  bool IsMatrixValid() const { return (fFlags & kMatrixValid) != 0; }
  bool IsQuaternionValid() const { return (fFlags & kQuaternionValid) != 0; }

  // Both do nothing when the form is valid.
  void MakeMatrixValid() const;
  void MakeQuaternionValid() const;

  friend MatrixQuaternion operator*(const MatrixQuaternion& inFirst, const MatrixQuaternion& inSecond);

 private:
  friend struct MatrixQuaternionLayout;

  mutable TMatrix33 fMatrix;
  mutable TQuaternion fQuaternion;
  mutable bool fFlipped = false;
  mutable uint8 fFlags = kMatrixValid;
};

// The flip is the first one's.
MatrixQuaternion SphericalInterpolate(real32 inT, const MatrixQuaternion& inFrom, const MatrixQuaternion& inTo);

// (first - second) * factor, component by component; the flip is the first one's. A rate of change, no rotation.
MatrixQuaternion ScaledDifference(const MatrixQuaternion& inFirst, const MatrixQuaternion& inSecond, real32 inFactor);

}  // namespace qlx
