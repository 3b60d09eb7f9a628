// What a person did to a scene, as named steps that can be taken back and brought again.
//
//   UndoHistory history(scene);
//   history.BeginStep("Add a pin");
//   ... any edits, by whatever way ...
//   history.EndStep();
//   history.Undo();
//
// A step is found by comparison: the scene as it is when the step ends beside the scene as it was when it began.
// Nothing that edits has to tell. Covered are the base values and keys of elements (with their modes and hot points)
// and of sets of values, what counts as edited, and the modifiers of each element: which, in what order, whether they
// are on, and the state of each. Not covered is the tree itself: elements come and go with the scene's file.
//
// Modifiers keep their identity. One that a step took away is held by the history and put back; a component that holds
// it, or a time line or key of what was taken back, holds something that is alive. Keys have their serials again.
//
// A scene that is written after `Undo` gives the file of before the step, after `Redo` that of after it. Neither
// evaluates: the values that modifiers give show with the next evaluation. What was changed outside of steps is part of
// no step, and lost where a step that is taken back or brought again touched the same element or set.
//
// Both ends of a step look at everything once, with the private text of every modifier.
//
// Memory: one copy of what the scene has, and the steps, at most `fSteps` of them and `fBytes` together; the oldest go
// first, and the last one is always kept. A step keeps the states before and after of what it touched.
//
// The history must end before its scene is closed. Steps are not for use during an evaluation.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "SavedValues.h"
#include "Scene.h"

namespace qlx::host {

struct UndoLimits {
  std::size_t fSteps = 200;
  std::size_t fBytes = std::size_t{64} << 20;
};

class UndoHistory {
 public:
  explicit UndoHistory(Scene& inScene, UndoLimits inLimits = {});
  ~UndoHistory();
  UndoHistory(const UndoHistory&) = delete;
  UndoHistory& operator=(const UndoHistory&) = delete;

  // Steps may stand in each other: the outermost one counts, with its name.
  void BeginStep(std::string inName);
  // True when something changed and the step was kept. What had been taken back can then not be brought again.
  bool EndStep();
  // Ends a step, as `EndStep` does; what was done since the outermost began is taken back when that ends.
  void CancelStep();
  bool IsInStep() const { return fDepth > 0; }

  // False, with nothing done, when there is no such step, and while a step is under way.
  bool Undo();
  bool Redo();
  bool CanUndo() const { return fDepth == 0 && fNext > 0; }
  bool CanRedo() const { return fDepth == 0 && fNext < fSteps.size(); }
  // Names of the steps that these would take back or bring; empty when there is none.
  std::string GetUndoName() const { return CanUndo() ? fSteps[fNext - 1].fName : std::string(); }
  std::string GetRedoName() const { return CanRedo() ? fSteps[fNext].fName : std::string(); }
  // All steps, the oldest first, and how many of them are done.
  std::vector<std::string> GetNames() const;
  std::size_t GetDoneCount() const { return fNext; }
  // Bytes that the steps take, about.
  std::size_t GetSize() const { return fSize; }

 private:
  struct SavedModifier {
    TMCCountedPtr<Modifier> fModifier;
    bool fIsEnabled = true;
    std::string fState;

    bool operator==(const SavedModifier& inOther) const;
  };
  struct ElementState {
    SavedElement fValues;
    std::vector<SavedModifier> fModifiers;

    std::size_t GetSize() const;
  };
  template <class Thing, class State>
  struct Change {
    Thing fThing;
    std::shared_ptr<const State> fBefore;
    std::shared_ptr<const State> fAfter;
  };
  struct Step {
    std::string fName;
    std::vector<Change<TMCCountedPtr<Element>, ElementState>> fElements;
    std::vector<Change<std::shared_ptr<ValueSet>, SavedValueSet>> fSets;
    std::size_t fSize = 0;
  };

  static std::vector<SavedModifier> SaveModifiers(const Element& inElement);
  Step FindChanges();
  void Bring(const Step& inStep, bool inAfter);
  static void TakeModifiersOff(Element& inElement, const ElementState& inState);
  static void RestoreModifiers(Element& inElement, const ElementState& inState);
  void Keep(Step inStep);

  Scene& fScene;
  UndoLimits fLimits;
  // The scene as it was last looked at. States do not change: steps share them.
  std::unordered_map<Element*, std::shared_ptr<const ElementState>> fElements;
  std::unordered_map<ValueSet*, std::shared_ptr<const SavedValueSet>> fSets;
  std::deque<Step> fSteps;
  std::size_t fNext = 0;  // the step that would be brought again
  std::size_t fSize = 0;
  int fDepth = 0;
  bool fIsCancelled = false;
  std::string fName;
};

}  // namespace qlx::host
