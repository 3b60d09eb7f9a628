#include "ClassFactory.h"

#include <array>

#include "AddPinModifier.h"
#include "AddQLXModifier.h"
#include "AddSliderModifier.h"
#include "CreateQLXChain.h"
#include "DeleteKeyframes.h"
#include "MCAssert.h"
#include "MCCountedPtr.h"
#include "OperationGuard.h"
#include "PinModifier.h"
#include "PropertyExplorer.h"
#include "PropertyExplorerDialog.h"
#include "QLXChainDialog.h"
#include "QLXChainQLXSubDlg.h"
#include "QLXModifier.h"
#include "RemoveDupKeyframes.h"
#include "SliderModifier.h"
#include "WiggleKeyframes.h"

namespace qlx {

namespace {

struct ClassEntry {
  MCGuid fClassID;
  TBasicUnknown* (*fMake)();
};

template <class Component>
TBasicUnknown* Make() {
  // The host's allocator on a 32-bit target, and the C library's there, align to eight bytes.
  static_assert(alignof(Component) <= 8, "components live in memory of the host");
  return new Component;
}

// The order is that of the comparisons, the first match winning.
constexpr std::array<ClassEntry, 14> kClasses = {{
    {QLXModifier::kInterfaceID, &Make<QLXModifier>},
    {"203FF150-EDC1-991D-93E9-19E1A1710097"_guid, &Make<PinModifier>},
    {SliderModifier::kInterfaceID, &Make<SliderModifier>},
    {AddQLXModifierCommand::kClassID, &Make<AddQLXModifierCommand>},
    {AddPinModifierCommand::kClassID, &Make<AddPinModifierCommand>},
    {AddSliderModifierCommand::kClassID, &Make<AddSliderModifierCommand>},
    {RemoveDupKeyframesCommand::kClassID, &Make<RemoveDupKeyframesCommand>},
    {WiggleKeyframesCommand::kClassID, &Make<WiggleKeyframesCommand>},
    {DeleteKeyframesCommand::kClassID, &Make<DeleteKeyframesCommand>},
    {QLXChainCommand::kClassID, &Make<QLXChainCommand>},
    {QLXChainDialog::kInterfaceID, &Make<QLXChainDialog>},
    {QLXChainQLXSubDlg::kInterfaceID, &Make<QLXChainQLXSubDlg>},
    {PropertyExplorer::kClassID, &Make<PropertyExplorer>},
    {PropertyExplorerDialog::kInterfaceID, &Make<PropertyExplorerDialog>},
}};

}  // namespace

TBasicUnknown* CreateComponentObject(const MCGuid& inClassID) {
  for (const ClassEntry& entry : kClasses) {
    if (entry.fClassID == inClassID) {
      return entry.fMake();
    }
  }
  return nullptr;
}

MCResult TBasicClassFactory::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == IMCClassFactory::kInterfaceID) {
    return MCStoreCounted<IMCClassFactory>(this, outObject);
  }
  return TBasicUnknown::QueryInterface(inID, outObject);
}

MCResult TBasicClassFactory::CreateInstance(IMCUnknown* inOuter, const MCGuid& inID, void** outObject) {
  if (outObject == nullptr) {
    return MC_E_INVALIDARG;
  }
  return GuardExport([&] { return MakeInstance(inOuter, inID, outObject); });
}

MCResult TBasicClassFactory::MakeInstance(IMCUnknown* inOuter, const MCGuid& inID, void** outObject) const {
  TBasicUnknown* const object = CreateComponentObject(fClassId);
  if (object == nullptr) {
    return MC_E_NOTCREATED;
  }
  object->SetOuter(inOuter);
  const MCResult result = GuardExport([&] { return object->QueryInterface(inID, outObject); });
  if (!MC_ASSERT_TEXT(result == MC_S_OK, "res == MC_S_OK")) {
    // The release below is to reach the object itself, not the outer one.
    object->SetOuter(nullptr);
  }
  object->Release();
  return result;
}

MCResult TBasicClassFactory::LockServer(bool /*inLock*/) {
  return MC_S_OK;
}

}  // namespace qlx
