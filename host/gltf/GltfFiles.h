// Files as a glTF scene needs them: read whole, written beside their place and renamed.
#pragma once

#include <filesystem>
#include <span>
#include <vector>

#include "MCFilePath.h"
#include "MCTypes.h"

namespace qlx::host {

// Throws `GltfProblem` with what is wrong (not the name): not there, a folder, not readable.
std::vector<uint8> ReadWholeFile(const std::filesystem::path& inFile);

// Writes into a file of another name in the same folder and renames it, so that the file is there whole or not at all.
// Throws `GltfProblem`; the other file is gone then, and what stood there before is as it was.
void WriteWholeFile(const std::filesystem::path& inFile, std::span<const uint8> inBytes);

}  // namespace qlx::host
