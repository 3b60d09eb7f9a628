// URIs of a glTF file: data URIs, and paths relative to the folder that the file is in.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "GltfProblem.h"
#include "MCTypes.h"

namespace qlx::host {

bool IsDataUri(std::string_view inUri);

// A data URI in base 64. Throws `GltfProblem` at the place for any other form and for text that is not base 64.
std::vector<uint8> DecodeDataUri(std::string_view inUri, const Place& inPlace);
std::string EncodeDataUri(std::string_view inMimeType, std::span<const uint8> inBytes);

// True for "scene.bin" and "../images/a%20b.png"; false for data URIs and for ones with a scheme ("https:").
bool IsRelativeUri(std::string_view inUri);

// The file that a relative URI means. Throws `GltfProblem` at the place for a broken "%" sequence or a URI with a zero.
std::filesystem::path FileOfUri(std::string_view inUri, const std::filesystem::path& inFolder, const Place& inPlace);

// The relative URI of a file, seen from a folder; empty when there is no way from one to the other.
std::string UriOfFile(const std::filesystem::path& inFile, const std::filesystem::path& inFolder);

}  // namespace qlx::host
