#include "BasicMCFCOMImplementations.h"

#include "MCAssert.h"

namespace qlx {

// TBasicDataExchanger

MCResult TBasicDataExchanger::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == IExDataExchanger::kInterfaceID) {
    return MCStoreCounted<IExDataExchanger>(this, outObject);
  }
  return TBasicUnknown::QueryInterface(inID, outObject);
}

void TBasicDataExchanger::Clone(IExDataExchanger** outCopy, void* /*inAllocationContext*/) {
  MCAssignCounted<IExDataExchanger>(outCopy, nullptr);
}

bool TBasicDataExchanger::CanExchangeData(void* /*inOther*/) {
  return true;
}

MCResult TBasicDataExchanger::SetExchangeValue(MCWord /*inItem*/, MCWord /*inValue*/) {
  return MC_E_NOTIMPLEMENTED;
}

MCResult TBasicDataExchanger::GetExchangeValue(MCWord /*inItem*/, MCWord /*inValue*/) {
  return MC_E_NOTIMPLEMENTED;
}

void* TBasicDataExchanger::GetExtensionDataBuffer() {
  MCAssert(__FILE_NAME__, __LINE__, "TBasicDataExchanger::GetExtensionDataBuffer() should NEVER be called");
  return nullptr;
}

void* TBasicDataExchanger::GetExtensionDataClassInfo() {
  return nullptr;
}

MCResult TBasicDataExchanger::QueryExchangeItem(MCWord /*inItem*/, MCWord /*inKind*/, MCWord /*inResult*/) {
  return MC_E_NOTIMPLEMENTED;
}

MCResult TBasicDataExchanger::HandleEvent(uint32 /*inMessage*/, IMCUnknown* /*inSource*/, void* /*inData*/) {
  return MC_E_NOTIMPLEMENTED;
}

uint32 TBasicDataExchanger::GetExtensionKind() {
  return 0;
}

int16 TBasicDataExchanger::GetResourceId() {
  return 0;
}

int16 TBasicDataExchanger::GetSecondaryResourceId() {
  return 0;
}

MCResult TBasicDataExchanger::GetExchangeStatus() {
  return MC_E_NOTIMPLEMENTED;
}

MCResult TBasicDataExchanger::ExtensionDataChanged() {
  return MC_E_NOTVALID;
}

MCResult TBasicDataExchanger::CopyDataTo(IExDataExchanger* /*inOther*/) {
  return MC_E_NOTVALID;
}

// TBasicModifier

MCResult TBasicModifier::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == I3DExModifier::kInterfaceID) {
    return MCStoreCounted<I3DExModifier>(this, outObject);
  }
  return TBasicDataExchanger::QueryInterface(inID, outObject);
}

// TBasicTreeModifier

MCResult TBasicTreeModifier::SetTreeElement(TreeElement* /*inTree*/) {
  return MC_E_NOTIMPLEMENTED;
}

uint32 TBasicTreeModifier::GetTimeDependence() {
  return 0x7FFFFFFF;
}

bool TBasicTreeModifier::ApplyToNode(MCWord /*inNode*/, MCWord /*inContext*/) {
  return false;
}

void TBasicTreeModifier::PrepareNode(MCWord /*inNode*/, MCWord /*inContext*/) {}

MCResult TBasicTreeModifier::TransformPoint(TVector3* /*ioPoint*/) {
  return MC_E_NOTIMPLEMENTED;
}

MCResult TBasicTreeModifier::TransformNormal(const TVector3* /*inPoint*/, TVector3* /*ioNormal*/) {
  return MC_E_NOTIMPLEMENTED;
}

MCResult TBasicTreeModifier::TransformTangent(const TVector3* /*inPoint*/, TVector3* /*ioTangent*/) {
  return MC_E_NOTIMPLEMENTED;
}

MCResult TBasicTreeModifier::TransformBox(TVector3* /*ioMinimum*/, TVector3* /*ioMaximum*/) {
  return MC_E_NOTIMPLEMENTED;
}

MCResult TBasicTreeModifier::MapTime(int32 inTime, int32* outTime) {
  if (!MC_ASSERT(outTime != nullptr)) {
    return MC_E_INVALIDARG;
  }
  *outTime = inTime;
  return MC_S_OK;
}

MCResult TBasicTreeModifier::TransformOther(void* /*ioOther*/) {
  return MC_E_NOTIMPLEMENTED;
}

void TBasicTreeModifier::BeginApply() {}

void TBasicTreeModifier::EndApply() {}

bool TBasicTreeModifier::IsPassive() {
  return false;
}

// TBasicSceneCommand

MCResult TBasicSceneCommand::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == I3DExSceneCommand::kInterfaceID) {
    return MCStoreCounted<I3DExSceneCommand>(this, outObject);
  }
  return TBasicDataExchanger::QueryInterface(inID, outObject);
}

// TBasicMenuCallBack

MCResult TBasicMenuCallBack::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == ISelfPrepareMenuCallBack::kInterfaceID) {
    return MCStoreCounted<ISelfPrepareMenuCallBack>(this, outObject);
  }
  return TMCCountedObject::QueryInterface(inID, outObject);
}

}  // namespace qlx
