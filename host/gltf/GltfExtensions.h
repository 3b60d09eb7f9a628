// The lists of extensions that a glTF document has.
#pragma once

#include "GltfJson.h"

namespace qlx::host {

// Lists the extension under "extensionsUsed", once.
void ListExtension(Json& ioDocument, const char* inName);

// Takes it from "extensionsUsed" and "extensionsRequired"; a list that is empty then goes, as glTF allows none.
void UnlistExtension(Json& ioDocument, const char* inName);

}  // namespace qlx::host
