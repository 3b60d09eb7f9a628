// Finding texts, characters and bytes.
#include <string_view>

#include "MCMemory.h"
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
  const uint32 start = ByteOffset(static_cast<uint32>(startIndex));
  const MCSize found = FindOffset(inText, start);
  if (found == std::string_view::npos) {
    return -1;
  }
  const auto scanned = static_cast<uint32>(found) - start;
  // Those that begin no character are counted in 16 bits, an established limit: past more of them the index is too
  // large by a multiple of 65536.
  const auto skipped = static_cast<uint16>(scanned - detail::CountCharacters(CStr() + start, scanned));
  return static_cast<int32>(static_cast<uint32>(startIndex) + scanned - skipped);
}

// A text that begins with no character is found nowhere: the places that are looked at begin one.
MCSize TMCString::FindOffset(const TMCString& inText, MCSize inStart) const {
  const std::string_view wanted(inText.CStr(), inText.fByteLength);
  if (wanted.empty() || SequenceLengthAt(wanted.data(), 0) == 0) {
    return std::string_view::npos;
  }
  return std::string_view(CStr(), fByteLength).find(wanted, inStart);
}

int32 TMCString::FindChar(uint16 inChar, int32 startIndex) const {
  if (startIndex < 0 || static_cast<uint32>(startIndex) > fLength) {
    return -1;
  }
  const char* const text = CStr();
  int32 index = startIndex;
  for (uint32 offset = ByteOffset(static_cast<uint32>(startIndex)); offset < fByteLength; ++index) {
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

int32 TMCString::ReverseFindChar(uint16 inChar, int32 startIndex) const {
  const char* const text = CStr();
  int32 found = -1;
  int32 index = 0;
  for (uint32 offset = 0; offset < fByteLength && index <= startIndex; ++offset) {
    if (SequenceLengthAt(text, offset)) {
      if (MCUtf8Decode(text + offset, fByteLength - offset) == inChar) {
        found = index;
      }
      ++index;
    }
  }
  return found;
}

template <class Visit>
uint32 TMCString::VisitHits(const TMCString& inFind, uint32 inStart, Visit&& inVisit) const {
  uint32 position = inStart;
  for (MCSize hit; (hit = FindOffset(inFind, position)) != std::string_view::npos;) {
    inVisit(position, static_cast<uint32>(hit) - position);
    position = static_cast<uint32>(hit);
    // As many characters as the text that was looked for says it has, and one at least.
    uint32 left = inFind.fLength;
    do {
      position = NextOffset(position);
    } while (position < fByteLength && left-- > 1);
  }
  return position;
}

int32 TMCString::Replace(const TMCString& inFind, const TMCString& inReplacement, int32 startIndex) {
  if (startIndex < 0 || static_cast<uint32>(startIndex) > fLength) {
    return 0;
  }
  // What stands before the start is not taken over: a property of this operation.
  const uint32 start = ByteOffset(static_cast<uint32>(startIndex));
  const uint32 added = inReplacement.fByteLength;
  int32 count = 0;
  uint32 size = 0;
  const uint32 rest = VisitHits(inFind, start, [&](uint32, uint32 before) {
    size = detail::CheckedSum(size, detail::CheckedSum(before, added));
    ++count;
  });
  if (count == 0) {
    return 0;
  }
  TMCDynamicString result;
  result.SetByteLength(detail::CheckedSum(size, fByteLength - rest));
  if (result.fMaxLength == 0 && size + (fByteLength - rest) != 0) {
    return 0;
  }
  char* write = result.fMaxLength ? result.Buffer() : nullptr;
  const auto append = [&write](const char* text, uint32 bytes) {
    MCMemoryCopy(write, text, bytes);
    write += bytes;
  };
  VisitHits(inFind, start, [&](uint32 position, uint32 before) {
    append(CStr() + position, before);
    append(inReplacement.CStr(), added);
  });
  append(CStr() + rest, fByteLength - rest);
  Assign(result.CStr(), result.ByteLength());
  return count;
}

uint32 TMCString::NextOffset(uint32 inOffset) const {
  const char* const text = CStr();
  do {
    ++inOffset;
  } while (inOffset < fByteLength && !SequenceLengthAt(text, inOffset));
  return inOffset;
}

}  // namespace qlx
