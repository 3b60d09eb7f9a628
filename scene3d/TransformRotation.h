// A rotation, with or without a mirror, as a matrix, as Euler angles in one of six orders, or as both. A form that is
// not valid is made from the other on first use: reading writes the object, so a rotation must not be read by two
// threads unless both forms are valid. Which form is the authoritative one is changed by the setters alone.
//
// Angles are radians about X, Y and Z. The axes of the matrix are its columns; a flipped rotation (negative
// determinant) has the third row of the matrix negated.
//
//   Operation          singular or not orthonormal matrix       NaN or infinite input
//   SetMatrix          reports, stores it                       reports, stores it
//   SetMatrixFromAxes  stores them                              stores them
//   SetEuler           -                                        stores them, the matrix has NaN elements
//   GetEuler           reports; finite angles                   reports; NaN or finite angles, never a loop
//   SetOrder(bad)      reports, changes nothing                 -
//   SetNearestEuler    as GetEuler                              reports; the angles of the first solution
#pragma once

#include "MCMatrix.h"

namespace qlx {

class TransformRotation {
 public:
  // The identity, both forms valid, Euler-primary, in order 0.
  constexpr TransformRotation() = default;
  explicit TransformRotation(int32 inOrder);

  int32 GetOrder() const { return fOrder; }
  // Keeps the rotation: the angles are converted to the new order.
  void SetOrder(int32 inOrder);

  bool IsMatrixPrimary() const { return fIsMatrixPrimary; }
  bool IsMatrixValid() const { return fIsMatrixValid; }
  bool IsEulerValid() const { return fIsEulerValid; }

  // Matrix-primary from then on.
  void SetMatrix(const TMatrix33& inMatrix);
  void SetMatrixFromAxes(const TVector3& inX, const TVector3& inY, const TVector3& inZ);
  // Euler-primary from then on; the matrix is computed at once.
  void SetEuler(const TVector3& inAngles, bool inFlipped = false);

  const TMatrix33& GetMatrix() const {
    if (!fIsMatrixValid) {
      ComputeMatrix();
    }
    return fMatrix;
  }
  const TVector3& GetEuler() const;
  bool IsFlipped() const;

  bool IsIdentity() const;
  bool IsDirect() const;
  // Which form is primary is left alone, and so is the order.
  void SetIdentity();

  // Sets this rotation to a product, by the matrices; either operand may be this rotation. Matrix-primary from then
  // on; the order is kept.
  void Multiply(const TransformRotation& inLeft, const TransformRotation& inRight);
  void MultiplyLeft(const TransformRotation& inLeft) { Multiply(inLeft, *this); }
  void MultiplyRight(const TransformRotation& inRight) { Multiply(*this, inRight); }

  // Inverts the primary form alone: an Euler-primary rotation gets its three angles negated, a matrix-primary one its
  // matrix transposed, and the other form keeps the value and the valid bit that it had. That is meant. So for an
  // Euler-primary rotation about more than one axis this is no inverse, and its matrix is still that of the rotation
  // itself; for a true inverse set the transposed matrix.
  TransformRotation GetInverse() const;

  // Goes over to Euler form with the solution nearest to the reference, whole turns included; a tie keeps the first.
  // The second solution mirrors the angle of `GetMiddleIndex`. For orders 2 and 3 that is not the axis that acts
  // second, so there the second solution is another rotation, and it is taken when it is nearer. Where the rotation
  // must be kept in every order, use `SetNearestEquivalentEuler`.
  void SetNearestEuler(const TVector3& inReference);
  void SetNearestEquivalentEuler(const TVector3& inReference);

  // Same order, same primary form, and that form exactly equal (for angles with the same flip).
  friend bool operator==(const TransformRotation& inA, const TransformRotation& inB);

 private:
  friend struct TransformLayout;

  void StoreMatrix(const TMatrix33& inMatrix);
  void ComputeMatrix() const;
  void ComputeEuler() const;

  int8 fOrder = 0;
  bool fIsMatrixPrimary = false;
  mutable TMatrix33 fMatrix;
  mutable TVector3 fEuler;
  mutable uint8 fIsMatrixValid : 1 = 1;
  mutable uint8 fIsEulerValid : 1 = 1;
  mutable uint8 fIsFlipped : 1 = 0;
};

}  // namespace qlx
