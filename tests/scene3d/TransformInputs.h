// Inputs for the tests over many transforms: angles of every size with the special ones among them, mirrored and
// uneven scales.
#pragma once

#include "RandomValues.h"
#include "Transforms.h"

namespace qlx::test {

inline constexpr int kInputCount = 100000;

// Anywhere within two turns, or at, or just beside, a multiple of 45 degrees (the poles are among them).
inline real32 MakeTestAngle(RandomValues& ioRandom) {
  if (ioRandom.Coin()) {
    return ioRandom.Between(-2 * kRealTwoPI, 2 * kRealTwoPI);
  }
  static constexpr real32 kBeside[] = {0, 1e-7f, -1e-7f, 1e-4f, -1e-4f, 3.95e-3f, -3.85e-3f, 1e-2f, -1e-2f};
  return static_cast<real32>(ioRandom.Below(17) - 8) * (kRealPI / 4) + kBeside[ioRandom.Below(9)];
}

inline TVector3 MakeTestAngles(RandomValues& ioRandom) {
  const real32 x = MakeTestAngle(ioRandom);
  const real32 y = MakeTestAngle(ioRandom);
  return {x, y, MakeTestAngle(ioRandom)};
}

inline TransformRotation MakeTestRotation(RandomValues& ioRandom, int32 inOrder) {
  TransformRotation rotation(inOrder);
  const TVector3 angles = MakeTestAngles(ioRandom);
  rotation.SetEuler(angles, ioRandom.Coin());
  return rotation;
}

// Every field set, in either mode; scales of either sign, of sizes 0.25 to 4.
inline TreeTransform MakeTestTransform(RandomValues& ioRandom, int32 inOrder) {
  TreeTransform transform;
  transform.SetMode(ioRandom.Coin() ? kPoser : kTorvane);
  transform.SetHotPoint(ioRandom.Vector(-10, 10));
  transform.SetRotation(MakeTestRotation(ioRandom, inOrder));
  transform.SetScalingAxes(ioRandom.Quaternion().GetMatrix());
  transform.SetPosition(ioRandom.Vector(-10, 10));
  transform.SetUniformScale(ioRandom.Between(0.25f, 4));
  TVector3 scaling = ioRandom.Vector(0.25f, 4);
  for (int i = 0; i < 3; ++i) {
    scaling[i] = ioRandom.Coin() ? scaling[i] : -scaling[i];
  }
  transform.SetScaling(scaling);
  return transform;
}

}  // namespace qlx::test
