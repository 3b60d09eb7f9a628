// Resource files: any bytes as a file, then changes that the first bytes choose, a save, a copy. What could be read
// before must be read after, and a copy of a copy is the same file.
//
// The input: a count of changes, four bytes for each, the 16 bytes of a header, and what stands behind the header.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string>

#include "FuzzTarget.h"
#include "MCFilePath.h"
#include "MCResourceFile.h"
#include "MCResourceStream.h"

namespace qlx::fuzz {

namespace {

// A folder of this process, in memory where the system has that.
class ScratchFolder {
 public:
  ScratchFolder() {
    const std::filesystem::path memory = "/dev/shm";
    fPath = (is_directory(memory) ? memory : std::filesystem::temp_directory_path()) /
            ("qlx-fuzz-" + std::to_string(std::random_device{}()));
    create_directories(fPath);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    remove_all(fPath, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string File(const char* inName) const { return PathText(fPath / inName); }

 private:
  std::filesystem::path fPath;
};

std::string FileBytes(const std::string& inPath) {
  std::ifstream stream(inPath, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// One resource as it can be read. Of several alike the first is found.
struct ReadResource {
  std::string fName;
  uint32 fAttributes;
  bool fHasData;
  bool fIsSound;
  std::string fData;

  bool operator==(const ReadResource&) const = default;
};
using Resources = std::map<std::pair<MCID, int16>, ReadResource>;

ReadResource ReadOne(MCResourceFile& ioFile, const MCResourceInfo& inInfo) {
  ReadResource read{inInfo.fName.CStr(), inInfo.fAttributes, inInfo.fHasData, false, {}};
  uint32 stored = 0;
  const MCResult sized = inInfo.fHasData ? ioFile.GetStoredSize(inInfo.fType, inInfo.fID, stored) : MC_S_OK;
  MCSharedResource resource;
  read.fIsSound = resource.Load(ioFile, inInfo.fType, inInfo.fID) == MC_S_OK;
  FuzzCheck(read.fIsSound == (sized == MC_S_OK), "the stored size and the data disagree");
  if (read.fIsSound) {
    FuzzCheck(resource->GetSize() == stored, "another size than is stored");
    MCResourceStream stream(resource.Get());
    read.fData.resize(stored);
    FuzzCheck(stream.Read(read.fData.data(), static_cast<int32>(stored)).gcount() == static_cast<int32>(stored),
              "a stream ends early");
  } else {
    FuzzCheck(!ioFile.GetProblem().IsEmpty(), "a failure without a problem");
  }
  return read;
}

// All that the file has, read from the disk anew.
Resources ReadAll(MCResourceFile& ioFile) {
  Resources resources;
  ioFile.UnloadUnused();
  for (int32 t = 0; t < ioFile.GetTypeCount(); ++t) {
    const MCID type = ioFile.GetType(t);
    for (int32 n = 0; n < ioFile.GetResourceCount(type); ++n) {
      MCResourceInfo info;
      FuzzCheck(ioFile.GetResourceAt(type, n, info) == MC_S_OK, "a resource that is counted is missing");
      FuzzCheck(ioFile.GetInfo(type, info.fID, info) == MC_S_OK, "a resource that is listed is not found");
      resources.try_emplace({type, info.fID}, ReadOne(ioFile, info));
      ioFile.UnloadUnused();  // entries may claim the same bytes, all of them
    }
  }
  return resources;
}

// What could be read is the same; what could not may be, now that the file is longer.
void CheckKept(const Resources& inBefore, const Resources& inAfter) {
  FuzzCheck(inBefore.size() == inAfter.size(), "another number of resources");
  for (const auto& [key, before] : inBefore) {
    const auto after = inAfter.find(key);
    FuzzCheck(after != inAfter.end(), "a resource is lost");
    FuzzCheck(!before.fIsSound || after->second == before, "a resource changed");
    FuzzCheck(after->second.fName == before.fName && after->second.fAttributes == before.fAttributes,
              "an entry changed");
  }
}

class Edits {
 public:
  Edits(MCResourceFile& ioFile, FuzzInput& ioInput) : fFile(ioFile), fInput(ioInput) {}

  void Run() {
    const uint8 kind = fInput.TakeByte();
    const uint8 which = fInput.TakeByte();
    fType = Pick(which);
    fID = static_cast<int16>(fInput.TakeByte() - 8);
    fSize = fInput.TakeByte();
    FindThere(which);
    switch (kind % 6) {
      case 0:
        return Add();
      case 1:
        return Replace();
      case 2:
        Rename();
        break;
      case 3:
        Remove();
        break;
      case 4:
        fFile.SetAttributes(fType, fID, uint32{fSize} << 24);
        break;
      default:
        Save();
        break;
    }
  }

 private:
  MCID Pick(uint8 inWhich) const {
    const int32 count = fFile.GetTypeCount();
    return inWhich % 2 == 0 || count == 0 ? "TYP0"_id + inWhich % 3 : fFile.GetType(inWhich % count);
  }
  // Every other time, a resource that there is.
  void FindThere(uint8 inWhich) {
    const int32 count = fFile.GetResourceCount(fType);
    MCResourceInfo info;
    if (inWhich % 4 < 2 && count > 0 && fFile.GetResourceAt(fType, fSize % count, info) == MC_S_OK) {
      fID = info.fID;
    }
  }
  bool IsThere() const {
    MCResourceInfo info;
    return fFile.GetInfo(fType, fID, info) == MC_S_OK;
  }
  std::string Text() const { return std::string(fSize * 3U, static_cast<char>('a' + fID % 16)); }
  void CheckData(const std::string& inData) {
    MCSharedResource resource;
    FuzzCheck(resource.Load(fFile, fType, fID) == MC_S_OK, "new data cannot be read");
    FuzzCheck(resource->GetSize() == inData.size() &&
                  std::equal(inData.begin(), inData.end(), reinterpret_cast<const char*>(resource->GetData())),
              "other data than was written");
  }

  void Add() {
    const std::string data = Text();
    const bool isThere = IsThere();
    const MCResult result = fFile.AddResource(fType, fID, TMCString15("new"), kResReplaceable, data.data(),
                                              static_cast<uint32>(data.size()));
    FuzzCheck(result == (isThere ? MC_E_RESEXISTS : MC_S_OK), "adding answers something else");
    if (!isThere) {
      CheckData(data);
    }
  }
  void Replace() {
    MCSharedResource holder;
    if (fSize % 2 == 0) {
      holder.Load(fFile, fType, fID);
    }
    const std::string data = Text();
    if (fFile.ReplaceData(fType, fID, data.data(), static_cast<uint32>(data.size())) == MC_S_OK) {
      CheckData(data);
      holder.Clear();
      fFile.UnloadUnused();
      CheckData(data);
    }
  }
  void Rename() {
    const TMCDynamicString name(Text().c_str());
    const MCResult result = fFile.RenameResource(fType, fID, name);
    FuzzCheck((result == MC_S_OK) == (IsThere() && fSize <= 85), "renaming answers something else");
  }
  void Remove() {
    const bool isThere = IsThere();
    const int32 count = fFile.GetResourceCount(fType);
    if (fFile.RemoveResource(fType, fID) == MC_S_OK) {
      FuzzCheck(isThere && fFile.GetResourceCount(fType) == count - 1, "something else was removed");
    }
  }
  void Save() {
    const Resources before = ReadAll(fFile);
    if (fFile.Save() == MC_S_OK) {
      CheckKept(before, ReadAll(fFile));
    }
  }

  MCResourceFile& fFile;
  FuzzInput& fInput;
  MCID fType = 0;
  int16 fID = 0;
  uint8 fSize = 0;
};

void CheckCopy(MCResourceFile& ioFile, const Resources& inResources, const ScratchFolder& inFolder) {
  const TMCDynamicString path(inFolder.File("copy").c_str());
  const TMCDynamicString again(inFolder.File("again").c_str());
  if (ioFile.SaveCopy(path) != MC_S_OK) {
    return;  // data that cannot be read
  }
  MCResourceFile copy;
  FuzzCheck(copy.Open(path, false, true) == MC_S_OK, "a copy does not open");
  const Resources resources = ReadAll(copy);
  CheckKept(inResources, resources);
  for (const auto& [key, resource] : resources) {
    FuzzCheck(resource.fIsSound, "a copy is damaged");
    MCResource* found = nullptr;
    FuzzCheck(copy.GetChainResource(key.first, key.second, &found) == MC_S_OK, "the chain does not find it");
    found->Release();
  }
  FuzzCheck(copy.SaveCopy(again) == MC_S_OK && FileBytes(inFolder.File("again")) == FileBytes(inFolder.File("copy")),
            "a copy of a copy differs");
}

void RunFile(FuzzInput& ioInput, const ScratchFolder& inFolder) {
  const std::string path = inFolder.File("file");
  FuzzInput edits = ioInput;  // the changes come first in the input, and are made once the file is open
  const int count = ioInput.TakeByte() % 16;
  edits.TakeByte();
  for (int i = 0; i < 4 * count; ++i) {
    ioInput.TakeByte();
  }
  std::string bytes(kResHeaderBytes, '\0');
  for (int i = 0; i < 16; ++i) {
    bytes[static_cast<std::size_t>(i)] = static_cast<char>(ioInput.TakeByte());
  }
  bytes.append(ioInput.Rest(), ioInput.RestSize());
  std::ofstream(path, std::ios::binary) << bytes;
  MCResourceFile file;
  if (file.Open(TMCDynamicString(path.c_str()), true, true) != MC_S_OK) {
    FuzzCheck(!file.GetProblem().IsEmpty(), "a failure without a problem");
    return;
  }
  ReadAll(file);
  for (int i = 0; i < count; ++i) {
    Edits(file, edits).Run();
  }
  const Resources resources = ReadAll(file);
  CheckCopy(file, resources, inFolder);
  if (file.Save() == MC_S_OK) {
    file.Close();
    FuzzCheck(file.Open(TMCDynamicString(path.c_str())) == MC_S_OK, "a saved file does not open");
    CheckKept(resources, ReadAll(file));
  }
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  using namespace qlx::fuzz;
  static const ScratchFolder folder;
  const FuzzHost host(16 * inSize + 65536);
  FuzzInput input(inBytes, inSize);
  RunFile(input, folder);
  return 0;
}
