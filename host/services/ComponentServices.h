// What components ask of their host to work on the scene: other components, resources, and news of changes.
#pragma once

#include "HostServices.h"
#include "model/HostObject.h"

namespace qlx::host {

class Host;

class ComponentFactory final : public HostObject<IComponentFactory> {
 public:
  explicit ComponentFactory(Host& inHost) : fHost(inHost) {}
  // Modifiers of the plug-in, each in its wrapper.
  MCResult MC_CALL CreateComponent(MCID inFamily, MCID inClass, IMCUnknown** outComponent) override;

 private:
  Host& fHost;
};

// Contexts nest like brackets. A class that the plug-in does not offer makes a context without forms.
class ResourceManager final : public HostObject<IResourceManager> {
 public:
  explicit ResourceManager(Host& inHost) : fHost(inHost) {}
  MCResult MC_CALL PushResourceContext(MCID inFamily, MCID inClass, uint32& outToken) override;
  // Fails, changing nothing, for a token that is not the innermost one.
  MCResult MC_CALL PopResourceContext(uint32 inToken) override;

 private:
  Host& fHost;
  uint32 fLastToken = 0;
};

class UpdateService final : public HostObject<IUpdateService> {
 public:
  void MC_CALL ElementUpdated(ISceneMaster* inNotifier, TreeElement* inElement) override;
};

}  // namespace qlx::host
