#include "GltfFiles.h"

#include <cerrno>
#include <fstream>
#include <random>
#include <system_error>
#include <utility>

#include "GltfProblem.h"

namespace qlx::host {

namespace fs = std::filesystem;

namespace {

// Removes the file at the end, unless it was moved to its place.
class PartFile {
 public:
  explicit PartFile(const fs::path& inFinal) : fFinal(inFinal), fPart(inFinal) {
    fPart += ".part-" + std::to_string(std::random_device{}());
  }
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;
  ~PartFile() {
    if (!fMoved) {
      std::error_code ignored;
      fs::remove(fPart, ignored);
    }
  }

  void Write(std::span<const uint8> inBytes) {
    std::ofstream stream(fPart, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(inBytes.data()), static_cast<std::streamsize>(inBytes.size()));
    stream.close();
    if (!stream) {
      throw GltfProblem("cannot be written: " + std::generic_category().message(errno));
    }
  }

  void Move() {
    std::error_code error;
    fs::rename(fPart, fFinal, error);
    if (error) {
      throw GltfProblem("cannot be written: " + error.message());
    }
    fMoved = true;
  }

 private:
  fs::path fFinal;
  fs::path fPart;
  bool fMoved = false;
};

}  // namespace

std::vector<uint8> ReadWholeFile(const fs::path& inFile) {
  std::error_code error;
  const fs::file_status status = fs::status(inFile, error);
  if (!fs::exists(status)) {
    throw GltfProblem("no such file");
  }
  if (fs::is_directory(status)) {
    throw GltfProblem("is a folder, not a file");
  }
  if (!fs::is_regular_file(status)) {
    throw GltfProblem("is not a regular file");
  }
  std::ifstream stream(inFile, std::ios::binary | std::ios::ate);
  const std::streamoff size = stream ? static_cast<std::streamoff>(stream.tellg()) : -1;
  if (size < 0) {
    throw GltfProblem("cannot be read: " + std::generic_category().message(errno));
  }
  if (!std::in_range<std::ptrdiff_t>(size)) {
    throw GltfProblem("is too large to be read");  // into the memory of a 32-bit process
  }
  std::vector<uint8> bytes(static_cast<std::size_t>(size));
  const auto count = static_cast<std::streamsize>(size);
  stream.seekg(0);
  stream.read(reinterpret_cast<char*>(bytes.data()), count);
  if (stream.gcount() != count) {
    throw GltfProblem("cannot be read whole");
  }
  return bytes;
}

void WriteWholeFile(const fs::path& inFile, std::span<const uint8> inBytes) {
  std::error_code ignored;
  if (fs::is_directory(inFile, ignored)) {
    throw GltfProblem("is a folder, not a file");
  }
  PartFile part(inFile);
  part.Write(inBytes);
  part.Move();
}

}  // namespace qlx::host
