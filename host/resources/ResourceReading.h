// Descriptions from an open resource file.
#pragma once

#include <string>
#include <vector>

#include "ResourceContents.h"

namespace qlx {
class MCResourceFile;
}

namespace qlx::host {

// Adds all resources of a type, in the order of their ids. What is wrong with one ("'Panl' 150, byte 34: ...") is added
// to the problems, and that one left out.
void ReadResources(MCResourceFile& inFile, MCID inType, ResourceContents& ioContents,
                   std::vector<std::string>& ioProblems);

}  // namespace qlx::host
