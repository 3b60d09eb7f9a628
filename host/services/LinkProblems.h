// Why a link of class 'fQLX' does not tie what it was made to tie.
#pragma once

#include <string>

#include "model/LinkLook.h"

namespace qlx::host {

class PluginModifier;

// For a link on an element: the reference or the name of its source that leads to none, a path that leads to no value.
// Empty for one that is whole, and for one that does not say yet what it ties.
std::string DescribeLinkProblem(PluginModifier& inLink, const LinkTrace& inTrace);

}  // namespace qlx::host
