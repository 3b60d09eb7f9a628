// Mapping, factors, modes and moves. What relates one transform to another stands in TreeTransformRelations.cpp.
#include "TreeTransform.h"

#include <cmath>

#include "MCAssert.h"
#include "TransformEuler.h"
#include "TransformSnap.h"

namespace qlx {

namespace {

TVector3 Divide(const TVector3& inA, const TVector3& inB) {
  return {inA.x / inB.x, inA.y / inB.y, inA.z / inB.z};
}

template <class Map>
TBox3 MapCorners(const TBox3& inBox, Map&& inMap) {
  const TVector3 first = inMap(inBox.GetCorner(0));
  TBox3 bounds{first, first};
  for (int i = 1; i < 8; ++i) {
    bounds.Extend(inMap(inBox.GetCorner(i)));
  }
  return bounds;
}

}  // namespace

TVector3 TreeTransform::LocalToParent(const TVector3& inPoint) const {
  if (!CheckMode()) {
    return inPoint;
  }
  const TVector3 mapped = MapVector(inPoint - fHotPoint);
  return fMode == kPoser ? mapped + fHotPoint + fPosition : mapped + fPosition;
}

TVector3 TreeTransform::ParentToLocal(const TVector3& inPoint) const {
  if (!CheckMode()) {
    return inPoint;
  }
  const TVector3 moved = inPoint - fPosition;
  return ParentToLocalVector(fMode == kPoser ? moved - fHotPoint : moved) + fHotPoint;
}

TVector3 TreeTransform::LocalToParentVector(const TVector3& inVector) const {
  return CheckMode() ? MapVector(inVector) : inVector;
}

TVector3 TreeTransform::ParentToLocalVector(const TVector3& inVector) const {
  if (!CheckMode()) {
    return inVector;
  }
  const TVector3 framed = fMode == kPoser ? fScalingAxes * inVector : inVector;
  return Divide(framed * fRotation.GetMatrix(), fScaling * fUniformScale) * fScalingAxes;
}

TOffsetMatrix33 TreeTransform::GetLocalToParent() const {
  if (!CheckMode()) {
    return {};
  }
  return {TMatrix33::FromAxes(LocalToParentVector(kUnitX), LocalToParentVector(kUnitY), LocalToParentVector(kUnitZ)),
          LocalToParent(kZeroVector)};
}

TOffsetMatrix33 TreeTransform::GetParentToLocal() const {
  if (!CheckMode()) {
    return {};
  }
  return {TMatrix33::FromAxes(ParentToLocalVector(kUnitX), ParentToLocalVector(kUnitY), ParentToLocalVector(kUnitZ)),
          ParentToLocal(kZeroVector)};
}

TBox3 TreeTransform::GetBox(const TBox3& inLocalBox) const {
  if (!CheckMode()) {
    return inLocalBox;
  }
  return MapCorners(inLocalBox, [this](const TVector3& corner) { return LocalToParent(corner); });
}

TBox3 TreeTransform::GetLocalBox(const TBox3& inParentBox) const {
  if (!CheckMode()) {
    return inParentBox;
  }
  return MapCorners(inParentBox, [this](const TVector3& corner) { return ParentToLocal(corner); });
}

TMatrix33 TreeTransform::GetRotationMatrix(bool inInverse) const {
  if (!CheckMode()) {
    return {};
  }
  const TMatrix33& rotation = fRotation.GetMatrix();
  if (fMode == kTorvane) {
    return inInverse ? rotation.GetTranspose() : rotation;
  }
  return inInverse ? rotation.GetTranspose() * fScalingAxes : fScalingAxes.GetTranspose() * rotation;
}

TMatrix33 TreeTransform::GetScalingAxesMatrix(bool inInverse) const {
  if (!CheckMode()) {
    return {};
  }
  return inInverse ? fScalingAxes.GetTranspose() : fScalingAxes;
}

TMatrix33 TreeTransform::GetAxesMatrix(bool inInverse) const {
  if (!CheckMode() || fMode == kTorvane) {
    return {};
  }
  return inInverse ? fScalingAxes : fScalingAxes.GetTranspose();
}

TMatrix33 TreeTransform::GetScalingMatrix(bool inInverse) const {
  if (inInverse) {
    return fScalingAxes.GetTranspose() * TMatrix33::FromDiagonal(Divide(kOnesVector, fScaling));
  }
  return TMatrix33::FromDiagonal(fScaling) * fScalingAxes;
}

void TreeTransform::SetMode(int32 inMode) {
  if (inMode == fMode) {
    return;
  }
  if (!MC_ASSERT_TEXT(fMode == kTorvane || fMode == kPoser, "Unknown tree transform mode")) {
    return;
  }
  const bool isToPoser = fMode == kTorvane;
  if (!(isToPoser ? MC_ASSERT_TEXT(inMode == kPoser, "mode == kPoser")
                  : MC_ASSERT_TEXT(inMode == kTorvane, "mode == kTorvane"))) {
    return;
  }
  const TOffsetMatrix33 reference = GetLocalToParent();
  const bool wasEuler = !fRotation.IsMatrixPrimary();
  const TVector3 angles = wasEuler ? fRotation.GetEuler() : TVector3();
  fPosition = isToPoser ? fPosition - fHotPoint : fPosition + fHotPoint;
  const TMatrix33 axes = isToPoser ? fScalingAxes : fScalingAxes.GetTranspose();
  // Without axes of its own the rotation is the same in both modes, to the last bit.
  if (!axes.IsIdentity()) {
    fRotation.SetMatrix(axes * fRotation.GetMatrix());
    if (wasEuler) {
      fRotation.SetNearestEuler(angles);
    }
  }
  fMode = inMode;
  MC_ASSERT_TEXT(GetLocalToParent().IsEqual(reference, 1e-3f), "newTfm.IsEqual(refTfm, 1e-3f)");
}

void TreeTransform::SetFromMatrix(const TOffsetMatrix33& inMatrix) {
  *this = TreeTransform();
  if (!MC_ASSERT_TEXT(inMatrix.IsFinite(), "matrix.IsFinite()")) {
    return;
  }
  const real64 size = std::pow(std::fabs(inMatrix.fMatrix.GetDeterminant64()), static_cast<real64>(0.33333334f));
  fUniformScale = static_cast<real32>(size);
  if (fUniformScale == 0) {
    return;
  }
  fPosition = inMatrix.fOffset;
  TMatrix33 rotation = inMatrix.fMatrix / fUniformScale;
  for (int i = 0; i < 3; ++i) {
    TVector3 axis = rotation.GetAxis(i);
    fScaling[i] = axis.GetMagnitude();
    axis.Normalize(0);
    rotation.SetAxis(i, axis);
  }
  if (!MC_ASSERT_TEXT(rotation.MakeOrthonormal(0), "success")) {
    rotation = kIdentityMatrix;
  }
  fRotation.SetMatrix(rotation);
}

void TreeTransform::MoveByParentDelta(const TVector3& inDelta) {
  if (!CheckMode()) {
    return;
  }
  if (fMode == kTorvane) {
    fHotPoint += ParentToLocalVector(inDelta);
  }
  fPosition += inDelta;
}

void TreeTransform::MoveByLocalDelta(const TVector3& inDelta) {
  if (!CheckMode()) {
    return;
  }
  if (fMode == kTorvane) {
    fPosition += LocalToParentVector(inDelta);
  }
  fHotPoint += inDelta;
}

void TreeTransform::RotateAboutPivot(const TVector3& inPivot, const TVector3& inAxis, real32 inAngle,
                                     real32 inSnapStep) {
  const real32 angle = SnapAngleByDivision(inAngle, inSnapStep);
  TurnAbout(inPivot, TQuaternion::FromAxisAngle(inAxis, angle).GetMatrix());
}

void TreeTransform::RotateAboutPivotAxis(const TVector3& inPivot, int inAxis, real32 inAngle, real32 inSnapStep) {
  TurnAbout(inPivot, MakeAxisRotation(inAxis, SnapAngleByShift(inAngle, inSnapStep)));
}

void TreeTransform::TurnAbout(const TVector3& inPivot, const TMatrix33& inTurn) {
  if (!CheckMode()) {
    return;
  }
  // In kPoser the rotation acts in the frame of the scaling axes; the turn is given in the parent's.
  const TMatrix33 turn = fMode == kPoser ? fScalingAxes * inTurn * fScalingAxes.GetTranspose() : inTurn;
  fRotation.SetMatrix(turn * fRotation.GetMatrix());
  fPosition = inPivot + inTurn * (fPosition - inPivot);
}

}  // namespace qlx
