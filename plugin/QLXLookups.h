// What a link looks up in its scene: the element that it follows, parameters by path, the notifier of morphs.
//
// The same questions come up each frame. With a scene that offers a structure version (`ISceneStructure`) the answers
// are kept while the version and everything that was asked with stay as they are; with any other, each evaluation asks
// anew, and the results are the same. What is kept holds its objects: it is dropped at the first evaluation after a
// change, and by `Forget`, which whoever changes paths and references must call.
//
// Everything that is missing gives null, and nothing is thrown.
#pragma once

#include <iterator>
#include <utility>

#include "HostParameters.h"
#include "HostScene.h"
#include "MCCountedPtr.h"
#include "QLXModifierData.h"

namespace qlx {

// A parameter with what is always the same of it.
struct QLXParameter {
  TMCCountedPtr<ParamInfo> fParam;
  TMCCountedPtr<ParamType> fType;  // null when the host does not know the type
  MCID fDataType = 0;
  MCID fOwnKey = 0;
  bool fIsKnown = false;  // looked up, with or without success
};

// What a path says by its letters alone.
struct QLXPathKey {
  explicit QLXPathKey(const TMCString& inPath);
  QLXPathKey() = default;

  MCID fKey = 0;  // its last four characters: the component that is read or written
  bool fIsShader = false;
  bool fIsMorph = false;
};

// Whom a link follows: its controller in attribute mode, its source in object mode.
enum class QLXLinked : uint8 { kController, kSource };

// The links of object mode that go through parameters, in their order.
struct QLXObjectLink {
  const char* fPath;
  MCID fKey;
};
inline constexpr QLXObjectLink kQLXObjectLinks[] = {
    {"self,amet,TRAN,ROTA,RotX", "RotX"_id}, {"self,amet,TRAN,ROTA,RotY", "RotY"_id},
    {"self,amet,TRAN,ROTA,RotZ", "RotZ"_id}, {"self,amet,TRAN,SCAL", "SCAL"_id},
    {"self,amet,TRAN,XYZ ,ScaX", "ScaX"_id}, {"self,amet,TRAN,XYZ ,ScaY", "ScaY"_id},
    {"self,amet,TRAN,XYZ ,ScaZ", "ScaZ"_id},
};

class QLXLookups {
 public:
  void Forget();

  // Around every evaluation, with the element and its scene.
  void Begin(TreeElement& inElement, I3DShScene& inScene, const QLXPrivateData& inPrivate);
  void End();

  const QLXPathKey& GetTargetKey() const { return fTargetKey; }
  const QLXPathKey& GetControllerKey() const { return fControllerKey; }

  // Never null: without a reference or a name that finds an element, it is the modified element itself. So a link whose
  // controller is gone reads from its own element and goes on.
  TreeElement* FindLinked(QLXLinked inWhich, const QLXModifierData& inData, const QLXPrivateData& inPrivate);

  // What `FindLinked` answered last.
  TreeElement* GetLinked() const { return fLinked.Get(); }

  // The parameters of attribute mode: the target's on the modified element, the controller's on the linked one. Null
  // when there is no such parameter.
  const QLXParameter* FindTarget(const QLXPrivateData& inPrivate) {
    return Find(fTarget, fElement.Get(), inPrivate.fTargetPath);
  }
  const QLXParameter* FindController(const QLXPrivateData& inPrivate) {
    return Find(fController, fLinked.Get(), inPrivate.fControllerPath);
  }
  // Those of object mode, by the place of the link in `kQLXObjectLinks`.
  const QLXParameter* FindTarget(std::size_t inLink) { return FindObjectLink(fTargets, fElement.Get(), inLink); }
  const QLXParameter* FindSource(std::size_t inLink) { return FindObjectLink(fSources, fLinked.Get(), inLink); }

  // True the first time that it is asked of an element.
  bool ShallFetchNotifier() { return !std::exchange(fNotifierKnown, true); }

 private:
  using ObjectParameters = QLXParameter[std::size(kQLXObjectLinks)];

  static const QLXParameter* Find(QLXParameter& ioPlace, TreeElement* inObject, const TMCString& inPath);
  static const QLXParameter* FindObjectLink(ObjectParameters& ioPlaces, TreeElement* inObject, std::size_t inLink);
  bool StillStands(QLXLinked inWhich, bool inByName, const TMCString& inName) const;
  TMCCountedPtr<TreeElement> FindByName(const TMCString& inName) const;
  void ForgetLinked();

  TMCCountedPtr<TreeElement> fElement;
  I3DShScene* fScene = nullptr;           // not counted: compared, and used during an evaluation
  ISceneStructure* fStructure = nullptr;  // not counted: part of the scene
  uint32 fVersion = 0;

  TMCCountedPtr<TreeElement> fLinked;  // with what it was found by:
  QLXLinked fLinkedWhich = QLXLinked::kController;
  bool fLinkedByName = false;
  bool fNotifierKnown = false;
  QLXPathKey fTargetKey;
  QLXPathKey fControllerKey;
  QLXParameter fTarget;
  QLXParameter fController;
  ObjectParameters fTargets;
  ObjectParameters fSources;
  TMCString255 fLinkedName;
};

// The notifier of an element's morphs; null for an element that has none.
TMCCountedPtr<I3DShMorphTarget> FindMorphNotifier(TreeElement& inElement);

}  // namespace qlx
