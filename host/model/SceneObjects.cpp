#include "SceneObjects.h"

#include <algorithm>
#include <unordered_set>

#include "Scene.h"

namespace qlx::host {

Element* ElementList::Get(Scene* inScene, uint32 inIndex, Test inTest, const void* inContext) {
  if (inScene == nullptr) {
    return nullptr;
  }
  if (fVersion != inScene->GetStructureVersion()) {
    fElements.clear();
    for (Element* const element : inScene->GetTreeOrder()) {
      if (inTest(*element, inContext)) {
        fElements.push_back(element);
      }
    }
    fVersion = inScene->GetStructureVersion();
  }
  return inIndex < fElements.size() ? fElements[inIndex] : nullptr;
}

Shader::Shader(Scene& inScene, std::string_view inName) : fScene(&inScene), fName(inName.data(), inName.size()) {}

I3DShScene* Shader::GetScene() {
  return fScene;
}

TreeElement* Shader::GetUser(uint32 inIndex) {
  const auto uses = [](const Element& element, const void* shader) {
    const SceneObject* const object = element.GetSceneObject();
    return object != nullptr && std::ranges::find(object->GetShaders(), shader) != object->GetShaders().end();
  };
  return fUsers.Get(fScene, inIndex, uses, this);
}

class MorphData final : public HostObject<I3DShMorphData, I3DShMorphTarget> {
 public:
  explicit MorphData(const std::vector<MorphGroup>& inGroups) {
    for (const MorphGroup& group : inGroups) {
      fNames.emplace_back(group.fName.c_str());
      fCounts.push_back(static_cast<uint32>(group.fMorphs.size()));
    }
  }

  uint32 MC_CALL GetGroupCount() override { return static_cast<uint32>(fNames.size()); }
  const TMCString* MC_CALL GetGroupName(uint32 inGroup) override {
    return inGroup < fNames.size() ? &fNames[inGroup] : nullptr;
  }
  uint32 MC_CALL GetMorphCount(uint32 inGroup) override { return inGroup < fCounts.size() ? fCounts[inGroup] : 0; }
  void MC_CALL GetMorph(IMCUnknown** outMorph, uint32 /*inGroup*/, uint32 /*inMorph*/) override {
    StoreForCaller<IMCUnknown>(outMorph, nullptr);
  }
  void MC_CALL MorphChanged() override {}

 private:
  std::vector<TMCString255> fNames;
  std::vector<uint32> fCounts;
};

SceneObject::SceneObject(Scene& inScene, std::string_view inName)
    : fScene(&inScene), fName(inName.data(), inName.size()) {}

SceneObject::~SceneObject() = default;

void SceneObject::AddMorphGroup(MorphGroup inGroup) {
  fMorphGroups.push_back(std::move(inGroup));
  fMorphData = nullptr;
}

I3DShScene* SceneObject::GetScene() {
  return fScene;
}

void SceneObject::SetShaders(std::vector<Shader*> inShaders) {
  fShaders = std::move(inShaders);
  if (fScene != nullptr) {
    fScene->StructureChanged();
  }
}

void SceneObject::GetObjectData(IMCUnknown** outData) {
  if (!fMorphGroups.empty() && !fMorphData) {
    fMorphData = MakeHosted<MorphData>(fMorphGroups);
  }
  StoreForCaller<IMCUnknown>(outData, static_cast<I3DShMorphData*>(fMorphData.Get()));
}

TreeElement* SceneObject::GetInstance(uint32 inIndex) {
  const auto shows = [](const Element& element, const void* object) { return element.GetSceneObject() == object; };
  return fInstances.Get(fScene, inIndex, shows, this);
}

class Figure::Owner final : public HostObject<I3DShOwned> {
 public:
  explicit Owner(Element* inTopmost) : fTopmost(inTopmost) {}
  TreeElement* MC_CALL GetOwnerElement() override { return fTopmost; }
  void Forget() { fTopmost = nullptr; }

 private:
  Element* fTopmost;
};

namespace {

// The highest member at or above the first one.
Element* FindTopmost(const std::vector<Element*>& inMembers) {
  const std::unordered_set<const Element*> members(inMembers.begin(), inMembers.end());
  Element* topmost = nullptr;
  for (Element* element = inMembers.empty() ? nullptr : inMembers.front(); element != nullptr;
       element = element->GetParentElement()) {
    if (members.contains(element)) {
      topmost = element;
    }
  }
  return topmost;
}

}  // namespace

Figure::Figure(std::string_view inName, Element& inRoot, std::vector<Element*> inMembers)
    : fName(inName), fRoot(inRoot), fMembers(std::move(inMembers)), fOwner(MakeHosted<Owner>(FindTopmost(fMembers))) {}

Figure::~Figure() {
  fOwner->Forget();
}

I3DShOwned* Figure::GetOwner() const {
  return fOwner.Get();
}

}  // namespace qlx::host
