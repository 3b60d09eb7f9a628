// The program `qlx_rc`: text sources of panels, dialogs and records become a resource file.
#include <cstdlib>
#include <iostream>

#include "MCHostUtilities.h"
#include "MCPlatform.h"
#include "resources/compiler/Compiler.h"

namespace {

using qlx::MCSize;

// The allocator that the foundation works with, where no host is.
class ProgramMemory final : public qlx::IMemoryUtilities {
 public:
  qlx::MCResult MC_CALL QueryInterface(const qlx::MCGuid& /*inID*/, void** outObject) override {
    *outObject = nullptr;
    return qlx::MC_E_NOINTERFACE;
  }
  qlx::uint32 MC_CALL AddRef() override { return 1; }
  qlx::uint32 MC_CALL Release() override { return 1; }
  void* MC_CALL Allocate(MCSize inSize) override { return std::malloc(inSize); }
  void* MC_CALL AllocateWithFlags(MCSize inSize, qlx::uint32 /*inFlags*/) override { return std::malloc(inSize); }
  void* MC_CALL Reallocate(void* inBlock, MCSize inSize) override { return std::realloc(inBlock, inSize); }
  void MC_CALL Free(void* inBlock) override { std::free(inBlock); }
  void* MC_CALL NewObject(MCSize inByteCount) override { return std::malloc(inByteCount); }
  void MC_CALL DeleteObject(void* inObject) override { std::free(inObject); }
  void* MC_CALL NewArray(MCSize inByteCount) override { return std::malloc(inByteCount); }
  void MC_CALL DeleteArray(void* inArray) override { std::free(inArray); }
};

}  // namespace

int main(int argc, char** argv) {
  ProgramMemory memory;
  qlx::gMemoryUtilities = &memory;
  std::vector<std::string> arguments = qlx::Utf8Arguments(argc, argv);
  if (!arguments.empty()) {
    arguments.erase(arguments.begin());
  }
  const int code = qlx::host::RunCompiler(arguments, std::cerr);
  qlx::gMemoryUtilities = nullptr;
  return code;
}
