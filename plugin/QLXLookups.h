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
#include <memory>

#include "HostParameters.h"
#include "HostScene.h"
#include "MCCountedPtr.h"
#include "QLXModifierData.h"
#include "QLXValues.h"

namespace qlx {

// A parameter that was looked up, and room for its value.
class QLXParameter {
 public:
  QLXParameter() = default;
  QLXParameter(const QLXParameter&) = delete;
  QLXParameter& operator=(const QLXParameter&) = delete;
  ~QLXParameter() { ClearValue(); }

  // Looked up, with or without success.
  bool IsKnown() const { return fIsKnown; }
  bool Exists() const { return static_cast<bool>(fParam); }
  // Null for none. The component is the number of the value that the link reads or writes.
  void Set(TMCCountedPtr<ParamInfo> inParam, MCID inComponent);
  void Forget();

  ParamInfo& GetParam() const { return *fParam; }
  MCID GetOwnKey() const { return fOwnKey; }
  // False for a type that the host does not know: the number is then 0.
  bool HasValue() const { return fValue.IsValid(); }
  ParamType* GetType() const { return fValue.GetParamType(); }
  ParamHolder& GetValue() { return fValue; }
  real32 GetNumber() const { return ReadNumber(fPlace, fValue.GetData()); }
  real32 GetNumberOf(const QLXValueBuffer& inValue) const { return ReadNumber(fPlace, inValue.GetData()); }
  void SetNumber(real32 inNumber) { StoreNumber(fPlace, inNumber, fValue.GetData()); }

 private:
  // The value itself, or where it is too large for that whoever has it.
  union Room {
    alignas(real64) std::byte fSmall[16];  // every value that has numbers fits
    QLXValueBuffer* fLarge;                // owned
  };

  void SetType(ParamType* inType);
  void ClearValue();
  bool IsLarge() const { return fValue.GetData() != fRoom.fSmall; }

  TMCCountedPtr<ParamInfo> fParam;
  MCID fOwnKey = 0;
  QLXNumberPlace fPlace;
  bool fIsKnown = false;
  ParamHolder fValue;
  Room fRoom;
};

// What a path says by its letters alone.
struct QLXPathKey {
  QLXPathKey() = default;
  QLXPathKey(const TMCString& inPath, bool inIsSet);

  MCID fKey = 0;  // its last four characters: the component that is read or written
  bool fIsSet = false;
  bool fIsGlobal = false;  // a position in the scene, which is no parameter
  bool fIsShader = false;
  bool fIsMorph = false;
};

// The parameter that a path names, null also for an object that refuses its attributes.
TMCCountedPtr<ParamInfo> ResolveQuietly(TreeElement* inObject, const TMCString& inPath);

// Whom a link follows: its controller in attribute mode, its source in object mode.
enum class QLXLinked : uint8 { kController, kSource };

// The element that a link follows, looked up anew: by name where the link says so, else by its reference. Null for
// none.
TMCCountedPtr<TreeElement> FindLinkedElement(I3DShScene& inScene, QLXLinked inWhich, const QLXModifierData& inData,
                                             const QLXPrivateData& inPrivate);

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
  // During an evaluation it waits for the end.
  void Forget();

  // Around every evaluation, with the element and its scene. A second one inside the first must not be begun.
  class Running {
   public:
    Running(QLXLookups& ioLookups, TreeElement& inElement, I3DShScene& inScene, const QLXPrivateData& inPrivate);
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running();

   private:
    QLXLookups& fLookups;
  };
  bool IsRunning() const { return fIsRunning; }

  const QLXPathKey& GetTargetKey() const { return fTargetKey; }
  const QLXPathKey& GetControllerKey() const { return fControllerKey; }

  // Never null: without a reference or a name that finds an element, it is the modified element itself. So a link whose
  // controller is gone reads from its own element and goes on.
  TreeElement* FindLinked(QLXLinked inWhich, const QLXModifierData& inData, const QLXPrivateData& inPrivate);

  // What `FindLinked` answered last.
  TreeElement* GetLinked() const { return fLinked.Get(); }

  // The parameters of attribute mode: the target's on the modified element, the controller's on the linked one. Null
  // when there is no such parameter.
  QLXParameter* FindTarget(const QLXPrivateData& inPrivate) {
    return Find(fTarget, fElement, inPrivate.fTargetPath, fTargetKey.fKey);
  }
  QLXParameter* FindController(const QLXPrivateData& inPrivate) {
    return Find(fController, fLinked, inPrivate.fControllerPath, fControllerKey.fKey);
  }
  // Those of object mode, by the place of the link in `kQLXObjectLinks`. Null without memory, too.
  QLXParameter* FindTarget(std::size_t inLink);
  QLXParameter* FindSource(std::size_t inLink);

  // What stands in front of this is read at each evaluation.
  const void* GetEndOfWork() const { return &fTarget + 1; }
  // The name that the linked element was found by, if it was.
  const TMCDynamicString& GetFoundName() const { return fLinkedName; }

  // True the first time that it is asked of an element.
  bool ShallFetchNotifier() {
    const bool isFirst = !fNotifierKnown;
    fNotifierKnown = true;
    return isFirst;
  }

 private:
  // Few links are of object mode: theirs are made on first use.
  struct ObjectParameters {
    QLXParameter fTargets[std::size(kQLXObjectLinks)];
    QLXParameter fSources[std::size(kQLXObjectLinks)];
  };

  static QLXParameter* Find(QLXParameter& ioPlace, const TMCCountedPtr<TreeElement>& inObject, const TMCString& inPath,
                            MCID inComponent) {
    if (!ioPlace.IsKnown()) {
      LookUp(ioPlace, inObject.Get(), inPath, inComponent);
    }
    return ioPlace.Exists() ? &ioPlace : nullptr;
  }
  static void LookUp(QLXParameter& ioPlace, TreeElement* inObject, const TMCString& inPath, MCID inComponent);
  static QLXParameter* FindObjectLink(QLXParameter& ioPlace, TreeElement* inObject, std::size_t inLink);
  bool HasObjectParameters();
  bool StillStands(QLXLinked inWhich, bool inByName, const TMCString& inName) const;
  bool Stands(const TreeElement& inElement, const I3DShScene& inScene) const;
  void Start(TreeElement& inElement, I3DShScene& inScene, const QLXPrivateData& inPrivate);
  void ForgetAll();
  void ForgetLinked();

  TMCCountedPtr<TreeElement> fElement;
  I3DShScene* fScene = nullptr;           // not counted: compared, and used during an evaluation
  ISceneStructure* fStructure = nullptr;  // not counted: part of the scene
  TMCCountedPtr<TreeElement> fLinked;     // with `fLinkedWhich` and `fLinkedByName`
  uint32 fVersion = 0;
  QLXPathKey fTargetKey;
  QLXPathKey fControllerKey;
  QLXLinked fLinkedWhich = QLXLinked::kController;
  bool fLinkedByName : 1 = false;
  bool fNotifierKnown : 1 = false;
  bool fIsRunning : 1 = false;
  bool fIsStale : 1 = false;
  QLXParameter fController;
  QLXParameter fTarget;
  std::unique_ptr<ObjectParameters> fObjectParameters;
  TMCDynamicString fLinkedName;
};

// The notifier of an element's morphs; null for an element that has none.
TMCCountedPtr<I3DShMorphTarget> FindMorphNotifier(TreeElement& inElement);

}  // namespace qlx
