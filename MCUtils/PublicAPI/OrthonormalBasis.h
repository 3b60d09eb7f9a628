// Right-handed orthonormal bases around given directions.
//
//   Function                        zero, parallel or short input              NaN or infinite input
//   FormOrthonormalBasisAboutZAxis  reports, the unit X, Y and Z vectors       reports, the unit vectors
//   FormOrthonormalBasis            about the longest one; reports when that   reports, the unit vectors, or
//                                   has no direction (the unit vectors)        a basis about a finite one
#pragma once

#include "MCVector.h"

namespace qlx {

// `outZ` is the direction of `inZ`. X is perpendicular to the unit X vector, or, where Z lies along that, to the unit
// Y vector.
void FormOrthonormalBasisAboutZAxis(const TVector3& inZ, TVector3& outX, TVector3& outY, TVector3& outZ);

// A basis near three vectors that stand for X, Y and Z and need not be perpendicular, or even independent:
//   b x c has a direction: it is X, c gives Z, and Y follows
//   else c x a has one:    it is Y, c gives Z, and X follows
//   else a x b has one:    it is Z, a gives X, and Y follows
//   else, the three nearly parallel: about the longest of them as Z, of equally long ones the last
void FormOrthonormalBasis(const TVector3& inA, const TVector3& inB, const TVector3& inC, TVector3& outX, TVector3& outY,
                          TVector3& outZ);

}  // namespace qlx
