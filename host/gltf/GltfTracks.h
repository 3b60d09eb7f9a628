// The keys of one property (of a node: translation, rotation or scale; of anything else: a value), as they are written
// to a glTF file.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "GltfJson.h"
#include "GltfValues.h"
#include "model/Bake.h"
#include "model/Element.h"

namespace qlx::host {

struct NodePath {
  const char* fName;  // of glTF, as a member of a node and as the target of a channel
  ChannelMask fChannels;
  int fType;  // of an accessor
};

extern const std::array<NodePath, 3> kNodePaths;

struct GltfTrack {
  Interpolation fInterpolation = Interpolation::kLinear;
  std::vector<int32> fTicks;
  std::vector<real32> fValues;  // in glTF's units; with cubic splines in-tangent, value, out-tangent a key
  bool fIsLimited = false;      // a value was out of glTF's limits and is at them
};

// The value of a path in glTF's units. A quaternion is given the sign that is nearer to what `ioValues` ends with.
void AppendPathValue(const NodePath& inPath, const ChannelValues& inValues, std::vector<real32>& ioValues);
Json PathValue(const NodePath& inPath, const ChannelValues& inValues);

// From the element's curves; nothing when the path has no keys. Curves whose keys stand at the same times with one
// interpolation give the same keys. Others become linear keys close enough together: at all keys, a tick before a step,
// and on each frame where the way between two keys is no straight line.
std::optional<GltfTrack> TrackOfCurves(const Element& inElement, const NodePath& inPath, real32 inFrameRate);

// A linear key on each frame.
GltfTrack TrackOfBake(const BakeResult& inBake, const BakedElement& inElement, const NodePath& inPath);

// The keys of a value, or of all weights of a node, in glTF's units and within its limits, by the same rules. Truth
// values have steps.
std::optional<GltfTrack> TrackOfCurves(const ValueTarget& inTarget, real32 inFrameRate);
// `inBaked` has the values of the target that were baked, by their index; others are as their curves have them.
GltfTrack TrackOfBake(const BakeResult& inBake, const std::map<std::size_t, const BakedValue*>& inBaked,
                      const ValueTarget& inTarget);
// The numbers of one value in glTF's units and within its limits. False when they were out of them.
bool AppendValue(const ValueRule& inRule, const ValueNumbers& inNumbers, std::vector<real32>& ioValues);

// Key times in seconds, strictly ascending also where 32-bit reals no longer tell two ticks apart.
std::vector<real32> SecondsOfTrack(std::span<const int32> inTicks);

}  // namespace qlx::host
