// Seeded numbers for tests over many inputs: the same sequence on every target and compiler.
#pragma once

#include <random>

#include "MCQuaternion.h"

namespace qlx::test {

class RandomValues {
 public:
  explicit RandomValues(uint32 inSeed) : fEngine(inSeed) {}

  uint32 Bits() { return static_cast<uint32>(fEngine()); }
  int Below(int inCount) { return static_cast<int>(Bits() % static_cast<uint32>(inCount)); }
  bool Coin() { return (Bits() & 1) != 0; }

  real32 Between(real32 inLow, real32 inHigh) {
    const real64 unit = static_cast<real64>(Bits()) / 4294967295.0;
    return static_cast<real32>(static_cast<real64>(inLow) +
                               unit * (static_cast<real64>(inHigh) - static_cast<real64>(inLow)));
  }
  TVector3 Vector(real32 inLow, real32 inHigh) {
    const real32 x = Between(inLow, inHigh);
    const real32 y = Between(inLow, inHigh);
    return {x, y, Between(inLow, inHigh)};
  }
  // Evenly spread over all rotations.
  TQuaternion Quaternion() {
    for (;;) {
      const TVector3 v = Vector(-1, 1);
      TQuaternion q{v.x, v.y, v.z, Between(-1, 1)};
      const real32 squared = Dot(q, q);
      if (squared > 0.01f && squared <= 1 && q.Normalize()) {
        return q;
      }
    }
  }

 private:
  std::mt19937 fEngine;
};

}  // namespace qlx::test
