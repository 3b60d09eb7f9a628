#include "MCArrayIterator.h"

namespace qlx::detail {

bool ArrayCursor::Next() noexcept {
  if (!MC_ASSERT_TEXT(More(), "Went past the end of the Array!!!")) {
    return false;
  }
  ++fCurrentIndex;
  return More();
}

bool ArrayCursor::Previous() noexcept {
  if (!MC_ASSERT_TEXT(fCurrentIndex != kBeforeFirst, "Went past the beginning of the Array!!!")) {
    return false;
  }
  --fCurrentIndex;
  return More();
}

void ArrayCursor::Advance() noexcept {
  if (fCurrentIndex != kEndIndex && ++fCurrentIndex >= fArray.GetElemCount()) {
    fCurrentIndex = kEndIndex;
  }
}

}  // namespace qlx::detail
