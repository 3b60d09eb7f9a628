#include "ElementPose.h"

#include <cmath>

namespace qlx::host {

namespace {

// What conversions through 32-bit matrices cost at most, in proportion for scales and in radians for angles.
constexpr real32 kRounding = 1e-6f;

bool HasSameRotation(const TransformRotation& inA, const TransformRotation& inB) {
  if (inA == inB) {
    return true;
  }
  return inA.IsMatrixPrimary() != inB.IsMatrixPrimary() && inA.GetMatrix() == inB.GetMatrix();
}

void StorePosition(const TVector3& inPosition, ChannelValues& outValues) {
  outValues[Channel::kPositionX] = inPosition.x;
  outValues[Channel::kPositionY] = inPosition.y;
  outValues[Channel::kPositionZ] = inPosition.z;
}

void StoreRotation(const TVector3& inAngles, ChannelValues& outValues) {
  outValues[Channel::kRotationX] = inAngles.x;
  outValues[Channel::kRotationY] = inAngles.y;
  outValues[Channel::kRotationZ] = inAngles.z;
}

void StoreScale(const TVector3& inScale, ChannelValues& outValues) {
  outValues[Channel::kScaleX] = inScale.x;
  outValues[Channel::kScaleY] = inScale.y;
  outValues[Channel::kScaleZ] = inScale.z;
}

// The angles of a proper rotation nearest to those that are there.
void StoreNearestRotation(const TMatrix33& inRotation, ChannelValues& ioValues) {
  const TVector3 old = ioValues.GetRotation();
  const TVector3 nearest = QuaternionToEuler(0, TQuaternion::FromMatrix(inRotation), old);
  if (!nearest.IsEqual(old, kRounding)) {
    StoreRotation(nearest, ioValues);
  }
}

// The offset of a local matrix is where the local origin lands; the channels hold where the hot point is put.
TVector3 PositionOfOffset(const TVector3& inOffset, const TMatrix33& inLocal, const PoseFrame& inFrame) {
  const TVector3 landed = inOffset + inLocal * inFrame.fHotPoint;
  return inFrame.fMode == kPoser ? landed - inFrame.fHotPoint : landed;
}

// The same for the axes of a transform, which are needed only where there is a hot point.
TVector3 PositionOfOffset(const TVector3& inOffset, const TreeTransform& inLocal, const PoseFrame& inFrame) {
  return inFrame.fHotPoint == kZeroVector ? inOffset
                                          : PositionOfOffset(inOffset, MakeLocalMatrix(inLocal).fMatrix, inFrame);
}

// Takes a rotation that was written, with its mirror folded into the scale along Z.
void TakeRotation(const TransformRotation& inGiven, TVector3& ioScaling, ChannelValues& ioValues) {
  if (!inGiven.IsDirect()) {
    TMatrix33 proper = inGiven.GetMatrix();
    proper.SetAxis(2, -proper.GetAxis(2));
    ioScaling.z = -ioScaling.z;
    StoreNearestRotation(proper, ioValues);
  } else if (!inGiven.IsMatrixPrimary() && inGiven.GetOrder() == 0) {
    StoreRotation(inGiven.GetEuler(), ioValues);  // whole turns included: they were meant
  } else {
    StoreNearestRotation(inGiven.GetMatrix(), ioValues);
  }
}

// Signs for the three scales with the product that the matrix asks for: those that are there where they will do.
TVector3 ChooseSigns(const TVector3& inOldScale, bool inMirrored) {
  const auto sign = [](real32 value) { return value < 0 ? -1.0f : 1.0f; };
  const TVector3 old{sign(inOldScale.x), sign(inOldScale.y), sign(inOldScale.z)};
  if ((old.x * old.y * old.z < 0) == inMirrored) {
    return old;
  }
  return {1, 1, inMirrored ? -1.0f : 1.0f};
}

// Stores the scales along the axes, beside the uniform scale that is there; a vanished one is set to 1.
void StoreAxisScale(const TVector3& inScale, ChannelValues& ioValues) {
  const TVector3 old = ioValues.GetScale() * ioValues.GetUniformScale();
  if (inScale.IsEqualRelative(old, kRounding)) {
    return;
  }
  if (ioValues.GetUniformScale() == 0) {
    ioValues[Channel::kUniformScale] = 1;
  }
  StoreScale(inScale / ioValues.GetUniformScale(), ioValues);
}

}  // namespace

TreeTransform MakeLocalTransform(const ChannelValues& inValues, const PoseFrame& inFrame) {
  TreeTransform local;
  if (inFrame.fMode != kTorvane) {
    local.SetMode(inFrame.fMode);  // of a default transform: changes nothing else
  }
  local.SetHotPoint(inFrame.fHotPoint);
  local.SetPosition(inValues.GetPosition());
  if (inValues.GetRotation() != kZeroVector) {
    local.GetRotation().SetEuler(inValues.GetRotation());
  }
  local.SetUniformScale(inValues.GetUniformScale());
  local.SetScaling(inValues.GetScale());
  return local;
}

TOffsetMatrix33 MakeLocalMatrix(const TreeTransform& inTransform) {
  const TMatrix33& rotation = inTransform.GetRotation().GetMatrix();
  const TVector3 scale = inTransform.GetScaling() * inTransform.GetUniformScale();
  TOffsetMatrix33 local{
      TMatrix33::FromAxes(rotation.GetAxis(0) * scale.x, rotation.GetAxis(1) * scale.y, rotation.GetAxis(2) * scale.z),
      inTransform.GetPosition()};
  const TVector3& hotPoint = inTransform.GetHotPoint();
  if (hotPoint != kZeroVector) {
    local.fOffset +=
        inTransform.GetMode() == kPoser ? hotPoint - local.fMatrix * hotPoint : -(local.fMatrix * hotPoint);
  }
  return local;
}

bool IsFiniteTransform(const TreeTransform& inTransform) {
  const TransformRotation& rotation = inTransform.GetRotation();
  return inTransform.GetPosition().IsFinite() && inTransform.GetHotPoint().IsFinite() &&
         inTransform.GetScaling().IsFinite() && std::isfinite(inTransform.GetUniformScale()) &&
         inTransform.GetScalingAxes().IsFinite() && (!rotation.IsEulerValid() || rotation.GetEuler().IsFinite()) &&
         rotation.GetMatrix().IsFinite();
}

bool DifferInPositionOnly(const TreeTransform& inA, const TreeTransform& inB) {
  return inA.GetMode() == inB.GetMode() && inA.GetHotPoint() == inB.GetHotPoint() &&
         inA.GetUniformScale() == inB.GetUniformScale() && inA.GetScaling() == inB.GetScaling() &&
         inA.GetScalingAxes() == inB.GetScalingAxes() && HasSameRotation(inA.GetRotation(), inB.GetRotation());
}

ChannelValues TakeLocalTransform(const TreeTransform& inGiven, const TreeTransform& inPresent,
                                 const ChannelValues& inOld) {
  const PoseFrame frame{inPresent.GetMode(), inPresent.GetHotPoint()};
  if (!inGiven.GetScalingAxes().IsIdentity()) {
    return TakeLocalMatrix(inGiven.GetLocalToParent(), frame, inOld);
  }
  ChannelValues values = inOld;
  TVector3 scaling = inGiven.GetScaling();
  const bool isSameScale =
      scaling == inPresent.GetScaling() && inGiven.GetUniformScale() == inPresent.GetUniformScale();
  const bool isSameRotation = HasSameRotation(inGiven.GetRotation(), inPresent.GetRotation());
  if (!isSameRotation) {
    TakeRotation(inGiven.GetRotation(), scaling, values);
  }
  if (!isSameScale || scaling != inGiven.GetScaling()) {
    values[Channel::kUniformScale] = inGiven.GetUniformScale();
    StoreScale(scaling, values);
  }
  if (inGiven.GetMode() == frame.fMode && inGiven.GetHotPoint() == frame.fHotPoint) {
    StorePosition(inGiven.GetPosition(), values);
  } else {
    const TOffsetMatrix33 given = MakeLocalMatrix(inGiven);
    StorePosition(PositionOfOffset(given.fOffset, given.fMatrix, frame), values);
  }
  return values;
}

ChannelValues TakeLocalMatrix(const TOffsetMatrix33& inMatrix, const PoseFrame& inFrame, const ChannelValues& inOld) {
  ChannelValues values = inOld;
  StorePosition(PositionOfOffset(inMatrix.fOffset, inMatrix.fMatrix, inFrame), values);
  const TVector3 lengths{inMatrix.fMatrix.GetAxis(0).GetMagnitude(), inMatrix.fMatrix.GetAxis(1).GetMagnitude(),
                         inMatrix.fMatrix.GetAxis(2).GetMagnitude()};
  const bool isMirrored = inMatrix.fMatrix.GetDeterminant64() < 0;
  const TVector3 scale = Scale(lengths, ChooseSigns(inOld.GetScale() * inOld.GetUniformScale(), isMirrored));
  StoreAxisScale(scale, values);
  if (scale.x != 0 && scale.y != 0 && scale.z != 0) {
    TMatrix33 rotation =
        TMatrix33::FromAxes(inMatrix.fMatrix.GetAxis(0) / scale.x, inMatrix.fMatrix.GetAxis(1) / scale.y,
                            inMatrix.fMatrix.GetAxis(2) / scale.z);
    if (rotation.MakeOrthonormal(0)) {
      StoreNearestRotation(rotation, values);
    }
  }
  return values;
}

ChannelValues TakeLocalOffset(const TVector3& inOffset, const TreeTransform& inPresent, const ChannelValues& inOld) {
  const PoseFrame frame{inPresent.GetMode(), inPresent.GetHotPoint()};
  ChannelValues values = inOld;
  StorePosition(PositionOfOffset(inOffset, inPresent, frame), values);
  return values;
}

bool ParentSpace::CanBeInverted() const {
  TMatrix33 inverse;
  return fParent.IsFinite() && fParent.fMatrix.GetInverse(inverse);
}

TVector3 ParentSpace::MapPoint(const TVector3& inPoint) const {
  const TVector3& offset = fParent.fOffset;
  return Solve({static_cast<real64>(inPoint.x) - static_cast<real64>(offset.x),
                static_cast<real64>(inPoint.y) - static_cast<real64>(offset.y),
                static_cast<real64>(inPoint.z) - static_cast<real64>(offset.z)});
}

TOffsetMatrix33 ParentSpace::MapMatrix(const TOffsetMatrix33& inMatrix) const {
  const auto map = [this](const TVector3& axis) {
    return Solve({static_cast<real64>(axis.x), static_cast<real64>(axis.y), static_cast<real64>(axis.z)});
  };
  return {TMatrix33::FromAxes(map(inMatrix.fMatrix.GetAxis(0)), map(inMatrix.fMatrix.GetAxis(1)),
                              map(inMatrix.fMatrix.GetAxis(2))),
          MapPoint(inMatrix.fOffset)};
}

// By cofactors: row i of the adjugate is the cross product of the two columns after column i.
TVector3 ParentSpace::Solve(const real64 (&inRight)[3]) const {
  const auto m = [this](int row, int column) { return static_cast<real64>(fParent.fMatrix(row, column)); };
  real64 solved[3];
  real64 determinant = 0;
  for (int i = 0; i < 3; ++i) {
    const int a = (i + 1) % 3;
    const int b = (i + 2) % 3;
    const real64 row[3] = {m(1, a) * m(2, b) - m(2, a) * m(1, b), m(2, a) * m(0, b) - m(0, a) * m(2, b),
                           m(0, a) * m(1, b) - m(1, a) * m(0, b)};
    solved[i] = row[0] * inRight[0] + row[1] * inRight[1] + row[2] * inRight[2];
    if (i == 0) {
      determinant = row[0] * m(0, 0) + row[1] * m(1, 0) + row[2] * m(2, 0);
    }
  }
  return {static_cast<real32>(solved[0] / determinant), static_cast<real32>(solved[1] / determinant),
          static_cast<real32>(solved[2] / determinant)};
}

}  // namespace qlx::host
