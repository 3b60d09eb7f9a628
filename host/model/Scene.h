// A scene: the tree of elements, what they show, time, selection, and evaluation.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Diagnostics.h"
#include "Element.h"
#include "HostObject.h"
#include "SceneObjects.h"
#include "ValueSet.h"
#include "WorkAhead.h"

namespace qlx::host {

class EvaluationOrder;
class LinkLook;

// In which order modifiers work: sources first, or plainly elements in tree order and modifiers in list order.
enum class LinkOrdering : uint8 { kDependencies, kTree };

// Made by `Scene::Create`. The root element is the scene's own, has the id 1 and no name of a person's ("[scene]"); it
// cannot be removed. Elements hold modifiers and modifiers their element, so a scene ends by `Close`, which the
// destructor of its last owner must have called; closing takes all modifiers off first, and leaves the root alone.
// Elements, objects and shaders that somebody still holds are in no scene from then on.
class Scene final : public HostObject<I3DShScene, AttributesSet, ISceneStructure> {
 public:
  static TMCCountedPtr<Scene> Create(Diagnostics& inDiagnostics);
  explicit Scene(Diagnostics& inDiagnostics);
  ~Scene() override;
  void Close();

  Diagnostics& GetDiagnostics() const { return fDiagnostics; }

  // Tree. Ids are unique and never 0: 0 asks for a new one; a taken one throws `UserError`. Names are made unique by a
  // suffix ("Arm", "Arm.2"); an empty one becomes "Element" and its id. They have at most 255 bytes; a longer one is
  // cut between two characters, and one with a NUL there.
  Element& GetRootElement() const { return *fRoot; }
  Element& AddElement(Element& inParent, std::string_view inName, uint32 inID = 0);
  // Parent before child, children in order; the root is the first.
  const std::vector<Element*>& GetTreeOrder() const;
  Element* FindByName(std::string_view inName) const;
  Element* FindByID(uint32 inID) const;
  // The id that a reference to an element holds; 0 for bytes that are no reference of this host.
  static uint32 IDOfReference(const uint8* inBytes, std::size_t inCount);
  // What was looked up before may be stale: see `GetStructureVersion`.
  void StructureChanged() {
    ++fStructureVersion;
    fOrderValid = false;
  }

  // Things that elements show and belong to. Owned by the scene.
  SceneObject& AddObject(std::string_view inName);
  Shader& AddShader(std::string_view inName);
  Figure& AddFigure(std::string_view inName, Element& inRoot, std::vector<Element*> inMembers);
  // Values of something that is no element; the label says of what, for messages. They end with the scene.
  std::shared_ptr<ValueSet> AddValues(std::string inLabel);
  const std::vector<TMCCountedPtr<SceneObject>>& GetObjects() const { return fObjects; }
  const std::vector<TMCCountedPtr<Shader>>& GetShaders() const { return fShaders; }
  const std::vector<std::unique_ptr<Figure>>& GetFigures() const { return fFigures; }
  const std::vector<std::shared_ptr<ValueSet>>& GetValueSets() const { return fValueSets; }

  // Time. A rate that is not valid throws `UserError`; so does a range that ends before it starts.
  void SetFrameRate(real32 inRate);
  void SetTimeRange(int32 inStart, int32 inEnd);
  int32 GetStart() const { return fStart; }
  int32 GetEnd() const { return fEnd; }
  int32 GetTime() const { return fTime; }

  // Evaluates the whole scene at a time: values from curves and base values, then modifiers, each behind those that
  // write what it reads; elements in tree order and modifiers in list order where nothing depends. `IsEvaluating` is
  // true meanwhile. Calling it from inside an evaluation does nothing. A modifier that is added meanwhile works on an
  // element that is still to come, or from the next evaluation on.
  void Evaluate(int32 inTime);
  bool IsEvaluating() const { return fEvaluating; }

  // Order. Modifiers work in the order in which their values depend on each other, unless that is switched off. It is
  // found again, at the next evaluation, after a change of the structure, of a modifier or of a pose.
  void SetOrdering(LinkOrdering inOrdering);
  // Brings the order up to date, with a look at every modifier, those that are switched off too. Its cycles are warned
  // about, each once.
  const EvaluationOrder& FindOrder();
  void LinksChanged() { fOrderValid = false; }
  // What decides in which directions an element moves those below it: its rotation, its scale, its hot point.
  void PoseEdited();
  // Changes as the structure version does, but not with modifiers.
  uint32 GetTreeVersion() const { return fStructureVersion - fModifierChanges; }
  void ModifiersChanged();
  // Null unless a copy of a modifier is being looked at: it takes all writes then.
  LinkLook* GetLook() const { return fLook; }
  void BeginLook(LinkLook& inLook);
  void EndLook();
  // Elements that a write or a notification touched in this evaluation, in the order of first touch.
  const std::vector<Element*>& GetTouched() const { return fTouched; }
  // Marks, during an evaluation; does nothing outside of one.
  void Touch(Element& inElement);
  // The same of sets of values.
  const std::vector<ValueSet*>& GetTouchedValues() const { return fTouchedValues; }
  void Touch(ValueSet& inValues);
  // Those with curves, as of the last evaluation.
  const std::vector<Element*>& GetAnimated() const { return fAnimated; }
  const std::vector<ValueSet*>& GetAnimatedValues() const { return fAnimatedValues; }

