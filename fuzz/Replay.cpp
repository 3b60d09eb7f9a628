// Runs every file of the given folders through a fuzz target, once each: the corpus as an ordinary test, on every
// target and without a fuzzing engine. A finding ends the program, as it does under the engine.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "FuzzTarget.h"

namespace {

void Run(const std::string& inBytes) {
  // A block of the input's own size: reading one byte past it is a finding of the sanitizers.
  const std::vector<uint8_t> bytes(inBytes.begin(), inBytes.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

bool RunFile(const std::filesystem::path& inFile) {
  std::ifstream stream(inFile, std::ios::binary);
  if (!stream) {
    std::fprintf(stderr, "replay: %s: cannot be read\n", inFile.string().c_str());
    return false;
  }
  std::fprintf(stderr, "%s\n", inFile.filename().string().c_str());  // the last name printed is the one that failed
  Run({std::istreambuf_iterator<char>(stream), {}});
  return true;
}

// The number of files that ran; 0 when one could not be read.
int RunFolder(const char* inFolder) {
  int count = 0;
  std::error_code problem;
  for (const auto& entry : std::filesystem::directory_iterator(inFolder, problem)) {
    if (!RunFile(entry.path())) {
      return 0;
    }
    ++count;
  }
  if (count == 0) {
    std::fprintf(stderr, "replay: %s: no inputs there\n", inFolder);
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  Run({});
  int all = 0;
  for (int i = 1; i < argc; ++i) {
    const int count = RunFolder(argv[i]);
    if (count == 0) {
      return 1;
    }
    all += count;
  }
  std::printf("%d inputs\n", all);
  return all == 0 ? 1 : 0;
}
