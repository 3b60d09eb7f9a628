// Resource files as tests make and spoil them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "HostedTest.h"
#include "MCFilePath.h"
#include "MCResourceFile.h"

namespace qlx::test {

class ResourceFiles : public HostedTest {
 protected:
  ResourceFiles()
      : fFolder(std::filesystem::temp_directory_path() /
                PathOfText("qlx-r\xC3\xA9s-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directories(fFolder);
  }
  ~ResourceFiles() override {
    std::error_code ignored;
    std::filesystem::remove_all(fFolder, ignored);
  }

  TMCDynamicString Path(const char* inName = "a\xE8\xA1\xA8.rsrc") const {
    return TMCDynamicString(PathText(fFolder / PathOfText(inName)).c_str());
  }
  std::string Bytes(const char* inName = "a\xE8\xA1\xA8.rsrc") const {
    std::ifstream stream(PathOfText(Path(inName).CStr()), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void Put(const std::string& inBytes, const char* inName = "a\xE8\xA1\xA8.rsrc") const {
    std::ofstream(PathOfText(Path(inName).CStr()), std::ios::binary) << inBytes;
  }
  void Resize(std::uintmax_t inSize) const { std::filesystem::resize_file(PathOfText(Path().CStr()), inSize); }

  // A new file, open for changes.
  void Begin(MCResourceFile& outFile, const char* inName = "a\xE8\xA1\xA8.rsrc") const {
    ASSERT_EQ(MCResourceFile::CreateEmpty(Path(inName)), MC_S_OK);
    ASSERT_EQ(outFile.Open(Path(inName), true), MC_S_OK);
  }
  static void Add(MCResourceFile& ioFile, MCID inType, int16 inID, const std::string& inData,
                  uint32 inAttributes = kResReplaceable, const char* inName = "") {
    EXPECT_EQ(ioFile.AddResource(inType, inID, TMCDynamicString(inName), inAttributes, inData.data(),
                                 static_cast<uint32>(inData.size())),
              MC_S_OK)
        << ioFile.GetProblem().CStr();
  }
  // The data of a resource, or the code of the failure.
  static std::string Data(MCResourceFile& inFile, MCID inType, int16 inID) {
    MCSharedResource resource;
    const MCResult result = resource.Load(inFile, inType, inID);
    if (result != MC_S_OK) {
      return "failed " + std::to_string(static_cast<uint32>(result) & 0xFFF);
    }
    const auto* data = reinterpret_cast<const char*>(resource->GetData());
    return {data ? data : "", resource->GetSize()};
  }

  std::filesystem::path fFolder;
};

inline constexpr MCID kText = "STR "_id;
inline constexpr MCID kDialog = "DLOG"_id;

}  // namespace qlx::test
