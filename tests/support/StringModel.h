// What the string family's operations do, written plainly over std::string: the properties that surprise included. The
// real forms are run beside it.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "MCTypes.h"

namespace qlx::test {

class StringModel {
 public:
  StringModel(uint32 inMaxLength, bool inGrows) : fMaxLength(inMaxLength), fGrows(inGrows) {}

  static uint32 Sequence(char inByte) {
    const auto byte = static_cast<uint8>(inByte);
    return byte < 0x80 ? 1 : byte < 0xC2 ? 0 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : byte < 0xF5 ? 4 : 0;
  }
  static uint32 Count(const std::string& inBytes) {
    return static_cast<uint32>(std::count_if(inBytes.begin(), inBytes.end(), [](char b) { return Sequence(b) > 0; }));
  }
  static std::string Encode(uint16 inChar) {
    const auto tail = [&](int shift) { return static_cast<char>(0x80 + (inChar >> shift) % 64); };
    if (inChar < 0x80) {
      return {static_cast<char>(inChar)};
    }
    if (inChar < 0x800) {
      return {static_cast<char>(0xC0 + inChar / 64), tail(0)};
    }
    return {static_cast<char>(0xE0 + inChar / 4096), tail(6), tail(0)};
  }
  uint32 Offset(uint32 inIndex) const {
    for (uint32 i = 0; i < Size(); ++i) {
      if (Sequence(fBytes[i]) && inIndex-- == 0) {
        return i;
      }
    }
    return Size();
  }
  uint16 Decode(uint32 inOffset) const {
    const auto byte = [&](uint32 i) -> uint32 {
      return inOffset + i < Size() ? static_cast<uint8>(fBytes[inOffset + i]) : 0;
    };
    const uint32 length = inOffset < Size() ? Sequence(fBytes[inOffset]) : 0;
    uint32 value = length == 1 ? byte(0) : length == 2 ? byte(0) % 32 : length == 3 ? byte(0) : 0;
    for (uint32 i = 1; i < length; ++i) {
      value = value * 64 + byte(i) % 64;
    }
    return static_cast<uint16>(value);
  }

  void Assign(const std::string& inBytes) {
    if (fGrows) {
      fMaxLength = std::max(fMaxLength, static_cast<uint32>(inBytes.size()));
    }
    fBytes = inBytes.substr(0, fMaxLength);
    fLength = Count(fBytes);
  }
  void Append(const std::string& inBytes) {
    if (!inBytes.empty()) {
      Assign(fBytes + inBytes);
    }
  }
  void AppendChar(char inByte) {
    if (Size() < fMaxLength || fGrows) {
      const uint32 length = fLength + 1;
      Assign(fBytes + inByte);
      fLength = length;
    }
  }
  void Insert(const std::string& inBytes, int32 index) {
    if (inBytes.empty() || index < 0 || static_cast<uint32>(index) > fLength) {
      return;
    }
    std::string whole = fBytes;
    whole.insert(Offset(static_cast<uint32>(index)), inBytes);
    const bool fits = whole.size() <= fMaxLength;
    const uint32 length = fLength + (fits ? Count(inBytes) : 0);
    if (fGrows) {
      fMaxLength = static_cast<uint32>(whole.size());
    }
    Assign(whole);
    fLength = fGrows ? fLength : length;  // a cut one keeps its earlier length
  }
  bool Delete(int32 index, int32 count) {
    if (index < 0 || count < 1 || static_cast<uint32>(index) >= fLength) {
      return false;
    }
    const uint32 removed = std::min(static_cast<uint32>(count), fLength - static_cast<uint32>(index));
    const uint32 first = Offset(static_cast<uint32>(index));
    uint32 end = first;
    uint32 step = 1;
    for (uint32 i = 0; i < removed && end < Size(); ++i) {
      step = Sequence(fBytes[end]) ? Sequence(fBytes[end]) : step;
      end += step;
    }
    fBytes.erase(first, end - first);
    fLength -= static_cast<uint32>(static_cast<int16>(removed));
    return true;
  }
  bool DeleteBytes(int32 index, int32 count) {
    if (index < 0 || count < 1 || static_cast<uint32>(index) >= Size()) {
      return false;
    }
    const auto first = static_cast<uint32>(index);
    const uint32 removed = std::min(static_cast<uint32>(count), Size() - first);
    const std::string tail = fBytes.substr(first + removed) + '\0';
    fBytes.replace(first, tail.size(), tail);  // what follows is not cut here
    SetLength(fLength > removed ? fLength - removed : 0);
    return true;
  }
  void SetLength(uint32 inLength) {
    if (fMaxLength && inLength < fLength) {
      fBytes.resize(Offset(inLength));
      fLength = Count(fBytes);
    }
  }
  void Extract(int32 index, int32 inLength) {
    const int32 following = std::max(static_cast<int32>(fLength) - std::max(index, 0), 0);
    const int32 kept = std::clamp(inLength, 0, following);
    if (index != -1) {
      Delete(0, index);
    }
    SetLength(static_cast<uint32>(kept));
  }
  void SetChar(uint16 inChar, int32 index) {
    const auto place = static_cast<uint32>(std::max(index, 0));
    const uint32 offset = Offset(place);
    if (place < fLength && offset < Size()) {
      std::string whole = fBytes;
      whole.replace(offset, Sequence(fBytes[offset]), Encode(inChar));
      Assign(whole);
    }
  }
  void SetByte(char inByte, int32 index) {
    if (static_cast<uint32>(std::max(index, 0)) < Size()) {
      fBytes[static_cast<uint32>(std::max(index, 0))] = inByte;
      fLength = Count(fBytes);
    }
  }
  int32 Replace(const std::string& inFind, const std::string& inReplacement, int32 start) {
    if (start < 0 || static_cast<uint32>(start) > fLength || inFind.empty() || !Sequence(inFind[0])) {
      return 0;
    }
    int32 count = 0;
    std::string result;
    std::size_t position = Offset(static_cast<uint32>(start));
    for (std::size_t hit; (hit = fBytes.find(inFind, position)) != std::string::npos; ++count) {
      result += fBytes.substr(position, hit - position) + inReplacement;
      position = hit;
      for (uint32 left = Count(inFind); left; --left) {
        do {
          ++position;
        } while (position < Size() && !Sequence(fBytes[position]));
      }
      position = std::min<std::size_t>(position, Size());
    }
    if (count) {
      Assign(result + fBytes.substr(position));
    }
    return count;
  }

