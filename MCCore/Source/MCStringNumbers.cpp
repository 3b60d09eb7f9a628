// Numbers and ids as text, and text as numbers.
#include <cstring>

#include "MCString.h"

namespace qlx {

void TMCString::FromInt(int32 inValue) {
  char scratch[13];
  char* const end = scratch + sizeof scratch;
  char* first = end;
  uint32 rest = inValue < 0 ? 0U - static_cast<uint32>(inValue) : static_cast<uint32>(inValue);
  do {
    *--first = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest);
  if (inValue < 0) {
    *--first = '-';
  }
  Assign(first, static_cast<MCSize>(end - first));
}

void TMCString::FromID(MCID id, bool literal) {
  constexpr MCID kLargestNumber = 0x21212121;
  if (!literal && id <= kLargestNumber) {
    FromInt(static_cast<int32>(id));
    return;
  }
  const char text[5] = {static_cast<char>(id >> 24), static_cast<char>(id >> 16), static_cast<char>(id >> 8),
                        static_cast<char>(id), 0};
  Assign(text, literal ? 4 : std::strlen(text));
}

}  // namespace qlx
