#include <algorithm>
#include <cstring>
#include <utility>

#include "MCMemory.h"
#include "MCPlatformText.h"
#include "MCString.h"

namespace qlx {

TMCDynamicString::TMCDynamicString(const char* inText) : TMCDynamicString(inText, inText ? std::strlen(inText) : 0) {}

TMCDynamicString::TMCDynamicString(const char* inText, MCSize byteLength) {
  Initialise(0, inText, byteLength);
}

TMCDynamicString::TMCDynamicString(const TMCString& inSource) {
  Initialise(0, inSource.CStr(), inSource.ByteLength());
}

TMCDynamicString::TMCDynamicString(const TMCDynamicString& inSource)
    : TMCDynamicString(static_cast<const TMCString&>(inSource)) {}

TMCDynamicString::TMCDynamicString(const TMCString& inSource, int32 index, int32 length) {
  InitialiseSubString(0, inSource, index, length);
}

TMCDynamicString::~TMCDynamicString() {
  MCfree(std::exchange(fStringBuffer, nullptr));
}

TMCDynamicString& TMCDynamicString::operator=(const TMCString& inSource) {
  TMCString::operator=(inSource);
  return *this;
}

TMCDynamicString& TMCDynamicString::operator=(const TMCDynamicString& inSource) {
  if (this != &inSource && fStringBuffer && inSource.fStringBuffer && inSource.fByteLength <= fMaxLength) {
    AssignTo(fStringBuffer, inSource.fStringBuffer, inSource.fByteLength);
    return *this;
  }
  return *this = static_cast<const TMCString&>(inSource);
}

TMCDynamicString& TMCDynamicString::operator+=(uint16 inCodePageChar) {
  const char bytes[2] = {static_cast<char>(inCodePageChar >> 8), static_cast<char>(inCodePageChar)};
  const bool isPair = !PlatformHasWesternCodePage() && PlatformIsLeadByte(static_cast<uint8>(bytes[0]));
  isPair ? AppendCharacter(bytes, 2) : AppendCharacter(bytes + 1, 1);
  return *this;
}

// Unlike the fixed forms this one says nothing when it cannot append.
void TMCDynamicString::AppendCharacter(const char* inBytes, uint32 inCount) {
  const uint32 oldByteLength = fByteLength;
  if (inCount > std::numeric_limits<uint32>::max() - oldByteLength) {
    return;
  }
  const uint32 newByteLength = oldByteLength + inCount;
  if (newByteLength > fMaxLength) {
    Reallocate(newByteLength);
  }
  if (newByteLength <= fMaxLength) {
    std::memcpy(fStringBuffer + oldByteLength, inBytes, inCount);
    fStringBuffer[newByteLength] = 0;
    fByteLength = newByteLength;
    ++fLength;
    fCount.SetKnown(false);
  }
}

TMCDynamicString& TMCDynamicString::operator+=(const TMCString& inText) {
  TMCString::operator+=(inText);
  return *this;
}

TMCDynamicString& TMCDynamicString::operator+=(const TMCDynamicString& inText) {
  if (fStringBuffer && inText.fStringBuffer && inText.fByteLength <= fMaxLength - fByteLength) {
    AppendTo(fStringBuffer, inText.fStringBuffer, inText.fByteLength);
    return *this;
  }
  return *this += static_cast<const TMCString&>(inText);
}

void TMCDynamicString::Insert(const TMCString& inText, int32 index) {
  if (!CanInsert(inText, index)) {
    return;
  }
  const uint32 added = inText.ByteLength();
  const uint32 insertAt = ByteOffset(static_cast<uint32>(index));
  const uint64 newByteLength = static_cast<uint64>(fByteLength) + added;
  char* const block = newByteLength < std::numeric_limits<uint32>::max()
                          ? static_cast<char*>(MCmalloc(static_cast<MCSize>(newByteLength) + 1))
                          : nullptr;
  if (!MC_ASSERT(block)) {
    return;
  }
  const char* const text = CStr();
  MCMemoryCopy(block, text, insertAt);
  MCMemoryCopy(block + insertAt, inText.CStr(), added);
  MCMemoryCopy(block + insertAt + added, text + insertAt, fByteLength - insertAt);
  block[newByteLength] = 0;
  MCfree(std::exchange(fStringBuffer, block));
  fMaxLength = static_cast<uint32>(newByteLength);
  fByteLength = fMaxLength;
  CountCharacters();
}

void TMCDynamicString::SetByteLength(uint32 byteLength) {
  if (byteLength > fMaxLength) {
    Reallocate(byteLength);
  }
  TMCString::SetByteLength(byteLength);
}

void TMCDynamicString::SetMaxLength(uint32 maxLength) {
  if (maxLength != fMaxLength) {
    Reallocate(maxLength);
  }
}

char* TMCDynamicString::Buffer() {
  MC_ASSERT_TEXT(fStringBuffer, "fStringBuffer != NULL");
  fCount.SetKnown(false);
  return fStringBuffer;
}

void TMCDynamicString::Reallocate(uint32 maxLength) {
  const MCSize bytes = static_cast<MCSize>(maxLength) + 1;
  char* block = nullptr;
  if (bytes > maxLength) {  // else the sum has wrapped
    block = static_cast<char*>(fStringBuffer ? MCrealloc(fStringBuffer, bytes) : MCmalloc(bytes));
  }
  if (!block) {
    MCfree(std::exchange(fStringBuffer, nullptr));
    fMaxLength = 0;
    fByteLength = 0;
    fLength = 0;
    return;
  }
  const bool cut = maxLength < fByteLength;
  fStringBuffer = block;
  fMaxLength = maxLength;
  fByteLength = std::min(fByteLength, maxLength);
  block[fByteLength] = 0;
  if (cut) {
    CountCharacters();
  }
}

}  // namespace qlx
