#include "OutputFile.h"

#include <fmt/format.h>

#include <fstream>
#include <random>
#include <utility>

#include "gltf/GltfFiles.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace fs = std::filesystem;

namespace {

fs::path BesideName(const fs::path& inFile) {
  fs::path name = inFile;
  name += fmt::format(".{:08x}.part", std::random_device{}());
  return name;
}

}  // namespace

OutputFile::OutputFile(fs::path inFile, std::string_view inContent)
    : fFile(std::move(inFile)), fBeside(BesideName(fFile)) {
  CheckOutputPlace(fFile);
  std::ofstream stream(fBeside, std::ios::binary | std::ios::trunc);
  stream.write(inContent.data(), static_cast<std::streamsize>(inContent.size()));
  stream.close();
  if (!stream) {
    std::error_code ignored;
    fs::remove(fBeside, ignored);
    throw UserError(PathText(fFile), "cannot be written");
  }
}

OutputFile::~OutputFile() {
  if (!fBeside.empty()) {
    std::error_code ignored;
    fs::remove(fBeside, ignored);
  }
}

void OutputFile::PutInPlace() {
  std::error_code problem;
  fs::rename(fBeside, fFile, problem);
  if (problem) {
    throw UserError(PathText(fFile), "cannot be put in place: " + problem.message());
  }
  fBeside.clear();
}

void CheckOutputPlace(const fs::path& inFile) {
  std::error_code problem;
  if (fs::is_directory(inFile, problem)) {
    throw UserError(PathText(inFile), "is a folder, not a file");
  }
  const fs::path folder = inFile.parent_path();
  if (!folder.empty() && !fs::is_directory(folder, problem)) {
    throw UserError(PathText(inFile), "there is no folder \"" + PathText(folder) + "\"");
  }
}

}  // namespace qlx::host
