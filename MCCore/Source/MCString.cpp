#include "MCString.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "MCException.h"
#include "MCMemory.h"
#include "MCPlatformText.h"
#include "MCStringLengths.h"
#include "MCUtf8.h"

namespace qlx {

using detail::CheckedSum;
using detail::SequenceLengthAt;

namespace {

uint32 CheckedLength(MCSize byteLength) {
  MC_ASSERT((byteLength) <= static_cast<MCSize>(std::numeric_limits<uint32>::max()));
  return static_cast<uint32>(std::min<MCSize>(byteLength, std::numeric_limits<uint32>::max()));
}

}  // namespace

char* TMCString::Buffer() {
  ThrowPureCall();
}

const char* TMCString::CStr() const {
  // Without capacity there may be no bytes at all.
  return fMaxLength ? const_cast<TMCString*>(this)->CountedBytes() : "";
}

char* TMCString::CountedBytes() {
  const MCTextCount count = fCount;
  char* const bytes = Buffer();
  fCount = count;
  return bytes;
}

void TMCString::WriteNul() {
  if (fMaxLength) {
    Buffer()[fByteLength] = 0;
  }
}

void TMCString::CountCharacters() {
  fLength = detail::CountCharacters(CStr(), fByteLength);
  fCount.SetKnown(true);
}

uint32 TMCString::ByteOffset(uint32 index) const {
  const char* text = CStr();
  uint32 toSkip = index;
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
  outOffset = inSource.ByteOffset(first);
  if (length <= 0 || static_cast<uint32>(length) > inSource.fLength - first) {
    return inSource.fByteLength - outOffset;
  }
  return inSource.GetSubStringByteLength(index, static_cast<uint32>(length));
}

void TMCString::Assign(const char* inText, MCSize byteLength) {
  if (byteLength <= fMaxLength) {
    fByteLength = static_cast<uint32>(byteLength);
  } else {
    SetByteLength(CheckedLength(byteLength));
  }
  if (fMaxLength == 0) {
    fLength = 0;
    return;
  }
  AssignTo(Buffer(), inText, fByteLength);
}

void TMCString::AssignTo(char* outBytes, const char* inText, uint32 inCount) {
  fLength = detail::CopyCounted(outBytes, inText, inCount);
  fCount.SetKnown(true);
  fByteLength = inCount;
  outBytes[inCount] = 0;
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
  if (fByteLength < fMaxLength) {
    AddByte(CountedBytes(), inByte);
    return *this;
  }
  const uint32 oldByteLength = fByteLength;
  SetByteLength(CheckedSum(oldByteLength, 1));
  if (MC_ASSERT(fByteLength > oldByteLength)) {
    fByteLength = oldByteLength;
    AddByte(Buffer(), inByte);
  }
  return *this;
}

void TMCString::ReportFull() {
  const uint32 oldByteLength = fByteLength;
  SetByteLength(CheckedSum(oldByteLength, 1));
  MC_ASSERT(fByteLength > oldByteLength);
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

uint32 TMCString::TrueLength(const char* inBytes) const {
  return fCount.IsKnown() ? fLength : detail::CountCharacters(inBytes, fByteLength);
}

void TMCString::AppendTo(char* ioBytes, const char* inText, uint32 inCount) {
  if (inCount == 0) {
    return;
  }
  // Bytes count each for itself, so the sum is what a count of all gives.
  fLength = TrueLength(ioBytes) + detail::CopyCounted(ioBytes + fByteLength, inText, inCount);
  fCount.SetKnown(true);
  fByteLength += inCount;
  ioBytes[fByteLength] = 0;
}

void TMCString::AppendBytes(const char* inText, uint32 inCount) {
  if (inCount == 0) {
    return;
  }
  const uint32 oldByteLength = fByteLength;
  if (inCount <= fMaxLength - oldByteLength) {
    AppendTo(CountedBytes(), inText, inCount);
    return;
  }
  // A part of this very text moves when the text grows.
  const char* const oldBytes = CStr();
  const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(inText) - reinterpret_cast<std::uintptr_t>(oldBytes);
  const uint32 before = TrueLength(oldBytes);
  SetByteLength(CheckedSum(oldByteLength, inCount));
  // Without memory a growing form has lost its text.
  if (fByteLength > oldByteLength) {
    char* const text = Buffer();
    const char* const source = offset < oldByteLength ? text + offset : inText;
    MCMemoryMove(text + oldByteLength, source, fByteLength - oldByteLength);
    text[fByteLength] = 0;
    fLength = before + detail::CountCharacters(text + oldByteLength, fByteLength - oldByteLength);
    fCount.SetKnown(true);
    return;
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
// The raw value of the comparison is the truth here: less and greater are both unequal.
bool TMCString::operator!=(const TMCString& inText) const {
  return std::strcmp(CStr(), inText.CStr());
}
bool TMCString::operator==(const char* inText) const {
  return inText && std::strcmp(CStr(), inText) == 0;
}

void TMCString::SetByteLength(uint32 byteLength) {
  MC_ASSERT(byteLength <= fMaxLength);
  fByteLength = std::min(byteLength, fMaxLength);
  fCount.SetKnown(false);
}

void TMCString::SetMaxLength(uint32) {}

void TMCString::SetLength(uint32 length) {
  const char* const buffer = Buffer();
  if (!MC_ASSERT_TEXT(buffer && !MCCheckDeceased(buffer), "Bad Pointer") || length == fLength ||
      !MC_ASSERT(length < fLength)) {
    return;
  }
  SetByteLength(ByteOffset(length));
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
  const uint32 last = ByteOffset(first + length - 1);
  // A character that was split by a cut has fewer bytes than its first one says.
  const uint32 end = std::min(last + SequenceLengthAt(CStr(), last), fByteLength);
  return end - ByteOffset(first);
}

uint16 TMCString::GetChar(int32 index) const {
  const uint32 place = MC_ASSERT_TEXT(index >= 0, "Index Pb in GetChar") ? static_cast<uint32>(index) : 0;
  if (place >= fLength) {
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

void TMCString::ToPascalString(uint8* outDest) const {
  outDest[0] = static_cast<uint8>(fByteLength);
  MCMemoryCopy(outDest + 1, CStr(), fByteLength);
}

void TMCString::FromPascalString(const uint8* inText) {
  if (inText) {
    Assign(reinterpret_cast<const char*>(inText + 1), inText[0]);
  }
}

MCID TMCString::ToID() const {
  MCID id = 0;
  for (int32 i = 0; i < 4; ++i) {
    id = id << 8 | GetByte(i);
  }
  return id;
}

bool TMCString::CompareCaseless(const TMCString& inText) const {
  TMCString1023 mine(*this);
  TMCString1023 other(inText);
  mine.ToUpper();
  other.ToUpper();
  return mine == other;
}

uint32 MCStrLen(const char* inText) {
  if (PlatformHasWesternCodePage()) {
    return static_cast<uint32>(std::strlen(inText));
  }
  uint32 count = 0;
  for (; *inText; inText = gPlatformText->fNextCharacter(inText)) {
    ++count;
  }
  return count;
}

TMCString1023 operator+(const TMCString& inA, const TMCString& inB) {
  TMCString1023 sum(inA);
  sum += inB;
  return sum;
}

}  // namespace qlx
