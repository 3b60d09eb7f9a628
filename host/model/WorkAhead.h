// Gets the memory of an evaluation's next steps under way while the present ones are done. A large scene's elements and
// modifiers are more than the processor's caches hold, and waiting for each in turn is most of what a step costs.
#pragma once

#include <cstddef>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

struct EvaluationStep;

inline constexpr std::size_t kCacheLine = 64;

// Cache lines one behind the other, in eight bytes: a plan is read as often as what it is about.
class WorkRun {
 public:
  static constexpr uint64 kMostLines = 64;

  // A line's number is its address by the size of lines.
  explicit WorkRun(uint64 inLine) : fBits(inLine * kMostLines) {}
  uint64 GetFirst() const { return fBits / kMostLines; }
  uint64 GetEnd() const { return GetFirst() + fBits % kMostLines + 1; }
  bool CanTake(uint64 inLine) const { return inLine == GetEnd() && inLine - GetFirst() < kMostLines; }
  void TakeOne() { ++fBits; }

 private:
  uint64 fBits;  // the first line's number by the most there can be, and how many follow it
};

// The cache lines that one step reads, in the order of use and each once.
class WorkLines {
 public:
  void Add(const void* inStart, std::size_t inBytes);
  // Takes what was added since the last time behind `ioRuns`.
  void MoveTo(std::vector<WorkRun>& ioRuns);

 private:
  bool Has(uint64 inLine) const;

  std::vector<WorkRun> fRuns;
  std::size_t fCount = 0;
};

// Addresses are only ever handed to the processor, never read through: a plan that is out of date does no harm.
class WorkAhead {
 public:
  // What modifiers look up is known when they have worked once. A scene that fits into the caches needs no plan.
  void Plan(const std::vector<EvaluationStep>& inSteps);
  void Forget();
  // The evaluation has come to this step.
  void Reach(std::size_t inStep) const noexcept;

 private:
  std::vector<WorkRun> fRuns;
  std::vector<std::size_t> fEnds;  // of each step's runs
};

}  // namespace qlx::host
