// Commands of the plug-in's menu, and what they work on, as a person names them on a command line and in a script.
#pragma once

#include <span>
#include <string>

#include "model/Scene.h"
#include "services/SceneCommand.h"

namespace qlx::host {

class Host;

// By its label, with or without the dots, its name or its id; letters of either case are alike. A `UserError` at the
// place given, with the closest ones, for what is none of these.
const ExtensionRecord& NeedCommand(const Host& inHost, const std::string& inWord, const std::string& inPlace);

// Selects these elements and no others. A `UserError` at the place given for a name that there is not; nothing changed.
void SelectElements(Scene& ioScene, std::span<const std::string> inNames, const std::string& inPlace);

// Marks keys of the selected elements: "all", "none", or two frames. A `UserError` at the place given for other words.
void SelectKeysOf(Scene& ioScene, std::span<const std::string> inWords, const std::string& inPlace);

}  // namespace qlx::host
