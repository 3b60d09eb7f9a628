#include "PluginEntry.h"

#include "BasicCOMImplementations.h"
#include "COMSafeUtilities.h"
#include "ClassFactory.h"
#include "MCCountedPtr.h"
#include "MCFaults.h"
#include "OperationGuard.h"

namespace qlx {

namespace {

bool sCleanedUp = false;

// The place for the plug-in's own start-up and clean-up code: it has none.
void StartPlugin() {}
void EndPlugin() {}

// Unloading the library leaves no handler behind that points into it.
struct UnloadHook {
  ~UnloadHook() { RemoveFaultHandlers(); }
};
UnloadHook sUnloadHook;

MCResult MakeFactory(const MCGuid& inClassID, const MCGuid& inInterfaceID, void** outObject) {
  if (outObject == nullptr) {
    return MC_E_INVALIDARG;
  }
  auto factory = MCAdopt(new TBasicClassFactory(inClassID));
  if (!factory) {
    *outObject = nullptr;
    return MC_E_NOTCREATED;
  }
  return factory->QueryInterface(inInterfaceID, outObject);
}

}  // namespace

}  // namespace qlx

using namespace qlx;

MCResult MC_CALL MCDllInit(IMCUnknown* inUtilities) {
  GuardExport([&] {
    StartUtilities(inUtilities);
    SwitchFaultTranslator(true);
    StartExtensionServices(inUtilities);
    StartPlugin();
    return MC_S_OK;
  });
  return MC_S_OK;
}

MCResult MC_CALL MCDllCleanUp() {
  if (sCleanedUp) {
    return MC_S_OK;
  }
  GuardExport([] {
    EndPlugin();
    EndExtensionServices();
    EndUtilities();
    return MC_S_OK;
  });
  SwitchFaultTranslator(false);
  sCleanedUp = true;
  return MC_S_OK;
}

MCResult MC_CALL MCDllGetClassObject(const MCGuid& inClassID, const MCGuid& inInterfaceID, void** outObject) {
  return GuardExport([&] { return MakeFactory(inClassID, inInterfaceID, outObject); });
}

MCResult MC_CALL MCDllCanUnloadNow() {
  return GetLiveObjectCount() > 0 ? 1 : 0;
}

MCResult MC_CALL MCDllInitExceptionTranslator() {
  SwitchFaultTranslator(true);
  return MC_S_OK;
}

MCResult MC_CALL MCDllCleanUpExceptionTranslator() {
  SwitchFaultTranslator(false);
  return MC_S_OK;
}
