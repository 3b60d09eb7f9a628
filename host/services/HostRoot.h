// The host's root: what a plug-in is started with, and where it asks for each service by its interface id.
#pragma once

#include <vector>

#include "MemoryService.h"
#include "SystemServices.h"
#include "UserServices.h"

namespace qlx::host {

class Host;

// Answers the services of HostServices.h that have an interface there. The other rows of the table stay null for the
// plug-in. The services live as long as the root; a reference that a plug-in keeps longer keeps its service.
class HostRoot final : public HostObject<IMCUnknown> {
 public:
  explicit HostRoot(Host& inHost);

  MemoryService& GetMemory() const { return *fMemory; }
  ShellService& GetShell() const { return *fShell; }
  SafeUtilities& GetSafeUtilities() const { return *fSafeUtilities; }

 protected:
  MCResult FindPart(const MCGuid& inID, void** outObject) override;

 private:
  struct Row {
    MCGuid fID;
    TMCCountedPtr<IMCUnknown> fService;
  };
  template <class Interface>
  void Add(const TMCCountedPtr<Interface>& inService) {
    fRows.push_back({Interface::kInterfaceID, inService});
  }

  TMCCountedPtr<MemoryService> fMemory;
  TMCCountedPtr<ShellService> fShell;
  TMCCountedPtr<SafeUtilities> fSafeUtilities;
  std::vector<Row> fRows;
};

}  // namespace qlx::host
