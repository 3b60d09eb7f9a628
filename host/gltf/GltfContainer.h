// The two forms of a glTF file: plain JSON text, and GLB, a sequence of chunks of which the first is the JSON text and
// the second, if any, the content of the first buffer.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

struct GlbChunk {
  uint32 fType = 0;
  std::vector<uint8> fBytes;
};

struct GltfContainer {
  bool fIsGlb = false;
  std::string fText;
  std::optional<std::vector<uint8>> fBinary;  // of GLB
  std::vector<GlbChunk> fOther;               // chunks of unknown types, which pass through
};

// Which of the two it is shows in the first bytes. Throws `GltfProblem` for an empty file and for a GLB of which any
// part is missing, too long or out of its place.
GltfContainer SplitContainer(std::vector<uint8> inBytes);

// The bytes of a file. Throws `GltfProblem` for a GLB above 4 GB.
std::vector<uint8> JoinContainer(const GltfContainer& inContainer);

}  // namespace qlx::host
