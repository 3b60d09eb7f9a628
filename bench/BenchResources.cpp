// Look-ups in a resource file of 10,000 entries: there and missing; and the opening of such a file.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <string>

#include "MCFilePath.h"
#include "MCResourceFile.h"
#include "PlainMemory.h"

namespace qlx::bench {

namespace {

constexpr int32 kTypes = 2;  // the larger list stands last in the map, where its length is free
constexpr int32 kOfAType = 5000;

MCID TypeOf(int32 inIndex) {
  return "TYP0"_id + static_cast<MCID>(inIndex);
}

// A file in the folder for temporary files, with 10,000 small resources; removed again at the end.
class LargeFile {
 public:
  LargeFile()
      : fPath(std::filesystem::temp_directory_path() / ("qlx-bench-" + std::to_string(std::random_device{}()))) {
    const TMCDynamicString path(PathText(fPath).c_str());
    MCResourceFile::CreateEmpty(path);
    fFile.Open(path, true);
    for (int32 id = 0; id < kOfAType; ++id) {
      for (int32 type = 0; type < kTypes; ++type) {
        fFile.AddResource(TypeOf(type), static_cast<int16>(id * 13), TMCString15(), 0, "data", 4);
      }
    }
    fIsSaved = fFile.Save() == MC_S_OK;
  }
  ~LargeFile() {
    fFile.Close();
    std::error_code ignored;
    std::filesystem::remove(fPath, ignored);
  }
  LargeFile(const LargeFile&) = delete;
  LargeFile& operator=(const LargeFile&) = delete;

  const PlainMemory fMemory;
  std::filesystem::path fPath;
  MCResourceFile fFile;
  bool fIsSaved = false;
};

void FindResource(benchmark::State& ioState) {
  LargeFile large;
  int32 step = 0;
  for (auto _ : ioState) {
    step = (step + 7919) % (kTypes * kOfAType);
    MCResource* resource = nullptr;
    large.fFile.GetResource(TypeOf(step % kTypes), static_cast<int16>(step / kTypes * 13), &resource);
    if (!resource) {
      ioState.SkipWithError("a resource is missing");
      break;
    }
    resource->Release();
  }
}

void FindMissingResource(benchmark::State& ioState) {
  LargeFile large;
  for (auto _ : ioState) {
    MCResource* resource = nullptr;
    benchmark::DoNotOptimize(large.fFile.GetResource(TypeOf(3), 1, &resource));
  }
}

void OpenResourceFile(benchmark::State& ioState) {
  LargeFile large;
  const TMCDynamicString path(PathText(large.fPath).c_str());
  for (auto _ : ioState) {
    MCResourceFile file;
    if (!large.fIsSaved || file.Open(path) != MC_S_OK || file.GetResourceCount(TypeOf(0)) != kOfAType) {
      ioState.SkipWithError("the file does not open");
      break;
    }
  }
}

}  // namespace

BENCHMARK(FindResource);
BENCHMARK(FindMissingResource);
BENCHMARK(OpenResourceFile);

}  // namespace qlx::bench
