#include "GltfValueRules.h"

#include <fmt/format.h>

namespace qlx::host {

std::string LimitText(const ValueRule& inRule) {
  const bool isAbove = inRule.fLeast == kAboveZero;
  if (inRule.fMost == kNoLimit) {
    return isAbove ? "above 0" : fmt::format("{} or more", inRule.fLeast);
  }
  return isAbove ? fmt::format("above 0 and at most {}", inRule.fMost)
                 : fmt::format("from {} to {}", inRule.fLeast, inRule.fMost);
}

}  // namespace qlx::host
