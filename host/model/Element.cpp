// The tree, the values and what an element shows. Transforms are in ElementTransforms.cpp.
#include "Element.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

#include "ElementParameters.h"
#include "LinkLook.h"
#include "Scene.h"
#include "TimeLine.h"
#include "WorkAhead.h"

namespace qlx::host {

struct Element::SampleHints {
  std::array<std::size_t, kChannelCount> fCurves{};
  std::size_t fRotation = 0;
};

struct Element::Curves {
  std::array<Curve, kChannelCount> fCurves;
  SampleHints fHints;

  Curve& operator[](Channel inChannel) { return fCurves[static_cast<std::size_t>(inChannel)]; }
};

namespace {

constexpr bool IsRotation(Channel inChannel) {
  return (MaskOf(inChannel) & kRotationMask) != 0;
}

// Most writes are of one channel.
template <class Test>
ChannelMask SelectChannels(ChannelMask inMask, Test&& inTest) {
  uint32 selected = 0;
  for (uint32 rest = inMask; rest != 0; rest &= rest - 1) {
    const int channel = std::countr_zero(rest);
    selected |= static_cast<uint32>(inTest(static_cast<std::size_t>(channel))) << channel;
  }
  return static_cast<ChannelMask>(selected);
}

bool IsFinite(const ChannelValues& inValues, ChannelMask inMask) {
  return SelectChannels(inMask, [&](std::size_t i) { return !std::isfinite(inValues.fValue[i]); }) == 0;
}

}  // namespace

Element::Element(Scene& inScene, uint32 inID, std::string_view inName)
    : fScene(&inScene),
      fState(inScene.fStates->Make()),
      fID(inID),
      fStates(inScene.fStates),
      fName(std::make_shared<const TMCString255>(inName.data(), inName.size())) {}

Element::~Element() {
  fStates->End(fState);
}

std::string Element::GetNameText() const {
  return {fName->CStr(), fName->ByteLength()};
}

// Values

void Element::SetBase(const ChannelValues& inValues) {
  if (LinkLook* const look = GetLook()) {
    look->Write(*this, inValues, DifferentChannels(fState.fBase, inValues));
    return;
  }
  for (const ChannelInfo& info : kChannels) {
    const real32 value = inValues[info.fChannel];
    const ChannelMask mask = MaskOf(info.fChannel);
    if ((DifferentChannels(fState.fBase, inValues) & mask) == 0 || !std::isfinite(value)) {
      continue;
    }
    StoreBase(info.fChannel, value);
    fEdited |= mask;
    NotePoseEdit(mask);
    if (fScene != nullptr && fScene->IsEvaluating()) {
      fScene->Touch(*this);  // shows from the next evaluation on
    } else if (!HasKeys(info.fChannel)) {
      ShowValue(info.fChannel, value);
    }
  }
}

bool Element::SetValue(Channel inChannel, real32 inValue) {
  ChannelValues values = fState.fEvaluated;
  values[inChannel] = inValue;
  return Write(values, MaskOf(inChannel));
}

LinkLook* Element::GetLook() const {
  return fScene == nullptr ? nullptr : fScene->GetLook();
}

void Element::NotePoseEdit(ChannelMask inMask) {
  if ((inMask & ~kPositionMask) != 0 && fScene != nullptr) {
    fScene->PoseEdited();
  }
}

bool Element::HasKeys(Channel inChannel) const {
  const Curve* const curve = GetCurve(inChannel);
  return (curve != nullptr && !curve->IsEmpty()) || (fRotationCurve != nullptr && IsRotation(inChannel));
}

bool Element::Write(const ChannelValues& inValues, ChannelMask inMask) {
  if (fScene == nullptr || !IsFinite(inValues, inMask)) {
    return false;
  }
  if (LinkLook* const look = fScene->GetLook()) {
    look->Write(*this, inValues, inMask);
  } else if (fScene->IsEvaluating()) {
    WriteEvaluated(inValues, inMask);
  } else {
    WriteEdit(inValues, inMask);
  }
  return true;
}

void Element::WriteEvaluated(const ChannelValues& inValues, ChannelMask inMask) {
  if (fState.fWritten == 0 && IsAnimated()) {
    KeepUnmodified();
  }
  fState.fWritten |= inMask;
  StoreChanged(inValues, SelectChannels(inMask, [&](std::size_t i) {
                 return std::bit_cast<uint32>(inValues.fValue[i]) != std::bit_cast<uint32>(fState.fEvaluated.fValue[i]);
               }));
  fScene->Touch(*this);
}

void Element::WriteEdit(const ChannelValues& inValues, ChannelMask inMask) {
  NotePoseEdit(inMask);
  for (const ChannelInfo& info : kChannels) {
    const Channel channel = info.fChannel;
    if ((inMask & MaskOf(channel)) == 0) {
      continue;
    }
    if (HasKeys(channel)) {
      SetKeyNow(channel, inValues[channel]);
    } else {
      StoreBase(channel, inValues[channel]);
    }
    fEdited |= MaskOf(channel);
    ShowValue(channel, inValues[channel]);
  }
}

void Element::SetKeyNow(Channel inChannel, real32 inValue) {
  const int32 now = fScene->GetTime();
  if (fRotationCurve != nullptr && IsRotation(inChannel)) {
    const ChannelValues pose = SampleAt(now);
    DropRotationCurve();
    for (const Channel channel : {Channel::kRotationX, Channel::kRotationY, Channel::kRotationZ}) {
      MakeCurves()[channel].SetKey({.fTime = now, .fValue = pose[channel]});
    }
  }
  MakeCurves()[inChannel].SetKey({.fTime = now, .fValue = inValue});
}

// What this evaluation began with stays what it was.
void Element::StoreBase(Channel inChannel, real32 inValue) {
  if (fState.fWritten != 0 || (fScene != nullptr && fScene->IsEvaluating())) {
    KeepUnmodified();
  }
  fState.fBase[inChannel] = inValue;
}

// Until the next evaluation takes values: whatever calls this has touched the element, or is about to.
void Element::KeepUnmodified() {
  if (!fState.fKeepsUnmodified) {
    fUnmodified = GetUnmodified();
    fState.fKeepsUnmodified = true;
  }
}

void Element::ShowValue(Channel inChannel, real32 inValue) {
  if (fState.fWritten != 0) {
    KeepUnmodified();
    fUnmodified[inChannel] = inValue;
  }
  ChannelValues values = fState.fEvaluated;
  values[inChannel] = inValue;
  StoreEvaluated(values);
}

void Element::StoreEvaluated(const ChannelValues& inValues) {
  StoreChanged(inValues, DifferentChannels(fState.fEvaluated, inValues));
}

void Element::StoreChanged(const ChannelValues& inValues, ChannelMask inChanged) {
  if (fState.Store(inValues, inChanged)) {
    InvalidateGlobal();
  }
}

// Curves

const Curve* Element::GetCurve(Channel inChannel) const {
  return fCurves == nullptr ? nullptr : &fCurves->fCurves[IndexOf(inChannel)];
}

Curve& Element::GetOrMakeCurve(Channel inChannel) {
  NotePoseEdit(MaskOf(inChannel));
  return MakeCurves()[inChannel];
}

Element::Curves& Element::MakeCurves() {
  if (fCurves == nullptr) {
    fCurves = std::make_unique<Curves>();
    fState.fIsAnimated = true;
    if (fScene != nullptr) {
      fScene->WorkChanged();
    }
  }
  return *fCurves;
}

void Element::EditCurve(Channel inChannel, const std::function<void(Curve&)>& inEdit) {
  if (fScene == nullptr) {
    return;
  }
  if (LinkLook* const look = fScene->GetLook()) {
    look->WriteKeys(LinkValue::OfChannel(*this, inChannel));
    return;
  }
  NotePoseEdit(MaskOf(inChannel));
  const bool wasRotationCurve = fRotationCurve != nullptr && IsRotation(inChannel);
  if (wasRotationCurve) {
    DropRotationCurve();
  }
  inEdit(MakeCurves()[inChannel]);
  fEdited |= MaskOf(inChannel);
  if (fScene->IsEvaluating()) {
    return;
  }
  if (!wasRotationCurve) {
    ShowEditedCurve(inChannel);
    return;
  }
  for (const Channel channel : {Channel::kRotationX, Channel::kRotationY, Channel::kRotationZ}) {
    ShowEditedCurve(channel);
  }
}

void Element::ShowEditedCurve(Channel inChannel) {
  const Curve& curve = MakeCurves()[inChannel];
  ShowValue(inChannel, curve.IsEmpty() ? fState.fBase[inChannel] : curve.Sample(fScene->GetTime()));
}

void Element::SetRotationCurve(std::unique_ptr<RotationCurve> inCurve) {
  fRotationCurve = std::move(inCurve);
  NotePoseEdit(kRotationMask);
  MakeCurves();
}

// All three channels change with it: their curves rule from now on.
void Element::DropRotationCurve() {
  fRotationCurve.reset();
  MakeCurves();
  fEdited |= kRotationMask;
}

ChannelValues Element::SampleAt(int32 inTime) const {
  SampleHints hints;
  return Sample(inTime, hints);
}

ChannelValues Element::Sample(int32 inTime, SampleHints& ioHints) const {
  ChannelValues values = fState.fBase;
  if (fCurves != nullptr) {
    for (std::size_t i = 0; i < kChannelCount; ++i) {
      const Curve& curve = fCurves->fCurves[i];
      if (!curve.IsEmpty()) {
        values.fValue[i] = curve.Sample(inTime, ioHints.fCurves[i]);
      }
    }
  }
  if (fRotationCurve != nullptr) {
    const QuaternionValue turn = fRotationCurve->Sample(inTime, ioHints.fRotation);
    const TQuaternion rounded{static_cast<real32>(turn[0]), static_cast<real32>(turn[1]), static_cast<real32>(turn[2]),
                              static_cast<real32>(turn[3])};
    const TVector3 angles = QuaternionToEuler(0, rounded, values.GetRotation());
    values[Channel::kRotationX] = angles.x;
    values[Channel::kRotationY] = angles.y;
    values[Channel::kRotationZ] = angles.z;
  }
  return values;
}

void Element::BeginEvaluation(int32 inTime) {
  if (fState.Begin(fCurves == nullptr ? fState.fBase : Sample(inTime, fCurves->fHints))) {
    InvalidateGlobal();
  }
}

ChannelMask Element::GetModifiedChannels() const {
  return fState.fWritten == 0
             ? ChannelMask{0}
             : static_cast<ChannelMask>(fState.fWritten & DifferentChannels(fState.fEvaluated, GetUnmodified()));
}

// Modifiers

void Element::ListWorkMemory(WorkLines& ioLines) const {
  ioLines.Add(static_cast<const TreeElement*>(this), sizeof(void*));
  ioLines.Add(&fScene, sizeof fScene + sizeof(ElementState*));
  ioLines.Add(&fState, sizeof fState);
  if (fParameters) {
    fParameters->ListWorkMemory(ioLines);
  }
}

void Element::AddModifier(Modifier& inModifier, std::size_t inIndex) {
  if (!MC_ASSERT_TEXT(inModifier.GetElement() == nullptr, "a modifier sits on one element")) {
    return;
  }
  const std::size_t index = std::min(inIndex, fModifiers.size());
  fModifiers.insert(fModifiers.begin() + static_cast<std::ptrdiff_t>(index), MCShare(&inModifier));
  inModifier.Attach(*this);
  if (fScene != nullptr) {
    fScene->ModifiersChanged();
  }
}

void Element::RemoveModifier(std::size_t inIndex) {
  if (inIndex >= fModifiers.size()) {
    return;
  }
  const TMCCountedPtr<Element> keep = MCShare(this);  // the modifier may hold the last reference
  const TMCCountedPtr<Modifier> removed = fModifiers[inIndex];
  fModifiers.erase(fModifiers.begin() + static_cast<std::ptrdiff_t>(inIndex));
  removed->Detach();
  if (fScene != nullptr) {
    fScene->ModifiersChanged();
  }
}

void Element::RemoveAllModifiers() {
  while (!fModifiers.empty()) {
    RemoveModifier(fModifiers.size() - 1);
  }
}

uint32 Element::GetModifierCount(int32 /*inOne*/) {
  return static_cast<uint32>(fModifiers.size());
}

MCResult Element::InsertModifier(I3DShModifier* inModifier, uint32 inIndex) {
  const auto own = MCQuery<IHostModifier>(inModifier);
  if (!own) {
    return MC_E_INVALIDARG;
  }
  Modifier& modifier = own->GetHostModifier();
  if (fScene == nullptr || fScene->GetLook() != nullptr || modifier.GetElement() != nullptr) {
    return MC_E_NOTVALID;
  }
  AddModifier(modifier, inIndex);
  return MC_S_OK;
}

// Tree

I3DShScene* Element::GetScene() {
  return fScene;
}

void Element::GetParent(TreeElement** outParent) {
  StoreForCaller<TreeElement>(outParent, fParent);
}

TreeElement* Element::GetFirstChild() {
  return fChildren.empty() ? nullptr : fChildren.front().Get();
}

TreeElement* Element::GetNextSibling() {
  if (fParent == nullptr || fIndexInParent + 1 >= fParent->fChildren.size()) {
    return nullptr;
  }
  return fParent->fChildren[fIndexInParent + 1].Get();
}

bool Element::IsAtOrBelow(TreeElement* inAncestor) {
  for (Element* element = this; element != nullptr; element = element->fParent) {
    if (static_cast<TreeElement*>(element) == inAncestor) {
      return true;
    }
  }
  return false;
}

TreePath& Element::GetTreePath(TreePath& outPath) {
  uint32 depth = 0;
  for (const Element* element = this; element->fParent != nullptr; element = element->fParent) {
    ++depth;
  }
  if (outPath.SetElemCount(depth)) {
    for (const Element* element = this; element->fParent != nullptr; element = element->fParent) {
      outPath[--depth] = element->fID;
    }
  }
  return outPath;
}

// Low byte first, on every system: a saved reference is found by each.
ObjectReference& Element::GetObjectReference(ObjectReference& outReference) {
  if (outReference.SetElemCount(sizeof(fID))) {
    for (uint32 i = 0; i < sizeof(fID); ++i) {
      outReference[i] = static_cast<uint8>(fID >> (8 * i));
    }
  }
  return outReference;
}

void Element::LeaveScene() {
  fScene = nullptr;
  fParent = nullptr;
  fIndexInParent = 0;
  fLinks = {};
  fState.fGlobalValid = false;
  fFigure = nullptr;
  fMemberOf = nullptr;
  fChildren.clear();
}

// Parameters and time lines

TimeBasedData* Element::GetTimeBasedData() {
  if (fParameters == nullptr) {
    fParameters = std::make_unique<ElementParameters>(*this);
  }
  return fParameters->GetRoot();
}

const ParameterGroup& Element::GetParameters() {
  GetTimeBasedData();
  return *fParameters->GetRoot();
}

void Element::ForEachTimeLine(IForEachTimeLineCallback* inCallback) {
  if (inCallback == nullptr) {
    return;
  }
  const TMCCountedPtr<Element> keep = MCShare(this);
  if (fTimeLines == nullptr) {
    fTimeLines = std::make_unique<ElementTimeLines>(*this);
  }
  fTimeLines->Visit(*inCallback);
}

void Element::AttachValues(AttachedValues inAttached) {
  if (fAttached == nullptr) {
    fAttached = std::make_unique<std::vector<AttachedValues>>();
  }
  fAttached->push_back(std::move(inAttached));
  fParameters = nullptr;
  fTimeLines = nullptr;
  if (fScene != nullptr) {
    fScene->StructureChanged();
  }
}

const std::vector<AttachedValues>& Element::GetAttachedValues() const {
  static const std::vector<AttachedValues> kNone;
  return fAttached == nullptr ? kNone : *fAttached;
}

// What it shows

void Element::SetShownObject(SceneObject* inObject) {
  fObject.Share(inObject);
  if (fScene != nullptr) {
    fScene->StructureChanged();
  }
}

SceneObject* Element::GetSceneObject() const {
  return fObject.Get();
}

I3DShObject* Element::GetShownObject() {
  return fObject.Get();
}

uint32 Element::GetShaderCount() {
  return fObject ? static_cast<uint32>(fObject->GetShaders().size()) : 0;
}

I3DShShader* Element::GetShader(uint32 inIndex) {
  return inIndex < GetShaderCount() ? fObject->GetShaders()[inIndex] : nullptr;
}

I3DShShader* Element::GetMainShader() {
  return GetShader(0);
}

uint32 Element::GetMemberCount() {
  return fFigure == nullptr ? 0 : static_cast<uint32>(fFigure->GetMembers().size());
}

I3DShOwned* Element::GetFigureOwner() {
  return fMemberOf == nullptr ? nullptr : fMemberOf->GetOwner();
}

bool Element::Offers(const MCGuid& inID) const {
  if (inID == I3DShInstance::kInterfaceID || inID == I3DShObjectHolder::kInterfaceID ||
      inID == I3DShShaderHolder::kInterfaceID) {
    return static_cast<bool>(fObject);
  }
  if (inID == I3DShFigure::kInterfaceID) {
    return fFigure != nullptr;
  }
  if (inID == I3DShFigureMember::kInterfaceID) {
    return fMemberOf != nullptr;
  }
  return true;
}

MCResult Element::FindPart(const MCGuid& inID, void** outObject) {
  // What a climb through parents ends at. The scene keeps it; its root stands for it in the tree.
  if (inID == AttributesSet::kInterfaceID && fScene != nullptr && &fScene->GetRootElement() == this) {
    return MCStoreCounted<AttributesSet>(fScene, outObject);
  }
  return HostObject::FindPart(inID, outObject);
}

}  // namespace qlx::host
