#include "TransformRotation.h"

#include <cmath>

#include "MCAssert.h"
#include "TransformEuler.h"

namespace qlx {

TransformRotation::TransformRotation(int32 inOrder) {
  SetOrder(inOrder);
}

void TransformRotation::SetOrder(int32 inOrder) {
  if (!MC_ASSERT_TEXT(IsOrderValid(inOrder), "invalid joint order") || inOrder == fOrder) {
    return;
  }
  if (fIsEulerValid && fEuler == kZeroVector) {
    fOrder = static_cast<int8>(inOrder);  // no angles are the same in every order
    return;
  }
  const TMatrix33& matrix = GetMatrix();
  fOrder = static_cast<int8>(inOrder);
  fIsEulerValid = false;
  if (!fIsMatrixPrimary) {
    TVector3 angles;
    bool isFlipped = false;
    MatrixToEuler(fOrder, matrix, angles, isFlipped);
    SetEuler(angles, isFlipped);
  }
}

void TransformRotation::SetMatrix(const TMatrix33& inMatrix) {
  MC_ASSERT_TEXT(std::fabs(std::fabs(inMatrix.GetDeterminant()) - 1) < 1e-3f,
                 "fabs(fabs(matrix.GetDeterminant()) - 1) < 1e-3f");
  StoreMatrix(inMatrix);
}

void TransformRotation::SetMatrixFromAxes(const TVector3& inX, const TVector3& inY, const TVector3& inZ) {
  StoreMatrix(TMatrix33::FromAxes(inX, inY, inZ));
}

void TransformRotation::StoreMatrix(const TMatrix33& inMatrix) {
  fMatrix = inMatrix;
  fIsMatrixPrimary = true;
  fIsMatrixValid = true;
  fIsEulerValid = false;
}

void TransformRotation::SetEuler(const TVector3& inAngles, bool inFlipped) {
  fEuler = inAngles;
  fIsFlipped = inFlipped;
  fIsMatrixPrimary = false;
  fIsMatrixValid = false;
  fIsEulerValid = true;
  ComputeMatrix();
}

const TVector3& TransformRotation::GetEuler() const {
  if (!fIsEulerValid) {
    ComputeEuler();
  }
  return fEuler;
}

bool TransformRotation::IsFlipped() const {
  if (!fIsEulerValid) {
    ComputeEuler();
  }
  return fIsFlipped;
}

void TransformRotation::ComputeMatrix() const {
  MC_ASSERT(!fIsMatrixValid);
  MC_ASSERT(fIsEulerValid);
  fMatrix = EulerToMatrix(fOrder, fEuler, fIsFlipped);
  fIsMatrixValid = true;
}

void TransformRotation::ComputeEuler() const {
  MC_ASSERT(!fIsEulerValid);
  MC_ASSERT(fIsMatrixValid);
  bool isFlipped = false;
  MatrixToEuler(fOrder, fMatrix, fEuler, isFlipped);
  fIsFlipped = isFlipped;
  fIsEulerValid = true;
}

bool TransformRotation::IsIdentity() const {
  return fIsEulerValid ? !fIsFlipped && fEuler == kZeroVector : GetMatrix().IsIdentity();
}

bool TransformRotation::IsDirect() const {
  return fIsEulerValid ? !fIsFlipped : GetMatrix().GetDeterminant64() > 0;
}

void TransformRotation::SetIdentity() {
  fMatrix = kIdentityMatrix;
  fEuler = kZeroVector;
  fIsFlipped = false;
  fIsMatrixValid = true;
  fIsEulerValid = true;
}

void TransformRotation::Multiply(const TransformRotation& inLeft, const TransformRotation& inRight) {
  StoreMatrix(inLeft.GetMatrix() * inRight.GetMatrix());
}

TransformRotation TransformRotation::GetInverse() const {
  TransformRotation inverse = *this;
  if (fIsMatrixPrimary) {
    MC_ASSERT(fIsMatrixValid);
    inverse.fMatrix = fMatrix.GetTranspose();
  } else {
    MC_ASSERT(fIsEulerValid);
    inverse.fEuler = -fEuler;
  }
  return inverse;
}

void TransformRotation::SetNearestEuler(const TVector3& inReference) {
  TVector3 first = GetEuler();
  const int index = GetMiddleIndex(fOrder);
  const real32 firstDistance = GetEulerDistance(first, inReference);
  TVector3 second = first;
  second[index] =
      first[index] > 0 ? (kRealHalfPI - first[index]) + kRealHalfPI : (-kRealHalfPI - first[index]) + -kRealHalfPI;
  second[(index + 1) % 3] += kRealPI;
  second[(index + 2) % 3] += kRealPI;
  const real32 secondDistance = GetEulerDistance(second, inReference);
  SetEuler(secondDistance < firstDistance ? second : first, fIsFlipped);
}

void TransformRotation::SetNearestEquivalentEuler(const TVector3& inReference) {
  const TVector3 nearest = NearestEquivalentEuler(fOrder, GetEuler(), inReference);
  SetEuler(nearest, fIsFlipped);
}

bool operator==(const TransformRotation& inA, const TransformRotation& inB) {
  if (inA.fOrder != inB.fOrder || inA.fIsMatrixPrimary != inB.fIsMatrixPrimary) {
    return false;
  }
  if (inA.fIsMatrixPrimary) {
    MC_ASSERT_TEXT(inA.fIsMatrixValid, "fIsMatrixValid");
    MC_ASSERT_TEXT(inB.fIsMatrixValid, "rotation.fIsMatrixValid");
    return inA.fMatrix == inB.fMatrix;
  }
  MC_ASSERT_TEXT(inA.fIsEulerValid, "fIsEulerValid");
  MC_ASSERT_TEXT(inB.fIsEulerValid, "rotation.fIsEulerValid");
  return inA.fEuler == inB.fEuler && inA.fIsFlipped == inB.fIsFlipped;
}

}  // namespace qlx
