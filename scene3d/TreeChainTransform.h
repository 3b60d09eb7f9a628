// An element's own transform together with what its parents add: a pivot, and the parent's space as a matrix with
// offset. Plain, as TreeTransform is; the host fills it. The pivot is the hot point for a transform in kPoser, and
// zero in kTorvane, so that the scene position is where the hot point lands.
//
// Nothing here fails: what is not finite gives what arithmetic gives.
#pragma once

#include "TreeTransform.h"

namespace qlx {

class TTreeChainTransform {
 public:
  constexpr TTreeChainTransform() = default;
  constexpr TTreeChainTransform(const TreeTransform& inTransform, const TVector3& inPivot,
                                const TOffsetMatrix33& inParent)
      : fTransform(inTransform), fPivot(inPivot), fParentMatrix(inParent.fMatrix), fParentOffset(inParent.fOffset) {}

  const TreeTransform& GetTransform() const { return fTransform; }
  TreeTransform& GetTransform() { return fTransform; }
  const TVector3& GetPivot() const { return fPivot; }
  void SetPivot(const TVector3& inPivot) { fPivot = inPivot; }
  const TMatrix33& GetParentMatrix() const { return fParentMatrix; }
  void SetParentMatrix(const TMatrix33& inMatrix) { fParentMatrix = inMatrix; }
  const TVector3& GetParentOffset() const { return fParentOffset; }
  void SetParentOffset(const TVector3& inOffset) { fParentOffset = inOffset; }

  // Position and pivot, carried into scene space.
  TVector3 GetScenePosition() const { return fParentMatrix * (fTransform.GetPosition() + fPivot) + fParentOffset; }

 private:
  friend struct TransformLayout;

  TreeTransform fTransform;
  TVector3 fPivot;
  TMatrix33 fParentMatrix;
  TVector3 fParentOffset;
};

}  // namespace qlx
