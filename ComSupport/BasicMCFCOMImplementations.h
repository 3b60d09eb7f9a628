// The bases of modifiers, scene commands, menu callbacks, UI parts and list items, with the default answer of every
// operation that a class does not override. The host calls most operations on every component: the defaults matter.
//
// One object has several views. The primary one is the extension interface; the `TBasicUnknown` view is what the class
// factory hands out.
#pragma once

#include "BasicCOMImplementations.h"
#include "HostExtensions.h"
#include "HostInterface.h"
#include "MCCountedPtr.h"
#include "MCString.h"

namespace qlx {

// A component with a data exchanger. A class overrides `GetExtensionDataBuffer` (null when it has no buffer) and
// `GetExtensionDataSize` (0 then).
class TBasicDataExchanger : public TBasicUnknown, public IExDataExchanger {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicUnknown::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicUnknown::Release(); }

  void MC_CALL Clone(IExDataExchanger** outCopy, void* inAllocationContext) override;
  bool MC_CALL CanExchangeData(void* inOther) override;
  MCResult MC_CALL SetExchangeValue(MCWord inItem, MCWord inValue) override;
  MCResult MC_CALL GetExchangeValue(MCWord inItem, MCWord inValue) override;
  void* MC_CALL GetExtensionDataBuffer() override;
  void* MC_CALL GetExtensionDataClassInfo() override;
  MCResult MC_CALL QueryExchangeItem(MCWord inItem, MCWord inKind, MCWord inResult) override;
  MCResult MC_CALL HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* inData) override;
  uint32 MC_CALL GetExtensionKind() override;
  int16 MC_CALL GetResourceId() override;
  int16 MC_CALL GetSecondaryResourceId() override;
  MCResult MC_CALL GetExchangeStatus() override;
  MCResult MC_CALL ExtensionDataChanged() override;
  MCResult MC_CALL CopyDataTo(IExDataExchanger* inOther) override;
};

class TBasicModifier : public I3DExModifier, public TBasicDataExchanger {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicDataExchanger::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicDataExchanger::Release(); }

  uint32 MC_CALL GetFlags() override { return fFlags; }

 protected:
  uint32 fFlags = 0;
};

// A modifier that works on tree elements: bit 0 of its flags says so.
class TBasicTreeModifier : public TBasicModifier {
 public:
  TBasicTreeModifier() { fFlags |= 1U; }

  MCResult MC_CALL SetTreeElement(TreeElement* inTree) override;
  uint32 MC_CALL GetTimeDependence() override;
  bool MC_CALL ApplyToNode(MCWord inNode, MCWord inContext) override;
  void MC_CALL PrepareNode(MCWord inNode, MCWord inContext) override;
  MCResult MC_CALL TransformPoint(TVector3* ioPoint) override;
  MCResult MC_CALL TransformNormal(const TVector3* inPoint, TVector3* ioNormal) override;
  MCResult MC_CALL TransformTangent(const TVector3* inPoint, TVector3* ioTangent) override;
  MCResult MC_CALL TransformBox(TVector3* ioMinimum, TVector3* ioMaximum) override;
  MCResult MC_CALL MapTime(int32 inTime, int32* outTime) override;
  MCResult MC_CALL TransformOther(void* ioOther) override;
  void MC_CALL BeginApply() override;
  void MC_CALL EndApply() override;
  bool MC_CALL IsPassive() override;
};

// A scene command. It has no parameter record unless a class says otherwise, and no undo.
class TBasicSceneCommand : public I3DExSceneCommand, public TBasicDataExchanger {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicDataExchanger::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicDataExchanger::Release(); }

  void* MC_CALL GetExtensionDataBuffer() override { return nullptr; }
  uint32 MC_CALL GetExtensionDataSize() override { return 0; }

  bool MC_CALL BeforeDo() override { return false; }
  bool MC_CALL AfterDo() override { return false; }
  bool MC_CALL AfterUndo() override { return false; }
  bool MC_CALL Finish() override { return true; }
};

// A menu entry's callback; a command's class says when the entry is enabled.
class TBasicMenuCallBack : public TMCCountedObject, public ISelfPrepareMenuCallBack {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TMCCountedObject::AddRef(); }
  uint32 MC_CALL Release() override { return TMCCountedObject::Release(); }
};

// A plain labelled row of a hierarchical list. The text is the row's own: a key, say; what is shown is given to the
// list.
template <class String>
class TSimpleHierarchyItem : public IMFHierarchyItem, public TMCCountedObject {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (inID == IMFHierarchyItem::kInterfaceID) {
      return MCStoreCounted<IMFHierarchyItem>(this, outObject);
    }
    return TMCCountedObject::QueryInterface(inID, outObject);
  }
  uint32 MC_CALL AddRef() override { return TMCCountedObject::AddRef(); }
  uint32 MC_CALL Release() override { return TMCCountedObject::Release(); }

  bool MC_CALL IsLocked() override { return false; }
  void MC_CALL Opened() override {}
  void MC_CALL Closed() override {}
  void MC_CALL Moved(MCWord /*inFrom*/, MCWord /*inTo*/) override {}
  void MC_CALL Selected(MCWord /*inValue*/) override {}
  void MC_CALL Renamed(MCWord /*inValue*/) override {}
  void MC_CALL Removed() override {}
  bool MC_CALL IsSelectable() override { return true; }

  const String& GetText() const { return fText; }
  void SetText(const TMCString& inText) { fText = inText; }

 private:
  String fText;
};

}  // namespace qlx
