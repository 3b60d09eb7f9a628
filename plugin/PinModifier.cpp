#include "PinModifier.h"

#include "COMSafeUtilities.h"
#include "HostInterface.h"
#include "HostTimeLines.h"
#include "MCException.h"
#include "ModifiedElement.h"
#include "OperationGuard.h"
#include "Transforms.h"

namespace qlx {

namespace {

bool IsEventHandlingSuspended() {
  IShellUtilities* const shell = GetShellUtilities();
  return shell != nullptr && shell->IsEventHandlingSuspended();
}

// Keys the pinned position in the coordinate tracks of one element. It works on its own copy of the block.
class TimelineCallback final : public IForEachTimeLineCallback {
 public:
  TimelineCallback(TreeElement& inTree, const PinPublicData& inData) : fTree(MCShare(&inTree)), fData(inData) {}

  void MC_CALL Visit(ITimeLine* inTimeLine, void* /*inOther*/) override {
    const auto attribute = MCShare(inTimeLine->GetAttribute());
    I3DShScene* const scene = fTree->GetScene();
    if (!attribute || scene == nullptr) {
      return;
    }
    SceneTime time;
    scene->GetCurrentTime(time);
    const real32* const component = FindComponent(attribute->GetAttributeId());
    if (component == nullptr) {
      return;
    }
    // Coordinate tracks hold a twelfth of the number that the transform has.
    const auto value = static_cast<real32>(static_cast<real64>(*component) / 12.0);
    inTimeLine->InsertKey(time.fTicks, &value, "qfix"_id);
  }

 private:
  // Tracks are known by their id alone. The space of the position plays no part: one that was taken in scene space is
  // keyed as it stands.
  const real32* FindComponent(MCID inAttribute) const {
    switch (inAttribute) {
      case "XCOO"_id:
        return &fData.fPosition.x;
      case "YCOO"_id:
        return &fData.fPosition.y;
      case "ZCOO"_id:
        return &fData.fPosition.z;
      default:
        return nullptr;
    }
  }

  TMCCountedPtr<TreeElement> fTree;
  PinPublicData fData;
};

}  // namespace

MCResult PinModifier::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == kInterfaceID) {
    return MCStoreCounted<PinModifier>(this, outObject);
  }
  return TBasicTreeModifier::QueryInterface(inID, outObject);
}

MCResult PinModifier::SetTreeElement(TreeElement* inTree) {
  return GuardOperation([&] {
    if (inTree == nullptr) {
      return MC_S_OK;
    }
    if (!fTree) {
      fTree.Share(inTree);
    }
    if (fData.fPositionSet && fData.fActive) {
      Apply(*inTree);
    }
    return MC_S_OK;
  });
}

// Applying replaces the translation of the transform as the host delivers it, in either space. Taking a position in
// scene space goes through pivot and parent instead (see `TakePosition`): the two are meant to differ.
void PinModifier::Apply(TreeElement& inTree) const {
  TTreeTransform transform;
  if (fData.fGlobal) {
    inTree.GetGlobalTransform(transform);
    transform.SetPosition(fData.fPosition);
    inTree.SetGlobalTransform(transform, 0, 1, 0, 0, 0);
  } else {
    inTree.GetLocalTransform(transform);
    transform.SetPosition(fData.fPosition);
    inTree.SetLocalTransform(transform, 1, 0, 0, 0, 0, 1);
  }
  inTree.TransformChanged(0);
}

MCResult PinModifier::HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* /*inData*/) {
  return GuardOperation([&] {
    if (IsEventHandlingSuspended() || inMessage != kPanelControlUsed || inSource == nullptr) {
      return MC_S_OK;
    }
    const auto part = MCQuery<IMFPart>(inSource);
    if (!part) {
      throw TMCException(MC_E_INVALIDARG, "PinModifier", 105);
    }
    HandleButton(part->GetPartId());
    return MC_S_OK;
  });
}

void PinModifier::HandleButton(MCID inPart) {
  const auto tree = FindElement();
  if (!tree) {
    return;
  }
  if (inPart == "setp"_id) {
    TakePosition(*tree);
  } else if (inPart == "adkf"_id && fData.fPositionSet) {
    KeyPosition(*tree);
  }
}

TMCCountedPtr<TreeElement> PinModifier::FindElement() {
  return fTree ? fTree : FindModifiedElement(*this);
}

void PinModifier::TakePosition(TreeElement& inTree) {
  if (fData.fGlobal) {
    TTreeChainTransform chain;
    inTree.GetGlobalTransformChain(chain);
    fData.fPosition = chain.GetScenePosition();
  } else {
    TTreeTransform transform;
    inTree.GetLocalTransform(transform);
    fData.fPosition = transform.GetPosition();
  }
  fData.fPositionSet = true;
}

void PinModifier::KeyPosition(TreeElement& inTree) const {
  const auto animated = MCQuery<I3DShAnimated>(&inTree);
  const auto owner = MCShare(animated ? animated->GetTimeLineOwner() : nullptr);
  if (!owner) {
    return;
  }
  TimelineCallback callback(inTree, fData);
  owner->ForEachTimeLine(&callback);
}

MCResult PinModifier::ExtensionDataChanged() {
  fData = {};
  return MC_S_OK;
}

}  // namespace qlx
