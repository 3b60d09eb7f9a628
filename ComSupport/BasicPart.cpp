#include "BasicPart.h"

#include "MCAssert.h"

namespace qlx {

MCResult TBasicPart::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == kInterfaceID) {
    return MCStoreCounted<TBasicPart>(this, outObject);
  }
  if (inID == IMFExResponder::kInterfaceID) {
    return MCStoreCounted<IMFExResponder>(this, outObject);
  }
  if (inID == IMFExPart::kInterfaceID) {
    return MCStoreCounted<IMFExPart>(this, outObject);
  }
  return TBasicUnknown::QueryInterface(inID, outObject);
}

TMCCountedPtr<TBasicPart> TBasicPart::GetHostPart() {
  if (!fPart) {
    return nullptr;
  }
  MC_ASSERT(fNeverCalledDestroy);
  auto part = MCQuery<TBasicPart>(fPart);
  // A host part that this object extends may answer with the object itself; passing on would then never end.
  return part == this ? nullptr : part;
}

MCResult TBasicPart::Receive(uint32 /*inMessage*/, IMCUnknown* /*inSource*/, void* /*inData*/) {
  return MC_S_OK;
}

bool TBasicPart::AcceptsFocus(MCWord /*inValue*/) {
  return false;
}

void TBasicPart::SetFocused(MCWord /*inValue*/) {}

bool TBasicPart::CanHandleCommand(MCWord /*inCommand*/) {
  return false;
}

void TBasicPart::HandleCommand(MCWord /*inCommand*/, MCWord /*inData*/) {}

bool TBasicPart::CanTrack(MCWord /*inValue*/, MCWord /*inData*/) {
  return false;
}

void TBasicPart::TrackChanged(MCWord inValue) {
  if (auto part = GetHostPart()) {
    part->TrackChanged(inValue);
  }
}

MCWord TBasicPart::GetCursor() {
  auto part = GetHostPart();
  return part ? part->GetCursor() : 0;
}

MCWord TBasicPart::GetHelp() {
  auto part = GetHostPart();
  return part ? part->GetHelp() : 0;
}

void TBasicPart::Created() {}

void TBasicPart::Shown(MCWord /*inValue*/) {}

void TBasicPart::Enabled(MCWord /*inValue*/) {}

void TBasicPart::Activated(MCWord /*inValue*/) {}

bool TBasicPart::IsHit(MCWord /*inX*/, MCWord /*inY*/) {
  return false;
}

void TBasicPart::Draw(MCWord inContext) {
  if (auto part = GetHostPart()) {
    part->Draw(inContext);
  }
}

void TBasicPart::Invalidate(MCWord inArea) {
  if (auto part = GetHostPart()) {
    part->Invalidate(inArea);
  }
}

void TBasicPart::Update(MCWord inContext) {
  if (auto part = GetHostPart()) {
    part->Update(inContext);
  }
}

void TBasicPart::Moved(MCWord /*inX*/, MCWord /*inY*/) {}

void TBasicPart::Resized(MCWord /*inWidth*/, MCWord /*inHeight*/) {}

void TBasicPart::ParentChanged(MCWord /*inParent*/) {}

PartSize TBasicPart::GetPartSize() {
  return {};
}

bool TBasicPart::MouseDown(MCWord /*inWhere*/, MCWord /*inEvent*/) {
  return false;
}

bool TBasicPart::MouseUp(MCWord /*inWhere*/, MCWord /*inEvent*/) {
  return false;
}

void TBasicPart::Attach(IMFPart* inPart) {
  fPart.Share(inPart);
  if (auto part = GetHostPart()) {
    part->Attach(inPart);
  }
}

void TBasicPart::Destroy() {
  fPart.Clear();
  fNeverCalledDestroy = false;
}

void TBasicPart::ChildrenChanged() {}

bool TBasicPart::KeyDown(MCWord /*inKey*/, MCWord /*inModifiers*/, MCWord /*inEvent*/) {
  return false;
}

void TBasicPart::ForwardEvent(MCWord inEvent) {
  if (auto part = GetHostPart()) {
    part->ForwardEvent(inEvent);
  }
}

bool TBasicPart::CanDrag(MCWord /*inWhere*/, MCWord /*inEvent*/) {
  return false;
}

bool TBasicPart::CanDrop(MCWord /*inWhere*/, MCWord /*inDrag*/) {
  return false;
}

bool TBasicPart::Drop(MCWord /*inWhere*/, MCWord /*inDrag*/, MCWord /*inEvent*/) {
  return false;
}

MCWord TBasicPart::GetPartLabel() {
  auto part = GetHostPart();
  return part ? part->GetPartLabel() : 0;
}

bool TBasicPart::ValueWillChange(MCWord /*inBuffer*/, MCWord /*inType*/, MCWord /*inFlags*/) {
  return false;
}

bool TBasicPart::ValueChanged(MCWord /*inBuffer*/, MCWord /*inType*/) {
  return false;
}

void TBasicPart::Idle() {}

MCWord TBasicPart::GetIdleInterval() {
  return 0;
}

void TBasicPart::LayoutChanged() {}

bool TBasicPart::IsOpaque() {
  return false;
}

int32 TBasicPart::GetPreferredValue() {
  return -1;
}

}  // namespace qlx
