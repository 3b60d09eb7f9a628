// The scene: tree elements, what they show, and the modifiers on them. All are implemented by the host.
//
// Lengths are in scene units (inches), angles in radians, times in ticks (180000 to the second). The operations are
// for the thread that evaluates the scene. While it is being evaluated, transform writes change the evaluated values
// alone; outside it they are edits: they change base values, or keys where there are some.
#pragma once

#include "HostTimeLines.h"
#include "MCArray.h"
#include "MCUnknown.h"

namespace qlx {

class I3DShModifier;
class I3DShScene;
class TMCString;
class TreeElement;
class TreeTransform;
class TTreeChainTransform;
using TTreeTransform = TreeTransform;

// A tree path and an object reference have one form: the persistent 32-bit ids of the elements from below the root to
// the element itself; a reference is the bytes of the last one. Both survive reordering, renaming and saving.
using TreePath = TMCArray<uint32>;
using ObjectReference = TMCArray<uint8>;

class TreeElement : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "A9B66860-C8D3-4341-B395-DCD29830C851"_guid;

  // Null for an element that is in no scene.
  virtual I3DShScene* MC_CALL GetScene() = 0;
  // Owned by the element, valid until it is renamed. Never empty.
  virtual const TMCString& MC_CALL GetName() = 0;
  // Unique in the scene, never 0, kept through saving.
  virtual uint32 MC_CALL GetUniqueID() = 0;

  virtual void MC_CALL GetParent(TreeElement** outParent) = 0;
  virtual TreeElement* MC_CALL GetParentRaw() = 0;
  virtual TreeElement* MC_CALL GetFirstChild() = 0;
  virtual TreeElement* MC_CALL GetNextSibling() = 0;
  // True when this element is `inAncestor` or lies below it.
  virtual bool MC_CALL IsAtOrBelow(TreeElement* inAncestor) = 0;

  // Both fill the array and answer it.
  virtual TreePath& MC_CALL GetTreePath(TreePath& outPath) = 0;
  virtual ObjectReference& MC_CALL GetObjectReference(ObjectReference& outReference) = 0;

  // The element's own transform, in the space of its parent. The meaning of the numbers of a write is the host's; they
  // are passed as the callers state them. A write that changes the translation only leaves rotation and scale as they
  // are, to the last bit. A transform that is not finite is refused.
  virtual MCResult MC_CALL GetLocalTransform(TTreeTransform& outTransform) = 0;
  virtual MCResult MC_CALL SetLocalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3,
                                             int32 in4, int32 in5, int32 in6) = 0;
  // The same in scene space. Below a parent that cannot be inverted a write is reported and changes nothing.
  virtual MCResult MC_CALL GetGlobalTransform(TTreeTransform& outTransform) = 0;
  virtual MCResult MC_CALL SetGlobalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3,
                                              int32 in4, int32 in5) = 0;
  // The own transform with its pivot (the hot point in `kPoser`, zero in `kTorvane`) and the parent's matrix and
  // offset.
  virtual MCResult MC_CALL GetGlobalTransformChain(TTreeChainTransform& outTransform) = 0;

  // The transform was written. Marks; never evaluates.
  virtual void MC_CALL TransformChanged(int32 inZero) = 0;
  // The element was changed in any way. Marks; never evaluates.
  virtual void MC_CALL InvalidateElement(int32 inOne) = 0;

  // What 1 selects is the host's: all modifiers of the element.
  virtual uint32 MC_CALL GetModifierCount(int32 inOne) = 0;
  virtual MCResult MC_CALL InsertModifier(I3DShModifier* inModifier, uint32 inIndex) = 0;

 protected:
  ~TreeElement() = default;
};

// First and last tick of the animation.
class ITimeRange : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "D988E23B-0DD1-47D5-93CF-8D004B7CC07F"_guid;

  virtual int32 MC_CALL GetStartTime() = 0;
  virtual int32 MC_CALL GetEndTime() = 0;

 protected:
  ~ITimeRange() = default;
};

