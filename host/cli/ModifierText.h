// Modifiers as people and other programs read them: their class, the fields of their record, their private data.
#pragma once

#include <string>
#include <vector>

#include "gltf/GltfJson.h"
#include "services/PluginModifier.h"

namespace qlx::host {

// "PinModifier"
const char* ClassNameOf(const Modifier& inModifier);

// A field of a modifier's record, its numbers in the fewest digits that give them back.
Json FieldAsJson(const PluginModifier& inModifier, const ParameterField& inField);

// "fDelayFrames 4", "dlin 0": the fields and private tokens that are not those of a new modifier of the class.
std::vector<std::string> SettingsOf(Host& inHost, Modifier& inModifier);

}  // namespace qlx::host
