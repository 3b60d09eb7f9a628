// A text as 16-bit characters that end with a 0, for what takes no other.
#pragma once

#include "MCArray.h"
#include "MCString.h"

namespace qlx {

// Without memory an assignment is reported and leaves the text as it was.
class TMCUnicodeString {
 public:
  TMCUnicodeString() noexcept = default;
  explicit TMCUnicodeString(const TMCString& inText) { *this = inText; }
  explicit TMCUnicodeString(const char* inText);

  TMCUnicodeString& operator=(const TMCString& inText);
  // Null leaves the text as it is. Part of this very text may be assigned.
  TMCUnicodeString& operator=(const uint16* inText);

  // Never null. Valid until the text changes.
  const uint16* CStr() const noexcept;
  // Without the 0 at the end.
  uint32 Length() const noexcept { return fUnits.GetElemCount() ? fUnits.GetElemCount() - 1 : 0; }

 private:
  TMCArray<uint16> fUnits;
};

}  // namespace qlx