// What a scene hands out for the update service: the notifier of changes.
class ISceneMaster : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "DE0F7405-85B4-4158-8352-3F36D2CF6D78"_guid;

  virtual I3DShScene* MC_CALL GetMasterScene() = 0;

 protected:
  ~ISceneMaster() = default;
};

class I3DShScene : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "CCF65D16-4223-482E-999E-93B81EB62001"_guid;

  // Fills the record and answers its ticks.
  virtual int32 MC_CALL GetCurrentTime(SceneTime& outTime) = 0;
  // Frames a second: finite, above 0, at most 180000.
  virtual real32 MC_CALL GetFrameRate() = 0;
  // Null when the scene has no animation.
  virtual void MC_CALL GetTimeRange(ITimeRange** outRange) = 0;
  // An object that answers `TreeElement`.
  virtual void MC_CALL GetRoot(IMCUnknown** outRoot) = 0;
  virtual void MC_CALL GetSceneMaster(ISceneMaster** outMaster) = 0;

  // Each gives null when there is no such element.
  virtual void MC_CALL FindElementByTreePath(TreeElement** outElement, const TreePath& inPath) = 0;
  virtual void MC_CALL FindElementByRef(TreeElement** outElement, const ObjectReference& inReference) = 0;
  virtual void MC_CALL FindElementByUniqueID(TreeElement** outElement, uint32 inID) = 0;

  // The scene's selected elements, counted from 0; an element may be null.
  virtual uint32 MC_CALL GetSelectedElementCount() = 0;
  virtual TreeElement* MC_CALL GetSelectedElement(uint32 inIndex) = 0;
  virtual void MC_CALL RefreshAfterCommand() = 0;

 protected:
  ~I3DShScene() = default;
};

// Answered by the scene of a host that can say whether what was looked up earlier still stands. A host may lack it:
// every look-up is then done anew. It is part of the scene: what a scene answered once is there as long as the scene
// is.
class ISceneStructure : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "0D9B6E52-6B0F-4C0E-9E57-5C7C41B3A9D4"_guid;

  // Another number after every change of the tree, of names, of modifiers and of the set of parameters. While it is the
  // same, names, references and text paths of the scene find what they found before.
  virtual uint32 MC_CALL GetStructureVersion() = 0;

 protected:
  ~ISceneStructure() = default;
};

// The host's wrapper around a modifier of the plug-in: what stands in an element's list.
class I3DShModifier : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "FD9414A1-32D9-4D7B-B97A-23425B38F567"_guid;

  virtual bool MC_CALL IsEnabled() = 0;
  virtual void MC_CALL SetEnabled(bool inEnabled) = 0;
  // The 4-character class id, such as 'fPIN'.
  virtual MCID MC_CALL GetModifierClass() = 0;

 protected:
  ~I3DShModifier() = default;
};

// Answered by a modifier's outer object.
class I3DShModifierHolder : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "646D299E-BB17-423B-B80A-F0376270D659"_guid;

  // The element that the modifier sits on; null while it sits on none.
  virtual void MC_CALL GetModifiedElement(TreeElement** outElement) = 0;

 protected:
  ~I3DShModifierHolder() = default;
};

// A surface description. Also answers `I3DShAttributes` and `I3DShAnimated`.
class I3DShShader : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "A577C3EF-C866-4B68-88A5-315FBA4E7B01"_guid;

  virtual I3DShScene* MC_CALL GetScene() = 0;
  virtual const TMCString& MC_CALL GetName() = 0;
  // The elements that use the shader, in tree order; null past the end.
  virtual TreeElement* MC_CALL GetUser(uint32 inIndex) = 0;

 protected:
  ~I3DShShader() = default;
};

