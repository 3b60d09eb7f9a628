#include "ResourceCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "model/IDText.h"

namespace qlx::host {

namespace {

// Bytes of the file that a resource's data takes, with its length.
struct DataExtent {
  uint64 fStart;
  uint64 fEnd;
  const ListedResource* fResource;
};

std::string LabelOf(const ListedResource& inResource) {
  return ResourceLabel(inResource.fInfo.fType, inResource.fInfo.fID);
}

std::vector<DataExtent> FindExtents(const MCResourceFile& inFile, const std::vector<ListedResource>& inResources) {
  std::vector<DataExtent> extents;
  const uint64 area = inFile.GetHeader().rDataOffset;
  for (const ListedResource& resource : inResources) {
    if (resource.fInfo.fHasData && resource.fProblem.empty()) {
      const uint64 start = area + resource.fInfo.fOffset;
      extents.push_back({start, start + kResLengthBytes + resource.fSize, &resource});
    }
  }
  std::stable_sort(extents.begin(), extents.end(),
                   [](const DataExtent& inA, const DataExtent& inB) { return inA.fStart < inB.fStart; });
  return extents;
}

// Each with the one before it that reaches furthest: enough to name every resource that lies over another.
void CheckOverlaps(const std::vector<DataExtent>& inExtents, std::vector<std::string>& ioProblems) {
  const DataExtent* furthest = nullptr;
  for (const DataExtent& extent : inExtents) {
    if (furthest && extent.fStart < furthest->fEnd) {
      ioProblems.push_back(fmt::format("the data of resource {} at {} overlaps that of {}, bytes {} to {}",
                                       LabelOf(*extent.fResource), extent.fStart, LabelOf(*furthest->fResource),
                                       furthest->fStart, furthest->fEnd - 1));
    }
    if (!furthest || extent.fEnd > furthest->fEnd) {
      furthest = &extent;
    }
  }
}

}  // namespace

std::string ResourceLabel(MCID inType, int16 inID) {
  return fmt::format("'{}' {}", TextFromID(inType), inID);
}

std::vector<ListedResource> ListResources(MCResourceFile& inFile) {
  std::vector<ListedResource> resources;
  for (int32 t = 0; t < inFile.GetTypeCount(); ++t) {
    const MCID type = inFile.GetType(t);
    for (int32 n = 0; n < inFile.GetResourceCount(type); ++n) {
      ListedResource& resource = resources.emplace_back();
      inFile.GetResourceAt(type, n, resource.fInfo);
      if (resource.fInfo.fHasData && inFile.GetStoredSize(type, resource.fInfo.fID, resource.fSize) != MC_S_OK) {
        resource.fProblem = inFile.GetProblem().CStr();
      }
    }
  }
  return resources;
}

std::vector<std::string> CheckResources(const MCResourceFile& inFile, const std::vector<ListedResource>& inResources) {
  std::vector<std::string> problems;
  const SResHeader header = inFile.GetHeader();
  const auto length = static_cast<uint64>(inFile.GetFileLength());
  if (uint64{header.rDataOffset} + header.rDataLength > length) {
    problems.push_back(fmt::format("the data area of {} bytes at {} runs past the end at {}", header.rDataLength,
                                   header.rDataOffset, length));
  }
  std::set<std::pair<MCID, int16>> seen;
  for (const ListedResource& resource : inResources) {
    if (!seen.emplace(resource.fInfo.fType, resource.fInfo.fID).second) {
      problems.push_back(fmt::format("resource {} stands in the map twice", LabelOf(resource)));
    } else if (!resource.fProblem.empty()) {
      problems.push_back(resource.fProblem);
    }
  }
  CheckOverlaps(FindExtents(inFile, inResources), problems);
  return problems;
}

}  // namespace qlx::host
