// Ids for parameters that have a name only: custom values, morphs.
//
// An id comes from the name, so that a path through it outlives a change of the other parameters: a name of four
// letters and digits is its own id; any other gets its first letter and three characters that stand for all of it. Two
// names of a holder that come to the same id, or one that comes to an id with a meaning of its own (a transform's, a
// component's, one that property trees hide), take the next: the order of the names then counts.
#pragma once

#include <set>
#include <string_view>

#include "MCTypes.h"

namespace qlx::host {

class ParameterIDs {
 public:
  // The id of the next parameter of a holder: no other has it.
  MCID Make(std::string_view inName);

 private:
  std::set<MCID> fTaken;
};

}  // namespace qlx::host
