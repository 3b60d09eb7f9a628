#include "Channels.h"

#include <bit>

namespace qlx::host {

const std::array<ChannelInfo, kChannelCount> kChannels{{
    {Channel::kPositionX, "XCOO"_id, "self,amet,TRAN,OFFS,XCOO", "Position X"},
    {Channel::kPositionY, "YCOO"_id, "self,amet,TRAN,OFFS,YCOO", "Position Y"},
    {Channel::kPositionZ, "ZCOO"_id, "self,amet,TRAN,OFFS,ZCOO", "Position Z"},
    {Channel::kRotationX, "RotX"_id, "self,amet,TRAN,ROTA,RotX", "Rotation X"},
    {Channel::kRotationY, "RotY"_id, "self,amet,TRAN,ROTA,RotY", "Rotation Y"},
    {Channel::kRotationZ, "RotZ"_id, "self,amet,TRAN,ROTA,RotZ", "Rotation Z"},
    {Channel::kUniformScale, "SCAL"_id, "self,amet,TRAN,SCAL", "Scale"},
    {Channel::kScaleX, "ScaX"_id, "self,amet,TRAN,XYZ ,ScaX", "Scale X"},
    {Channel::kScaleY, "ScaY"_id, "self,amet,TRAN,XYZ ,ScaY", "Scale Y"},
    {Channel::kScaleZ, "ScaZ"_id, "self,amet,TRAN,XYZ ,ScaZ", "Scale Z"},
}};

ChannelMask DifferentChannels(const ChannelValues& inA, const ChannelValues& inB) {
  uint32 mask = 0;
  for (std::size_t i = 0; i < kChannelCount; ++i) {
    mask |= uint32{std::bit_cast<uint32>(inA.fValue[i]) != std::bit_cast<uint32>(inB.fValue[i])} << i;
  }
  return static_cast<ChannelMask>(mask);
}

}  // namespace qlx::host
