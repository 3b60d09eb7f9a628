// A folder of its own for a test, gone with it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "gltf/GltfFiles.h"

namespace qlx::host {

class TempFolder {
 public:
  TempFolder() {
    fPath = std::filesystem::temp_directory_path() / ("qlx-test-" + std::to_string(std::random_device{}()));
    std::filesystem::create_directories(fPath);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(fPath, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // Names are UTF-8.
  std::filesystem::path operator/(std::string_view inName) const { return fPath / PathOfText(inName); }

  std::filesystem::path Write(std::string_view inName, std::string_view inContent) const {
    std::ofstream(*this / inName, std::ios::binary).write(inContent.data(), static_cast<long>(inContent.size()));
    return *this / inName;
  }

  // Names of everything in the folder, in order.
  std::vector<std::string> List() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(fPath)) {
      names.push_back(PathText(entry.path().filename()));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path fPath;
};

inline std::string ReadFile(const std::filesystem::path& inFile) {
  std::ifstream stream(inFile, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace qlx::host
