// What a person may have meant by a name that there is not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

class Element;
class Scene;

// Those of the names that are nearest to a mistyped one, at most three, nearest first: a few letters apart, letters of
// either case alike, or with the mistyped one inside.
std::vector<std::string> FindClosest(std::string_view inName, const std::vector<std::string>& inNames);

// For the end of a message: "; the closest are "Arm" and "Arm.2"", or nothing.
std::string ClosestText(std::string_view inName, const std::vector<std::string>& inNames);

// The element of that name. A `UserError` at the place given names the closest where there is none.
Element& NeedElement(const Scene& inScene, const std::string& inName, const std::string& inPlace);

}  // namespace qlx::host
