// A TreeTransform that knows its parent's place in the scene, and so its hot point in global space.
//
// The global-to-parent transform is computed from the other on first use and kept: reading writes the object, so it
// must not be read by two threads at once.
//
//   Operation                singular or degenerate                        NaN or infinite input
//   SetParentToGlobal        stores it                                     stores it
//   GetGlobalToParent        reports, the identity                         reports, the identity
//   SetHotPointInGlobal      as arithmetic gives it, and reports           the same
//   SetRotationKeepingAxis   a rotation about an axis that has a           the same; the identity when no axis
//                            direction; the identity when there is none    is finite
//     (an axis number out of range reports, and axis 0 is kept; an unknown mode reports, and changes nothing)
#pragma once

#include "TreeTransform.h"

namespace qlx {

class GlobalTreeTransform : public TreeTransform {
 public:
  GlobalTreeTransform() = default;
  explicit GlobalTreeTransform(const TreeTransform& inTransform) : TreeTransform(inTransform) {}
  GlobalTreeTransform(const TreeTransform& inTransform, const TOffsetMatrix33& inParentToGlobal)
      : TreeTransform(inTransform) {
    SetParentToGlobal(inParentToGlobal);
  }

  const TOffsetMatrix33& GetParentToGlobal() const { return fParentToGlobal; }
  void SetParentToGlobal(const TOffsetMatrix33& inParentToGlobal);
  const TOffsetMatrix33& GetGlobalToParent() const;

  // Where the hot point is now, in global space.
  const TVector3& GetHotPointInGlobal() const;
  // Moves the hot point within the element, which stays where it is: the position makes up for it.
  void SetHotPointInGlobal(const TVector3& inGlobalPoint);

  // Sets the rotation that a local-to-parent matrix asks for once axes and scaling are taken out of it, in kTorvane.
  // What is left need not be a rotation: the main axis keeps its direction, the others give way. With `inKeepEuler`
  // an Euler-primary rotation stays so, with the solution nearest to the old angles.
  void SetRotationKeepingAxis(const TMatrix33& inMatrix, int inMainAxis, bool inKeepEuler);

 private:
  mutable TVector3 fHotPointInGlobal;
  TOffsetMatrix33 fParentToGlobal;
  mutable TOffsetMatrix33 fGlobalToParent;
  mutable bool fIsGlobalToParentValid = false;
};

}  // namespace qlx
