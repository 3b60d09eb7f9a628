#include "MCString.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "MCException.h"
#include "MCMemory.h"
#include "MCPlatformText.h"
#include "MCUtf8.h"

namespace qlx {

namespace {

constexpr uint32 kLargestLength = std::numeric_limits<uint32>::max();

uint32 SequenceLengthAt(const char* inText, uint32 inOffset) {
  return MCUtf8SequenceLength(static_cast<uint8>(inText[inOffset]));
}

uint32 CheckedLength(MCSize byteLength) {
  MC_ASSERT((byteLength) <= static_cast<MCSize>(std::numeric_limits<uint32>::max()));
  return static_cast<uint32>(std::min<MCSize>(byteLength, kLargestLength));
}

uint32 CheckedSum(uint32 inA, uint32 inB) {
  return inB <= kLargestLength - inA ? inA + inB : kLargestLength;
}

}  // namespace

char* TMCString::Buffer() {
  ThrowPureCall();
}

const char* TMCString::CStr() const {
  // Without capacity there may be no bytes at all.
  return fMaxLength ? const_cast<TMCString*>(this)->Buffer() : "";
}

void TMCString::WriteNul() {
  if (fMaxLength) {
    Buffer()[fByteLength] = 0;
  }
}

void TMCString::CountCharacters() {
  const char* text = CStr();
  fLength = static_cast<uint32>(std::count_if(
      text, text + fByteLength, [](char byte) { return MCUtf8BeginsCharacter(static_cast<uint8>(byte)); }));
}

uint32 TMCString::ByteOffset(int32 index) const {
  if (index < 0) {
    return 0;
  }
  const char* text = CStr();
  uint32 toSkip = static_cast<uint32>(index);
  for (uint32 offset = 0; offset < fByteLength; ++offset) {
    if (SequenceLengthAt(text, offset) && toSkip-- == 0) {
      return offset;
    }
  }
  return fByteLength;
}

void TMCString::Initialise(uint32 inMaxLength, const char* inText, MCSize byteLength) {
  fMaxLength = inMaxLength;
  fByteLength = 0;
  fLength = 0;
  if (inText && byteLength) {
    Assign(inText, byteLength);
  }
  if (fByteLength == 0 && fMaxLength) {
    MCMemoryFill(0, Buffer(), static_cast<MCSize>(fMaxLength) + 1);
  }
}

void TMCString::InitialiseSubString(uint32 inMaxLength, const TMCString& inSource, int32 index, int32 length) {
  uint32 offset = 0;
  const uint32 bytes = FindSubString(inSource, index, length, offset);
  Initialise(inMaxLength, inSource.CStr() + offset, bytes);
}

uint32 TMCString::FindSubString(const TMCString& inSource, int32 index, int32 length, uint32& outOffset) {
  const uint32 first = static_cast<uint32>(std::max(index, 0));
  outOffset = 0;
  if (first >= inSource.fLength) {
    return 0;
  }
  outOffset = inSource.ByteOffset(index);
  if (length <= 0 || static_cast<uint32>(length) > inSource.fLength - first) {
    return inSource.fByteLength - outOffset;
  }
  return inSource.GetSubStringByteLength(index, static_cast<uint32>(length));
}

void TMCString::Assign(const char* inText, MCSize byteLength) {
  SetByteLength(CheckedLength(byteLength));
  if (fMaxLength) {
    MCMemoryMove(Buffer(), inText, fByteLength);
  }
  WriteNul();
  CountCharacters();
}

TMCString& TMCString::operator=(const TMCString& inSource) {
  if (this != &inSource) {
    Assign(inSource.CStr(), inSource.fByteLength);
  }
  return *this;
}

TMCString& TMCString::operator=(const char* inText) {
  if (inText) {
    Assign(inText, std::strlen(inText));
  }
  return *this;
}

TMCString& TMCString::operator+=(char inByte) {
  const uint32 oldByteLength = fByteLength;
  SetByteLength(CheckedSum(fByteLength, 1));
  if (MC_ASSERT(fByteLength > oldByteLength)) {
    Buffer()[oldByteLength] = inByte;
    WriteNul();
    ++fLength;
  }
  return *this;
}

TMCString& TMCString::operator+=(const TMCString& inText) {
  AppendBytes(inText.CStr(), inText.fByteLength);
  return *this;
}

TMCString& TMCString::operator+=(const char* inText) {
  if (inText) {
    AppendBytes(inText, CheckedLength(std::strlen(inText)));
  }
  return *this;
}

void TMCString::AppendBytes(const char* inText, uint32 inCount) {
  if (inCount == 0) {
    return;
  }
  const uint32 oldByteLength = fByteLength;
  // A part of this very text moves when the text grows.
  const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(inText) - reinterpret_cast<std::uintptr_t>(CStr());
  SetByteLength(CheckedSum(oldByteLength, inCount));
  // Without memory a growing form has lost its text.
  if (fByteLength > oldByteLength) {
    const char* const source = offset < oldByteLength ? CStr() + offset : inText;
    MCMemoryMove(Buffer() + oldByteLength, source, fByteLength - oldByteLength);
  }
  WriteNul();
  CountCharacters();
}

bool TMCString::operator<(const TMCString& inText) const {
  return PlatformCompareCaseless(CStr(), inText.CStr()) < 0;
}
bool TMCString::operator>(const TMCString& inText) const {
  return PlatformCompareCaseless(CStr(), inText.CStr()) > 0;
}
bool TMCString::operator<=(const TMCString& inText) const {
  return PlatformCompareCaseless(CStr(), inText.CStr()) <= 0;
}
bool TMCString::operator>=(const TMCString& inText) const {
  return PlatformCompareCaseless(CStr(), inText.CStr()) >= 0;
}
bool TMCString::operator==(const TMCString& inText) const {
  return std::strcmp(CStr(), inText.CStr()) == 0;
}
bool TMCString::operator!=(const TMCString& inText) const {
  return std::strcmp(CStr(), inText.CStr()) != 0;
}
bool TMCString::operator==(const char* inText) const {
  return inText && std::strcmp(CStr(), inText) == 0;
}

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

void TMCString::SetByteLength(uint32 byteLength) {
  MC_ASSERT(byteLength <= fMaxLength);
  fByteLength = std::min(byteLength, fMaxLength);
}

void TMCString::SetMaxLength(uint32) {}

void TMCString::SetLength(uint32 length) {
  const char* const buffer = Buffer();
  if (!MC_ASSERT_TEXT(buffer && !MCCheckDeceased(buffer), "Bad Pointer") || length == fLength ||
      !MC_ASSERT(length < fLength)) {
    return;
  }
  SetByteLength(ByteOffset(static_cast<int32>(length)));
  WriteNul();
  CountCharacters();
}

uint32 TMCString::GetSubStringByteLength(int32 inIndex, uint32 inLength) const {
  if (inLength == 0) {
    return 0;
  }
  const uint32 first = static_cast<uint32>(std::max(inIndex, 0));
  const uint32 following = fLength - std::min(first, fLength);
  const uint32 length =
      MC_ASSERT_TEXT(inLength <= following, "Substring extends past end of string!") ? inLength : following;
  if (length == 0) {
    return 0;
  }
  const uint32 last = ByteOffset(static_cast<int32>(first + length - 1));
  // A character that was split by a cut has fewer bytes than its first one says.
  const uint32 end = std::min(last + SequenceLengthAt(CStr(), last), fByteLength);
  return end - ByteOffset(inIndex);
}

uint16 TMCString::GetChar(int32 index) const {
  const int32 place = MC_ASSERT_TEXT(index >= 0, "Index Pb in GetChar") ? index : 0;
  if (static_cast<uint32>(place) >= fLength) {
    return 0;
  }
  const uint32 offset = ByteOffset(place);
  return MCUtf8Decode(CStr() + offset, fByteLength - offset);
}

uint8 TMCString::GetByte(int32 index) const {
  const uint32 place = MC_ASSERT_TEXT(index >= 0, "Index Pb in GetChar") ? static_cast<uint32>(index) : 0;
  return place < fByteLength ? static_cast<uint8>(CStr()[place]) : uint8{0};
}

void TMCString::ToCString(char* outDest) const {
  MCMemoryCopy(outDest, CStr(), fByteLength);
  outDest[fByteLength] = 0;
}

MCID TMCString::ToID() const {
  MCID id = 0;
  for (int32 i = 0; i < 4; ++i) {
    id = id << 8 | GetByte(i);
  }
  return id;
}

int32 TMCString::Find(const TMCString& inText, int32 startIndex) const {
  if (startIndex < 0 || static_cast<uint32>(startIndex) > fLength || inText.fByteLength == 0) {
    return -1;
  }
  const std::string_view text(CStr(), fByteLength);
  const std::string_view wanted(inText.CStr(), inText.fByteLength);
  int32 index = startIndex;
  for (MCSize offset = ByteOffset(startIndex); offset < text.size(); ++offset) {
    if (MCUtf8BeginsCharacter(static_cast<uint8>(text[offset]))) {
      if (text.substr(offset, wanted.size()) == wanted) {
        return index;
      }
      ++index;
    }
  }
  return -1;
}

int32 TMCString::FindChar(uint16 inChar, int32 startIndex) const {
  if (startIndex < 0 || static_cast<uint32>(startIndex) > fLength) {
    return -1;
  }
  const char* const text = CStr();
  int32 index = startIndex;
  for (uint32 offset = ByteOffset(startIndex); offset < fByteLength; ++index) {
    const uint32 step = SequenceLengthAt(text, offset);
    if (!MC_ASSERT_TEXT(step, "Invalid UTF8 string")) {
      return -1;
    }
    if (MCUtf8Decode(text + offset, fByteLength - offset) == inChar) {
      return index;
    }
    offset += step;
  }
  return -1;
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

TMCString1023 operator+(const TMCString& inA, const TMCString& inB) {
  TMCString1023 sum(inA);
  sum += inB;
  return sum;
}

}  // namespace qlx
