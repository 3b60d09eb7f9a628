// Between the ten numbers of an element and its transforms: how a written transform becomes numbers.
//
// An element has a mode and a hot point of its own, which writes leave alone, and no scaling axes. A transform in the
// other mode, or about another hot point, is placed so that every point lands where that transform puts it. Turned
// scaling axes and shears cannot be held: the nearest rotation and the lengths of the axes are taken. A mirror is held
// as a negative scale.
//
// What a write does not change keeps its bits: rotation and scale are compared with those of the present transform, and
// a difference that rounding alone makes (on the way through matrices) counts as none.
#pragma once

#include "Channels.h"
#include "Transforms.h"

namespace qlx::host {

// What of an element's placement is no channel.
struct PoseFrame {
  int32 fMode = kTorvane;
  TVector3 fHotPoint;
};

TreeTransform MakeLocalTransform(const ChannelValues& inValues, const PoseFrame& inFrame);

// The matrix of a transform without scaling axes.
TOffsetMatrix33 MakeLocalMatrix(const TreeTransform& inTransform);

// True when every number of it is finite.
bool IsFiniteTransform(const TreeTransform& inTransform);

// True when the two differ in their position at most.
bool DifferInPositionOnly(const TreeTransform& inA, const TreeTransform& inB);

// The values that put an element where `inGiven` says. `inPresent` is its transform now, of the values `inOld`.
ChannelValues TakeLocalTransform(const TreeTransform& inGiven, const TreeTransform& inPresent,
                                 const ChannelValues& inOld);

// The same from a matrix to the parent's space. A singular one gives its scales and leaves the rotation.
ChannelValues TakeLocalMatrix(const TOffsetMatrix33& inMatrix, const PoseFrame& inFrame, const ChannelValues& inOld);

// The values whose matrix has this offset, with rotation and scale as they are; otherwise as above.
ChannelValues TakeLocalOffset(const TVector3& inOffset, const TreeTransform& inPresent, const ChannelValues& inOld);

// From scene space into the space of a parent, in 64-bit reals.
class ParentSpace {
 public:
  explicit ParentSpace(const TOffsetMatrix33& inParent) : fParent(inParent) {}

  // False when the parent's matrix is singular (a zero scale) or not finite: nothing may be mapped then.
  bool CanBeInverted() const;
  TVector3 MapPoint(const TVector3& inPoint) const;
  TOffsetMatrix33 MapMatrix(const TOffsetMatrix33& inMatrix) const;

 private:
  TVector3 Solve(const real64 (&inRight)[3]) const;

  TOffsetMatrix33 fParent;
};

}  // namespace qlx::host
