// Between the units of glTF (metres, quaternions, seconds) and those of a scene (inches, angles, ticks).
#pragma once

#include "MCFrameTime.h"
#include "TransformEuler.h"
#include "model/Channels.h"
#include "model/RotationCurve.h"

namespace qlx::host {

inline constexpr real64 kInchesPerMetre = 39.3700787;

inline real32 InchesOfMetres(real64 inMetres) {
  return static_cast<real32>(inMetres * kInchesPerMetre);
}

inline real32 MetresOfInches(real32 inInches) {
  return static_cast<real32>(static_cast<real64>(inInches) / kInchesPerMetre);
}

inline real64 SecondsOfTicks(int32 inTicks) {
  return static_cast<real64>(inTicks) / kTicksPerSecond;
}

// The angles about X, Y and Z, acting in this order, nearest to the reference, so that tracks of keys do not jump. A
// quaternion need not be of unit length.
inline TVector3 EulerOfQuaternion(const QuaternionValue& inQuaternion, const TVector3& inReference) {
  const TQuaternion rotation{static_cast<real32>(inQuaternion[0]), static_cast<real32>(inQuaternion[1]),
                             static_cast<real32>(inQuaternion[2]), static_cast<real32>(inQuaternion[3])};
  return QuaternionToEuler(0, rotation, inReference);
}

// What glTF calls the scale of a node: per axis, the uniform one included.
inline TVector3 WholeScale(const ChannelValues& inValues) {
  return inValues.GetScale() * inValues.GetUniformScale();
}

}  // namespace qlx::host
