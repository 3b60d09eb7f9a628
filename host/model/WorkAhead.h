// Gets the memory of an evaluation's next steps under way while the present ones are done. A large scene's elements and
// modifiers are more than the processor's caches hold, and waiting for each in turn is most of what a step costs.
#pragma once

#include <cstddef>
#include <vector>

namespace qlx::host {

class Element;

// Addresses are only ever handed to the processor, never read through: a plan that is out of date does no harm.
class WorkAhead {
 public:
  // For elements that are evaluated in this order. A scene that fits into the caches needs no plan.
  void Plan(const std::vector<Element*>& inElements);
  // The evaluation has come to this element.
  void Reach(std::size_t inStep) const noexcept;

 private:
  struct Step {
    const void* fElement;
    const void* fModifiers;  // its list
    const void* fFirst;      // the first of them
    const void* fComponent;  // and what that works with
  };
  std::vector<Step> fSteps;
};

}  // namespace qlx::host
