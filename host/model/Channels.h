// The ten animatable numbers of an element's transform.
//
// Positions are in scene units (inches), angles in radians about X, Y and Z acting in this order, scales are factors:
// the scale along an axis is the uniform scale times that axis's own.
#pragma once

#include <array>

#include "MCVector.h"

namespace qlx::host {

enum class Channel : uint8 {
  kPositionX,
  kPositionY,
  kPositionZ,
  kRotationX,
  kRotationY,
  kRotationZ,
  kUniformScale,
  kScaleX,
  kScaleY,
  kScaleZ
};

inline constexpr std::size_t kChannelCount = 10;

constexpr uint32 IndexOf(Channel inChannel) {
  return static_cast<uint32>(inChannel);
}

using ChannelMask = uint16;
constexpr ChannelMask MaskOf(Channel inChannel) {
  return static_cast<ChannelMask>(1U << static_cast<unsigned>(inChannel));
}

inline constexpr ChannelMask kPositionMask = 0x007;
inline constexpr ChannelMask kRotationMask = 0x038;
inline constexpr ChannelMask kScaleMask = 0x3C0;

// What each channel is called: 4-character id, type word of its value, text path, and a name for people.
struct ChannelInfo {
  Channel fChannel;
  MCID fID;
  const char* fPath;  // "self,amet,TRAN,ROTA,RotX"
  const char* fName;  // "Rotation X"
};

extern const std::array<ChannelInfo, kChannelCount> kChannels;

// One value a channel.
struct ChannelValues {
  std::array<real32, kChannelCount> fValue{0, 0, 0, 0, 0, 0, 1, 1, 1, 1};

  real32& operator[](Channel inChannel) { return fValue[static_cast<std::size_t>(inChannel)]; }
  real32 operator[](Channel inChannel) const { return fValue[static_cast<std::size_t>(inChannel)]; }

  TVector3 GetPosition() const { return {fValue[0], fValue[1], fValue[2]}; }
  TVector3 GetRotation() const { return {fValue[3], fValue[4], fValue[5]}; }
  real32 GetUniformScale() const { return fValue[6]; }
  TVector3 GetScale() const { return {fValue[7], fValue[8], fValue[9]}; }
};

// The channels whose values differ in any bit.
ChannelMask DifferentChannels(const ChannelValues& inA, const ChannelValues& inB);

}  // namespace qlx::host
