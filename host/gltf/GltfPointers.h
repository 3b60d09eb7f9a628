// What the channels of an animation animate: a property of a node, or what a pointer names (KHR_animation_pointer).
#pragma once

#include <optional>
#include <string>

#include "GltfValues.h"

namespace qlx::host {

// A channel's target by its JSON pointer, "/nodes/3/translation" for a property of a node too: two channels with one
// pointer animate one thing.
struct ChannelTarget {
  std::string fPointer;
  std::optional<std::size_t> fNode;  // translation, rotation, scale or weights of a node that is there
  std::string fPath;                 // which of them
  bool fIsByPointer = false;
};

// Nothing for a channel that animates nothing, or what another extension says. Throws `GltfProblem` for a pointer that
// is no text.
std::optional<ChannelTarget> TargetOf(const Json& inDocument, const Json& inChannel, const Place& inPlace);

// "/nodes/3/translation"
std::string PointerOfNode(std::size_t inNode, const std::string& inPath);

// The targets of new channels.
Json MakeNodeTarget(std::size_t inNode, const std::string& inPath);
Json MakePointerTarget(const std::string& inPointer);

// True when a channel of any animation goes by a pointer.
bool HasPointers(const Json& inDocument);

// Warns of the pointers of all animations that lead to nothing. What they animate is not read, and passes through.
void CheckPointers(const Json& inDocument, const ValueTargets& inTargets, Diagnostics& ioDiagnostics);

}  // namespace qlx::host
