// The private data of a component as token text, outside of the file that it stands in.
#pragma once

#include <optional>
#include <string>

#include "HostExtensions.h"

namespace qlx::host {

// What the component's persistence writes. Nothing, with the failure's code in `outResult`, when it fails; throws what
// the component throws.
std::optional<std::string> WritePrivateText(IExStreamIO& inStreamIO, MCResult& outResult);

// Reads the text through the component's persistence. Answers what is wrong, and where: a text that is no tokens (seen
// before the component is asked), one that the component does not take, or a token that it does not know. Throws
// nothing: what the component throws is an answer.
std::optional<std::string> ReadPrivateText(IExStreamIO& inStreamIO, const std::string& inText);

}  // namespace qlx::host
