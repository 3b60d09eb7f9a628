#include "ComponentServices.h"

#include "Host.h"
#include "HostScene.h"
#include "UserInterface.h"

namespace qlx::host {

MCResult ComponentFactory::CreateComponent(MCID inFamily, MCID inClass, IMCUnknown** outComponent) {
  TMCCountedPtr<PluginModifier> modifier;
  if (inFamily == "modi"_id) {
    modifier = fHost.CreateModifier(inClass);
  }
  MCAssignCounted<IMCUnknown>(outComponent, static_cast<I3DShModifier*>(modifier.Get()));
  return modifier ? MC_S_OK : MC_E_NOTCREATED;
}

MCResult ResourceManager::PushResourceContext(MCID inFamily, MCID inClass, uint32& outToken) {
  outToken = ++fLastToken;
  fHost.GetUser().fContexts.push_back({outToken, fHost.GetCatalog()->FindClass(inFamily, inClass) != nullptr});
  return MC_S_OK;
}

MCResult ResourceManager::PopResourceContext(uint32 inToken) {
  std::vector<UserInterface::Context>& contexts = fHost.GetUser().fContexts;
  if (contexts.empty() || contexts.back().fToken != inToken) {
    return MC_E_INVALIDARG;
  }
  contexts.pop_back();
  return MC_S_OK;
}

void UpdateService::ElementUpdated(ISceneMaster* /*inNotifier*/, TreeElement* inElement) {
  if (inElement) {
    inElement->InvalidateElement(1);
  }
}

}  // namespace qlx::host