  // Selection, in order.
  void Select(std::vector<Element*> inElements) { fSelection = std::move(inElements); }
  const std::vector<Element*>& GetSelection() const { return fSelection; }

  // The transform of a global matrix. A second call with the same axes, as a modifier's write after its read makes,
  // costs a comparison.
  TreeTransform DecomposeGlobal(const TOffsetMatrix33& inGlobal) const;

  // I3DShScene
  int32 MC_CALL GetCurrentTime(SceneTime& outTime) override;
  real32 MC_CALL GetFrameRate() override { return fFrameRate; }
  void MC_CALL GetTimeRange(ITimeRange** outRange) override;
  void MC_CALL GetRoot(IMCUnknown** outRoot) override;
  void MC_CALL GetSceneMaster(ISceneMaster** outMaster) override;
  void MC_CALL FindElementByTreePath(TreeElement** outElement, const TreePath& inPath) override;
  void MC_CALL FindElementByRef(TreeElement** outElement, const ObjectReference& inReference) override;
  void MC_CALL FindElementByUniqueID(TreeElement** outElement, uint32 inID) override;
  uint32 MC_CALL GetSelectedElementCount() override;
  TreeElement* MC_CALL GetSelectedElement(uint32 inIndex) override;
  // Evaluates again at the current time.
  void MC_CALL RefreshAfterCommand() override;

  // ISceneStructure
  uint32 MC_CALL GetStructureVersion() override { return fStructureVersion; }

  // AttributesSet: the set's root; `GetRootElement` above is the host's own name for it.
  void MC_CALL GetRootElement(IMCUnknown** outElement) override;

 private:
  friend class Element;
  friend class ValueSet;
  class TimeRange;
  class Master;

  std::string MakeUniqueName(std::string_view inName, uint32 inID);
  void WorkChanged() { fWorkListsValid = false; }
  void RefreshWorkLists();
  void TakeValues(int32 inTime);
  void ApplyModifiers();
  void ForgetPlan();

  Diagnostics& fDiagnostics;
  std::shared_ptr<ElementStates> fStates = std::make_shared<ElementStates>();
  TMCCountedPtr<Element> fRoot;
  std::unordered_map<uint32, Element*> fByID;
  std::unordered_map<std::string, Element*> fByName;
  std::unordered_map<std::string, uint32> fNextSuffix;
  mutable std::vector<Element*> fTreeOrder;
  mutable bool fTreeOrderValid = false;
  uint32 fNextID = 2;
  uint32 fStructureVersion = 1;
  std::vector<TMCCountedPtr<SceneObject>> fObjects;
  std::vector<TMCCountedPtr<Shader>> fShaders;
  std::vector<std::unique_ptr<Figure>> fFigures;
  std::vector<std::shared_ptr<ValueSet>> fValueSets;
  real32 fFrameRate = 24.0f;
  int32 fStart = 0;
  int32 fEnd = 0;
  int32 fTime = 0;
  bool fEvaluating = false;
  LinkLook* fLook = nullptr;
  uint32 fModifierChanges = 0;
  bool fOrderValid = false;
  LinkOrdering fOrdering = LinkOrdering::kDependencies;
  std::unique_ptr<EvaluationOrder> fOrder;
  int32 fTimeBeforeLook = 0;
  bool fClosed = false;
  bool fWorkListsValid = false;
  std::vector<Element*> fAnimated;  // elements with curves, and with modifiers, in tree order
  std::vector<Element*> fModified;
  WorkAhead fAhead;  // of the steps of the order
  bool fIsAheadPlanned = false;
  std::vector<Element*> fTouched;
  std::vector<ElementState*> fTouchedStates;  // theirs
  std::vector<ValueSet*> fAnimatedValues;     // with curves
  std::vector<ValueSet*> fTouchedValues;
  std::vector<Element*> fSelection;
  mutable TMatrix33 fDecomposedAxes;  // see `DecomposeGlobal`
  mutable TreeTransform fDecomposed;
  TMCCountedPtr<TimeRange> fTimeRange;
  TMCCountedPtr<Master> fMaster;
};

}  // namespace qlx::host
