// A token file, item by item, for those who look at one.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "MCToken.h"

namespace qlx::host {

// One line of the tree. Texts are bytes of the file.
struct TokenItem {
  MCToken::Kind fKind;     // of the value; `kOpen` and `kClose` for groups, `kEnd` for an id without a value
  std::string_view fID;    // empty where there is none
  std::string_view fText;  // the value as it stands; a block is its data
  std::size_t fDepth;
  std::size_t fOffset;
};

struct TokenCounts {
  std::size_t fGroups = 0;
  std::size_t fValues = 0;
  std::size_t fDeepest = 0;
};

// Hands the items of `inBytes` to the listener, in their order. A file that is not whole ends with a `UserError` that
// names `inName`, the line and the byte, after the items in front of that place.
TokenCounts ReadTokenFile(const std::string& inName, const std::vector<uint8>& inBytes,
                          const std::function<void(const TokenItem&)>& inListener);

}  // namespace qlx::host
