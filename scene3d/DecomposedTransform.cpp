#include "DecomposedTransform.h"

#include <cmath>

#include "MCAssert.h"
#include "SingularValues.h"

namespace qlx {

namespace {

TMatrix33 ToMatrix(const real64 (&inElements)[3][3], real64 inFactor) {
  TMatrix33 result;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      result(i, j) = static_cast<real32>(inElements[i][j] * inFactor);
    }
  }
  return result;
}

bool ArePerpendicular(const TVector3& inA, const TVector3& inB) {
  return std::fabs(Dot(inA, inB)) <= 0.0001f;
}

}  // namespace

DecomposedTransform::DecomposedTransform(const TOffsetMatrix33& inTransform) {
  if (!MC_ASSERT_TEXT(inTransform.IsFinite(), "transform.IsFinite()")) {
    return;
  }
  fPosition = inTransform.fOffset;
  if (!DecomposeSimple(inTransform.fMatrix)) {
    DecomposeGeneral(inTransform.fMatrix);
  }
  MC_ASSERT_TEXT(GetMatrix().IsEqualRelative(inTransform, 1e-4f), "check.IsEqualRelative(transform, 1e-4f)");
}

TOffsetMatrix33 DecomposedTransform::GetMatrix() const {
  return {fRotation.GetMatrix() * TMatrix33::FromDiagonal(fScaling) * fScalingAxes, fPosition};
}

bool DecomposedTransform::DecomposeSimple(const TMatrix33& inMatrix) {
  TVector3 axes[3] = {inMatrix.GetAxis(0), inMatrix.GetAxis(1), inMatrix.GetAxis(2)};
  if (!ArePerpendicular(axes[0], axes[1]) || !ArePerpendicular(axes[1], axes[2]) ||
      !ArePerpendicular(axes[2], axes[0])) {
    return false;
  }
  if (std::fabs(inMatrix.GetDeterminant64()) < 1e-06) {
    fScaling = kZeroVector;
    return true;
  }
  for (int i = 0; i < 3; ++i) {
    fScaling[i] = axes[i].GetMagnitude();
    axes[i].Normalize(0);
  }
  fRotation.SetMatrixFromAxes(axes[0], axes[1], axes[2]);
  return true;
}

void DecomposedTransform::DecomposeGeneral(const TMatrix33& inMatrix) {
  SingularValues33 parts;
  if (!ComputeSingularValues(inMatrix, parts)) {
    return;
  }
  for (int i = 0; i < 3; ++i) {
    fScaling[i] = static_cast<real32>(parts.fValues[i]);
    MC_ASSERT_TEXT(fScaling[i] > 0, "fScaling[i] > 0");
  }
  // The decomposition leaves the signs open. Both factors change sign together, so the product stays.
  const real64 sign = ToMatrix(parts.fU, 1).GetDeterminant64() < 0 ? -1 : 1;
  fRotation.SetMatrix(ToMatrix(parts.fU, sign));
  fScalingAxes = ToMatrix(parts.fV, sign).GetTranspose();
  fHasScalingAxes = !fScalingAxes.IsIdentity();
}

}  // namespace qlx
