// What the plug-in implements and the host calls: the interfaces of its components.
//
// Calls come on the thread that evaluates or shows the scene, one at a time for a component, between start-up and
// clean-up. An operation may throw a `TMCException` where its class says so; the host makes that the operation's
// failure. Pointers given to an operation are the caller's and are valid during the call.
//
// Rules of every header in HostAPI:
// - An out pointer (`T** out…`) is the address of a counted pointer: null, or a reference that the callee releases
//   before it stores its own with a reference for the caller. `QueryInterface` alone overwrites without a release.
// - A pointer that is answered by value is not counted and is valid until the next change of the scene.
// - "The role is the host's own" marks a slot or argument that has a fixed place and value but no meaning here.
// - A published interface is frozen. It grows by a new interface with a new id.
#pragma once

#include "MCUnknown.h"
#include "MCVector.h"

namespace qlx {

class IMFPart;
class ISceneCommandContext;
class ISelfPrepareMenuCallBack;
class TMCStream;
class TreeElement;

// A number or pointer that an operation passes on without a meaning of its own: pointer-sized.
using MCWord = std::uintptr_t;

class IMCClassFactory : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "00000001-0000-0000-C000-000000000046"_guid;

  // Makes the object, aggregated by `inOuter` when that is not null, and asks it for `inID`. `*outObject` stays as it
  // was when no object can be made (`MC_E_NOTCREATED`). Throws nothing.
  virtual MCResult MC_CALL CreateInstance(IMCUnknown* inOuter, const MCGuid& inID, void** outObject) = 0;
  virtual MCResult MC_CALL LockServer(bool inLock) = 0;

 protected:
  ~IMCClassFactory() = default;
};

// The side of a component that holds parameters and reacts to its panel.
class IExDataExchanger : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "B295B680-3A02-101C-885F-04021C007002"_guid;

  // A copy of the component, or null in `*outCopy` for one that the host copies through its parameter map.
  virtual void MC_CALL Clone(IExDataExchanger** outCopy, void* inAllocationContext) = 0;
  virtual bool MC_CALL CanExchangeData(void* inOther) = 0;
  virtual MCResult MC_CALL SetExchangeValue(MCWord inItem, MCWord inValue) = 0;
  virtual MCResult MC_CALL GetExchangeValue(MCWord inItem, MCWord inValue) = 0;
  // The public parameter block, owned by the component and valid as long as it; null when there is none.
  virtual void* MC_CALL GetExtensionDataBuffer() = 0;
  virtual void* MC_CALL GetExtensionDataClassInfo() = 0;
  virtual MCResult MC_CALL QueryExchangeItem(MCWord inItem, MCWord inKind, MCWord inResult) = 0;
  // `inSource` is the UI part that sent the message, or null. Message 5: a control was used.
  virtual MCResult MC_CALL HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* inData) = 0;
  virtual uint32 MC_CALL GetExtensionKind() = 0;
  // Number of the panel in the resource file, 0 for none.
  virtual int16 MC_CALL GetResourceId() = 0;
  virtual int16 MC_CALL GetSecondaryResourceId() = 0;
  virtual MCResult MC_CALL GetExchangeStatus() = 0;
  // A person reset the component's record (never sent for an ordinary edit of a field).
  virtual MCResult MC_CALL ExtensionDataChanged() = 0;
  virtual MCResult MC_CALL CopyDataTo(IExDataExchanger* inOther) = 0;
  // Size of the public block in bytes on this target, 0 when there is none.
  virtual uint32 MC_CALL GetExtensionDataSize() = 0;

 protected:
  ~IExDataExchanger() = default;
};

// Persistence of a component's private fields as tokens.
class IExStreamIO : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "F3773236-B6EE-11D2-8B71-0060970BC521"_guid;

  // Called for every token of the level that the component does not know.
  using Fallback = void (*)(MCID inKey, TMCStream* inStream, void* inContext);

  virtual MCResult MC_CALL Read(TMCStream* inStream, Fallback inFallback, void* inContext) = 0;
  virtual MCResult MC_CALL Write(TMCStream* inStream) = 0;
  // The role is the host's own.
  virtual MCResult MC_CALL StreamState(MCWord inValue) = 0;

 protected:
  ~IExStreamIO() = default;
};

