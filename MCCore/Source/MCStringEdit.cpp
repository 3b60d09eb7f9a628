// Changes inside a text.
#include <algorithm>

#include "MCMemory.h"
#include "MCPlatformText.h"
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
  const uint32 insertAt = ByteOffset(static_cast<uint32>(index));
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
  const uint32 first = ByteOffset(static_cast<uint32>(index));
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

void TMCString::Extract(int32 index, int32 length) {
  const auto end = static_cast<int64>(fLength);
  MC_ASSERT_TEXT(index < end, "nIndex < Length()");
  const int64 following = std::max<int64>(end - std::max(index, 0), 0);
  const int64 kept = std::clamp<int64>(length, 0, following);
  if (index != -1) {
    Delete(0, index);
  }
  SetLength(static_cast<uint32>(kept));
}

void TMCString::ReplaceBytes(uint32 inOffset, uint32 inCount, const char* inText, uint32 inTextCount) {
  const uint32 tail = inOffset + inCount;
  const uint32 tailBytes = fByteLength - tail;
  const uint32 newByteLength = CheckedSum(fByteLength - inCount, inTextCount);
  if (newByteLength > fByteLength) {
    SetByteLength(newByteLength);
  }
  // Without memory a growing form has lost its text.
  if (fByteLength < tail) {
    return;
  }
  char* const text = Buffer();
  const uint32 textEnd = std::min(CheckedSum(inOffset, inTextCount), fMaxLength);
  MCMemoryMove(text + textEnd, text + tail, std::min(tailBytes, fMaxLength - textEnd));
  MCMemoryCopy(text + inOffset, inText, textEnd - inOffset);
  fByteLength = std::min(newByteLength, fMaxLength);
  WriteNul();
  CountCharacters();
}

void TMCString::SetChar(uint16 inChar, int32 index) {
  const auto place = static_cast<uint32>(std::max(index, 0));
  const uint32 offset = place < fLength ? ByteOffset(place) : fByteLength;
  if (offset == fByteLength) {
    return;
  }
  char bytes[3];
  const uint32 count = MCUtf8Encode(inChar, bytes);
  const uint32 earlier = std::min(SequenceLengthAt(CStr(), offset), fByteLength - offset);
  ReplaceBytes(offset, earlier, bytes, count);
}

void TMCString::SetByte(char inByte, int32 index) {
  int32 nIndex = index;
  if (!MC_ASSERT(nIndex >= 0)) {
    nIndex = 0;
  }
  const auto place = static_cast<uint32>(nIndex);
  if (place == fByteLength) {
    MC_ASSERT_TEXT(inByte == 0, "c==0");
  } else if (MC_ASSERT_TEXT(place < fByteLength, "nIndex <= int32(fByteLength)")) {
    Buffer()[place] = inByte;
    CountCharacters();
  }
}

void TMCString::ToUpper() {
  if (fByteLength) {
    gPlatformText->fToUpper(Buffer());
    CountCharacters();
  }
}

void TMCString::ToLower() {
  if (fByteLength) {
    gPlatformText->fToLower(Buffer());
    CountCharacters();
  }
}

void TMCString::Capitalize() {
  ToLower();
  const uint8 first = GetByte(0);
  if (first >= 0x61 && first <= 0x7A) {
    Buffer()[0] = static_cast<char>(first - 0x20);
  }
}

namespace {

constexpr bool IsLineEnd(char inByte) {
  return inByte == '\r' || inByte == '\n';
}

// Bytes of the line end at `inText`, of which `inCount` bytes are there; 1 for a byte that is none.
constexpr uint32 LineEndStep(const char* inText, uint32 inCount) {
  return inCount > 1 && inText[0] == '\r' && inText[1] == '\n' ? 2 : 1;
}

}  // namespace

void TMCString::NormalizeLineEnds(int32 mode) {
  const char* const text = CStr();
  if (mode == 0 || mode == 1) {
    uint32 write = 0;
    for (uint32 i = 0; i < fByteLength;) {
      const char byte = text[i];
      i += LineEndStep(text + i, fByteLength - i);
      Buffer()[write++] = !IsLineEnd(byte) ? byte : mode == 0 ? '\r' : '\n';
    }
    fByteLength = write;
    WriteNul();
    CountCharacters();
    return;
  }
  uint32 size = 0;
  for (uint32 i = 0; i < fByteLength; i += LineEndStep(text + i, fByteLength - i)) {
    size = CheckedSum(size, IsLineEnd(text[i]) ? 2 : 1);
  }
  TMCDynamicString result;
  result.SetMaxLength(size);
  for (uint32 i = 0; i < fByteLength && result.MaxLength() == size; i += LineEndStep(text + i, fByteLength - i)) {
    if (IsLineEnd(text[i])) {
      result += '\r';
    }
    result += IsLineEnd(text[i]) ? '\n' : text[i];
  }
  if (result.ByteLength() == size) {
    Assign(result.CStr(), result.ByteLength());
  }
}

}  // namespace qlx
