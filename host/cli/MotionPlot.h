// The plot of a bake: how the elements that modifiers changed move, beside how they would have moved without.
//
// Elements have blocks with the values that were changed: those below one parent that changed alike share one. An
// element that stands elsewhere than it would has a block with its position in the scene before that, beside its
// parent's and those of other elements asked for. What else has changed values, materials, lights and weights, has
// blocks as well. With many the first few are drawn and a note counts the rest.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "SvgPlot.h"
#include "model/Bake.h"

namespace qlx::host {

// Where elements are in the scene, frame by frame.
class MotionRecord {
 public:
  explicit MotionRecord(const std::vector<Element*>& inElements);
  // After each evaluated frame.
  void Add();
  // Component 0 to 2 of the positions; empty for an element that is not recorded.
  std::vector<real64> Get(const Element* inElement, int inComponent) const;

 private:
  std::unordered_map<const Element*, std::vector<TVector3>> fPositions;
};

struct MotionPlotInput {
  std::string fScene;
  std::string fClip;
  const BakeResult& fBake;
  const MotionRecord& fWith;     // with the modifiers' work
  const MotionRecord& fWithout;  // without
  std::vector<Element*> fAlso;   // other elements to compare with
};

Plot MakeMotionPlot(Scene& inScene, const MotionPlotInput& inInput);

// Evaluates the scene on each frame of the range with every modifier off, and puts the switches back.
void RecordWithoutModifiers(Scene& inScene, BakeRange inRange, MotionRecord& outRecord);

}  // namespace qlx::host
