#include "UndoHistory.h"

#include <algorithm>
#include <utility>

namespace qlx::host {

bool UndoHistory::SavedModifier::operator==(const SavedModifier& inOther) const {
  return fModifier == inOther.fModifier && fIsEnabled == inOther.fIsEnabled && fState == inOther.fState;
}

std::size_t UndoHistory::ElementState::GetSize() const {
  std::size_t size = fValues.GetSize() + fModifiers.size() * sizeof(SavedModifier);
  for (const SavedModifier& modifier : fModifiers) {
    size += modifier.fState.size();
  }
  return size;
}

UndoHistory::UndoHistory(Scene& inScene, UndoLimits inLimits) : fScene(inScene), fLimits(inLimits) {}

UndoHistory::~UndoHistory() = default;

// Steps

void UndoHistory::BeginStep(std::string inName) {
  if (fDepth++ > 0) {
    return;
  }
  fName = std::move(inName);
  FindChanges();  // what changed outside of steps is no part of this one
}

bool UndoHistory::EndStep() {
  if (!MC_ASSERT_TEXT(fDepth > 0, "a step ends that was not begun") || --fDepth > 0) {
    return false;
  }
  Step step = FindChanges();
  if (std::exchange(fIsCancelled, false)) {
    Bring(step, false);
    return false;
  }
  if (step.fElements.empty() && step.fSets.empty()) {
    return false;
  }
  step.fName = std::move(fName);
  Keep(std::move(step));
  return true;
}

void UndoHistory::CancelStep() {
  fIsCancelled = fDepth > 0;
  EndStep();
}

void UndoHistory::Keep(Step inStep) {
  while (fSteps.size() > fNext) {
    fSize -= fSteps.back().fSize;
    fSteps.pop_back();
  }
  fSize += inStep.fSize;
  fSteps.push_back(std::move(inStep));
  while (fSteps.size() > 1 && (fSteps.size() > fLimits.fSteps || fSize > fLimits.fBytes)) {
    fSize -= fSteps.front().fSize;
    fSteps.pop_front();
  }
  fNext = fSteps.size();
}

bool UndoHistory::Undo() {
  if (!CanUndo()) {
    return false;
  }
  Bring(fSteps[--fNext], false);
  return true;
}

bool UndoHistory::Redo() {
  if (!CanRedo()) {
    return false;
  }
  Bring(fSteps[fNext++], true);
  return true;
}

std::vector<std::string> UndoHistory::GetNames() const {
  std::vector<std::string> names;
  for (const Step& step : fSteps) {
    names.push_back(step.fName);
  }
  return names;
}

// States

std::vector<UndoHistory::SavedModifier> UndoHistory::SaveModifiers(const Element& inElement) {
  std::vector<SavedModifier> saved;
  for (const TMCCountedPtr<Modifier>& modifier : inElement.GetModifiers()) {
    saved.push_back({modifier, modifier->IsEnabled(), modifier->SaveState()});
  }
  return saved;
}

// Brings what is known of the scene up to date, and answers what was not.
UndoHistory::Step UndoHistory::FindChanges() {
  Step step;
  for (Element* const element : fScene.GetTreeOrder()) {
    std::shared_ptr<const ElementState>& known = fElements[element];
    std::vector<SavedModifier> modifiers = SaveModifiers(*element);
    if (known && element->HasValues(known->fValues) && modifiers == known->fModifiers) {
      continue;
    }
    auto now = std::make_shared<const ElementState>(ElementState{element->SaveValues(), std::move(modifiers)});
    if (known) {
      step.fSize += known->GetSize() + now->GetSize();
      step.fElements.push_back({MCShare(element), known, now});
    }
    known = std::move(now);
  }
  for (const std::shared_ptr<ValueSet>& set : fScene.GetValueSets()) {
    std::shared_ptr<const SavedValueSet>& known = fSets[set.get()];
    if (known && set->HasValues(*known)) {
      continue;
    }
    auto now = std::make_shared<const SavedValueSet>(set->SaveValues());
    if (known) {
      step.fSize += known->GetSize() + now->GetSize();
      step.fSets.push_back({set, known, now});
    }
    known = std::move(now);
  }
  return step;
}

void UndoHistory::Bring(const Step& inStep, bool inAfter) {
  for (const auto& change : inStep.fSets) {
    const auto& state = inAfter ? change.fAfter : change.fBefore;
    change.fThing->RestoreValues(*state);
    fSets[change.fThing.get()] = state;
  }
  // A modifier may have gone from one element to another: all leave before any comes.
  for (const auto& change : inStep.fElements) {
    TakeModifiersOff(*change.fThing, inAfter ? *change.fAfter : *change.fBefore);
  }
  for (const auto& change : inStep.fElements) {
    const auto& state = inAfter ? change.fAfter : change.fBefore;
    change.fThing->RestoreValues(state->fValues);
    RestoreModifiers(*change.fThing, *state);
    fElements[change.fThing.Get()] = state;
  }
}

// Where the list is another one; what stays on its element keeps what it knows of that.
void UndoHistory::TakeModifiersOff(Element& inElement, const ElementState& inState) {
  const auto& current = inElement.GetModifiers();
  if (!std::equal(current.begin(), current.end(), inState.fModifiers.begin(), inState.fModifiers.end(),
                  [](const TMCCountedPtr<Modifier>& modifier, const SavedModifier& saved) {
                    return modifier == saved.fModifier;
                  })) {
    inElement.RemoveAllModifiers();
  }
}

void UndoHistory::RestoreModifiers(Element& inElement, const ElementState& inState) {
  const bool isEmpty = inElement.GetModifiers().empty();
  for (const SavedModifier& saved : inState.fModifiers) {
    Modifier& modifier = *saved.fModifier;
    if (isEmpty) {
      if (modifier.GetElement() != nullptr) {
        continue;  // something outside of steps put it elsewhere
      }
      inElement.AddModifier(modifier, inElement.GetModifiers().size());
    }
    if (modifier.IsEnabled() != saved.fIsEnabled) {
      modifier.SetEnabled(saved.fIsEnabled);
    }
    if (modifier.SaveState() != saved.fState) {
      modifier.RestoreState(saved.fState);
    }
  }
}

}  // namespace qlx::host
