#include "Modifier.h"

#include "Element.h"
#include "Scene.h"

namespace qlx::host {

Modifier::~Modifier() = default;

ModifierWork Modifier::GetWork() {
  return {.fRun = [](const EvaluationStep& step) { step.fModifier->Apply(*step.fElement); }};
}

void Modifier::GetModifiedElement(TreeElement** outElement) {
  StoreForCaller<TreeElement>(outElement, fElement.Get());
}

TreeElement* Modifier::GetOwnerElement() {
  return fElement.Get();
}

void Modifier::SetEnabled(bool inEnabled) {
  if (fEnabled == inEnabled) {
    return;
  }
  fEnabled = inEnabled;
  if (fElement && fElement->GetOwnScene() != nullptr) {
    fElement->GetOwnScene()->LinksChanged();
  }
}

std::string Modifier::DescribeProblem(const LinkTrace& inTrace) {
  return inTrace.fHasLostReference ? "the element that it refers to is gone" : "";
}

Modifier::LinkState& Modifier::GetLinkState() {
  if (fLinks == nullptr) {
    fLinks = std::make_unique<LinkState>();
  }
  return *fLinks;
}

void Modifier::LinksChanged() {
  fLinks = nullptr;
  if (fElement && fElement->GetOwnScene() != nullptr && fElement->GetLook() == nullptr) {
    fElement->GetOwnScene()->LinksChanged();
  }
}

void Modifier::Attach(Element& inElement) {
  fElement.Share(&inElement);
  fLinks = nullptr;
}

void Modifier::Detach() {
  fElement.Clear();
}

}  // namespace qlx::host
