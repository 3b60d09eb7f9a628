#include "EvaluationOrder.h"

#include <algorithm>

namespace qlx::host {

namespace {

std::vector<EvaluationStep> PlainSteps(const std::vector<Element*>& inModified) {
  std::vector<EvaluationStep> steps;
  for (Element* const element : inModified) {
    for (const auto& modifier : element->GetModifiers()) {
      steps.push_back({element, modifier, modifier->IsEnabled() ? modifier->GetWork() : ModifierWork{}});
    }
  }
  return steps;
}

// A person hears of links that lead nowhere; of cycles where they are found.
void WarnOfProblem(Scene& inScene, const EvaluationStep& inStep) {
  const LinkTrace& trace = inStep.fModifier->GetLinkState().fTrace;
  const std::string problem = inStep.fModifier->IsEnabled() ? inStep.fModifier->DescribeProblem(trace) : "";
  if (!problem.empty()) {
    inScene.GetDiagnostics().Warn("element \"" + inStep.fElement->GetNameText() + "\": broken link: " + problem);
  }
}

}  // namespace

void EvaluationOrder::Find(Scene& ioScene, const std::vector<Element*>& inModified, LinkOrdering inOrdering) {
  std::vector<EvaluationStep> plain = PlainSteps(inModified);
  if (plain.size() < 2 || inOrdering == LinkOrdering::kTree) {
    Forget();
    fSteps = std::move(plain);
    return;
  }
  LookAll(ioScene, plain);
  Order(ioScene, std::move(plain), inOrdering);
}

void EvaluationOrder::FindAll(Scene& ioScene, const std::vector<Element*>& inModified, LinkOrdering inOrdering) {
  std::vector<EvaluationStep> plain = PlainSteps(inModified);
  LookAll(ioScene, plain);
  Order(ioScene, std::move(plain), inOrdering);
}

void EvaluationOrder::Forget() {
  fDependsOnPoses = false;
  fSteps.clear();
  fCycles.clear();
}

void EvaluationOrder::LookAll(Scene& ioScene, const std::vector<EvaluationStep>& inSteps) {
  std::vector<const EvaluationStep*> looked;
  {
    const Diagnostics::Quiet quiet(ioScene.GetDiagnostics());
    LinkLook look(ioScene);
    for (const EvaluationStep& step : inSteps) {
      Modifier::LinkState& state = step.fModifier->GetLinkState();
      if (!state.fIsKnown || state.fTreeVersion != ioScene.GetTreeVersion()) {
        state.fTrace = look.Trace(*step.fModifier, *step.fElement);
        state.fTreeVersion = ioScene.GetTreeVersion();
        state.fIsKnown = true;
        looked.push_back(&step);
      }
    }
  }
  for (const EvaluationStep* const step : looked) {
    WarnOfProblem(ioScene, *step);
  }
}

void EvaluationOrder::Order(Scene& ioScene, std::vector<EvaluationStep> inPlain, LinkOrdering inOrdering) {
  Forget();
  std::vector<LinkNode> nodes;
  nodes.reserve(inPlain.size());
  for (const EvaluationStep& step : inPlain) {
    Modifier::LinkState& state = step.fModifier->GetLinkState();
    state.fIsInCycle = false;
    nodes.push_back({step.fModifier->IsEnabled() && state.fTrace.fIsSeen ? &state.fTrace : nullptr});
  }
  const LinkOrder order = FindLinkOrder(nodes);
  fDependsOnPoses = order.fReadsPlaces;
  for (const LinkCycle& cycle : order.fCycles) {
    for (const uint32 node : cycle.fNodes) {
      inPlain[node].fModifier->GetLinkState().fIsInCycle = true;
    }
    fCycles.push_back(cycle.fText);
    ioScene.GetDiagnostics().Warn("links in a circle, evaluated in tree order: " + cycle.fText);
  }
  if (inOrdering == LinkOrdering::kTree) {
    fSteps = std::move(inPlain);
    return;
  }
  fSteps.reserve(inPlain.size());
  for (const uint32 node : order.fNodes) {
    fSteps.push_back(inPlain[node]);
  }
}

}  // namespace qlx::host
