#include "Host.h"

#include <fmt/format.h>

#include "COMSafeUtilities.h"
#include "HostRoot.h"
#include "MCFaults.h"
#include "MCFilePath.h"
#include "MCPlatform.h"
#include "UserInterface.h"

namespace qlx::host {

Host::Host(Diagnostics& inDiagnostics)
    : fDiagnostics(inDiagnostics),
      fUser(std::make_unique<UserInterface>(inDiagnostics)),
      fRoot(MakeHosted<HostRoot>(*this)) {
  StartUtilities(&GetRoot());
  // On before the plug-in's own: a fault in a component that failed to switch it on is translated too.
  SwitchFaultTranslator(true);
}

Host::~Host() {
  fUser->CloseDialogs();  // their code is the plug-in's
  fPlugin.reset();
  SwitchFaultTranslator(false);
  fRoot->GetSafeUtilities().EndTable();
  EndUtilities();
}

void Host::LoadPlugin(const std::filesystem::path& inFile) {
  fUser->CloseDialogs();
  fPlugin.reset();
  fCatalog = PluginCatalog::GetBuiltIn();
  auto plugin = std::make_unique<PluginLibrary>(inFile);
  if (const MCResult result = plugin->Start(&GetRoot()); result != MC_S_OK) {
    throw UserError(PathText(inFile), fmt::format("its start-up failed with 0x{:08X}", static_cast<uint32>(result)));
  }
  fPlugin = std::move(plugin);
  fCatalog = PluginCatalog::ReadBeside(inFile, fDiagnostics);
}

std::filesystem::path Host::FindDefaultPlugin() {
  return PathOfText(ProgramFile()).parent_path() / PathOfText(LibraryFileName("qlx"));
}

TMCCountedPtr<PluginModifier> Host::CreateModifier(MCID inClass) {
  return PluginModifier::Create(*this, inClass);
}

IMCUnknown& Host::GetRoot() const {
  return *fRoot;
}

void Host::SetEventHandlingSuspended(bool inSuspended) {
  fRoot->GetShell().SetEventHandlingSuspended(inSuspended);
}

Host::MemoryCounts Host::GetMemoryCounts() const {
  const MemoryService& memory = fRoot->GetMemory();
  return {.fAllocations = memory.GetAllocations(), .fAlive = memory.GetAlive()};
}

}  // namespace qlx::host
