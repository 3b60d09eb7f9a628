// Modifiers as a person names them on a command line and in a script.
#pragma once

#include <string>

#include "model/Scene.h"
#include "services/Host.h"

namespace qlx::host {

// A new modifier, last on the element: "qlx", "pin", "slider". A `UserError` at the place given, with the words that
// there are, for another word; and one when the plug-in does not make it.
PluginModifier& AddModifierTo(Host& inHost, Element& ioElement, const std::string& inWord, const std::string& inPlace);

// The element's modifier of that number, from 0, as `qlx links --json` numbers them. A `UserError` at the place given
// says what is there instead.
PluginModifier& NeedModifier(const Element& inElement, uint32 inIndex, const std::string& inPlace);

}  // namespace qlx::host
