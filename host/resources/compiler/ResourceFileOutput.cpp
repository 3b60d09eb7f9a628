#include <fmt/format.h>

#include <filesystem>

#include "Compiler.h"
#include "MCFilePath.h"
#include "MCResourceFile.h"
#include "resources/ResourceError.h"

namespace qlx::host {

namespace {

// A file that is gone at the end of its block.
class ScratchFile {
 public:
  explicit ScratchFile(std::string inPath) : fPath(std::move(inPath)) {}
  ~ScratchFile() {
    std::error_code ignored;
    std::filesystem::remove(PathOfText(fPath), ignored);
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& GetPath() const { return fPath; }

 private:
  std::string fPath;
};

void Need(MCResult inResult, const MCResourceFile& inFile, const std::string& inPath) {
  if (inResult != MC_S_OK) {
    throw ResourceError(fmt::format("{}: cannot be written: {}", inPath, inFile.GetProblem().CStr()));
  }
}

}  // namespace

void WriteResourceFile(const std::string& inFile, const std::vector<CompiledResource>& inResources) {
  const ScratchFile scratch(inFile + ".new");
  const TMCDynamicString path(scratch.GetPath().c_str());
  if (MCResourceFile::CreateEmpty(path) != MC_S_OK) {
    throw ResourceError(scratch.GetPath() + ": cannot be written");
  }
  MCResourceFile file;
  Need(file.Open(path, true), file, scratch.GetPath());
  for (const CompiledResource& resource : inResources) {
    Need(file.AddResource(resource.fType, resource.fID, TMCDynamicString(resource.fName.c_str()), kResReplaceable,
                          resource.fBytes.data(), static_cast<uint32>(resource.fBytes.size())),
         file, scratch.GetPath());
  }
  Need(file.SaveCopy(TMCDynamicString(inFile.c_str())), file, inFile);
}

}  // namespace qlx::host
