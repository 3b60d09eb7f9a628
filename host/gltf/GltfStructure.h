// What must hold between the parts of a glTF document before anything in it is used: ranges of bytes, and the tree.
#pragma once

#include <filesystem>

#include "GltfContainer.h"
#include "GltfModel.h"

namespace qlx::host {

// All of these expect a document that passed `CheckSchema` and throw `GltfProblem`.

// Buffer views lie in their buffers, accessors in their views; formats are known ones.
void CheckRanges(const Json& inDocument);

// No node has two parents or is below itself; transforms are numbers that 32-bit reals hold.
void CheckNodes(const Json& inDocument);

// The bytes of each buffer: from the binary chunk, which moves there, a data URI, or a file beside the document.
Buffers LoadBuffers(const Json& inDocument, GltfContainer& ioContainer, const std::filesystem::path& inFolder);

}  // namespace qlx::host
