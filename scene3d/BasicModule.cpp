#include "BasicModule.h"

#include "COMSafeUtilities.h"
#include "MCException.h"

namespace qlx {

namespace {

[[noreturn]] void RefuseStandardRelease(const char* inClass, int32 inLine) {
  MC_ASSERT_TEXT(false, "STANDARD_RELEASE not implemented in base class!!");
  throw TMCException(MC_E_INVALIDARG, inClass, inLine);
}

}  // namespace

MCResult BasicModule::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == IExModule::kInterfaceID) {
    return MCStoreCounted<IExModule>(this, outObject);
  }
  if (inID == IExReleasable::kInterfaceID) {
    return MCStoreCounted<IExReleasable>(this, outObject);
  }
  return TBasicUnknown::QueryInterface(inID, outObject);
}

void BasicModule::PassContext(IModuleContext** outContext) {
  if (!fContext) {
    if (const auto source = MCQuery<IModuleContextSource>(GetShellUtilities())) {
      source->GetModuleContext(fContext.WriteInto());
    }
  }
  if (!fContext) {
    throw TMCException(MC_E_INVALIDARG, "BasicModule", __LINE__);
  }
  MCAssignCounted(outContext, fContext.Get());
}

void BasicModule::StandardRelease() {
  RefuseStandardRelease("BasicModule", __LINE__);
}

MCResult BasicPropertiesClient::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == IExReleasable::kInterfaceID) {
    return MCStoreCounted<IExReleasable>(this, outObject);
  }
  return TBasicUnknown::QueryInterface(inID, outObject);
}

void BasicPropertiesClient::StandardRelease() {
  RefuseStandardRelease("BasicPropertiesClient", __LINE__);
}

void BasicDataComponent::CollectParamIDs(TMCArray<MCID>& idArray) const {
  MC_ASSERT_TEXT(idArray.GetElemCount() == 0, "idArray.GetElemCount() == 0");
}

void BasicPrefsComponent::SetUp(IPreferenceStore* inStore, int32 inValue, uint16 inTable, uint16 inIndex) {
  TMCString255 contextName;
  if (inTable != 0 && inIndex != 0) {
    if (const auto tables = MCQuery<IStringTables>(GetResourceManager())) {
      tables->GetIndexedString(contextName, inTable, inIndex);
    }
    MC_ASSERT_TEXT(contextName.Length() > 0, "contextName.Length() > 0");
  }
  fStore.Share(inStore);
  if (fStore) {
    fStore->SetContextName(contextName);
  }
  fValue = inValue;
}

}  // namespace qlx
