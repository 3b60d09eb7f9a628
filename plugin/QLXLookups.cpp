#include "QLXLookups.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

#include "MCException.h"
#include "QLXMapping.h"
#include "TextPath.h"
#include "TreeWalk.h"

namespace qlx {

namespace {

std::string_view ViewText(const TMCString& inText) {
  return {inText.CStr(), inText.ByteLength()};
}

const TMCString& GetLinkedName(QLXLinked inWhich, const QLXModifierData& inData) {
  return inWhich == QLXLinked::kController ? inData.fControllerName : inData.fSourceName;
}

bool IsFoundByName(const QLXModifierData& inData) {
  return inData.fFindControllerByName || inData.fFindSourceByName;
}

TMCCountedPtr<TreeElement> FindByName(I3DShScene& inScene, const TMCString& inName) {
  TMCCountedPtr<IMCUnknown> object;
  inScene.GetRoot(object.WriteInto());
  const auto root = MCQuery<TreeElement>(object);
  const std::string_view name = ViewText(inName);
  for (TreeElement* element = root.Get(); element; element = NextBelow(*root, *element)) {
    if (ViewText(element->GetName()) == name) {
      return MCShare(element);
    }
  }
  return nullptr;
}

}  // namespace

TMCCountedPtr<ParamInfo> ResolveQuietly(TreeElement* inObject, const TMCString& inPath) {
  try {
    return ResolveTextPath(inObject, inPath);
  } catch (const TMCException&) {
    return nullptr;
  }
}

TMCCountedPtr<TreeElement> FindLinkedElement(I3DShScene& inScene, QLXLinked inWhich, const QLXModifierData& inData,
                                             const QLXPrivateData& inPrivate) {
  if (IsFoundByName(inData)) {
    return FindByName(inScene, GetLinkedName(inWhich, inData));
  }
  const ObjectReference& reference =
      inWhich == QLXLinked::kController ? inPrivate.fControllerRef : inPrivate.fSourceRef;
  TMCCountedPtr<TreeElement> found;
  if (reference.GetElemCount() != 0) {
    inScene.FindElementByRef(found.WriteInto(), reference);
  }
  return found;
}

void QLXParameter::Set(TMCCountedPtr<ParamInfo> inParam, MCID inComponent) {
  Forget();
  fIsKnown = true;
  fParam = std::move(inParam);
  if (fParam) {
    const MCID type = fParam->GetDataType();
    fOwnKey = fParam->GetParamID();
    fPlace = FindNumber(type, inComponent);
    SetType(FindParamType(type));
  }
}

// Without memory for a large value there is none.
void QLXParameter::SetType(ParamType* inType) {
  ClearValue();
  if (!inType) {
    return;
  }
  if (inType->GetDataSize() <= sizeof fRoom.fSmall) {
    inType->ConstructData(fRoom.fSmall);
    fValue = ParamHolder(inType, fRoom.fSmall);
    return;
  }
  auto large = std::unique_ptr<QLXValueBuffer>(new (std::nothrow) QLXValueBuffer(inType));
  if (large && large->HasValue()) {
    fValue = large->GetHolder();
    fRoom.fLarge = large.release();
  }
}

void QLXParameter::ClearValue() {
  if (fValue.IsValid() && IsLarge()) {
    delete fRoom.fLarge;
  } else if (fValue.IsValid()) {
    fValue.GetParamType()->DestructData(fRoom.fSmall);
  }
  fValue = {};
}

void QLXParameter::Forget() {
  fIsKnown = false;
  fParam.Clear();
  ClearValue();
}

QLXPathKey::QLXPathKey(const TMCString& inPath, bool inIsSet)
    : fIsSet(inIsSet), fIsShader(IsShaderPath(inPath)), fIsMorph(IsMorphPath(inPath)) {
  const std::string_view path = ViewText(inPath);
  for (const char byte : path.substr(path.size() - std::min<std::size_t>(path.size(), 4))) {
    fKey = (fKey << 8) | static_cast<uint8>(byte);
  }
  fIsGlobal = GetGlobalAxis(fKey) >= 0;
}

void QLXLookups::Forget() {
  fIsStale = fIsRunning;
  if (!fIsRunning) {
    ForgetAll();
  }
}

void QLXLookups::ForgetAll() {
  fIsStale = false;
  ForgetLinked();
  fTarget.Forget();
  if (fObjectParameters) {
    for (QLXParameter& target : fObjectParameters->fTargets) {
      target.Forget();
    }
  }
  fNotifierKnown = false;
  fElement.Clear();
  fScene = nullptr;
  fStructure = nullptr;
}

void QLXLookups::ForgetLinked() {
  fLinked.Clear();
  fController.Forget();
  if (fObjectParameters) {
    for (QLXParameter& source : fObjectParameters->fSources) {
      source.Forget();
    }
  }
}

bool QLXLookups::Stands(const TreeElement& inElement, const I3DShScene& inScene) const {
  return fStructure && fScene == &inScene && fElement == &inElement && !fIsStale &&
         fStructure->GetStructureVersion() == fVersion;
}

QLXLookups::Running::Running(QLXLookups& ioLookups, TreeElement& inElement, I3DShScene& inScene,
                             const QLXPrivateData& inPrivate)
    : fLookups(ioLookups) {
  if (!ioLookups.Stands(inElement, inScene)) {
    ioLookups.Start(inElement, inScene, inPrivate);
  }
  ioLookups.fIsRunning = true;
}

void QLXLookups::Start(TreeElement& inElement, I3DShScene& inScene, const QLXPrivateData& inPrivate) {
  ForgetAll();
  fElement.Share(&inElement);
  fScene = &inScene;
  fTargetKey = QLXPathKey(inPrivate.fTargetPath, inPrivate.fTargetPathSet);
  fControllerKey = QLXPathKey(inPrivate.fControllerPath, inPrivate.fControllerPathSet);
  if (const auto structure = MCQuery<ISceneStructure>(&inScene)) {
    fStructure = structure.Get();
    fVersion = structure->GetStructureVersion();
  }
}

QLXLookups::Running::~Running() {
  fLookups.fIsRunning = false;
  if (!fLookups.fStructure || fLookups.fIsStale) {
    fLookups.ForgetAll();
  }
}

bool QLXLookups::StillStands(QLXLinked inWhich, bool inByName, const TMCString& inName) const {
  return fLinked && fLinkedWhich == inWhich && fLinkedByName == inByName &&
         (!inByName || ViewText(fLinkedName) == ViewText(inName));
}

TreeElement* QLXLookups::FindLinked(QLXLinked inWhich, const QLXModifierData& inData, const QLXPrivateData& inPrivate) {
  const bool byName = IsFoundByName(inData);
  const TMCString& name = GetLinkedName(inWhich, inData);
  if (StillStands(inWhich, byName, name)) {
    return fLinked.Get();
  }
  ForgetLinked();
  fLinked = FindLinkedElement(*fScene, inWhich, inData, inPrivate);
  if (byName) {
    fLinkedName = name;
  }
  if (!fLinked) {
    fLinked = fElement;
  }
  fLinkedWhich = inWhich;
  fLinkedByName = byName;
  return fLinked.Get();
}

void QLXLookups::LookUp(QLXParameter& ioPlace, TreeElement* inObject, const TMCString& inPath, MCID inComponent) {
  ioPlace.Set(ResolveQuietly(inObject, inPath), inComponent);
}

QLXParameter* QLXLookups::FindTarget(std::size_t inLink) {
  return HasObjectParameters() ? FindObjectLink(fObjectParameters->fTargets[inLink], fElement.Get(), inLink) : nullptr;
}

QLXParameter* QLXLookups::FindSource(std::size_t inLink) {
  return HasObjectParameters() ? FindObjectLink(fObjectParameters->fSources[inLink], fLinked.Get(), inLink) : nullptr;
}

bool QLXLookups::HasObjectParameters() {
  if (!fObjectParameters) {
    fObjectParameters.reset(new (std::nothrow) ObjectParameters);
  }
  return static_cast<bool>(fObjectParameters);
}

QLXParameter* QLXLookups::FindObjectLink(QLXParameter& ioPlace, TreeElement* inObject, std::size_t inLink) {
  if (!ioPlace.IsKnown()) {
    const QLXObjectLink& link = kQLXObjectLinks[inLink];
    LookUp(ioPlace, inObject, TMCString31(link.fPath), link.fKey);
  }
  return ioPlace.Exists() ? &ioPlace : nullptr;
}

// An element answers itself, or the data of the object that it shows does.
TMCCountedPtr<I3DShMorphTarget> FindMorphNotifier(TreeElement& inElement) {
  if (auto notifier = MCQuery<I3DShMorphTarget>(&inElement)) {
    return notifier;
  }
  const auto holder = MCQuery<I3DShObjectHolder>(&inElement);
  I3DShObject* const object = holder ? holder->GetHeldObject() : nullptr;
  TMCCountedPtr<IMCUnknown> data;
  if (object) {
    object->GetObjectData(data.WriteInto());
  }
  return MCQuery<I3DShMorphTarget>(data);
}

}  // namespace qlx