  int32 Find(const std::string& inText, int32 start) const {
    if (start < 0 || static_cast<uint32>(start) > fLength || inText.empty()) {
      return -1;
    }
    uint16 skipped = 0;
    const uint32 first = Offset(static_cast<uint32>(start));
    for (uint32 i = first; i < Size(); ++i) {
      if (!Sequence(fBytes[i])) {
        ++skipped;
      } else if (fBytes.compare(i, inText.size(), inText) == 0) {
        return start + static_cast<int32>(i - first) - skipped;
      }
    }
    return -1;
  }
  int32 FindChar(uint16 inChar, int32 start) const {
    if (start < 0 || static_cast<uint32>(start) > fLength) {
      return -1;
    }
    for (uint32 i = Offset(static_cast<uint32>(start)); i < Size(); i += Sequence(fBytes[i]), ++start) {
      if (!Sequence(fBytes[i])) {
        return -1;
      }
      if (Decode(i) == inChar) {
        return start;
      }
    }
    return -1;
  }
  int32 ReverseFindChar(uint16 inChar, int32 start) const {
    std::vector<uint32> offsets;
    for (uint32 i = 0; i < Size(); ++i) {
      if (Sequence(fBytes[i])) {
        offsets.push_back(i);
      }
    }
    for (int32 i = std::min(start, static_cast<int32>(offsets.size()) - 1); i >= 0; --i) {
      if (Decode(offsets[static_cast<uint32>(i)]) == inChar) {
        return i;
      }
    }
    return -1;
  }
  int32 FindBytes(const std::string& inText, int32 start) const {
    const std::size_t found =
        start < 0 || inText.empty() ? std::string::npos : fBytes.find(inText, static_cast<uint32>(start));
    return found == std::string::npos ? -1 : static_cast<int32>(found);
  }
  uint16 GetChar(int32 index) const {
    const auto place = static_cast<uint32>(std::max(index, 0));
    return place < fLength ? Decode(Offset(place)) : 0;
  }
  uint32 SubStringBytes(int32 index, uint32 inLength) const {
    const auto first = static_cast<uint32>(std::max(index, 0));
    const uint32 length = std::min(inLength, fLength - std::min(first, fLength));
    if (length == 0) {
      return 0;
    }
    const uint32 last = Offset(first + length - 1);
    return (last < Size() ? std::min(last + Sequence(fBytes[last]), Size()) : Size()) - Offset(first);
  }
  std::string SubString(int32 index, int32 inLength) const {
    const auto first = static_cast<uint32>(std::max(index, 0));
    if (first >= fLength) {
      return {};
    }
    const bool toEnd = inLength <= 0 || static_cast<uint32>(inLength) > fLength - first;
    return fBytes.substr(Offset(first),
                         toEnd ? std::string::npos : SubStringBytes(index, static_cast<uint32>(inLength)));
  }
  void FromUnicode(const std::vector<uint16>& inUnits) {
    std::string all;
    for (const uint16 unit : inUnits) {
      all += Encode(unit);
    }
    if (fGrows) {
      fMaxLength = std::max(fMaxLength, static_cast<uint32>(all.size()));
    }
    fBytes.clear();
    fLength = 0;
    for (const uint16 unit : inUnits) {
      if (fBytes.size() + Encode(unit).size() > fMaxLength) {
        break;
      }
      fBytes += Encode(unit);
      ++fLength;
    }
  }
  std::vector<uint16> ToUnicode(uint32 inRoom) const {
    std::vector<uint16> units;
    for (uint32 i = 0; i < Size() && units.size() < inRoom; i += Sequence(fBytes[i])) {
      units.push_back(Decode(i));
    }
    units.resize(std::min<std::size_t>(units.size(), inRoom ? inRoom - 1 : 0));
    if (inRoom) {
      units.push_back(0);
    }
    return units;
  }
  void NormalizeLineEnds(int32 mode) {
    std::string result;
    for (uint32 i = 0; i < Size(); ++i) {
      const bool isEnd = fBytes[i] == '\r' || fBytes[i] == '\n';
      result += isEnd ? std::string(mode == 0 ? "\r" : mode == 1 ? "\n" : "\r\n") : std::string(1, fBytes[i]);
      i += fBytes[i] == '\r' && i + 1 < Size() && fBytes[i + 1] == '\n';
    }
    Assign(result);
  }
  void TrimZeros() {
    const std::size_t separator = fBytes.find_last_of(".,");
    if (separator == std::string::npos) {
      return;
    }
    std::size_t end = Size();
    while (fBytes[end - 1] == '0') {
      --end;
    }
    end -= end == separator + 1;
    Delete(static_cast<int32>(Count(fBytes.substr(0, end))), 1000);
  }
  void Increment() {
    for (uint32 i = Size(); i-- > 0;) {
      if (fBytes[i] >= '0' && fBytes[i] <= '8') {
        ++fBytes[i];
        return;
      }
      fBytes[i] = fBytes[i] == '9' ? '0' : fBytes[i];
    }
    Insert("1", 0);
  }
  void Substitute(const std::string& inValue, int32 inNumber) {
    const std::string marker = "^" + std::to_string(inNumber);
    for (int32 index; (index = Find(marker, 0)) >= 0;) {
      if (!Delete(index, static_cast<int32>(marker.size()))) {
        return;
      }
      Insert(inValue, index);
    }
  }
  int32 ToInt() const {
    std::string digits = fBytes;
    digits.erase(std::remove(digits.begin(), digits.end(), ','), digits.end());
    const long long value = std::strtoll(digits.c_str(), nullptr, 10);
    return static_cast<int32>(std::clamp<long long>(value, INT32_MIN, INT32_MAX));
  }
  real64 ToDouble() const { return std::strtod(fBytes.substr(0, 63).c_str(), nullptr); }
  real32 ToFloat() const {
    std::size_t i = !fBytes.empty() && (fBytes[0] == '-' || fBytes[0] == '+');
    const auto read = [&](std::size_t end, uint32& power) {
      uint32 value = 0;
      for (; i < end && ((fBytes[i] >= '0' && fBytes[i] <= '9') || fBytes[i] == ','); ++i) {
        if (fBytes[i] != ',') {
          value = value * 10 + static_cast<uint32>(fBytes[i] - '0');
          power *= 10;
        }
      }
      return value;
    };
    uint32 power = 1;
    const uint32 whole = read(fBytes.size(), power);
    power = 1;
    const bool hasFraction = i < fBytes.size() && fBytes[i] == '.';
    const uint32 fraction = hasFraction ? read(std::min(fBytes.size(), ++i + 9), power) : 0;
    const auto value =
        static_cast<real32>(static_cast<long double>(whole) + static_cast<long double>(fraction) / power);
    return !fBytes.empty() && fBytes[0] == '-' ? -value : value;
  }
  bool IsNumeric() const { return fBytes.find_first_not_of("-+.0123456789") == std::string::npos; }

  const std::string& Bytes() const { return fBytes; }
  uint32 Size() const { return static_cast<uint32>(fBytes.size()); }
  uint32 Length() const { return fLength; }
  uint32 MaxLength() const { return fMaxLength; }
  void SetMaxLength(uint32 inMaxLength) {
    if (fGrows) {
      fMaxLength = inMaxLength;
      if (fBytes.size() > inMaxLength) {
        Assign(fBytes);
        fMaxLength = inMaxLength;
        fBytes.resize(inMaxLength);
        fLength = Count(fBytes);
      }
    }
  }

 private:
  std::string fBytes;
  uint32 fLength = 0;
  uint32 fMaxLength;
  bool fGrows;
};

}  // namespace qlx::test
