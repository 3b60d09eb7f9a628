// The parts of a glTF document that the host animates, decoded by tinygltf, and the bytes of its buffers.
//
// Only checked documents are decoded, and only what the host understands is given to tinygltf: scenes, nodes, skins,
// accessors, buffer views and animations, without their extensions and extras. Everything else stays in the document
// alone, so nothing is lost on the way, and what tinygltf refuses although glTF allows it (a channel without a node,
// indices without a buffer view under mesh compression) does no harm. Indices are those of the document.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "GltfJson.h"
#include "TinyGltf.h"

namespace qlx::host {

using Buffers = std::vector<std::optional<std::vector<uint8>>>;

struct GltfModel {
  tinygltf::Model fParts;
  Buffers fBuffers;  // without content: a buffer that only an extension fills

  // The bytes of a buffer view; nothing when its buffer has no content.
  std::optional<std::span<const uint8>> GetViewBytes(int inView) const;
};

tinygltf::Model DecodeParts(const Json& inDocument);

// New accessors and buffer views as JSON, written by tinygltf.
Json EncodeParts(const tinygltf::Model& inParts);

// True when the accessor's values can be read: its bytes are there, or it is all zeros and not absurdly long.
bool HasContent(const GltfModel& inModel, int inAccessor);

// All components of all elements, one after another; normalised integers as the reals that they stand for, sparse
// substitutions made. The accessor must have content.
std::vector<real32> ReadReals(const GltfModel& inModel, int inAccessor);

// The elements of an unsigned integer scalar accessor, which must have content.
std::vector<uint32> ReadWholes(const GltfModel& inModel, int inAccessor);

// The elements that a sparse accessor replaces, which must have content.
std::vector<uint32> ReadSparsePlaces(const GltfModel& inModel, const tinygltf::Accessor& inAccessor);

// The size of an element in bytes: matrices of small integers pad each column to four bytes. 0 for an unknown type.
std::size_t ElementSize(int inComponentType, int inType);

}  // namespace qlx::host
