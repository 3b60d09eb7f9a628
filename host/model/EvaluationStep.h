// One modifier's turn in the evaluation of a scene.
#pragma once

#include "MCCountedPtr.h"

namespace qlx::host {

class Element;
class Modifier;

struct EvaluationStep {
  Element* fElement;
  TMCCountedPtr<Modifier> fModifier;
};

}  // namespace qlx::host
