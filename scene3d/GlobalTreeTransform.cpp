#include "GlobalTreeTransform.h"

#include "MCAssert.h"
#include "OrthonormalBasis.h"

namespace qlx {

namespace {

// A rotation with the direction of the first axis that has one.
TMatrix33 MakeRotationFromOneAxis(const TMatrix33& inMatrix) {
  constexpr real32 kShortest = 0.001f;  // of the squared length
  for (int i = 0; i < 3; ++i) {
    const TVector3 axis = inMatrix.GetAxis(i);
    if (axis.IsFinite() && axis.GetMagnitudeSquared() > kShortest) {
      TVector3 directions[3];
      FormOrthonormalBasisAboutZAxis(axis, directions[0], directions[1], directions[2]);
      TMatrix33 rotation;
      rotation.SetAxis((i + 1) % 3, directions[0]);
      rotation.SetAxis((i + 2) % 3, directions[1]);
      rotation.SetAxis(i, directions[2]);
      return rotation;
    }
  }
  return {};
}

}  // namespace

void GlobalTreeTransform::SetParentToGlobal(const TOffsetMatrix33& inParentToGlobal) {
  fParentToGlobal = inParentToGlobal;
  fIsGlobalToParentValid = false;
  GetHotPointInGlobal();
}

const TOffsetMatrix33& GlobalTreeTransform::GetGlobalToParent() const {
  if (!fIsGlobalToParentValid) {
    fGlobalToParent = TOffsetMatrix33();
    const bool success = fParentToGlobal.GetInverse(fGlobalToParent);
    MC_ASSERT(success);
    fIsGlobalToParentValid = true;
  }
  return fGlobalToParent;
}

const TVector3& GlobalTreeTransform::GetHotPointInGlobal() const {
  fHotPointInGlobal = fParentToGlobal.MapPoint(LocalToParent(GetHotPoint()));
  return fHotPointInGlobal;
}

void GlobalTreeTransform::SetHotPointInGlobal(const TVector3& inGlobalPoint) {
  const TVector3 inParent = GetGlobalToParent().MapPoint(inGlobalPoint);
  SetHotPoint(ParentToLocal(inParent));
  // The hot point's own place in the parent follows from the mode alone; the position brings it there.
  Translate(inParent - LocalToParent(GetHotPoint()));
  MC_ASSERT_TEXT((GetHotPointInGlobal() - inGlobalPoint).GetMagnitudeSquared() < 1e-8f,
                 "(GetHotPointInGlobal() - globalHotPoint).GetMagnitudeSquared() < 1e-8");
}

void GlobalTreeTransform::SetRotationKeepingAxis(const TMatrix33& inMatrix, int inMainAxis, bool inKeepEuler) {
  if (!MC_ASSERT_TEXT(inMainAxis >= 0 && inMainAxis < 3, "mainAxis >= 0 && mainAxis < 3")) {
    inMainAxis = 0;
  }
  SetMode(kTorvane);
  if (GetMode() != kTorvane) {
    return;
  }
  TransformRotation& rotation = GetRotation();
  const bool isEulerKept = inKeepEuler && !rotation.IsMatrixPrimary();
  const TVector3 angles = isEulerKept ? rotation.GetEuler() : TVector3();
  TMatrix33 matrix = GetAxesMatrix(true) * inMatrix * GetScalingMatrix(true);
  if (!matrix.MakeOrthonormal(inMainAxis)) {
    matrix = MakeRotationFromOneAxis(matrix);
  }
  rotation.SetMatrix(matrix);
  if (isEulerKept) {
    rotation.SetNearestEuler(angles);
  }
}

}  // namespace qlx
