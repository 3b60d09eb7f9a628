// Changes inside a text.
#include <algorithm>

#include "MCMemory.h"
#include "MCString.h"
#include "MCStringLengths.h"

namespace qlx {

using detail::CheckedSum;
using detail::SequenceLengthAt;

bool TMCString::CanInsert(const TMCString& inText, int32 index) const {
  return inText.fByteLength != 0 && index >= 0 && static_cast<uint32>(index) <= fLength;
}

void TMCString::Insert(const TMCString& inText, int32 index) {
  if (!CanInsert(inText, index)) {
    return;
  }
  if (&inText == this) {
    Insert(TMCString1023(inText), index);
    return;
  }
  const uint32 added = inText.fByteLength;
  const uint32 insertAt = ByteOffset(index);
  const uint32 newByteLength = CheckedSum(fByteLength, added);
  const uint32 moveEnd = std::min(CheckedSum(insertAt, added), fMaxLength);
  const bool fits = newByteLength <= fMaxLength;
  char* const baseString = Buffer();
  if (fits) {
    const char* const moveTo = baseString + moveEnd;
    MC_ASSERT(moveTo < (baseString + fMaxLength));
  } else {
    MC_ASSERT(newByteLength <= fMaxLength);
  }
  // What does not fit falls off the end: first of the tail, then of the operand.
  const uint32 end = std::min(newByteLength, fMaxLength);
  MCMemoryMove(baseString + moveEnd, baseString + insertAt, end - moveEnd);
  MCMemoryCopy(baseString + insertAt, inText.CStr(), moveEnd - insertAt);
  SetByteLength(end);
  WriteNul();
  if (fits) {
    fLength += inText.fLength;
  }
}

bool TMCString::Delete(int32 index, int32 count) {
  if (index < 0 || count < 1 || static_cast<uint32>(index) >= fLength) {
    return false;
  }
  const uint32 removed = std::min(static_cast<uint32>(count), fLength - static_cast<uint32>(index));
  const uint32 first = ByteOffset(index);
  const char* const text = CStr();
  uint32 end = first;
  uint32 step = 1;
  for (uint32 i = 0; i < removed && end < fByteLength; ++i) {
    if (const uint32 length = SequenceLengthAt(text, end)) {
      step = length;
    }
    end += step;
  }
  end = std::min(end, fByteLength);
  fLength -= static_cast<uint32>(static_cast<int32>(static_cast<int16>(removed)));
  MCMemoryMove(Buffer() + first, Buffer() + end, fByteLength - end);
  SetByteLength(fByteLength - (end - first));
  WriteNul();
  return true;
}

bool TMCString::DeleteBytes(int32 index, int32 count) {
  if (index < 0 || count < 1 || static_cast<uint32>(index) >= fByteLength) {
    return false;
  }
  const auto first = static_cast<uint32>(index);
  const uint32 removed = std::min(static_cast<uint32>(count), fByteLength - first);
  char* const text = Buffer();
  MCMemoryMove(text + first, text + first + removed, fByteLength - first - removed + 1);
  // The count of bytes is taken for one of characters: an established property of this operation.
  SetLength(fLength - std::min(removed, fLength));
  return true;
}

}  // namespace qlx
