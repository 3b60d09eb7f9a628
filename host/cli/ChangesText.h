// What a command of the menu did to a scene, as lines for people.
#pragma once

#include <span>
#include <string>

#include "model/SceneChanges.h"

namespace qlx::host {

class Host;

// "3 keys removed, 1 key moved, 1 modifier added"; "nothing changes".
std::string CountChanges(const SceneChanges& inChanges);

// Every key and modifier, a line each, below the track or element that it is of. Of a modifier that was added come the
// settings in which it differs from a new one.
std::string ListChanges(Host& inHost, Scene& inScene, const SceneChanges& inChanges);

// The tracks that lost keys, with how many, and those that move otherwise than before, with how far and where.
std::string ReportRemovals(Scene& inScene, const SceneChanges& inChanges, std::span<const MotionChange> inMotions);

}  // namespace qlx::host
