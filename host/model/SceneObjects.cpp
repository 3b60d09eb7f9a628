#include "SceneObjects.h"

#include <algorithm>

#include "ParameterIDs.h"
#include "Scene.h"
#include "ValueParameters.h"

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

namespace {

// One walk over the time lines of something that may go meanwhile.
template <class Owner>
void VisitTimeLines(Owner& inOwner, ValueAttributes& inAttributes, IForEachTimeLineCallback* inCallback) {
  if (inCallback != nullptr) {
    const TMCCountedPtr<Owner> keep = MCShare(&inOwner);
    inAttributes.GetTimeLines().Visit(*inCallback);
  }
}

}  // namespace

Shader::Shader(Scene& inScene, std::string_view inName)
    : fScene(&inScene),
      fName(inName.data(), inName.size()),
      fValues(inScene.AddValues("shader \"" + std::string(inName) + "\"")) {}

Shader::~Shader() = default;

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

ValueAttributes& Shader::GetAttributes() {
  if (fAttributes == nullptr) {
    fAttributes = std::make_unique<ValueAttributes>(static_cast<I3DShShader*>(this));
    AddParameters(fAttributes->GetRoot(), fValues, 0, fValues->GetCount());
    AddTimeLines(fAttributes->GetTimeLines(), fValues);
  }
  return *fAttributes;
}

TimeBasedData* Shader::GetTimeBasedData() {
  return &GetAttributes().GetRoot();
}

void Shader::ForEachTimeLine(IForEachTimeLineCallback* inCallback) {
  VisitTimeLines(*this, GetAttributes(), inCallback);
}

// The parameters are those of the object's own groups.
class MorphData final : public HostObject<I3DShMorphData, I3DShMorphTarget> {
 public:
  MorphData(const ParameterGroup& inGroups, std::shared_ptr<ValueSet> inWeights) : fWeights(std::move(inWeights)) {
    for (const auto& group : inGroups.GetParameters()) {
      fGroups.push_back(group);
    }
  }

  uint32 MC_CALL GetGroupCount() override { return static_cast<uint32>(fGroups.size()); }
  const TMCString* MC_CALL GetGroupName(uint32 inGroup) override {
    return inGroup < fGroups.size() ? &fGroups[inGroup]->GetParamName() : nullptr;
  }
  uint32 MC_CALL GetMorphCount(uint32 inGroup) override {
    return inGroup < fGroups.size() ? fGroups[inGroup]->GetGroup()->GetParamCount() : 0;
  }
  void MC_CALL GetMorph(IMCUnknown** outMorph, uint32 inGroup, uint32 inMorph) override {
    ParamInfo* morph = nullptr;
    if (inMorph < GetMorphCount(inGroup)) {
      morph = fGroups[inGroup]->GetGroup()->GetParameters()[inMorph].Get();
    }
    StoreForCaller<IMCUnknown>(outMorph, morph);
  }
  // Marks the weights; they are current at all times.
  void MC_CALL MorphChanged() override {
    if (fWeights && fWeights->GetScene() != nullptr) {
      fWeights->GetScene()->Touch(*fWeights);
    }
  }

 private:
  std::shared_ptr<ValueSet> fWeights;
  std::vector<TMCCountedPtr<Parameter>> fGroups;
};

SceneObject::SceneObject(Scene& inScene, std::string_view inName)
    : fScene(&inScene), fName(inName.data(), inName.size()) {}

SceneObject::~SceneObject() = default;

void SceneObject::AddMorphGroup(std::string inName, std::vector<std::string> inMorphs,
                                const std::vector<real32>& inWeights) {
  if (fScene == nullptr) {
    return;
  }
  if (!fValues) {
    fValues = fScene->AddValues("object \"" + std::string(fName.CStr()) + "\"");
  }
  const std::size_t first = fValues->GetCount();
  ParameterIDs ids;
  for (std::size_t i = 0; i < inMorphs.size(); ++i) {
    fValues->Add({ids.Make(inMorphs[i]), inMorphs[i]}, {i < inWeights.size() ? inWeights[i] : 0});
  }
  fMorphGroups.push_back({std::move(inName), std::move(inMorphs), first});
  fMorphData = nullptr;
  fAttributes = nullptr;
}

ValueAttributes& SceneObject::GetAttributes() {
  if (fAttributes == nullptr) {
    fAttributes = std::make_unique<ValueAttributes>(static_cast<I3DShObject*>(this));
    ParameterIDs ids;
    for (const MorphGroup& morphs : fMorphGroups) {
      ParameterGroup& group =
          fAttributes->GetRoot().AddGroup(ids.Make(morphs.fName), Parameter::MakeName(morphs.fName.c_str()));
      AddParameters(group, fValues, morphs.fFirst, morphs.fMorphs.size());
    }
    if (fValues) {
      AddTimeLines(fAttributes->GetTimeLines(), fValues);
    }
  }
  return *fAttributes;
}

TimeBasedData* SceneObject::GetTimeBasedData() {
  return &GetAttributes().GetRoot();
}

void SceneObject::ForEachTimeLine(IForEachTimeLineCallback* inCallback) {
  VisitTimeLines(*this, GetAttributes(), inCallback);
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
    fMorphData = MakeHosted<MorphData>(GetAttributes().GetRoot(), fValues);
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

// The first member or the element above it whose parent is the root; null where that is not above it.
Element* FindTopmost(const Element& inRoot, const std::vector<Element*>& inMembers) {
  Element* topmost = inMembers.empty() ? nullptr : inMembers.front();
  while (topmost != nullptr && topmost->GetParentElement() != &inRoot) {
    topmost = topmost->GetParentElement();
  }
  return topmost;
}

}  // namespace

Figure::Figure(std::string_view inName, Element& inRoot, std::vector<Element*> inMembers)
    : fName(inName),
      fRoot(inRoot),
      fMembers(std::move(inMembers)),
      fOwner(MakeHosted<Owner>(FindTopmost(fRoot, fMembers))) {}

Figure::~Figure() {
  fOwner->Forget();
}

I3DShOwned* Figure::GetOwner() const {
  return fOwner.Get();
}

}  // namespace qlx::host
