// What is wrong with a resource file that opens.
#pragma once

#include <string>
#include <vector>

#include "MCResourceFile.h"

namespace qlx::host {

// "'STR ' 128"
std::string ResourceLabel(MCID inType, int16 inID);

// A resource as the map has it, with the size of its data where that can be read.
struct ListedResource {
  MCResourceInfo fInfo;
  uint32 fSize = 0;
  std::string fProblem;  // empty: none
};

// Resources in the order of the map. Of several with one type and id all are listed, with the data of the first.
std::vector<ListedResource> ListResources(MCResourceFile& inFile);

// Each problem as a clause with its place: data that cannot be read, data that overlaps other data, ids that stand
// twice, a data area that runs past the end.
std::vector<std::string> CheckResources(const MCResourceFile& inFile, const std::vector<ListedResource>& inResources);

}  // namespace qlx::host
