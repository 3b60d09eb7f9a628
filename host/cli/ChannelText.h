// How the channels of an element are written for people and other programs.
#pragma once

#include <string>
#include <vector>

#include "model/Channels.h"

namespace qlx::host {

// "inches" for positions (the scene unit), "radians" for rotations, "factor" for scales.
const char* UnitOf(Channel inChannel);

// The rows of `kChannels` that the mask has, in their order.
std::vector<const ChannelInfo*> ChannelsOf(ChannelMask inMask);

}  // namespace qlx::host
