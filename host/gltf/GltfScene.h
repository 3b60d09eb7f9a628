// The scene that a glTF document describes, without its animation and its modifiers.
//
// Every node becomes an element: those of all scenes, and those of none; nodes without a parent stand below the root in
// their order. Names are the nodes' own, else those of the mesh, camera or skin that a node holds, else "Node3"; the
// scene makes them unique. Ids come from the extension QLX_element, else they are the node's index and 2.
#pragma once

#include <vector>

#include "GltfModel.h"
#include "model/Scene.h"

namespace qlx::host {

// The element of each node. Throws `GltfProblem` for an id that is none or that two nodes have.
std::vector<Element*> BuildScene(const Json& inDocument, const GltfModel& inModel, Scene& ioScene);

// The values that a node's own transform gives its element.
ChannelValues BaseValuesOf(const tinygltf::Node& inNode);

inline constexpr const char* kElementExtension = "QLX_element";

// The id of a node's element when no extension gives one and no other node has it.
inline uint32 DefaultElementID(std::size_t inNode) {
  return static_cast<uint32>(inNode) + 2;  // 1 is the scene's root
}

}  // namespace qlx::host
