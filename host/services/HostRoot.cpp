#include "HostRoot.h"

#include "ComponentServices.h"
#include "DebugService.h"
#include "Host.h"
#include "model/ParamTypes.h"

namespace qlx::host {

HostRoot::HostRoot(Host& inHost)
    : fMemory(MakeHosted<MemoryService>()),
      fShell(MakeHosted<ShellService>()),
      fSafeUtilities(MakeHosted<SafeUtilities>()) {
  Diagnostics& diagnostics = inHost.GetDiagnostics();
  Add<IMemoryUtilities>(fMemory);
  Add<IShellUtilities>(fShell);
  Add<IDebugUtilities>(MakeHosted<DebugService>(diagnostics));
  Add<IShSafeUtilities>(fSafeUtilities);
  Add<IFileService>(MakeHosted<FileService>());
  Add<IMultiProcessing>(MakeHosted<MultiProcessing>());
  Add<ParamTypeRegistry>(MCShare(&GetParamTypes()));
  Add<IComponentFactory>(MakeHosted<ComponentFactory>(inHost));
  Add<IAlertService>(MakeHosted<AlertService>(diagnostics));
  Add<IDialogFactory>(MakeHosted<DialogFactory>());
  Add<IResourceManager>(MakeHosted<ResourceManager>());
  Add<IUpdateService>(MakeHosted<UpdateService>());
  for (const MCGuid& id : {IHostQuestion::kSecondGroupID, IHostQuestion::kThirdGroupID}) {
    fRows.push_back({id, MakeHosted<HostQuestion>(id)});
  }
}

MCResult HostRoot::FindPart(const MCGuid& inID, void** outObject) {
  for (const Row& row : fRows) {
    if (row.fID == inID) {
      return row.fService->QueryInterface(inID, outObject);
    }
  }
  return MCStoreNone(outObject);
}

}  // namespace qlx::host
