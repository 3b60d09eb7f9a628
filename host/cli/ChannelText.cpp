#include "ChannelText.h"

namespace qlx::host {

const char* UnitOf(Channel inChannel) {
  const ChannelMask mask = MaskOf(inChannel);
  if ((mask & kPositionMask) != 0) {
    return "inches";
  }
  return (mask & kRotationMask) != 0 ? "radians" : "factor";
}

std::vector<const ChannelInfo*> ChannelsOf(ChannelMask inMask) {
  std::vector<const ChannelInfo*> found;
  for (const ChannelInfo& info : kChannels) {
    if ((inMask & MaskOf(info.fChannel)) != 0) {
      found.push_back(&info);
    }
  }
  return found;
}

}  // namespace qlx::host
