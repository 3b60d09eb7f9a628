#include "WorkAhead.h"

#include <algorithm>
#include <cstdint>

#include "Element.h"
#include "EvaluationStep.h"
#include "MCMemory.h"

namespace qlx::host {

namespace {

constexpr std::size_t kFewSteps = 256;
constexpr std::size_t kDistance = 6;
constexpr std::size_t kMostLines = 128;  // of a step: more would drive out what they are to bring

}  // namespace

void WorkLines::Add(const void* inStart, std::size_t inBytes) {
  const auto start = reinterpret_cast<std::uintptr_t>(inStart);
  for (std::uintptr_t line = start & ~(kCacheLine - 1); line < start + inBytes && fLines.size() < kMostLines;
       line += kCacheLine) {
    const auto* const address = reinterpret_cast<const void*>(line);
    if (std::find(fLines.begin(), fLines.end(), address) == fLines.end()) {
      fLines.push_back(address);
    }
  }
}

void WorkLines::MoveTo(std::vector<const void*>& ioLines) {
  ioLines.insert(ioLines.end(), fLines.begin(), fLines.end());
  fLines.clear();
}

void WorkAhead::Plan(const std::vector<EvaluationStep>& inSteps) {
  Forget();
  if (inSteps.size() < kFewSteps) {
    return;
  }
  fEnds.reserve(inSteps.size());
  WorkLines lines;
  const Element* last = nullptr;
  for (const EvaluationStep& step : inSteps) {
    if (step.fElement != last) {
      last = step.fElement;
      last->ListWorkMemory(lines);
    }
    step.fModifier->ListWorkMemory(lines);
    lines.MoveTo(fLines);
    fEnds.push_back(fLines.size());
  }
}

void WorkAhead::Forget() {
  fLines.clear();
  fEnds.clear();
}

void WorkAhead::Reach(std::size_t inStep) const noexcept {
  const std::size_t ahead = inStep + kDistance;
  if (ahead >= fEnds.size()) {
    return;
  }
  for (std::size_t i = fEnds[ahead - 1]; i < fEnds[ahead]; ++i) {
    MCPrefetch(fLines[i]);
  }
}

}  // namespace qlx::host
