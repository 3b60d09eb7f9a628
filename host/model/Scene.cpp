#include "Scene.h"

#include <fmt/format.h>

#include "CutText.h"
#include "EvaluationOrder.h"
#include "LinkLook.h"
#include "MCFrameTime.h"

namespace qlx::host {

namespace {

constexpr std::size_t kLongestName = 255;
constexpr uint32 kRootID = 1;
constexpr const char* kRootName = "[scene]";

}  // namespace

class Scene::TimeRange final : public HostObject<ITimeRange> {
 public:
  TimeRange(int32 inStart, int32 inEnd) : fStart(inStart), fEnd(inEnd) {}
  int32 MC_CALL GetStartTime() override { return fStart; }
  int32 MC_CALL GetEndTime() override { return fEnd; }

 private:
  int32 fStart;
  int32 fEnd;
};

class Scene::Master final : public HostObject<ISceneMaster> {
 public:
  explicit Master(Scene& inScene) : fScene(&inScene) {}
  I3DShScene* MC_CALL GetMasterScene() override { return fScene; }
  void Forget() { fScene = nullptr; }

 private:
  Scene* fScene;
};

TMCCountedPtr<Scene> Scene::Create(Diagnostics& inDiagnostics) {
  return MakeHosted<Scene>(inDiagnostics);
}

Scene::Scene(Diagnostics& inDiagnostics)
    : fDiagnostics(inDiagnostics),
      fRoot(MakeHosted<Element>(*this, kRootID, kRootName)),
      fOrder(std::make_unique<EvaluationOrder>()),
      fMaster(MakeHosted<Master>(*this)) {
  fByID.emplace(kRootID, fRoot.Get());
  fByName.emplace(kRootName, fRoot.Get());
}

Scene::~Scene() {
  Close();
  fRoot->LeaveScene();
}

void Scene::Close() {
  if (fClosed || !MC_ASSERT_TEXT(!fEvaluating, "a scene is not closed while it is being evaluated")) {
    return;
  }
  fClosed = true;
  fOrder->Forget();
  const std::vector<Element*>& order = GetTreeOrder();
  for (Element* const element : order) {
    element->RemoveAllModifiers();
  }
  // All elements are held at once while they let go of their children: a deep tree then ends without recursion.
  std::vector<TMCCountedPtr<Element>> held;
  held.reserve(order.size());
  for (Element* const element : order) {
    held.push_back(MCShare(element));
  }
  fFigures.clear();
  fSelection.clear();
  fTouched.clear();
  fTouchedStates.clear();
  fAnimatedValues.clear();
  fTouchedValues.clear();
  for (const auto& values : fValueSets) {
    values->fScene = nullptr;
  }
  fValueSets.clear();
  for (const auto& element : held) {
    element->LeaveScene();
  }
  fRoot->fScene = this;
  for (const auto& object : fObjects) {
    object->fScene = nullptr;
  }
  for (const auto& shader : fShaders) {
    shader->fScene = nullptr;
  }
  fObjects.clear();
  fShaders.clear();
  fByName.clear();
  fByID.clear();
  fByID.emplace(kRootID, fRoot.Get());
  fMaster->Forget();
  fTreeOrderValid = false;
  fWorkListsValid = false;
  StructureChanged();
}

// Tree

Element& Scene::AddElement(Element& inParent, std::string_view inName, uint32 inID) {
  uint32 id = inID;
  while (id == 0 || (inID == 0 && fByID.contains(id))) {
    id = fNextID++;
  }
  if (fByID.contains(id)) {
    throw UserError("element \"" + std::string(inName) + "\"", "the id " + std::to_string(id) + " is taken");
  }
  const std::string name = MakeUniqueName(inName, id);
  inParent.fChildren.push_back(MakeHosted<Element>(*this, id, name));
  Element& element = *inParent.fChildren.back();
  element.fParent = &inParent;
  element.fIndexInParent = inParent.fChildren.size() - 1;
  fByID.emplace(id, &element);
  fByName.emplace(name, &element);
  fTreeOrderValid = false;
  fWorkListsValid = false;
  StructureChanged();
  return element;
}

std::string Scene::MakeUniqueName(std::string_view inName, uint32 inID) {
  std::string name(CutText(inName, kLongestName));
  if (name.empty()) {
    name = "Element" + std::to_string(inID);
  }
  if (!fByName.contains(name)) {
    return name;
  }
  uint32& next = fNextSuffix.try_emplace(name, 2).first->second;
  for (;;) {
    const std::string number = std::to_string(next++);
    std::string candidate(CutText(name, kLongestName - 1 - number.size()));
    candidate.append(1, '.').append(number);
    if (!fByName.contains(candidate)) {
      return candidate;
    }
  }
}

const std::vector<Element*>& Scene::GetTreeOrder() const {
  if (fTreeOrderValid) {
    return fTreeOrder;
  }
  fTreeOrder.clear();
  std::vector<Element*> pending{fRoot.Get()};
  while (!pending.empty()) {
    Element* const element = pending.back();
    pending.pop_back();
    fTreeOrder.push_back(element);
    const auto& children = element->GetChildren();
    for (std::size_t i = children.size(); i > 0; --i) {
      pending.push_back(children[i - 1].Get());
    }
  }
  fTreeOrderValid = true;
  return fTreeOrder;
}

Element* Scene::FindByName(std::string_view inName) const {
  const auto found = fByName.find(std::string(inName));
  return found == fByName.end() ? nullptr : found->second;
}

Element* Scene::FindByID(uint32 inID) const {
  const auto found = fByID.find(inID);
  return found == fByID.end() ? nullptr : found->second;
}

// What elements show

SceneObject& Scene::AddObject(std::string_view inName) {
  fObjects.push_back(MakeHosted<SceneObject>(*this, CutText(inName, kLongestName)));
  StructureChanged();
  return *fObjects.back();
}

Shader& Scene::AddShader(std::string_view inName) {
  fShaders.push_back(MakeHosted<Shader>(*this, CutText(inName, kLongestName)));
  StructureChanged();
  return *fShaders.back();
}

Figure& Scene::AddFigure(std::string_view inName, Element& inRoot, std::vector<Element*> inMembers) {
  fFigures.push_back(std::make_unique<Figure>(inName, inRoot, std::move(inMembers)));
  Figure& figure = *fFigures.back();
  if (inRoot.fFigure == nullptr) {
    inRoot.SetFigureRoot(&figure);
  }
  for (Element* const member : figure.GetMembers()) {
    if (member->fMemberOf == nullptr) {
      member->SetFigureMember(&figure);
    }
  }
  StructureChanged();
  return figure;
}

std::shared_ptr<ValueSet> Scene::AddValues(std::string inLabel) {
  fValueSets.push_back(std::make_shared<ValueSet>(*this, std::move(inLabel)));
  return fValueSets.back();
}

// Time

void Scene::SetFrameRate(real32 inRate) {
  if (!IsValidFrameRate(inRate)) {
    throw UserError(fmt::format("frame rate {}", inRate), "must be above 0 and at most 180000");
  }
  fFrameRate = inRate;
}

void Scene::SetTimeRange(int32 inStart, int32 inEnd) {
  if (inEnd < inStart) {
    throw UserError("time range " + std::to_string(inStart) + " to " + std::to_string(inEnd), "ends before it starts");
  }
  fStart = inStart;
  fEnd = inEnd;
  fTimeRange = MakeHosted<TimeRange>(inStart, inEnd);
}

// Evaluation

void Scene::Evaluate(int32 inTime) {
  if (fEvaluating) {
    return;
  }
  struct Running {
    explicit Running(bool& ioFlag) : fFlag(ioFlag) { fFlag = true; }
    ~Running() { fFlag = false; }
    bool& fFlag;
  };
  RefreshWorkLists();
  if (!fOrderValid) {
    fOrderValid = true;
    fOrder->Find(*this, fModified, fOrdering);
    ForgetPlan();
  }
  const Running running(fEvaluating);
  fTime = inTime;
  TakeValues(inTime);
  ApplyModifiers();
  if (!fIsAheadPlanned && fOrderValid) {
    fIsAheadPlanned = true;
    fAhead.Plan(fOrder->GetSteps());  // the modifiers have worked: they know by now what they look up
  }
}

// Modifiers that are added meanwhile work from the next evaluation on; one that was taken off or switched off has
// worked its last. The steps stay as they are meanwhile, and hold the modifiers: of what changed, the modifiers tell.
void Scene::ApplyModifiers() {
  std::size_t done = 0;
  for (const EvaluationStep& step : fOrder->GetSteps()) {
    fAhead.Reach(done++);
    if (fOrderValid) {
      if (step.fWork.fRun != nullptr) {
        step.fWork.fRun(step);
      }
    } else if (step.fModifier->SitsOn(*step.fElement) && step.fModifier->IsEnabled()) {
      step.fModifier->Apply(*step.fElement);
    }
  }
}

void Scene::ForgetPlan() {
  fAhead.Forget();
  fIsAheadPlanned = false;
}

const EvaluationOrder& Scene::FindOrder() {
  if (!fEvaluating) {
    RefreshWorkLists();
    fOrderValid = true;
    fOrder->FindAll(*this, fModified, fOrdering);
    ForgetPlan();
  }
  return *fOrder;
}

void Scene::SetOrdering(LinkOrdering inOrdering) {
  fOrdering = inOrdering;
  LinksChanged();
}

void Scene::ModifiersChanged() {
  ++fModifierChanges;
  StructureChanged();
  WorkChanged();
  if (!fEvaluating) {
    fOrder->Forget();
  }
}

void Scene::PoseEdited() {
  if (!fEvaluating && fOrder->DependsOnPoses()) {
    LinksChanged();
  }
}

// What a modifier does at the start of the animation is seen, such as its first key.
void Scene::BeginLook(LinkLook& inLook) {
  fLook = &inLook;
  fTimeBeforeLook = fTime;
  fTime = fStart;
  fEvaluating = true;
}

void Scene::EndLook() {
  fLook = nullptr;
  fTime = fTimeBeforeLook;
  fEvaluating = false;
}

void Scene::RefreshWorkLists() {
  if (fWorkListsValid) {
    return;
  }
  fAnimated.clear();
  fModified.clear();
  fAnimatedValues.clear();
  for (const auto& values : fValueSets) {
    if (values->IsAnimated()) {
      fAnimatedValues.push_back(values.get());
    }
  }
  for (Element* const element : GetTreeOrder()) {
    if (element->IsAnimated()) {
      fAnimated.push_back(element);
    }
    if (!element->GetModifiers().empty()) {
      fModified.push_back(element);
    }
  }
  fWorkListsValid = true;
}

// What has no curves has its base values already, unless the last evaluation wrote them.
void Scene::TakeValues(int32 inTime) {
  for (std::size_t i = 0; i < fTouched.size(); ++i) {
    ElementState& state = *fTouchedStates[i];
    state.fIsTouched = false;
    if (!state.fIsAnimated && state.Begin(state.fBase) && state.fGlobalValid) {
      fTouched[i]->InvalidateGlobal();
    }
  }
  fTouched.clear();
  fTouchedStates.clear();
  for (Element* const element : fAnimated) {
    element->BeginEvaluation(inTime);
  }
  for (ValueSet* const values : fTouchedValues) {
    values->fIsTouched = false;
    values->BeginEvaluation(inTime);
  }
  fTouchedValues.clear();
  for (ValueSet* const values : fAnimatedValues) {
    values->BeginEvaluation(inTime);
  }
}

void Scene::Touch(Element& inElement) {
  if (fEvaluating && fLook == nullptr && !inElement.fState.fIsTouched) {
    inElement.fState.fIsTouched = true;
    fTouched.push_back(&inElement);
    fTouchedStates.push_back(&inElement.fState);
  }
}

void Scene::Touch(ValueSet& inValues) {
  if (fEvaluating && fLook == nullptr && !inValues.fIsTouched) {
    inValues.fIsTouched = true;
    fTouchedValues.push_back(&inValues);
  }
}

TreeTransform Scene::DecomposeGlobal(const TOffsetMatrix33& inGlobal) const {
  if (!(inGlobal.fMatrix == fDecomposedAxes)) {
    fDecomposed.SetFromMatrix(inGlobal);
    fDecomposedAxes = inGlobal.fMatrix;
  }
  fDecomposed.SetPosition(inGlobal.fOffset);
  return fDecomposed;
}

// I3DShScene and AttributesSet

int32 Scene::GetCurrentTime(SceneTime& outTime) {
  outTime = SceneTime{fTime, 0};
  return fTime;
}

void Scene::GetTimeRange(ITimeRange** outRange) {
  StoreForCaller<ITimeRange>(outRange, fTimeRange.Get());
}

void Scene::GetRoot(IMCUnknown** outRoot) {
  StoreForCaller<IMCUnknown>(outRoot, static_cast<TreeElement*>(fRoot.Get()));
}

void Scene::GetSceneMaster(ISceneMaster** outMaster) {
  StoreForCaller<ISceneMaster>(outMaster, fMaster.Get());
}

// The last id alone names the element: the ones above it may have changed since.
void Scene::FindElementByTreePath(TreeElement** outElement, const TreePath& inPath) {
  const uint32 count = inPath.GetElemCount();
  StoreForCaller<TreeElement>(outElement, FindByID(count == 0 ? kRootID : inPath[count - 1]));
}

uint32 Scene::IDOfReference(const uint8* inBytes, std::size_t inCount) {
  uint32 id = 0;
  if (inCount == sizeof(id)) {
    for (std::size_t i = 0; i < sizeof(id); ++i) {
      id |= static_cast<uint32>(inBytes[i]) << (8 * i);
    }
  }
  return id;
}

void Scene::FindElementByRef(TreeElement** outElement, const ObjectReference& inReference) {
  Element* const found = FindByID(IDOfReference(inReference.BaseAddress(), inReference.GetElemCount()));
  if (found == nullptr && fLook != nullptr) {
    fLook->LoseReference();
  }
  StoreForCaller<TreeElement>(outElement, found);
}

void Scene::FindElementByUniqueID(TreeElement** outElement, uint32 inID) {
  StoreForCaller<TreeElement>(outElement, FindByID(inID));
}

uint32 Scene::GetSelectedElementCount() {
  return static_cast<uint32>(fSelection.size());
}

TreeElement* Scene::GetSelectedElement(uint32 inIndex) {
  return inIndex < fSelection.size() ? fSelection[inIndex] : nullptr;
}

void Scene::RefreshAfterCommand() {
  Evaluate(fTime);
}

void Scene::GetRootElement(IMCUnknown** outElement) {
  GetRoot(outElement);
}

}  // namespace qlx::host
