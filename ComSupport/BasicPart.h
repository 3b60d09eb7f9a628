// The base of UI parts that a plug-in brings: dialogs and their like.
#pragma once

#include "BasicMCFCOMImplementations.h"

namespace qlx {

// A part extension stands between the host's part and its own class. What a class does not answer itself goes to the
// host part's default extension, which the host part gives for the class identity id; without one, the plain default
// below is the answer.
class TBasicPart : public TBasicUnknown, public IMFExResponder, public IMFExPart {
 public:
  // The class identity: answered with the object itself, as a `TBasicPart`.
  static constexpr MCGuid kInterfaceID = "C4FBFAA9-3C7C-11D2-848C-0060970BC521"_guid;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicUnknown::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicUnknown::Release(); }

  // IMFExResponder
  MCResult MC_CALL Receive(uint32 inMessage, IMCUnknown* inSource, void* inData) override;
  bool MC_CALL AcceptsFocus(MCWord inValue) override;
  void MC_CALL SetFocused(MCWord inValue) override;
  bool MC_CALL CanHandleCommand(MCWord inCommand) override;
  void MC_CALL HandleCommand(MCWord inCommand, MCWord inData) override;
  bool MC_CALL CanTrack(MCWord inValue, MCWord inData) override;
  void MC_CALL TrackChanged(MCWord inValue) override;  // forwarded
  MCWord MC_CALL GetCursor() override;                 // forwarded
  MCWord MC_CALL GetHelp() override;                   // forwarded

  // IMFExPart
  void MC_CALL Created() override;
  void MC_CALL Shown(MCWord inValue) override;
  void MC_CALL Enabled(MCWord inValue) override;
  void MC_CALL Activated(MCWord inValue) override;
  bool MC_CALL IsHit(MCWord inX, MCWord inY) override;
  void MC_CALL Draw(MCWord inContext) override;     // forwarded
  void MC_CALL Invalidate(MCWord inArea) override;  // forwarded
  void MC_CALL Update(MCWord inContext) override;   // forwarded
  void MC_CALL Moved(MCWord inX, MCWord inY) override;
  void MC_CALL Resized(MCWord inWidth, MCWord inHeight) override;
  void MC_CALL ParentChanged(MCWord inParent) override;
  PartSize MC_CALL GetPartSize() override;
  bool MC_CALL MouseDown(MCWord inWhere, MCWord inEvent) override;
  bool MC_CALL MouseUp(MCWord inWhere, MCWord inEvent) override;
  void MC_CALL Attach(IMFPart* inPart) override;  // keeps the part, then forwarded
  void MC_CALL Destroy() override;
  void MC_CALL ChildrenChanged() override;
  bool MC_CALL KeyDown(MCWord inKey, MCWord inModifiers, MCWord inEvent) override;
  void MC_CALL ForwardEvent(MCWord inEvent) override;  // forwarded
  bool MC_CALL CanDrag(MCWord inWhere, MCWord inEvent) override;
  bool MC_CALL CanDrop(MCWord inWhere, MCWord inDrag) override;
  bool MC_CALL Drop(MCWord inWhere, MCWord inDrag, MCWord inEvent) override;
  MCWord MC_CALL GetPartLabel() override;  // forwarded
  bool MC_CALL ValueWillChange(MCWord inBuffer, MCWord inType, MCWord inFlags) override;
  bool MC_CALL ValueChanged(MCWord inBuffer, MCWord inType) override;
  void MC_CALL Idle() override;
  MCWord MC_CALL GetIdleInterval() override;
  void MC_CALL LayoutChanged() override;
  bool MC_CALL IsOpaque() override;
  int32 MC_CALL GetPreferredValue() override;

 protected:
  TMCCountedPtr<IMFPart> fPart;  // the host part behind this extension, once attached
  bool fNeverCalledDestroy = true;

 private:
  // The host part's default extension; null when there is no part, or when the part answers with this object.
  TMCCountedPtr<TBasicPart> GetHostPart();
};

}  // namespace qlx
