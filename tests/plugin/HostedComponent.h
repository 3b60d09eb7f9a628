// Modifiers of the plug-in as a host carries them: aggregated, in an element's list, and made by the host's factory.
#pragma once

#include <gtest/gtest.h>

#include "ClassFactory.h"
#include "FakeObject.h"
#include "HostServices.h"
#include "PinModifier.h"
#include "QLXModifier.h"
#include "SliderModifier.h"
#include "model/Element.h"

namespace qlx::test {

class HostedComponent final : public host::Modifier {
 public:
  HostedComponent(MCID inClass, const MCGuid& inClassID) : fClass(inClass), fInner(CreateComponentObject(inClassID)) {
    fInner->SetOuter(static_cast<I3DShModifier*>(this));
  }
  ~HostedComponent() override {
    fInner->SetOuter(nullptr);
    fInner->Release();
  }

  void Apply(host::Element& inElement) override { EXPECT_EQ(Get<I3DExModifier>().SetTreeElement(&inElement), MC_S_OK); }
  TMCCountedPtr<Modifier> Copy() override { return nullptr; }
  MCID MC_CALL GetModifierClass() override { return fClass; }
  // The component itself.
  template <class Component>
  Component& Get() {
    return *MCQuery<Component>(static_cast<I3DShModifier*>(this));
  }
  IExDataExchanger& GetExchanger() { return Get<IExDataExchanger>(); }

  static HostedComponent& AddTo(host::Element& ioElement, MCID inClass, const MCGuid& inClassID) {
    const auto hosted = host::MakeHosted<HostedComponent>(inClass, inClassID);
    ioElement.AddModifier(*hosted, ioElement.GetModifiers().size());
    return *hosted;
  }

 private:
  MCResult FindPart(const MCGuid& inID, void** outObject) override {
    if (fIsAsking) {
      return MCStoreNone(outObject);
    }
    fIsAsking = true;  // what the component lacks is not to be found here
    const MCResult result = fInner->QueryInterface(inID, outObject);
    fIsAsking = false;
    return result;
  }

  MCID fClass;
  TBasicUnknown* fInner;
  bool fIsAsking = false;
};

class HostedComponents final : public FakeObject<IComponentFactory> {
 public:
  MCResult MC_CALL CreateComponent(MCID inFamily, MCID inClass, IMCUnknown** outComponent) override {
    if (fRefuses || inFamily != "modi"_id) {
      return MC_E_NOTCREATED;
    }
    const MCGuid& id = inClass == "fQLX"_id   ? QLXModifier::kInterfaceID
                       : inClass == "fPIN"_id ? PinModifier::kInterfaceID
                                              : SliderModifier::kInterfaceID;
    *outComponent = static_cast<I3DShModifier*>(host::MakeHosted<HostedComponent>(inClass, id).Detach());
    return MC_S_OK;
  }
  bool fRefuses = false;
};

}  // namespace qlx::test
