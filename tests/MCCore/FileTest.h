// A folder for the files of a test, which goes with it. Its own name and that of its file go beyond ASCII.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "HostedTest.h"
#include "MCFilePath.h"
#include "MCString.h"

namespace qlx::test {

class FileTest : public HostedTest {
 protected:
  static constexpr const char* kName = "a\u8868.bin";

  FileTest()
      : fFolder(std::filesystem::temp_directory_path() /
                PathOfText("qlx-\u00E4-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directories(fFolder);
  }
  ~FileTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(fFolder, ignored);
  }

  std::filesystem::path FilePath(const char* inName = kName) const { return fFolder / PathOfText(inName); }
  TMCDynamicString Path(const char* inName = kName) const {
    return TMCDynamicString(PathText(FilePath(inName)).c_str());
  }
  std::string Bytes(const char* inName = kName) const {
    std::ifstream stream(FilePath(inName), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void Put(const std::string& inBytes) const { std::ofstream(FilePath(), std::ios::binary) << inBytes; }

  std::filesystem::path fFolder;
};

}  // namespace qlx::test
