// A changed glTF document as a file: buffers, image paths, and the form that the file's name asks for.
#pragma once

#include <filesystem>

#include "GltfAdditions.h"
#include "GltfContainer.h"
#include "GltfModel.h"

namespace qlx::host {

// Where a document comes from and what of its file is not in it.
struct GltfSource {
  std::filesystem::path fFile;
  GltfContainer fContainer;  // its text and its binary chunk are taken out of it
  bool fIsPretty = false;    // the text has lines
};

// Writes the document with its data. Buffers from files go into the output: as a data URI in `.gltf`, the first one as
// the binary chunk of `.glb`. Paths of images are made valid for the new folder. Throws `GltfProblem`, with no file
// made or changed; `ioDocument` may be half changed then.
void WriteDocument(Json& ioDocument, AddedData& ioAdded, const Buffers& inBuffers, const GltfSource& inSource,
                   const std::filesystem::path& inFile);

}  // namespace qlx::host