// A modifier of a scene element.
class I3DExModifier : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "2706CD40-54A8-11D2-884C-006097148521"_guid;

  virtual uint32 MC_CALL GetFlags() = 0;
  // The working call: once for each evaluation of the element that the modifier sits on. Allocates nothing.
  virtual MCResult MC_CALL SetTreeElement(TreeElement* inTree) = 0;
  virtual uint32 MC_CALL GetTimeDependence() = 0;
  virtual bool MC_CALL ApplyToNode(MCWord inNode, MCWord inContext) = 0;
  virtual void MC_CALL PrepareNode(MCWord inNode, MCWord inContext) = 0;
  virtual MCResult MC_CALL TransformPoint(TVector3* ioPoint) = 0;
  virtual MCResult MC_CALL TransformNormal(const TVector3* inPoint, TVector3* ioNormal) = 0;
  virtual MCResult MC_CALL TransformTangent(const TVector3* inPoint, TVector3* ioTangent) = 0;
  virtual MCResult MC_CALL TransformBox(TVector3* ioMinimum, TVector3* ioMaximum) = 0;
  virtual MCResult MC_CALL MapTime(int32 inTime, int32* outTime) = 0;
  virtual MCResult MC_CALL TransformOther(void* ioOther) = 0;
  virtual void MC_CALL BeginApply() = 0;
  virtual void MC_CALL EndApply() = 0;
  virtual bool MC_CALL IsPassive() = 0;

 protected:
  ~I3DExModifier() = default;
};

// A command of the host's scene menu. The host calls `GetMenuCallBack` to build its menu, and `Init`, `Prepare` and
// `Do` in this order to run it. The names of the other four are ours: only their answers are known.
class I3DExSceneCommand : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "1705BF26-0AD8-11CF-A4F7-0000E202D5A5"_guid;

  virtual void MC_CALL GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) = 0;
  virtual MCResult MC_CALL Init(ISceneCommandContext* inContext) = 0;
  virtual MCResult MC_CALL Prepare() = 0;
  virtual bool MC_CALL BeforeDo() = 0;
  virtual bool MC_CALL Do() = 0;
  virtual bool MC_CALL AfterDo() = 0;
  virtual bool MC_CALL AfterUndo() = 0;
  virtual bool MC_CALL Finish() = 0;

 protected:
  ~I3DExSceneCommand() = default;
};

// A menu entry that enables or disables itself.
class ISelfPrepareMenuCallBack : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "075EE981-A429-4C12-B13D-6F1283D5569B"_guid;

  // True enables the entry.
  virtual bool MC_CALL SelfPrepare(ISceneCommandContext* inContext) = 0;

 protected:
  ~ISelfPrepareMenuCallBack() = default;
};

// The side of a UI part that takes messages. Message 9: a control of the dialog was used.
class IMFExResponder : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5C9601AC-7CC3-101C-885F-04021C007002"_guid;

  virtual MCResult MC_CALL Receive(uint32 inMessage, IMCUnknown* inSource, void* inData) = 0;
  virtual bool MC_CALL AcceptsFocus(MCWord inValue) = 0;
  virtual void MC_CALL SetFocused(MCWord inValue) = 0;
  virtual bool MC_CALL CanHandleCommand(MCWord inCommand) = 0;
  virtual void MC_CALL HandleCommand(MCWord inCommand, MCWord inData) = 0;
  virtual bool MC_CALL CanTrack(MCWord inValue, MCWord inData) = 0;
  virtual void MC_CALL TrackChanged(MCWord inValue) = 0;
  virtual MCWord MC_CALL GetCursor() = 0;
  virtual MCWord MC_CALL GetHelp() = 0;

 protected:
  ~IMFExResponder() = default;
};

// Width and height of a part, in the host's pixels.
struct PartSize {
  int32 fWidth = 0;
  int32 fHeight = 0;
};

