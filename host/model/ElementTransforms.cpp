// The transforms of an element: local and global, read and written.
#include "Element.h"
#include "LinkLook.h"
#include "Scene.h"

namespace qlx::host {

const TreeTransform& Element::GetLocal() const {
  if (fState.fLocal == ElementState::Local::kNotMade) {
    fLocal = MakeLocalTransform(fState.fEvaluated, fFrame);
  } else if (fState.fLocal == ElementState::Local::kMoved) {
    fLocal.SetPosition(fState.fEvaluated.GetPosition());
  }
  fState.fLocal = ElementState::Local::kMade;
  return fLocal;
}

const TOffsetMatrix33& Element::GetGlobalMatrix() const {
  if (!fState.fGlobalValid) {
    ComputeGlobal();
  }
  return fGlobal;
}

// Climbs to the nearest valid ancestor and comes back down: the way back is kept in the links of the elements that are
// not valid, which stand in no list.
void Element::ComputeGlobal() const {
  const Element* down = nullptr;
  for (const Element* element = this; element != nullptr && !element->fState.fGlobalValid; element = element->fParent) {
    element->fLinks.fNext = const_cast<Element*>(down);
    down = element;
  }
  while (down != nullptr) {
    const Element* const next = down->fLinks.fNext;
    const TOffsetMatrix33 local = MakeLocalMatrix(down->GetLocal());
    down->fGlobal = down->fParent == nullptr ? local : down->fParent->fGlobal * local;
    down->fState.fGlobalValid = true;
    down->LinkValid();
    down = next;
  }
}

void Element::LinkValid() const {
  fLinks.fPrevious = nullptr;
  fLinks.fNext = nullptr;
  if (fParent == nullptr) {
    return;
  }
  auto* const self = const_cast<Element*>(this);
  fLinks.fNext = fParent->fLinks.fFirstChild;
  if (fLinks.fNext != nullptr) {
    fLinks.fNext->fLinks.fPrevious = self;
  }
  fParent->fLinks.fFirstChild = self;
}

void Element::UnlinkValid() {
  if (fLinks.fNext != nullptr) {
    fLinks.fNext->fLinks.fPrevious = fLinks.fPrevious;
  }
  if (fLinks.fPrevious != nullptr) {
    fLinks.fPrevious->fLinks.fNext = fLinks.fNext;
  } else if (fParent != nullptr) {
    fParent->fLinks.fFirstChild = fLinks.fNext;
  }
  fLinks.fPrevious = nullptr;
  fLinks.fNext = nullptr;
}

void Element::InvalidateLocal() {
  fState.fLocal = ElementState::Local::kNotMade;
  InvalidateGlobal();
}

void Element::InvalidateGlobal() {
  if (!fState.fGlobalValid) {
    return;
  }
  UnlinkValid();
  Element* pending = this;
  while (pending != nullptr) {
    Element* const element = pending;
    pending = element->fLinks.fNext;
    element->fState.fGlobalValid = false;
    for (Element* child = element->fLinks.fFirstChild; child != nullptr;) {
      Element* const next = child->fLinks.fNext;
      child->fLinks.fNext = pending;
      pending = child;
      child = next;
    }
    element->fLinks = {};
  }
}

void Element::SetMode(int32 inMode) {
  fFrame.fMode = inMode == kPoser ? kPoser : kTorvane;
  NotePoseEdit(kRotationMask);
  InvalidateLocal();
}

void Element::SetHotPoint(const TVector3& inHotPoint) {
  if (inHotPoint.IsFinite()) {
    fFrame.fHotPoint = inHotPoint;
    NotePoseEdit(kRotationMask);
    InvalidateLocal();
  }
}

MCResult Element::Refuse(const char* inProblem, MCResult inCode) const {
  fScene->GetDiagnostics().Warn("element \"" + GetNameText() + "\": " + inProblem);
  return inCode;
}

MCResult Element::WriteWhole(const ChannelValues& inValues) {
  if (Write(inValues, DifferentChannels(inValues, fState.fEvaluated))) {
    return MC_S_OK;
  }
  return Refuse("a transform that is too large was not taken", MC_E_INVALIDARG);
}

MCResult Element::GetLocalTransform(TTreeTransform& outTransform) {
  outTransform = GetLocal();
  if (LinkLook* const look = GetLook()) {
    look->Feed(*this, false, outTransform);
  }
  return MC_S_OK;
}

MCResult Element::SetLocalTransform(const TTreeTransform& inTransform, int32 /*in1*/, int32 /*in2*/, int32 /*in3*/,
                                    int32 /*in4*/, int32 /*in5*/, int32 /*in6*/) {
  if (fScene == nullptr) {
    return MC_E_NOTVALID;
  }
  if (!IsFiniteTransform(inTransform)) {
    return Refuse("a transform that is not finite was not taken", MC_E_INVALIDARG);
  }
  if (LinkLook* const look = fScene->GetLook()) {
    look->Take(*this, false, inTransform);
    return MC_S_OK;
  }
  return WriteWhole(TakeLocalTransform(inTransform, GetLocal(), fState.fEvaluated));
}

MCResult Element::GetGlobalTransform(TTreeTransform& outTransform) {
  if (fScene == nullptr) {
    return MC_E_NOTVALID;
  }
  const TOffsetMatrix33& global = GetGlobalMatrix();
  if (!global.IsFinite()) {
    return Refuse("its place in the scene is not finite", MC_E_NOTVALID);
  }
  outTransform = fScene->DecomposeGlobal(global);
  if (LinkLook* const look = fScene->GetLook()) {
    look->Feed(*this, true, outTransform);
  }
  return MC_S_OK;
}

MCResult Element::SetGlobalTransform(const TTreeTransform& inTransform, int32 /*in1*/, int32 /*in2*/, int32 /*in3*/,
                                     int32 /*in4*/, int32 /*in5*/) {
  if (fScene == nullptr) {
    return MC_E_NOTVALID;
  }
  if (!IsFiniteTransform(inTransform)) {
    return Refuse("a transform that is not finite was not taken", MC_E_INVALIDARG);
  }
  if (LinkLook* const look = fScene->GetLook()) {
    look->Take(*this, true, inTransform);
    return MC_S_OK;
  }
  const TOffsetMatrix33& global = GetGlobalMatrix();
  const ParentSpace parent(fParent == nullptr ? TOffsetMatrix33() : fParent->fGlobal);
  if (!global.IsFinite() || !parent.CanBeInverted()) {
    return Refuse("it cannot be placed in scene space: the scale of an element above it is zero, or not finite",
                  MC_E_NOTVALID);
  }
  if (!DifferInPositionOnly(inTransform, fScene->DecomposeGlobal(global))) {
    return WriteWhole(TakeLocalMatrix(parent.MapMatrix(inTransform.GetLocalToParent()), fFrame, fState.fEvaluated));
  }
  if (inTransform.GetPosition() == global.fOffset) {
    return WriteWhole(fState.fEvaluated);
  }
  return WriteWhole(TakeLocalOffset(parent.MapPoint(inTransform.GetPosition()), GetLocal(), fState.fEvaluated));
}

MCResult Element::GetGlobalTransformChain(TTreeChainTransform& outTransform) {
  if (LinkLook* const look = GetLook()) {
    look->Read(LinkValue::OfGlobal(*this, LinkValue::kWholePlacement));
  }
  const TreeTransform& local = GetLocal();
  outTransform = TTreeChainTransform(local, local.GetMode() == kPoser ? local.GetHotPoint() : kZeroVector,
                                     fParent == nullptr ? TOffsetMatrix33() : fParent->GetGlobalMatrix());
  return MC_S_OK;
}

void Element::TransformChanged(int32 /*inZero*/) {
  if (fScene != nullptr) {
    fScene->Touch(*this);
  }
}

void Element::InvalidateElement(int32 /*inOne*/) {
  if (fScene != nullptr) {
    fScene->Touch(*this);
  }
}

}  // namespace qlx::host
