#include "WorkAhead.h"

#include "Element.h"
#include "MCMemory.h"
#include "Modifier.h"

namespace qlx::host {

namespace {

constexpr std::size_t kFewSteps = 256;
constexpr std::size_t kDistance = 3;
constexpr std::size_t kLine = 64;
// What of each is read: as much as stands first in the object.
constexpr std::size_t kElementBytes = 320;
constexpr std::size_t kModifierBytes = 128;
constexpr std::size_t kComponentBytes = 704;

void PrefetchBytes(const void* inStart, std::size_t inCount) noexcept {
  for (std::size_t offset = 0; offset < inCount; offset += kLine) {
    MCPrefetch(static_cast<const char*>(inStart) + offset);
  }
}

}  // namespace

void WorkAhead::Plan(const std::vector<Element*>& inElements) {
  fSteps.clear();
  if (inElements.size() < kFewSteps) {
    return;
  }
  fSteps.reserve(inElements.size());
  for (const Element* const element : inElements) {
    const auto& modifiers = element->GetModifiers();
    const Modifier* const first = modifiers.empty() ? nullptr : modifiers[0].Get();
    fSteps.push_back({element, modifiers.data(), first, first != nullptr ? first->GetWorkMemory() : nullptr});
  }
}

void WorkAhead::Reach(std::size_t inStep) const noexcept {
  const std::size_t ahead = inStep + kDistance;
  if (ahead >= fSteps.size()) {
    return;
  }
  const Step& step = fSteps[ahead];
  PrefetchBytes(step.fElement, kElementBytes);
  MCPrefetch(step.fModifiers);
  PrefetchBytes(step.fFirst, kModifierBytes);
  if (step.fComponent != nullptr) {
    PrefetchBytes(step.fComponent, kComponentBytes);
  }
}

}  // namespace qlx::host
