// Resource files as tests make and spoil them.
#pragma once

#include "FileTest.h"
#include "MCResourceFile.h"

namespace qlx::test {

class ResourceFiles : public FileTest {
 protected:
  void Resize(std::uintmax_t inSize) const { std::filesystem::resize_file(FilePath(), inSize); }

  // A new file, open for changes.
  struct NewFile : MCResourceFile {
    explicit NewFile(const TMCString& inPath) {
      EXPECT_EQ(CreateEmpty(inPath), MC_S_OK);
      EXPECT_EQ(Open(inPath, true), MC_S_OK);
    }
  };
  struct OpenFile : MCResourceFile {
    explicit OpenFile(const TMCString& inPath, bool inIsWritable = false, bool inPreloads = false) {
      EXPECT_EQ(Open(inPath, inIsWritable, inPreloads), MC_S_OK);
    }
  };
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
};

inline constexpr MCID kText = "STR "_id;
inline constexpr MCID kDialog = "DLOG"_id;

}  // namespace qlx::test
