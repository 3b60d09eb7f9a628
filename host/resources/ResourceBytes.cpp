#include "ResourceBytes.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>

#include "MCUtf8.h"
#include "ResourceError.h"

namespace qlx::host {

namespace {

constexpr std::size_t kLongestText = 0xFFFF;

// Bytes of the well-formed character at the start of the text; 0 when there is none.
std::size_t CharacterLength(std::string_view inText) noexcept {
  const auto first = static_cast<uint8>(inText[0]);
  const std::size_t length = MCUtf8SequenceLength(first);
  if (length == 0 || length > inText.size() || first == 0) {
    return 0;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<uint8>(inText[i]) & 0xC0) != 0x80) {
      return 0;
    }
  }
  const auto second = length > 1 ? static_cast<uint8>(inText[1]) : uint8{0x80};
  const bool isBad = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                     (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
  return isBad ? 0 : length;
}

}  // namespace

bool IsUtf8Text(std::string_view inText) noexcept {
  return Utf8StartLength(inText) == inText.size();
}

std::size_t Utf8StartLength(std::string_view inText) noexcept {
  std::size_t start = 0;
  while (start < inText.size()) {
    const std::size_t length = CharacterLength(inText.substr(start));
    if (length == 0) {
      break;
    }
    start += length;
  }
  return start;
}

void ResourceWriter::PutU16(uint16 inValue) {
  PutU8(static_cast<uint8>(inValue >> 8));
  PutU8(static_cast<uint8>(inValue));
}

void ResourceWriter::PutU32(uint32 inValue) {
  PutU16(static_cast<uint16>(inValue >> 16));
  PutU16(static_cast<uint16>(inValue));
}

void ResourceWriter::PutReal(real32 inValue) {
  PutU32(std::bit_cast<uint32>(inValue));
}

void ResourceWriter::PutGuid(const MCGuid& inValue) {
  PutU32(inValue.fData1);
  PutU16(inValue.fData2);
  PutU16(inValue.fData3);
  for (const uint8 byte : inValue.fData4) {
    PutU8(byte);
  }
}

void ResourceWriter::PutText(std::string_view inText) {
  const std::string_view text = inText.substr(0, kLongestText);
  PutU16(static_cast<uint16>(text.size()));
  fBytes.insert(fBytes.end(), text.begin(), text.end());
}

const uint8* ResourceReader::Take(std::size_t inSize, const char* inWhat) {
  fLast = fOffset;
  if (inSize > Left()) {
    Fail(fmt::format("ends inside {}", inWhat));
  }
  fOffset += inSize;
  return fBytes.data() + fLast;
}

uint16 ResourceReader::GetU16() {
  const uint8* const bytes = Take(2, "a number of two bytes");
  return static_cast<uint16>(bytes[0] << 8 | bytes[1]);
}

uint32 ResourceReader::GetU32() {
  const uint8* const bytes = Take(4, "a number of four bytes");
  return static_cast<uint32>(bytes[0]) << 24 | static_cast<uint32>(bytes[1]) << 16 |
         static_cast<uint32>(bytes[2]) << 8 | static_cast<uint32>(bytes[3]);
}

real32 ResourceReader::GetReal() {
  const auto value = std::bit_cast<real32>(GetU32());
  if (!std::isfinite(value)) {
    Fail("a number that is not finite");
  }
  return value;
}

MCGuid ResourceReader::GetGuid() {
  MCGuid guid{};
  guid.fData1 = GetU32();
  guid.fData2 = GetU16();
  guid.fData3 = GetU16();
  std::copy_n(Take(8, "a class id"), 8, guid.fData4);
  return guid;
}

std::string ResourceReader::GetText() {
  const std::size_t length = GetU16();
  if (length > Left()) {
    Fail(fmt::format("a text of {} bytes, of which {} are there", length, Left()));
  }
  const uint8* const bytes = Take(length, "a text");
  std::string text(reinterpret_cast<const char*>(bytes), length);
  if (!IsUtf8Text(text)) {
    Fail("a text that is not UTF-8");
  }
  return text;
}

uint16 ResourceReader::GetCount(std::size_t inSmallest) {
  const uint16 count = GetU16();
  if (count > Left() / inSmallest) {
    Fail(fmt::format("a count of {}, for which {} bytes are too few", count, Left()));
  }
  return count;
}

void ResourceReader::End() const {
  if (Left() != 0) {
    throw ResourceError(fmt::format("{} {}, byte {}: {} bytes too many", QuotedID(fType), fID, fOffset, Left()));
  }
}

void ResourceReader::Fail(const std::string& inProblem) const {
  throw ResourceError(fmt::format("{} {}, byte {}: {}", QuotedID(fType), fID, fLast, inProblem));
}

}  // namespace qlx::host