// The side of a UI part that is a part of a panel or dialog. Thirty operations, told by role; most have no meaning
// here beyond their default answer (see `TBasicPart`), and every dialog may override any of them.
class IMFExPart : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5C9601AD-7CC3-101C-885F-04021C007002"_guid;

  virtual void MC_CALL Created() = 0;
  virtual void MC_CALL Shown(MCWord inValue) = 0;
  virtual void MC_CALL Enabled(MCWord inValue) = 0;
  virtual void MC_CALL Activated(MCWord inValue) = 0;
  virtual bool MC_CALL IsHit(MCWord inX, MCWord inY) = 0;
  virtual void MC_CALL Draw(MCWord inContext) = 0;
  virtual void MC_CALL Invalidate(MCWord inArea) = 0;
  virtual void MC_CALL Update(MCWord inContext) = 0;
  virtual void MC_CALL Moved(MCWord inX, MCWord inY) = 0;
  virtual void MC_CALL Resized(MCWord inWidth, MCWord inHeight) = 0;
  virtual void MC_CALL ParentChanged(MCWord inParent) = 0;
  virtual PartSize MC_CALL GetPartSize() = 0;
  virtual bool MC_CALL MouseDown(MCWord inWhere, MCWord inEvent) = 0;
  virtual bool MC_CALL MouseUp(MCWord inWhere, MCWord inEvent) = 0;
  virtual void MC_CALL Attach(IMFPart* inPart) = 0;
  // The part goes: the extension forgets it.
  virtual void MC_CALL Destroy() = 0;
  virtual void MC_CALL ChildrenChanged() = 0;
  virtual bool MC_CALL KeyDown(MCWord inKey, MCWord inModifiers, MCWord inEvent) = 0;
  virtual void MC_CALL ForwardEvent(MCWord inEvent) = 0;
  virtual bool MC_CALL CanDrag(MCWord inWhere, MCWord inEvent) = 0;
  virtual bool MC_CALL CanDrop(MCWord inWhere, MCWord inDrag) = 0;
  virtual bool MC_CALL Drop(MCWord inWhere, MCWord inDrag, MCWord inEvent) = 0;
  virtual MCWord MC_CALL GetPartLabel() = 0;
  virtual bool MC_CALL ValueWillChange(MCWord inBuffer, MCWord inType, MCWord inFlags) = 0;
  virtual bool MC_CALL ValueChanged(MCWord inBuffer, MCWord inType) = 0;
  virtual void MC_CALL Idle() = 0;
  virtual MCWord MC_CALL GetIdleInterval() = 0;
  virtual void MC_CALL LayoutChanged() = 0;
  virtual bool MC_CALL IsOpaque() = 0;
  // -1: the part has no preference.
  virtual int32 MC_CALL GetPreferredValue() = 0;

 protected:
  ~IMFExPart() = default;
};

// A row of a hierarchical list, made by the plug-in and held by the list.
class IMFHierarchyItem : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "7818958F-FD7B-411E-95F9-11FF4312A633"_guid;

  virtual bool MC_CALL IsLocked() = 0;
  virtual void MC_CALL Opened() = 0;
  virtual void MC_CALL Closed() = 0;
  virtual void MC_CALL Moved(MCWord inFrom, MCWord inTo) = 0;
  virtual void MC_CALL Selected(MCWord inValue) = 0;
  virtual void MC_CALL Renamed(MCWord inValue) = 0;
  virtual void MC_CALL Removed() = 0;
  virtual bool MC_CALL IsSelectable() = 0;

 protected:
  ~IMFHierarchyItem() = default;
};

// Memory that somebody is about to read.
struct WorkMemory {
  const void* fStart;
  MCSize fBytes;
};

// A modifier's `SetTreeElement` as a plain function, good as long as the modifier is.
struct WorkCall {
  MCResult(MC_CALL* fRun)(void* inModifier, TreeElement* inElement);
  void* fModifier;  // for the call alone
};

// Answered by a modifier that makes work easy for a host with many of them.
class IModifierWork : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "7E0C1B5A-90D4-4B57-9E4B-2D0C6A5F1E83"_guid;

  // A call by the modifier's table of operations reads memory that its work has no other need of: this one does not.
  virtual void MC_CALL GetWorkCall(WorkCall& outCall) = 0;

  // What the modifier reads at its next evaluation, so that a host gets it under way while it evaluates others. A hint:
  // nothing is to be read through the addresses, which may be out of date. In the order of use, at most `inRoom` of
  // them; answers how many were written.
  virtual uint32 MC_CALL ListWorkMemory(WorkMemory* outRanges, uint32 inRoom) = 0;

 protected:
  ~IModifierWork() = default;
};

}  // namespace qlx
