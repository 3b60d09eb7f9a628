// The bases of modules, clients of the host's properties, data components and components with preferences.
//
// `StandardRelease` is for the derived class to implement: the bases report
// "STANDARD_RELEASE not implemented in base class!!" and throw `TMCException` with `MC_E_INVALIDARG`.
#pragma once

#include "BasicCOMImplementations.h"
#include "HostModules.h"
#include "MCArray.h"
#include "MCCountedPtr.h"
#include "MCString.h"

namespace qlx {

class BasicModule : public TBasicUnknown, public IExModule, public IExReleasable {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicUnknown::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicUnknown::Release(); }

  // Asks the host for the context at the first use, and holds it from then on.
  void MC_CALL PassContext(IModuleContext** outContext) override;
  void MC_CALL StandardRelease() override;

 private:
  TMCCountedPtr<IModuleContext> fContext;
};

class BasicPropertiesClient : public TBasicUnknown, public IExReleasable {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicUnknown::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicUnknown::Release(); }

  void MC_CALL StandardRelease() override;
};

class BasicDataComponent : public TBasicUnknown {
 public:
  // Adds the ids of the component's parameters: the base has none. A filled array is reported and left as it is.
  virtual void CollectParamIDs(TMCArray<MCID>& idArray) const;
};

class BasicPrefsComponent : public TBasicUnknown {
 public:
  // Keeps the store and gives it the name of its context: string `inIndex` of the string table `inTable`, or none where
  // either is 0. A name that is not found is reported, and the context has none.
  void SetUp(IPreferenceStore* inStore, int32 inValue, uint16 inTable, uint16 inIndex);

 protected:
  IPreferenceStore* GetStore() const { return fStore.Get(); }
  int32 GetValue() const { return fValue; }

 private:
  TMCCountedPtr<IPreferenceStore> fStore;
  int32 fValue = 0;
};

}  // namespace qlx
