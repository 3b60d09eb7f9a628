#include "HostRoot.h"

#include "ComponentServices.h"
#include "DebugService.h"
#include "Host.h"
#include "model/ParamTypes.h"

namespace qlx::host {

HostRoot::HostRoot(Host& inHost)
    : fMemory(MakeHosted<MemoryService>()),
      fShell(MakeHosted<ShellService>(inHost.GetUser())),
      fSafeUtilities(MakeHosted<SafeUtilities>()) {
  Add<IMemoryUtilities>(fMemory);
  Add<IShellUtilities>(fShell);
  Add<IDebugUtilities>(MakeHosted<DebugService>(inHost.GetDiagnostics()));
  Add<IShSafeUtilities>(fSafeUtilities);
  Add<IFileService>(MakeHosted<FileService>(inHost.GetUser()));
  Add<IMultiProcessing>(MakeHosted<MultiProcessing>());
  Add<ParamTypeRegistry>(MCShare(&GetParamTypes()));
  Add<IComponentFactory>(MakeHosted<ComponentFactory>(inHost));
  Add<IAlertService>(MakeHosted<AlertService>(inHost.GetUser()));
  Add<IDialogFactory>(MakeHosted<DialogFactory>(inHost));
  Add<IResourceManager>(MakeHosted<ResourceManager>(inHost));
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
