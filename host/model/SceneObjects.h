// What elements show: objects (geometry with morphs), shaders (materials), figures (skins with joints).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "HostObject.h"
#include "HostParameters.h"
#include "HostScene.h"
#include "MCString.h"

namespace qlx::host {

class Element;
class Scene;
class ValueAttributes;
class ValueSet;

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

// Shaders and objects outlive their scene where a component holds one: they then answer null for it, and their values
// can no longer be read.
class Shader final : public HostObject<I3DShShader, I3DShAttributes, I3DShAnimated, ITimeLineOwner> {
 public:
  Shader(Scene& inScene, std::string_view inName);
  ~Shader() override;
  // The values of the surface, to be filled as a scene is built.
  const std::shared_ptr<ValueSet>& GetValues() const { return fValues; }

  I3DShScene* MC_CALL GetScene() override;
  const TMCString& MC_CALL GetName() override { return fName; }
  TreeElement* MC_CALL GetUser(uint32 inIndex) override;
  TimeBasedData* MC_CALL GetTimeBasedData() override;
  ITimeLineOwner* MC_CALL GetTimeLineOwner() override { return this; }
  void MC_CALL ForEachTimeLine(IForEachTimeLineCallback* inCallback) override;

 private:
  friend class Scene;
  ValueAttributes& GetAttributes();

  Scene* fScene;
  TMCString255 fName;
  ElementList fUsers;
  std::shared_ptr<ValueSet> fValues;
  std::unique_ptr<ValueAttributes> fAttributes;  // made on first use
};

// The morphs of an object: its weights stand in the object's values, from `fFirst` on.
struct MorphGroup {
  std::string fName;
  std::vector<std::string> fMorphs;
  std::size_t fFirst = 0;
};

class MorphData;

// Two elements whose morphs have weights of their own show two objects.
class SceneObject final : public HostObject<I3DShObject, I3DShAttributes, I3DShAnimated, ITimeLineOwner> {
 public:
  SceneObject(Scene& inScene, std::string_view inName);
  ~SceneObject() override;
  void SetShaders(std::vector<Shader*> inShaders);
  const std::vector<Shader*>& GetShaders() const { return fShaders; }
  // With a weight for each of the morphs; those that are missing are 0.
  void AddMorphGroup(std::string inName, std::vector<std::string> inMorphs, const std::vector<real32>& inWeights);
  const std::vector<MorphGroup>& GetMorphGroups() const { return fMorphGroups; }
  // The weights of all morphs; null without any.
  const std::shared_ptr<ValueSet>& GetValues() const { return fValues; }

  I3DShScene* MC_CALL GetScene() override;
  const TMCString& MC_CALL GetName() override { return fName; }
  void MC_CALL GetObjectData(IMCUnknown** outData) override;
  TreeElement* MC_CALL GetInstance(uint32 inIndex) override;
  // A group of parameters for each group of morphs.
  TimeBasedData* MC_CALL GetTimeBasedData() override;
  ITimeLineOwner* MC_CALL GetTimeLineOwner() override { return this; }
  void MC_CALL ForEachTimeLine(IForEachTimeLineCallback* inCallback) override;

 private:
  friend class Scene;
  friend class MorphData;
  ValueAttributes& GetAttributes();

  Scene* fScene;
  TMCString255 fName;
  std::vector<Shader*> fShaders;
  std::vector<MorphGroup> fMorphGroups;
  TMCCountedPtr<MorphData> fMorphData;  // both are made when they are asked for
  std::unique_ptr<ValueAttributes> fAttributes;
  std::shared_ptr<ValueSet> fValues;
  ElementList fInstances;
};

// A skin: the element above its joints, and the joints. The owner of a member is the child of `inRoot` that carries the
// first member, or is it: the topmost joint in most figures.
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
