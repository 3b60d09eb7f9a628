// In which order the modifiers of a scene work, and what is known of their ties.
#pragma once

#include <string>
#include <vector>

#include "EvaluationStep.h"
#include "LinkGraph.h"
#include "Scene.h"

namespace qlx::host {

// The scene's own.
class EvaluationOrder {
 public:
  // Looks again at what changed, and orders anew. A scene with a single modifier is not looked at.
  void Find(Scene& ioScene, const std::vector<Element*>& inModified, LinkOrdering inOrdering);
  // The same, with every modifier looked at: their `LinkState` is up to date then.
  void FindAll(Scene& ioScene, const std::vector<Element*>& inModified, LinkOrdering inOrdering);
  // Lets go of the modifiers.
  void Forget();

  // All modifiers that there are.
  const std::vector<EvaluationStep>& GetSteps() const { return fSteps; }
  // One way round each cycle of modifiers that are switched on.
  const std::vector<std::string>& GetCycles() const { return fCycles; }
  bool DependsOnPoses() const { return fDependsOnPoses; }

 private:
  static void LookAll(Scene& ioScene, const std::vector<EvaluationStep>& inSteps);
  void Order(Scene& ioScene, std::vector<EvaluationStep> inPlain, LinkOrdering inOrdering);

  bool fDependsOnPoses = false;
  std::vector<EvaluationStep> fSteps;
  std::vector<std::string> fCycles;
};

}  // namespace qlx::host
