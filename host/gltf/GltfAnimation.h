// A clip (an animation of a glTF document) as the curves of elements.
//
// Quaternion keys become both a rotation curve, which rules, and three Euler tracks whose angles follow one another
// without jumps. Keys that would fall on one tick stand a tick apart.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "GltfModel.h"
#include "GltfValues.h"
#include "model/Scene.h"

namespace qlx::host {

// "Walk", or "Animation2" where the third has no name.
std::vector<std::string> ListClipNames(const GltfModel& inModel);

// Fills the curves of the elements (one for each node) and of the values, and sets the scene's rate and range: from 0,
// or an earlier first key, to the last key. Without a rate given it is the lowest of the usual ones on whose frames all
// keys lie, else 30.
void ReadClip(const Json& inDocument, const GltfModel& inModel, std::size_t inClip,
              const std::vector<Element*>& inElements, const ValueTargets& inValues, std::optional<real32> inFrameRate,
              Scene& ioScene);

// For key times in seconds.
real32 GuessFrameRate(const std::vector<std::vector<real32>>& inTimes);

}  // namespace qlx::host
