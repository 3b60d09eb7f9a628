// Modifiers of elements in the node extension QLX_modifiers (docs/formats/QLX_modifiers.md).
//
// Fields of a modifier's public block go by name, never by their bytes. Positions are in scene units (inches), as the
// block holds them.
#pragma once

#include <vector>

#include "GltfModel.h"
#include "model/Scene.h"
#include "services/Host.h"

namespace qlx::host {

inline constexpr const char* kModifiersExtension = "QLX_modifiers";

// Makes the modifiers of all nodes. False when the host has no plug-in: they are checked as far as can be, stay in the
// document as data, and a warning says so. Throws `GltfProblem` for a block that is not as the format says, with a
// class or a field that is not known.
bool ReadModifiers(const Json& inDocument, const std::vector<Element*>& inElements, Host& inHost);

enum class WrittenModifiers { kNone, kSwitchedOff, kAsTheyAre };

// Sets the extension of each node from its element's modifiers, and takes it away where there are none. A node with
// modifiers, one that a link refers to, and one whose element's id is not what a reader would give it anyway, also get
// their id (QLX_element).
void WriteModifiers(Json& ioDocument, const std::vector<Element*>& inElements, WrittenModifiers inWritten);

// Lists the extensions of this program under "extensionsUsed" where nodes have them, and only there.
void ListOwnExtensions(Json& ioDocument);

}  // namespace qlx::host
