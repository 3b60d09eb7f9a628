#include "QLXLookups.h"

#include <algorithm>
#include <string_view>

#include "MCException.h"
#include "QLXValues.h"
#include "TextPath.h"
#include "TreeWalk.h"

namespace qlx {

namespace {

std::string_view ViewText(const TMCString& inText) {
  return {inText.CStr(), inText.ByteLength()};
}

// An object that refuses its attributes has no parameters for a link.
TMCCountedPtr<ParamInfo> ResolveQuietly(TreeElement* inObject, const TMCString& inPath) {
  try {
    return ResolveTextPath(inObject, inPath);
  } catch (const TMCException&) {
    return nullptr;
  }
}

}  // namespace

QLXPathKey::QLXPathKey(const TMCString& inPath) : fIsShader(IsShaderPath(inPath)), fIsMorph(IsMorphPath(inPath)) {
  const std::string_view path = ViewText(inPath);
  for (const char byte : path.substr(path.size() - std::min<std::size_t>(path.size(), 4))) {
    fKey = (fKey << 8) | static_cast<uint8>(byte);
  }
}

void QLXLookups::Forget() {
  ForgetLinked();
  fTarget = {};
  for (QLXParameter& target : fTargets) {
    target = {};
  }
  fNotifierKnown = false;
  fElement.Clear();
  fScene = nullptr;
  fStructure = nullptr;
}

void QLXLookups::ForgetLinked() {
  fLinked.Clear();
  fController = {};
  for (QLXParameter& source : fSources) {
    source = {};
  }
}

void QLXLookups::Begin(TreeElement& inElement, I3DShScene& inScene, const QLXPrivateData& inPrivate) {
  if (fStructure && fScene == &inScene && fElement == &inElement) {
    if (fStructure->GetStructureVersion() == fVersion) {
      return;
    }
  }
  Forget();
  fElement.Share(&inElement);
  fScene = &inScene;
  fTargetKey = QLXPathKey(inPrivate.fTargetPath);
  fControllerKey = QLXPathKey(inPrivate.fControllerPath);
  if (const auto structure = MCQuery<ISceneStructure>(&inScene)) {
    fStructure = structure.Get();
    fVersion = fStructure->GetStructureVersion();
  }
}

void QLXLookups::End() {
  if (!fStructure) {
    Forget();
  }
}

bool QLXLookups::StillStands(QLXLinked inWhich, bool inByName, const TMCString& inName) const {
  return fLinked && fLinkedWhich == inWhich && fLinkedByName == inByName &&
         (!inByName || ViewText(fLinkedName) == ViewText(inName));
}

TreeElement* QLXLookups::FindLinked(QLXLinked inWhich, const QLXModifierData& inData, const QLXPrivateData& inPrivate) {
  const bool isController = inWhich == QLXLinked::kController;
  const bool byName = inData.fFindControllerByName || inData.fFindSourceByName;
  const TMCString& name = isController ? inData.fControllerName : inData.fSourceName;
  if (StillStands(inWhich, byName, name)) {
    return fLinked.Get();
  }
  ForgetLinked();
  const ObjectReference& reference = isController ? inPrivate.fControllerRef : inPrivate.fSourceRef;
  if (byName) {
    fLinked = FindByName(name);
    fLinkedName = name;
  } else if (reference.GetElemCount() != 0) {
    fScene->FindElementByRef(fLinked.WriteInto(), reference);
  }
  if (!fLinked) {
    fLinked = fElement;
  }
  fLinkedWhich = inWhich;
  fLinkedByName = byName;
  return fLinked.Get();
}

TMCCountedPtr<TreeElement> QLXLookups::FindByName(const TMCString& inName) const {
  TMCCountedPtr<IMCUnknown> object;
  fScene->GetRoot(object.WriteInto());
  const auto root = MCQuery<TreeElement>(object);
  const std::string_view name = ViewText(inName);
  for (TreeElement* element = root.Get(); element; element = NextBelow(*root, *element)) {
    if (ViewText(element->GetName()) == name) {
      return MCShare(element);
    }
  }
  return nullptr;
}

const QLXParameter* QLXLookups::Find(QLXParameter& ioPlace, TreeElement* inObject, const TMCString& inPath) {
  if (!ioPlace.fIsKnown) {
    ioPlace.fIsKnown = true;
    ioPlace.fParam = ResolveQuietly(inObject, inPath);
    if (ioPlace.fParam) {
      ioPlace.fDataType = ioPlace.fParam->GetDataType();
      ioPlace.fOwnKey = ioPlace.fParam->GetParamID();
      ioPlace.fType.Share(FindParamType(ioPlace.fDataType));
    }
  }
  return ioPlace.fParam ? &ioPlace : nullptr;
}

const QLXParameter* QLXLookups::FindObjectLink(ObjectParameters& ioPlaces, TreeElement* inObject, std::size_t inLink) {
  QLXParameter& place = ioPlaces[inLink];
  if (place.fIsKnown) {
    return place.fParam ? &place : nullptr;
  }
  return Find(place, inObject, TMCString31(kQLXObjectLinks[inLink].fPath));
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
