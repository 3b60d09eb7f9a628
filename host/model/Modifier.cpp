#include "Modifier.h"

#include "Element.h"

namespace qlx::host {

Modifier::Modifier(MCID inClass) : fClass(inClass) {}

Modifier::~Modifier() = default;

void Modifier::GetModifiedElement(TreeElement** outElement) {
  StoreForCaller<TreeElement>(outElement, fElement.Get());
}

TreeElement* Modifier::GetOwnerElement() {
  return fElement.Get();
}

void Modifier::Attach(Element& inElement) {
  fElement.Share(&inElement);
}

void Modifier::Detach() {
  fElement.Clear();
}

}  // namespace qlx::host
