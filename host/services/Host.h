// A running host: its root with all services, and the plug-in that it loaded.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "PluginLibrary.h"
#include "PluginModifier.h"
#include "model/Diagnostics.h"

namespace qlx::host {

class HostRoot;
class UserInterface;

// One at a time in a process: the foundation's services are process-wide. Scenes and modifiers must be gone before it.
// Belongs to one thread; faults of components are translated on that one.
class Host {
 public:
  explicit Host(Diagnostics& inDiagnostics);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Loads and starts the plug-in, in place of the one that was loaded. `UserError` when that fails; the host then has
  // none.
  void LoadPlugin(const std::filesystem::path& inFile);
  PluginLibrary* GetPlugin() const { return fPlugin.get(); }
  // Never null: the classes that this program knows, or what the resource file beside the plug-in says.
  const std::shared_ptr<const PluginCatalog>& GetCatalog() const { return fCatalog; }
  // Another one in its place, until a plug-in is loaded. For tests of what a resource file may say.
  void SetCatalog(std::shared_ptr<const PluginCatalog> inCatalog) { fCatalog = std::move(inCatalog); }
  // The library that stands beside the running program.
  static std::filesystem::path FindDefaultPlugin();

  // A new modifier of the class ('fPIN'), on no element. Null with a warning when it cannot be made.
  TMCCountedPtr<PluginModifier> CreateModifier(MCID inClass);

  Diagnostics& GetDiagnostics() const { return fDiagnostics; }
  IMCUnknown& GetRoot() const;
  // Who answers what the plug-in asks of a person, and the forms that there are.
  UserInterface& GetUser() const { return *fUser; }

  // While true, modifiers leave the messages of their panels alone: the host is filling them.
  void SetEventHandlingSuspended(bool inSuspended);

  // Blocks that came from the host's allocator so far, ever and alive: those that the plug-in asked for, and those of
  // the host's own arrays and texts, which may pass from one to the other. For benchmarks and tests.
  struct MemoryCounts {
    uint64 fAllocations = 0;
    uint64 fAlive = 0;
  };
  MemoryCounts GetMemoryCounts() const;

 private:
  Diagnostics& fDiagnostics;
  std::unique_ptr<UserInterface> fUser;
  TMCCountedPtr<HostRoot> fRoot;
  std::unique_ptr<PluginLibrary> fPlugin;
  std::shared_ptr<const PluginCatalog> fCatalog = PluginCatalog::GetBuiltIn();
};

}  // namespace qlx::host
