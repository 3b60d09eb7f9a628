// A matrix with offset, taken apart into position, rotation, scaling and, where there is a shear, the axes along which
// the scaling acts: matrix = rotation * diag(scaling) * axes, which is a TreeTransform in kTorvane without hot point.
//
// A matrix whose three axes are perpendicular (their dot products at most 1e-4) takes the simple form: no separate
// axes, and a mirror is in the rotation. Any other goes through the singular value decomposition: there the scaling is
// in falling order, the rotation never mirrors, and a mirror is in the axes.
//
//   perpendicular axes, determinant below 1e-6   scaling zero, rotation and axes the identity; reports unless the
//                                                matrix is zero too
//   singular with a shear                        reports; the scaling has zeros
//   NaN or infinite element                      reports; the default transform (the identity)
#pragma once

#include "TreeTransform.h"

namespace qlx {

class DecomposedTransform {
 public:
  DecomposedTransform() = default;
  explicit DecomposedTransform(const TOffsetMatrix33& inTransform);

  const TVector3& GetPosition() const { return fPosition; }
  bool HasScalingAxes() const { return fHasScalingAxes; }
  const TMatrix33& GetScalingAxes() const { return fScalingAxes; }
  const TVector3& GetScaling() const { return fScaling; }
  const TransformRotation& GetRotation() const { return fRotation; }

  // What the parts make together.
  TOffsetMatrix33 GetMatrix() const;

 private:
  bool DecomposeSimple(const TMatrix33& inMatrix);
  void DecomposeGeneral(const TMatrix33& inMatrix);

  TVector3 fPosition;
  bool fHasScalingAxes = false;
  TMatrix33 fScalingAxes;
  TVector3 fScaling{1, 1, 1};
  TransformRotation fRotation;
};

}  // namespace qlx
