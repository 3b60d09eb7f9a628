// Gets the memory of an evaluation's next steps under way while the present ones are done. A large scene's elements and
// modifiers are more than the processor's caches hold, and waiting for each in turn is most of what a step costs.
#pragma once

#include <cstddef>
#include <vector>

namespace qlx::host {

struct EvaluationStep;

inline constexpr std::size_t kCacheLine = 64;

// The cache lines that one step reads, in the order of use and each once.
class WorkLines {
 public:
  void Add(const void* inStart, std::size_t inBytes);
  // Takes what was added since the last time behind `ioLines`.
  void MoveTo(std::vector<const void*>& ioLines);

 private:
  std::vector<const void*> fLines;
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
  std::vector<const void*> fLines;
  std::vector<std::size_t> fEnds;  // of each step's lines
};

}  // namespace qlx::host
