// Sine with cosine, and the arc tangent of two arguments, for results of 32 bits: computed in 64 bits with an error
// below 1e-10, so that rounding to 32 bits decides nearly every result. The four operations of arithmetic alone, hence
// the same bits on every target, where the C libraries differ in the last one; and no branches on the data, which
// costs less than their calls. Radians.
//
//   Function           outside the fast range                      NaN or infinite argument
//   SineCosine(x)      above a million: by the C library           NaN
//   ArcTangent(y, x)   of two zeros: as atan2 gives it             as atan2 gives it
//
// Beyond a million radians 32-bit angles lie more than a hundredth of a turn apart.
#pragma once

#include <bit>
#include <cmath>

#include "MCTypes.h"

namespace qlx {

struct TSineCosine {
  real64 fSine;
  real64 fCosine;
};

// Two numbers that the processor handles as one: what is done to both costs once.
using Real64Pair = real64 __attribute__((vector_size(16)));
using Bits64Pair = int64 __attribute__((vector_size(16)));

struct TSineCosinePair {
  Real64Pair fSine;
  Real64Pair fCosine;
};

inline bool IsInFastRange(real64 inAngle) {
  return std::fabs(inAngle) <= 1e6;
}

// Of two angles in the fast range.
inline TSineCosinePair FastSineCosine(Real64Pair inAngles) {
  // Quarter turns to the nearest: adding 1.5 * 2^52 rounds, and leaves the count in the lowest bits.
  constexpr real64 kRounder = 6755399441055744.0;
  constexpr real64 kTwoOverPI = 0.63661977236758134;
  constexpr real64 kQuarterHigh = 1.57079632673412561417;  // the first 33 bits: times a count it is exact
  constexpr real64 kQuarterLow = 6.07710050650619224932e-11;
  const Real64Pair shifted = inAngles * kTwoOverPI + kRounder;
  const Real64Pair count = shifted - kRounder;
  const Real64Pair r = (inAngles - count * kQuarterHigh) - count * kQuarterLow;
  const Real64Pair z = r * r;
  const Real64Pair z2 = z * z;
  // Chebyshev fits over an eighth of a turn to either side.
  const Real64Pair sine = r + r * z *
                                  ((-0.16666666663853044 + z * 0.008333331873837089) +
                                   z2 * (-0.00019840086263755438 + z * 2.7249864655139085e-06));
  const Real64Pair cosine = (1 - 0.5 * z) + z2 * ((0.04166666666431933 - z * 0.0013888887671288108) +
                                                  z2 * (2.480059998353126e-05 - z * 2.73009081679551e-07));
  // Odd counts exchange the two; counts 2 and 3 negate the sine, 1 and 2 the cosine.
  const Bits64Pair quarters = std::bit_cast<Bits64Pair>(shifted);
  const Bits64Pair exchange = -(quarters & 1);
  const Bits64Pair both = (std::bit_cast<Bits64Pair>(sine) ^ std::bit_cast<Bits64Pair>(cosine)) & exchange;
  const Bits64Pair sineSign = (quarters & 2) << 62;
  const Bits64Pair cosineSign = ((quarters + 1) & 2) << 62;
  return {std::bit_cast<Real64Pair>(std::bit_cast<Bits64Pair>(sine) ^ both ^ sineSign),
          std::bit_cast<Real64Pair>(std::bit_cast<Bits64Pair>(cosine) ^ both ^ cosineSign)};
}

inline TSineCosine SineCosine(real64 inAngle) {
  if (!IsInFastRange(inAngle)) {
    return {std::sin(inAngle), std::cos(inAngle)};
  }
  const TSineCosinePair pair = FastSineCosine(Real64Pair{inAngle, inAngle});
  return {pair.fSine[0], pair.fCosine[0]};
}

// The sines and cosines of three angles.
struct TSineCosine3 {
  real64 fSine[3];
  real64 fCosine[3];

  TSineCosine3(real64 inX, real64 inY, real64 inZ) {
    if (IsInFastRange(inX) && IsInFastRange(inY) && IsInFastRange(inZ)) {
      const TSineCosinePair xy = FastSineCosine(Real64Pair{inX, inY});
      const TSineCosinePair z = FastSineCosine(Real64Pair{inZ, inZ});
      Set(xy.fSine[0], xy.fSine[1], z.fSine[0], xy.fCosine[0], xy.fCosine[1], z.fCosine[0]);
      return;
    }
    const TSineCosine x = SineCosine(inX);
    const TSineCosine y = SineCosine(inY);
    const TSineCosine z = SineCosine(inZ);
    Set(x.fSine, y.fSine, z.fSine, x.fCosine, y.fCosine, z.fCosine);
  }

 private:
  void Set(real64 inSX, real64 inSY, real64 inSZ, real64 inCX, real64 inCY, real64 inCZ) {
    fSine[0] = inSX;
    fSine[1] = inSY;
    fSine[2] = inSZ;
    fCosine[0] = inCX;
    fCosine[1] = inCY;
    fCosine[2] = inCZ;
  }
};

// -pi to pi.
inline real64 ArcTangent(real64 inY, real64 inX) {
  const real64 x = std::fabs(inX);
  const real64 y = std::fabs(inY);
  const bool isSteep = y > x;
  const real64 large = isSteep ? y : x;
  const real64 small = isSteep ? x : y;
  if (!(large > 0 && x + y <= 1e300)) {
    return std::atan2(inY, inX);
  }
  // Beyond an eighth of a half turn, the angle to the diagonal. So the quotient is at most that of pi / 8.
  constexpr real64 kTangentOfEighth = 0.41421356237309503;
  const bool isNearDiagonal = small > kTangentOfEighth * large;
  const real64 shift = isNearDiagonal ? 1.0 : 0.0;
  const real64 u = (small - large * shift) / (large + small * shift);
  const real64 z = u * u;
  const real64 z2 = z * z;
  // A Chebyshev fit of atan(u) / u over u * u.
  const real64 low =
      (0.9999999999992447 - z * 0.33333333276922494) + z2 * (0.19999993053555815 - z * 0.14285386553752139);
  const real64 high =
      (0.11103456908947464 - z * 0.08992552906150912) + z2 * (0.06974197686595265 - z * 0.03765510601291402);
  const real64 angle = u * (low + z2 * z2 * high);
  // By the three folds: at the diagonal, at the Y axis, and (for a negative x) from X to -X.
  static constexpr real64 kPI64 = 3.14159265358979323846;
  static constexpr real64 kBase[8] = {0,     kPI64 / 4,     kPI64 / 2, kPI64 / 4,  //
                                      kPI64, kPI64 * 3 / 4, kPI64 / 2, kPI64 * 3 / 4};
  static constexpr real64 kSign[8] = {1, 1, -1, -1, -1, -1, 1, 1};
  const int fold =
      static_cast<int>(isNearDiagonal) + 2 * static_cast<int>(isSteep) + 4 * static_cast<int>(std::signbit(inX));
  return std::copysign(kBase[fold] + kSign[fold] * angle, inY);
}

}  // namespace qlx
