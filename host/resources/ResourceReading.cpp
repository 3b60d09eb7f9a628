#include "ResourceReading.h"

#include <fmt/format.h>

#include <algorithm>

#include "MCResourceFile.h"
#include "ResourceError.h"

namespace qlx::host {

namespace {

std::vector<int16> IDsOfType(const MCResourceFile& inFile, MCID inType) {
  std::vector<int16> ids;
  const int32 count = inFile.GetResourceCount(inType);
  for (int32 n = 0; n < count; ++n) {
    MCResourceInfo info;
    if (inFile.GetResourceAt(inType, n, info) == MC_S_OK) {
      ids.push_back(info.fID);
    }
  }
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());  // of two with one id the file finds the first
  return ids;
}

}  // namespace

void ReadResources(MCResourceFile& inFile, MCID inType, ResourceContents& ioContents,
                   std::vector<std::string>& ioProblems) {
  for (const int16 id : IDsOfType(inFile, inType)) {
    MCSharedResource resource;
    if (resource.Load(inFile, inType, id) != MC_S_OK) {
      ioProblems.push_back(fmt::format("{} {}: {}", QuotedID(inType), id, inFile.GetProblem().CStr()));
      continue;
    }
    try {
      ioContents.Add(inType, id, {resource->GetData(), resource->GetSize()});
    } catch (const ResourceError& error) {
      ioProblems.emplace_back(error.what());
    }
  }
}

}  // namespace qlx::host
