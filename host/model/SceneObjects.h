// What elements show: objects (geometry with morphs), shaders (materials), figures (skins with joints).
#pragma once

#include <string>
#include <vector>

#include "HostObject.h"
#include "HostScene.h"
#include "MCString.h"

namespace qlx::host {

class Element;
class Scene;

// The elements that something is true of, in tree order, kept until the scene changes.
class ElementList {
 public:
  using Test = bool (*)(const Element& inElement, const void* inContext);
  // Null past the end, and without a scene.
  Element* Get(Scene* inScene, uint32 inIndex, Test inTest, const void* inContext);

 private:
  uint32 fVersion = 0;
  std::vector<Element*> fElements;
};

// Shaders and objects outlive their scene where a component holds one: they then answer null for it.
class Shader final : public HostObject<I3DShShader> {
 public:
  Shader(Scene& inScene, std::string_view inName);
  I3DShScene* MC_CALL GetScene() override;
  const TMCString& MC_CALL GetName() override { return fName; }
  TreeElement* MC_CALL GetUser(uint32 inIndex) override;

 private:
  friend class Scene;
  Scene* fScene;
  TMCString255 fName;
  ElementList fUsers;
};

// The morphs of an object, in one group a primitive set. They have names only: the weights, and what animates them,
// stay in the file, so no morph is given out as a parameter.
struct MorphGroup {
  std::string fName;
  std::vector<std::string> fMorphs;
};

class MorphData;

class SceneObject final : public HostObject<I3DShObject> {
 public:
  SceneObject(Scene& inScene, std::string_view inName);
  ~SceneObject() override;
  void SetShaders(std::vector<Shader*> inShaders);
  const std::vector<Shader*>& GetShaders() const { return fShaders; }
  void AddMorphGroup(MorphGroup inGroup);
  const std::vector<MorphGroup>& GetMorphGroups() const { return fMorphGroups; }

  I3DShScene* MC_CALL GetScene() override;
  const TMCString& MC_CALL GetName() override { return fName; }
  void MC_CALL GetObjectData(IMCUnknown** outData) override;
  TreeElement* MC_CALL GetInstance(uint32 inIndex) override;

 private:
  friend class Scene;
  Scene* fScene;
  TMCString255 fName;
  std::vector<Shader*> fShaders;
  std::vector<MorphGroup> fMorphGroups;
  TMCCountedPtr<MorphData> fMorphData;  // made when it is asked for
  ElementList fInstances;
};

// A skin: the element above its joints, and the joints. The owner of a member is the topmost joint, the one above the
// first member: `inRoot` is its parent.
class Figure {
 public:
  Figure(std::string_view inName, Element& inRoot, std::vector<Element*> inMembers);
  ~Figure();
  const std::string& GetName() const { return fName; }
  Element& GetRoot() const { return fRoot; }
  const std::vector<Element*>& GetMembers() const { return fMembers; }
  I3DShOwned* GetOwner() const;

 private:
  class Owner;
  std::string fName;
  Element& fRoot;
  std::vector<Element*> fMembers;
  TMCCountedPtr<Owner> fOwner;
};

}  // namespace qlx::host
