// Values put in place of the numbered markers of a text.
#include <algorithm>

#include "MCPtrArray.h"
#include "MCString.h"

namespace qlx {

namespace {

// More than any value needs that ends by itself: one without its marker that meets all markers of a full text, and
// in the worst case moves each past all others.
uint64 LargestCountOfSubstitutions(const TMCString& inText) {
  constexpr uint64 kMost = 1 << 20;
  const uint64 room = inText.MaxLength();
  return std::max(room, std::min(kMost, room * room / 4 + room));
}

}  // namespace

void SubstituteParam(TMCString& ioText, const TMCString& inValue, int32 inNumber) {
  TMCString15 marker("^");
  TMCString15 number;
  number.FromInt(inNumber);
  marker += number;
  uint64 left = LargestCountOfSubstitutions(ioText);
  for (int32 index; (index = ioText.Find(marker)) >= 0; --left) {
    if (!MC_ASSERT_TEXT(left, "SubstituteParam: the value holds its own marker")) {
      return;
    }
    // A text that was cut counts fewer characters than it has; past those nothing is deleted.
    if (!ioText.Delete(index, static_cast<int32>(marker.Length()))) {
      return;
    }
    ioText.Insert(inValue, index);
  }
}

void SubstituteParams(TMCString& ioText, const TMCPtrArray<TMCString>& inValues) {
  int32 number = 0;
  for (const TMCString* const arg : inValues) {
    if (MC_ASSERT(arg)) {
      SubstituteParam(ioText, *arg, number);
    }
    ++number;
  }
}

}  // namespace qlx
