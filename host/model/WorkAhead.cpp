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

bool WorkLines::Has(uint64 inLine) const {
  return std::any_of(fRuns.begin(), fRuns.end(),
                     [inLine](WorkRun run) { return run.GetFirst() <= inLine && inLine < run.GetEnd(); });
}

void WorkLines::Add(const void* inStart, std::size_t inBytes) {
  const auto start = reinterpret_cast<std::uintptr_t>(inStart);
  for (uint64 line = start / kCacheLine; line * kCacheLine < start + inBytes && fCount < kMostLines; ++line) {
    if (Has(line)) {
      continue;
    }
    if (!fRuns.empty() && fRuns.back().CanTake(line)) {
      fRuns.back().TakeOne();
    } else {
      fRuns.emplace_back(line);
    }
    ++fCount;
  }
}

void WorkLines::MoveTo(std::vector<WorkRun>& ioRuns) {
  ioRuns.insert(ioRuns.end(), fRuns.begin(), fRuns.end());
  fRuns.clear();
  fCount = 0;
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
    lines.MoveTo(fRuns);
    fEnds.push_back(fRuns.size());
  }
}

void WorkAhead::Forget() {
  fRuns.clear();
  fEnds.clear();
}

void WorkAhead::Reach(std::size_t inStep) const noexcept {
  const std::size_t ahead = inStep + kDistance;
  if (ahead >= fEnds.size()) {
    return;
  }
  for (std::size_t i = fEnds[ahead - 1]; i < fEnds[ahead]; ++i) {
    for (uint64 line = fRuns[i].GetFirst(); line != fRuns[i].GetEnd(); ++line) {
      MCPrefetch(reinterpret_cast<const void*>(static_cast<std::uintptr_t>(line * kCacheLine)));
    }
  }
}

}  // namespace qlx::host
