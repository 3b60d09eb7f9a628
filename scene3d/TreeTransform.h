// The placement of a scene element in its parent's space: a hot point, a scale along axes of its own, a rotation and a
// position. A plain value that crosses the border between host and plug-in as it lies in memory: no virtual
// operations, no allocation, and making one costs the filling of its fields.
//
// With p a local point, h the hot point, u the uniform scale, S the diagonal of the scaling, A the scaling axes, R the
// rotation's matrix and q = u * S * A * (p - h), the parent's point is
//
//   kTorvane   R * q + position                            the hot point lands on the position
//   kPoser     transpose(A) * R * q + h + position         the rotation acts in the frame of A
//
// A must be orthonormal. Scene units; radians.
//
//   Operation              zero scale, singular matrix               NaN or infinite input
//   LocalToParent*         maps                                      as arithmetic gives it
//   ParentToLocal*         infinities or NaN (nothing guards it)     as arithmetic gives it
//   GetParentToLocal       the same                                  the same
//   SetFromMatrix          defaults, with uniform scale 0            reports, defaults
//   MakeRelative           false below a uniform scale of 2^-14;     false where a check sees it
//                          scaling 0 where the first's is 0
//   Interpolate            blends                                    as arithmetic gives it; rotation of `from`
//   Rotate*                an axis without direction turns nothing   no snapping; NaN rotation reports
//   unknown mode           reports "Unknown transform mode" and does nothing: points, vectors and boxes come back as
//                          they are, matrices are the identity
#pragma once

#include "MCAssert.h"
#include "MCBox.h"
#include "TransformRotation.h"

namespace qlx {

enum TransformMode : int32 { kTorvane = 0, kPoser = 1 };

class TreeTransform {
 public:
  constexpr TreeTransform() = default;

  int32 GetMode() const { return fMode; }
  // Changes the numbers so that the placement stays. Euler angles stay in Euler form, near their old values (by
  // `SetNearestEuler`). The present mode does nothing at all; an unknown one reports and changes nothing.
  void SetMode(int32 inMode);

  const TVector3& GetHotPoint() const { return fHotPoint; }
  void SetHotPoint(const TVector3& inHotPoint) { fHotPoint = inHotPoint; }
  const TMatrix33& GetScalingAxes() const { return fScalingAxes; }
  void SetScalingAxes(const TMatrix33& inAxes) { fScalingAxes = inAxes; }
  const TransformRotation& GetRotation() const { return fRotation; }
  TransformRotation& GetRotation() { return fRotation; }
  void SetRotation(const TransformRotation& inRotation) { fRotation = inRotation; }
  const TVector3& GetPosition() const { return fPosition; }
  void SetPosition(const TVector3& inPosition) { fPosition = inPosition; }
  real32 GetUniformScale() const { return fUniformScale; }
  void SetUniformScale(real32 inScale) { fUniformScale = inScale; }
  const TVector3& GetScaling() const { return fScaling; }
  void SetScaling(const TVector3& inScaling) { fScaling = inScaling; }

  TVector3 LocalToParent(const TVector3& inPoint) const;
  TVector3 ParentToLocal(const TVector3& inPoint) const;
  TVector3 LocalToParentVector(const TVector3& inVector) const;
  TVector3 ParentToLocalVector(const TVector3& inVector) const;
  TOffsetMatrix33 GetLocalToParent() const;
  TOffsetMatrix33 GetParentToLocal() const;
  // The bounds of the eight mapped corners: of a local box in the parent's space, and the other way.
  TBox3 GetBox(const TBox3& inLocalBox) const;
  TBox3 GetLocalBox(const TBox3& inParentBox) const;

  // The factors of the mapping without its offset, and their inverses:
  // local to parent = GetRotationMatrix * u * GetScalingMatrix.
  TMatrix33 GetRotationMatrix(bool inInverse) const;
  TMatrix33 GetScalingAxesMatrix(bool inInverse) const;
  TMatrix33 GetAxesMatrix(bool inInverse) const;
  TMatrix33 GetScalingMatrix(bool inInverse) const;

  // In kTorvane, from any regular matrix; a shear is lost.
  void SetFromMatrix(const TOffsetMatrix33& inMatrix);

  void Translate(const TVector3& inDelta) { fPosition += inDelta; }
  void MoveByParentDelta(const TVector3& inDelta);
  // In kTorvane the element stays where it is and the hot point moves in it.
  void MoveByLocalDelta(const TVector3& inDelta);

  // Turn rotation and position about a pivot in the parent's space. With a snap step (radians) other than 0 the angle
  // is rounded to a multiple of it, in 16.16 fixed point. A step that is zero there does not snap, and an angle that
  // 16.16 cannot hold is left as it is.
  void RotateAboutPivot(const TVector3& inPivot, const TVector3& inAxis, real32 inAngle, real32 inSnapStep = 0);
  void RotateAboutPivotAxis(const TVector3& inPivot, int inAxis, real32 inAngle, real32 inSnapStep = 0);

  // Sets this transform to the one that turns the first into the second. False, with this unchanged, when there is
  // none: the modes or the scaling axes differ, or only a shear could do it. May be one of the two.
  [[nodiscard]] bool MakeRelative(const TreeTransform& inFirst, const TreeTransform& inSecond);
  // What `MakeRelative` gave, applied to the first, gives the second. Always true.
  bool ApplyRelative(const TreeTransform& inRelative);

  // Blends from the first (t = 0) to the second (t = 1): rotation and scaling axes on the shorter way round, the rest
  // in proportion. Mode and rotation order are those of the first; the rotation is matrix-primary.
  void Interpolate(real32 inT, const TreeTransform& inFrom, const TreeTransform& inTo);

  // The right one acts first. The scaling and the scaling axes of the left one play no part: a parent passes rotation,
  // position and uniform scale on to its children, never a stretch.
  friend TreeTransform operator*(const TreeTransform& inLeft, const TreeTransform& inRight);

  // All fields, each exactly.
  friend bool operator==(const TreeTransform& inA, const TreeTransform& inB);

 private:
  friend struct TransformLayout;

  bool CheckMode() const { return MC_ASSERT_TEXT(fMode == kTorvane || fMode == kPoser, "Unknown transform mode"); }
  // Of a mode that has been checked.
  TVector3 MapVector(const TVector3& inVector) const {
    const TVector3 scaled = Scale(fScaling, fScalingAxes * inVector) * fUniformScale;
    const TVector3 turned = fRotation.GetMatrix() * scaled;
    return fMode == kPoser ? turned * fScalingAxes : turned;
  }
  void TurnAbout(const TVector3& inPivot, const TMatrix33& inTurn);

  int32 fMode = kTorvane;
  TVector3 fHotPoint;
  TMatrix33 fScalingAxes;
  TransformRotation fRotation;
  TVector3 fPosition;
  real32 fUniformScale = 1;
  TVector3 fScaling{1, 1, 1};
};

using TTreeTransform = TreeTransform;

}  // namespace qlx
