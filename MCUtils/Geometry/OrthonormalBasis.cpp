#include "OrthonormalBasis.h"

#include <initializer_list>

#include "MCAssert.h"

namespace qlx {

namespace {

// The factor of a cross product that becomes an axis of its own.
void NormalizePaired(TVector3& ioVector) {
  MC_ASSERT_TEXT(ioVector.GetMagnitude() > kReal_SmallValue, "zVec.GetMagnitude() > kReal_SmallValue");
  ioVector.Normalize(0);
}

}  // namespace

void FormOrthonormalBasisAboutZAxis(const TVector3& inZ, TVector3& outX, TVector3& outY, TVector3& outZ) {
  TVector3 z = inZ;
  if (!MC_ASSERT_TEXT(z.Normalize(), "Could not normalize vector in FormOrthonormalBasisAboutZAxis()")) {
    outX = kUnitX;
    outY = kUnitY;
    outZ = kUnitZ;
    return;
  }
  TVector3 x = Cross(kUnitX, z);
  if (!x.Normalize()) {
    x = Cross(kUnitY, z);
    x.Normalize(0);
  }
  outX = x;
  outY = Cross(z, x);
  outZ = z;
}

void FormOrthonormalBasis(const TVector3& inA, const TVector3& inB, const TVector3& inC, TVector3& outX, TVector3& outY,
                          TVector3& outZ) {
  TVector3 x = Cross(inB, inC);
  TVector3 y = Cross(inC, inA);
  TVector3 z = Cross(inA, inB);
  if (x.Normalize()) {
    z = inC;
    NormalizePaired(z);
    y = Cross(z, x);
  } else if (y.Normalize()) {
    z = inC;
    NormalizePaired(z);
    x = Cross(y, z);
  } else if (z.Normalize()) {
    x = inA;
    NormalizePaired(x);
    y = Cross(z, x);
  } else {
    const TVector3* longest = &inA;
    for (const TVector3* candidate : {&inB, &inC}) {
      if (candidate->GetMagnitude() >= longest->GetMagnitude() || !longest->IsFinite()) {
        longest = candidate;
      }
    }
    FormOrthonormalBasisAboutZAxis(*longest, outX, outY, outZ);
    return;
  }
  outX = x;
  outY = y;
  outZ = z;
}

}  // namespace qlx
