// What must hold for the values in the buffers of a glTF document: numbers are finite, indices exist, keys ascend.
#pragma once

#include "GltfModel.h"
#include "GltfValues.h"

namespace qlx::host {

// Both expect a document that passed the checks of `GltfStructure.h`, and throw `GltfProblem`. What has no content is
// passed over, unless an animation needs it.

void CheckAccessorContent(const Json& inDocument, const GltfModel& inModel);

// Channels of the values by their pointers too.
void CheckAnimations(const Json& inDocument, const GltfModel& inModel, const ValueTargets& inValues);

// Targets of the first primitive of a node's mesh: how many weights a key of it has.
std::size_t CountMorphs(const Json& inDocument, int inMesh);

}  // namespace qlx::host
