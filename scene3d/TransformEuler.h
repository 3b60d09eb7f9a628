// Euler angles and what they are converted to and from. Angles are radians, (about X, about Y, about Z) whatever the
// order; rotations are right-handed. A flipped rotation has the third row of its matrix negated.
//
//   Function                  pole (see below)             NaN or infinite input         order out of range
//   MakeAxisRotation          -                            NaN elements                  axis: reports, identity
//   EulerToMatrix             as elsewhere                 NaN elements                  reports, order 0
//   MatrixToEuler             one solution of many         reports, some angles or NaN   reports, order 0
//     (a singular matrix reports; the angles are finite)
//   GetEulerDistance          -                            NaN; angles left as they are  -
//   NormalizeEuler            -                            reports, left as they are     reports, index 0
//   EulerToQuaternion         as elsewhere                 identity                      reports, order 0
//   QuaternionToEuler         third angle from reference   the reference                 reports, order 0
//     (a zero quaternion gives the solution of the identity)
//   NearestEquivalentEuler    -                            `inAngles`                    reports, order 0
//
// A pole is a second angle of plus or minus a quarter turn, where only the sum or the difference of the first and the
// third is fixed. Near it MatrixToEuler is exact to 3e-5 (what 32-bit elements hold), QuaternionToEuler to 1e-6.
#pragma once

#include "MCQuaternion.h"
#include "TransformOrder.h"

namespace qlx {

// About X, Y or Z for axis 0, 1 or 2.
TMatrix33 MakeAxisRotation(int inAxis, real32 inAngle);

TMatrix33 EulerToMatrix(int32 inOrder, const TVector3& inAngles, bool inFlipped);

// Of a rotation with or without a mirror. The second angle is within a quarter turn, the others within half a turn.
void MatrixToEuler(int32 inOrder, const TMatrix33& inMatrix, TVector3& outAngles, bool& outFlipped);

// Shifts each angle by whole turns to within half a turn of the reference's, and answers the sum of the absolute
// differences that are left.
real32 GetEulerDistance(TVector3& ioAngles, const TVector3& inReference);

// Brings the middle angle (see GetMiddleIndex) within a quarter turn, the others within half a turn.
void NormalizeEuler(int32 inOrder, TVector3& ioAngles);

// Of a rotation without flip, computed in 64 bits.
TQuaternion EulerToQuaternion(int32 inOrder, const TVector3& inAngles);

// The angles nearest to the reference that give this rotation, whole turns included; computed in 64 bits. At a pole
// the last angle of the order is the reference's own, so a track that passes a pole does not jump.
TVector3 QuaternionToEuler(int32 inOrder, const TQuaternion& inQuaternion, const TVector3& inReference);

// Of all angles that give the same rotation by the second axis of the order (each with its whole turns), those
// nearest to the reference. Ties keep `inAngles`, shifted by whole turns.
TVector3 NearestEquivalentEuler(int32 inOrder, const TVector3& inAngles, const TVector3& inReference);

}  // namespace qlx
