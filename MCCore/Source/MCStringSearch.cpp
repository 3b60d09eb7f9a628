// Finding texts, characters and bytes.
#include <string_view>

#include "MCString.h"
#include "MCStringLengths.h"

namespace qlx {

using detail::SequenceLengthAt;

namespace {

// An offset as the index that the searches answer.
int32 IndexOf(MCSize inOffset) {
  return inOffset == std::string_view::npos ? -1 : static_cast<int32>(inOffset);
}

}  // namespace

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

int32 TMCString::FindBytes(const TMCString& inText, int32 startIndex) const {
  if (startIndex < 0 || inText.fByteLength == 0) {
    return -1;
  }
  const std::string_view wanted(inText.CStr(), inText.fByteLength);
  return IndexOf(std::string_view(CStr(), fByteLength).find(wanted, static_cast<MCSize>(startIndex)));
}

int32 TMCString::FindByte(char inByte, int32 startIndex) const {
  if (startIndex < 0) {
    return -1;
  }
  return IndexOf(std::string_view(CStr(), fByteLength).find(inByte, static_cast<MCSize>(startIndex)));
}

}  // namespace qlx
