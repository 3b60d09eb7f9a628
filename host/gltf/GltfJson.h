// The text of a glTF file as a JSON document, and what is needed to look things up in it.
//
// The document keeps the order of members, so what is not changed is written as it was read.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "GltfProblem.h"
#include "MCTypes.h"

namespace qlx::host {

using Json = nlohmann::ordered_json;

// Throws `GltfProblem` with line and column for text that is not JSON, nests deeper than 128 levels (the recursive
// code behind it must not run out of stack) or has an object of more than 20000 members (they are found by a search).
Json ParseJson(std::string_view inText);

// The member, or null when the object has none of the name.
const Json* FindMember(const Json& inObject, const char* inName);
Json* FindMember(Json& ioObject, const char* inName);

// The elements of a top-level or member array; an empty one where the member is missing.
const Json& ArrayOf(const Json& inObject, const char* inName);

// A member that is a whole number from 0, or the default. The document must have been checked.
uint64 NumberOf(const Json& inObject, const char* inName, uint64 inDefault);

// A name on one line, without signs that a terminal would obey.
std::string ReadableName(std::string inName);

// A 32-bit real by the shortest text that reads back as it.
Json ShortNumber(real32 inValue);

}  // namespace qlx::host
