// One modifier's turn in the evaluation of a scene.
#pragma once

#include "HostExtensions.h"
#include "MCCountedPtr.h"

namespace qlx::host {

class Element;
class Modifier;

struct EvaluationStep;

// The working call, so that it can be made without reading the modifier: of many, each costs a cache line. A failure
// inside is reported and ends there.
struct ModifierWork {
  void (*fRun)(const EvaluationStep& inStep) = nullptr;  // null for a modifier that is switched off
  WorkCall fCall{};                                      // for `fRun`
};

struct EvaluationStep {
  Element* fElement;
  TMCCountedPtr<Modifier> fModifier;
  ModifierWork fWork;  // holds while the order of the steps does
};

}  // namespace qlx::host