// One morph target. The notifier that is told after its weight was written.
class I3DShMorphTarget : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "0EC03666-FCA2-414A-81C0-83A8E0D2C3FB"_guid;

  virtual void MC_CALL MorphChanged() = 0;

 protected:
  ~I3DShMorphTarget() = default;
};

// The morphs of an object, in groups. Answers `I3DShMorphTarget` for the object as a whole.
class I3DShMorphData : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "E7C37A68-5558-49FD-BA16-33ABA9975763"_guid;

  virtual uint32 MC_CALL GetGroupCount() = 0;
  virtual const TMCString* MC_CALL GetGroupName(uint32 inGroup) = 0;
  virtual uint32 MC_CALL GetMorphCount(uint32 inGroup) = 0;
  // The weight of a morph as an object that answers `ParamInfo`; null when there is none.
  virtual void MC_CALL GetMorph(IMCUnknown** outMorph, uint32 inGroup, uint32 inMorph) = 0;

 protected:
  ~I3DShMorphData() = default;
};

// A geometry that instances show. Also answers `I3DShAttributes` and `I3DShAnimated`.
class I3DShObject : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "3B7496E3-67E9-4E41-B6CA-6B21F3ABE6C5"_guid;

  virtual I3DShScene* MC_CALL GetScene() = 0;
  virtual const TMCString& MC_CALL GetName() = 0;
  // An object that answers `I3DShMorphData` and `I3DShMorphTarget` where the geometry has morphs; null otherwise.
  virtual void MC_CALL GetObjectData(IMCUnknown** outData) = 0;
  // The elements that show the object, in tree order; null past the end.
  virtual TreeElement* MC_CALL GetInstance(uint32 inIndex) = 0;

 protected:
  ~I3DShObject() = default;
};

// Answered by an element that shows an object.
class I3DShInstance : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "6BC5B640-C575-462E-A3F4-5D7065EEB4B4"_guid;

  virtual I3DShObject* MC_CALL GetShownObject() = 0;
  virtual uint32 MC_CALL GetShaderCount() = 0;
  // Null past the end.
  virtual I3DShShader* MC_CALL GetShader(uint32 inIndex) = 0;

 protected:
  ~I3DShInstance() = default;
};

// Answered by an element whose object can be taken.
class I3DShObjectHolder : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "ED4EF29E-8AA7-41A9-B961-D0829FF0D719"_guid;

  virtual I3DShObject* MC_CALL GetHeldObject() = 0;

 protected:
  ~I3DShObjectHolder() = default;
};

// Answered by an element that can be shaded.
class I3DShShaderHolder : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "C2F884D5-4D0B-4C83-87B1-3F810E348F26"_guid;

  // Null when the element has none of its own.
  virtual I3DShShader* MC_CALL GetMainShader() = 0;

 protected:
  ~I3DShShaderHolder() = default;
};

// Answered by what belongs to an element without being one: a modifier's outer object, a figure, a morph's owner.
class I3DShOwned : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "F2B6B39D-CA6C-422F-8144-B8061168CD30"_guid;

  virtual TreeElement* MC_CALL GetOwnerElement() = 0;

 protected:
  ~I3DShOwned() = default;
};

// Answered by the element that is the root of a figure: the parent of its topmost joint, or the element above its skin.
class I3DShFigure : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "EC40CC1E-6F73-4F81-88CA-4E1CE10E2146"_guid;

  virtual uint32 MC_CALL GetMemberCount() = 0;

 protected:
  ~I3DShFigure() = default;
};

// Answered by an element that is a joint of a figure.
class I3DShFigureMember : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "655C8E52-BE13-4563-9CC2-DD90CC683A01"_guid;

  // An object whose `GetOwnerElement` is the topmost joint or what carries it: the parent of that is the figure.
  virtual I3DShOwned* MC_CALL GetFigureOwner() = 0;

 protected:
  ~I3DShFigureMember() = default;
};

}  // namespace qlx
