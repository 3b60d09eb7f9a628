// From sources to resources, and the files that are made of them.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "Source.h"

namespace qlx::host {

struct CompiledResource {
  MCID fType = 0;
  int16 fID = 0;
  std::string fName;
  std::vector<uint8> fBytes;
};

// Of sources that were checked: extensions, parameter maps, panels, dialogs, each in the order of the text. Equal
// sources give equal bytes on every target.
std::vector<CompiledResource> CompileSource(const Source& inSource);

// Text of the source that defines `GetBuiltInResources`.
std::string MakeBuiltInSource(const std::vector<CompiledResource>& inResources);

// Replaces what is at the place once the new file is whole. Needs `gMemoryUtilities`.
void WriteResourceFile(const std::string& inFile, const std::vector<CompiledResource>& inResources);

// The program `qlx_rc`: its exit code.
int RunCompiler(const std::vector<std::string>& inArguments, std::ostream& inErrors);

}  // namespace qlx::host
