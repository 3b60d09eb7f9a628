#include "OddPlugin.h"

#include <cstring>
#include <stdexcept>

#include "BasicMCFCOMImplementations.h"
#include "COMSafeUtilities.h"
#include "HostCommands.h"
#include "HostInterface.h"
#include "HostScene.h"
#include "HostServices.h"
#include "PluginEntry.h"

namespace {

using namespace qlx;
using qlx::test::OddMode;

OddMode sMode = OddMode::kPlain;

constexpr MCGuid kPinClass = "203FF150-EDC1-991D-93E9-19E1A1710097"_guid;
constexpr MCGuid kCommandClass = "AE16DF61-D1B1-17F1-1C1F-18131A12131A"_guid;

class OddPin final : public TBasicTreeModifier {
 public:
  ~OddPin() override {
    if (sMode == OddMode::kAsksAtItsEnd && fOuter) {
      fOuter->AddRef();
      const auto holder = MCQuery<I3DShModifierHolder>(fOuter);
      const auto stream = MCQuery<IExStreamIO>(fOuter);
      fOuter->Release();
    }
  }

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (inID == kPinClass) {
      return MCStoreCounted<OddPin>(this, outObject);
    }
    if (sMode == OddMode::kNoModifier && inID == I3DExModifier::kInterfaceID) {
      return MCStoreNone(outObject);
    }
    return TBasicTreeModifier::QueryInterface(inID, outObject);
  }

  void* MC_CALL GetExtensionDataBuffer() override { return sMode == OddMode::kNullBlock ? nullptr : fBlock; }
  uint32 MC_CALL GetExtensionDataSize() override {
    return static_cast<uint32>(sMode == OddMode::kSmallBlock ? sizeof fBlock - 1 : sizeof fBlock);
  }
  int16 MC_CALL GetSecondaryResourceId() override { return fPrivate; }

  MCResult MC_CALL HandleEvent(uint32 inMessage, IMCUnknown*, void*) override {
    fPrivate = static_cast<int16>(inMessage);
    return MC_S_OK;
  }

  void MC_CALL Clone(IExDataExchanger** outCopy, void*) override {
    *outCopy = nullptr;
    if (sMode != OddMode::kClones && sMode != OddMode::kClonesInPart) {
      return;
    }
    auto* copy = new OddPin;
    std::memcpy(copy->fBlock, fBlock, sizeof fBlock);
    real32 x = 0;
    std::memcpy(&x, fBlock + 4, sizeof x);
    x += 1;
    std::memcpy(copy->fBlock + 4, &x, sizeof x);
    copy->fPrivate = fPrivate;
    *outCopy = copy;
  }

  MCResult MC_CALL CopyDataTo(IExDataExchanger* inOther) override {
    void* view = nullptr;
    if (sMode == OddMode::kClonesInPart) {
      return MC_E_OUTOFMEMORY;
    }
    if (inOther->QueryInterface(kPinClass, &view) != MC_S_OK) {
      return MC_E_NOTVALID;
    }
    const auto other = MCAdopt(static_cast<OddPin*>(view));
    other->fPrivate = fPrivate;
    return MC_S_OK;
  }

  MCResult MC_CALL SetTreeElement(TreeElement*) override {
    switch (sMode) {
      case OddMode::kThrows:
        throw std::runtime_error("odd");
      case OddMode::kFails:
        return MC_E_NOTVALID;
      case OddMode::kNotImplemented:
        return MC_E_NOTIMPLEMENTED;
      default:
        return MC_S_OK;
    }
  }

 private:
  uint8 fBlock[28] = {};
  int16 fPrivate = 0;
};

class OddMenuCallBack final : public TBasicMenuCallBack {
 public:
  bool MC_CALL SelfPrepare(ISceneCommandContext*) override {
    if (sMode == OddMode::kDisabledByFault) {
      throw std::runtime_error("odd");
    }
    return true;
  }
};

class OddCommand final : public TBasicSceneCommand {
 public:
  void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) override { *outCallBack = new OddMenuCallBack; }
  MCResult MC_CALL Init(ISceneCommandContext*) override { return MC_S_OK; }
  MCResult MC_CALL Prepare() override { return sMode == OddMode::kFails ? MC_E_NOTVALID : MC_S_OK; }
  bool MC_CALL Do() override {
    if (sMode == OddMode::kLeavesADialog) {
      uint32 token = 0;
      TMCCountedPtr<IMFPart> dialog;
      GetResourceManager()->PushResourceContext("modi"_id, "fPIN"_id, token);
      GetDialogFactory()->CreateDialog(dialog.WriteInto(), "Dlog"_id, 131);
      MCQuery<IModalDialog>(dialog)->RunModal();
    }
    if (sMode == OddMode::kThrows || sMode == OddMode::kLeavesADialog) {
      throw std::runtime_error("odd");
    }
    return sMode != OddMode::kNotImplemented;
  }
};

class OddFactory final : public TBasicUnknown, public IMCClassFactory {
 public:
  explicit OddFactory(bool inMakesCommands) : fMakesCommands(inMakesCommands) {}
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    return inID == IMCClassFactory::kInterfaceID ? MCStoreCounted<IMCClassFactory>(this, outObject)
                                                 : TBasicUnknown::QueryInterface(inID, outObject);
  }
  uint32 MC_CALL AddRef() override { return TBasicUnknown::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicUnknown::Release(); }
  MCResult MC_CALL CreateInstance(IMCUnknown* inOuter, const MCGuid& inID, void** outObject) override {
    TBasicUnknown* const object = fMakesCommands ? static_cast<TBasicUnknown*>(new OddCommand) : new OddPin;
    object->SetOuter(inOuter);
    const MCResult result = object->QueryInterface(inID, outObject);
    object->Release();
    return result;
  }
  MCResult MC_CALL LockServer(bool) override { return MC_S_OK; }

 private:
  bool fMakesCommands;
};

}  // namespace

MC_EXPORT void OddSetMode(OddMode inMode);
void OddSetMode(OddMode inMode) {
  sMode = inMode;
}

MCResult MC_CALL MCDllInit(IMCUnknown* inUtilities) {
  if (sMode == OddMode::kStartFails) {
    throw std::runtime_error("odd");
  }
  StartUtilities(inUtilities);
  return MC_S_OK;
}

MCResult MC_CALL MCDllCleanUp() {
  EndUtilities();
  return MC_S_OK;
}

MCResult MC_CALL MCDllGetClassObject(const MCGuid& inClassID, const MCGuid& inInterfaceID, void** outObject) {
  return MCAdopt(new OddFactory(inClassID == kCommandClass))->QueryInterface(inInterfaceID, outObject);
}

MCResult MC_CALL MCDllCanUnloadNow() {
  return GetLiveObjectCount() > 0 ? 1 : 0;
}

MCResult MC_CALL MCDllInitExceptionTranslator() {
  return MC_S_OK;
}

MCResult MC_CALL MCDllCleanUpExceptionTranslator() {
  return MC_S_OK;
}
