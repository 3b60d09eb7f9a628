// The text type of the whole system: NUL-terminated UTF-8 with counted characters and bytes.
//
//   TMCString15, 31, 63, 255, 1023   hold their bytes inside the object; a longer text is cut at the capacity
//   TMCDynamicString                 holds an allocated block and grows
//
// Every operation is written against `TMCString` and works on all forms. Nothing throws: misuse and a text that is cut
// are reported through `MCAssert`, and the operation goes on with what fits. A cut may split a character of several
// bytes; its first byte then still counts as one character.
//
// Indices and lengths count characters unless their name says bytes. `<` and its kin compare as a person sorts, without
// case; `==` and `!=` compare bytes. They disagree on purpose: "abc" and "ABC" are neither less nor greater, nor equal.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>

#include "MCAssert.h"
#include "MCObject.h"

namespace qlx {

class IMCTranscoder;
template <class T>
class TMCPtrArray;

// Whether the count of characters is known to be that of the bytes, so that an append counts what is new alone; a few
// operations leave the two at odds on purpose. Objects of 32 bits have no byte to spare for it: their layout is fixed.
class MCTextCount {
 public:
#if UINTPTR_MAX > UINT32_MAX
  bool IsKnown() const noexcept {
    return fIsKnown;
  }
  void SetKnown(bool inIsKnown) noexcept {
    fIsKnown = inIsKnown;
  }

 private:
  bool fIsKnown = false;
#else
  static constexpr bool IsKnown() noexcept {
    return false;
  }
  static constexpr void SetKnown(bool) noexcept {}
#endif
};

class TMCString : public TMCObject {
 public:
  // The virtual operations stand in the order of their slots.
  virtual ~TMCString() = default;
  virtual TMCString& operator=(const TMCString& inSource);
  // Appends one byte and counts it as a character. At full capacity the text is left as it is.
  virtual TMCString& operator+=(char inByte);
  virtual TMCString& operator+=(const TMCString& inText);
  virtual bool operator<(const TMCString& inText) const;
  virtual bool operator>(const TMCString& inText) const;
  virtual bool operator<=(const TMCString& inText) const;
  virtual bool operator>=(const TMCString& inText) const;
  virtual bool operator==(const TMCString& inText) const;
  virtual bool operator!=(const TMCString& inText) const;
  // Does nothing for an index that is negative or past the end. What overflows a fixed form is cut, and `Length()`
  // then stays what it was.
  virtual void Insert(const TMCString& inText, int32 index);
  // The root of all cutting: the lesser of the request and the capacity. Neither writes the NUL nor counts.
  virtual void SetByteLength(uint32 byteLength);
  // Does nothing on a fixed form.
  virtual void SetMaxLength(uint32 maxLength);
  // The writable bytes, until the text changes. The base has none: called there it throws `MC_E_PURECALL`.
  virtual char* Buffer() = 0;

  // Null leaves the text as it is.
  TMCString& operator=(const char* inText);
  TMCString& operator+=(const char* inText);
  bool operator==(const char* inText) const;
  bool operator!=(const char* inText) const { return !(*this == inText); }
  void Assign(const char* inText, MCSize byteLength);

  // A byte with the count of bytes, and the bytes. Null leaves the text as it is.
  void FromPascalString(const uint8* inText);
  // 16-bit characters up to a 0. A fixed form keeps those that it has room for whole: here a cut splits no character.
  // Null leaves the text as it is.
  void FromUnicode(const uint16* inText);
  // Bytes of another encoding, read until the transcoder ends the text or `inCount` bytes are read; then as above.
  // The bytes must not lie in this text. Reads them twice, and leaves the transcoder ready for another text.
  void FromTranscoded(const uint8* inBytes, IMCTranscoder* inTranscoder);
  void FromTranscoded(const uint8* inBytes, MCSize inCount, IMCTranscoder* inTranscoder);

  uint32 Length() const noexcept { return fLength; }
  uint32 ByteLength() const noexcept { return fByteLength; }
  // The capacity in bytes, the NUL not counted.
  uint32 MaxLength() const noexcept { return fMaxLength; }
  bool IsEmpty() const noexcept { return fByteLength == 0; }
  // Never null. Valid until the text changes.
  const char* CStr() const;

  // Bytes that `inLength` characters from `inIndex` take. Running past the end is reported and shortened.
  uint32 GetSubStringByteLength(int32 inIndex, uint32 inLength) const;
  // 0 past the end. A negative index is reported and taken as 0.
  uint16 GetChar(int32 index) const;
  uint8 GetByte(int32 index) const;
  // Copies the bytes and a NUL; the caller supplies the room.
  void ToCString(char* outDest) const;
  // The low 8 bits of the byte length, then all bytes, without an end; the caller supplies the room.
  void ToPascalString(uint8* outDest) const;
  // Writes the characters and a 0, at most `unitCount` values together; more are reported and left out. A byte that
  // begins no character ends the reading, and zeros fill the room.
  void ToUnicode(uint16* outDest, uint32 unitCount) const;
  // The first four bytes as an id, 0 for those past the end.
  MCID ToID() const;

  // Index of the first occurrence at or after `startIndex`; -1 when there is none, or nothing to look for.
  int32 Find(const TMCString& inText, int32 startIndex = 0) const;
  int32 FindChar(uint16 inChar, int32 startIndex = 0) const;
  // The same by bytes.
  int32 FindBytes(const TMCString& inText, int32 startIndex = 0) const;
  int32 FindByte(char inByte, int32 startIndex = 0) const;
  // Index of the last such character at or before `startIndex`; -1 when there is none.
  int32 ReverseFindChar(uint16 inChar, int32 startIndex) const;
  // Equal but for the case of letters, by the platform. Only the first 1023 bytes count; more are reported.
  bool CompareCaseless(const TMCString& inText) const;
  // Only '-', '+', digits and the user's decimal separator, in any order; so is an empty text.
  bool IsNumeric() const;

  // What of a number stands at the start, 0 when nothing does. The user's decimal separator, and ',' between digits
  // where it is not that. Nine bytes of a fraction count.
  real32 ToFloat() const;
  // As C reads a number, with the user's decimal separator as well as '.'. 63 bytes count.
  real64 ToDouble() const;
  // Every ',' is left out. A number too large is the nearest there is.
  int32 ToInt() const;

  // Cuts to a smaller count of characters.
  void SetLength(uint32 length);
  // Removes bytes; true when it did. What is left is then cut by the count of *characters*: exact for texts of
  // single-byte characters, and short of their ends for others.
  bool DeleteBytes(int32 index, int32 count);
  // True when it removed something. The count of characters is narrowed to a signed 16-bit value as it is taken off
  // `Length()`: texts of this system never come near that limit.
  bool Delete(int32 index, int32 count);
  // Keeps that part only. An index past the end is reported and leaves nothing; -1 means 0.
  void Extract(int32 index, int32 length);
  // Does nothing at or past the end. A negative index is 0.
  void SetChar(uint16 inChar, int32 index);
  // At the end only the NUL that stands there, and nothing past it; either is reported, as a negative index is, which
  // is taken as 0.
  void SetByte(char inByte, int32 index);
  // Replaces every occurrence from `startIndex` on and answers how many they were. With any, what stands before
  // `startIndex` is lost; with none, or without memory, the text stays and the answer is 0.
  int32 Replace(const TMCString& inFind, const TMCString& inReplacement, int32 startIndex = 0);
  // Case as the platform has it; the bytes stay as many.
  void ToUpper();
  void ToLower();
  // Lower case, and an upper-case letter at the start if it is one of ASCII.
  void Capitalize();
  // Makes each CR, LF and CR LF a CR (0), an LF (1) or a CR LF (any other mode).
  void NormalizeLineEnds(int32 mode);

  void FromInt(int32 inValue);
  // So many digits after the decimal separator, which is the user's. Those past the 1100th are not written.
  void FromFloat(real32 inValue, uint32 precision);
  // So many significant digits, with an exponent when that is shorter.
  void FromDouble(real64 inValue, uint32 precision);
  // Two digits after the separator.
  void FromMoney(real64 inValue);
  // Takes the zeros off the end of a fraction, and the separator after them; '.' and ',' both are one. At most 1000
  // characters go. A text without a separator is reported and stays.
  void TrimZeros();
  // The decimal number that follows this one. '.' and ',' are passed over, and anything else is too, with a report.
  void IncrementNumber(TMCString& outResult) const;
  // Replaces bytes by the host's table: direction 1 leads out of this system, 0 into it. Bytes without a translation,
  // and texts for which a fixed form has no room, are reported and dropped. Without a table the text stays.
  void TranslateAscii(int32 direction);
  // The text as other systems have it: `TranslateAscii(1)` where the code page is the Western one. This text keeps
  // its bytes unless it is the target itself. Without memory both stay as they are.
  void ExportTranslated(TMCString& outTarget);
  // The other way. A text that begins with '@' holds variants for several systems, "@W" before ours: ours stays.
  void ImportTranslated();
  // The same by bytes, and whatever the code page.
  void ImportTranslatedBytes();

  // Ids that are no text (at most '!!!!') read as decimal numbers, others as their characters up to a NUL. With
  // `literal` it is always the four bytes.
  void FromID(MCID id, bool literal = false);

 protected:
  TMCString() noexcept = default;
  TMCString(const TMCString&) = delete;

  // Sets a fresh string's capacity and text; null and empty texts clear the whole storage.
  void Initialise(uint32 inMaxLength, const char* inText, MCSize byteLength);
  void InitialiseSubString(uint32 inMaxLength, const TMCString& inSource, int32 index, int32 length);
  // The bytes of a part, as the constructors from a part of a text understand it: a length of 0, or one that runs past
  // the end, means up to the end.
  static uint32 FindSubString(const TMCString& inSource, int32 index, int32 length, uint32& outOffset);

  // The body of the two above it, from a source with `Next()` and `Restart()`.
  template <class Source>
  void FromCharacters(Source inSource);
  // Makes room for a longer text at `inOffset`, in place of one byte; false where there is none.
  bool GrowForEscape(uint32& ioOffset, uint32 inWrite, uint32 inCount);
  // Saves the text as `Saved`, translates it into the target and restores it.
  template <class Saved>
  void ExportAndRestore(TMCString& outTarget);

  // Both for a text that fits into the storage, whose first byte is given: the forms know theirs without asking for it.
  // The text may be a part of the storage.
  void AssignTo(char* outBytes, const char* inText, uint32 inCount);
  void AppendTo(char* ioBytes, const char* inText, uint32 inCount);
  void AppendBytes(const char* inText, uint32 inCount);
  // Reports what one more byte in a full storage reports.
  void ReportFull();
  void CountCharacters();
  // What a count of the bytes, which are given, gives.
  uint32 TrueLength(const char* inBytes) const;
  // Adds a byte, for which there is room, as a character.
  void AddByte(char* ioBytes, char inByte) noexcept {
    const uint32 end = fByteLength;
    ioBytes[end] = inByte;
    ioBytes[end + 1] = 0;
    fByteLength = end + 1;
    ++fLength;
    if (static_cast<uint8>(inByte) >= 0x80) {
      fCount.SetKnown(false);
    }
  }
  void WriteNul();
  // `Buffer()` of an operation that keeps the count true.
  char* CountedBytes();
  // True when `index` is a place where text can be inserted.
  bool CanInsert(const TMCString& inText, int32 index) const;
  // Offset of the character's first byte; the byte length past the end.
  uint32 ByteOffset(uint32 index) const;
  // Offset of the character after the one at `inOffset`.
  uint32 NextOffset(uint32 inOffset) const;
  // Offset of the first occurrence from there on, `npos` when there is none.
  MCSize FindOffset(const TMCString& inText, MCSize inStart) const;
  // Calls `inVisit(offset, count)` with the bytes before each occurrence; answers the offset of those after the last.
  template <class Visit>
  uint32 VisitHits(const TMCString& inFind, uint32 inStart, Visit&& inVisit) const;
  // Puts a text in place of `inCount` bytes.
  void ReplaceBytes(uint32 inOffset, uint32 inCount, const char* inText, uint32 inTextCount);

  uint32 fLength = 0;
  uint32 fByteLength = 0;
  uint32 fMaxLength = 0;
  [[no_unique_address]] MCTextCount fCount;
};

// The one body of the fixed forms.
template <uint32 kCapacity>
class TMCFixedString final : public TMCString {
  static_assert(kCapacity < std::numeric_limits<uint32>::max());

 public:
  TMCFixedString() { Initialise(kCapacity, nullptr, 0); }
  TMCFixedString(const char* inText);
  TMCFixedString(const char* inText, MCSize byteLength) { Initialise(kCapacity, inText, byteLength); }
  TMCFixedString(const TMCString& inSource) { Initialise(kCapacity, inSource.CStr(), inSource.ByteLength()); }
  TMCFixedString(const TMCFixedString& inSource) : TMCFixedString(static_cast<const TMCString&>(inSource)) {}
  // Part of a text: empty when `index` is at or past its end; a length of 0 means up to the end.
  TMCFixedString(const TMCString& inSource, int32 index, int32 length) {
    InitialiseSubString(kCapacity, inSource, index, length);
  }
  ~TMCFixedString() override = default;

  using TMCString::operator=;
  TMCFixedString& operator=(const TMCString& inSource) override {
    if (this != &inSource) {
      Assign(inSource.CStr(), inSource.ByteLength());
    }
    return *this;
  }
  TMCFixedString& operator=(const TMCFixedString& inSource) {
    if (this != &inSource) {
      AssignTo(fBytes, inSource.fBytes, inSource.ByteLength());
    }
    return *this;
  }

  using TMCString::operator+=;
  TMCFixedString& operator+=(char inByte) override {
    if (fByteLength < kCapacity) {
      AddByte(fBytes, inByte);
    } else {
      ReportFull();
    }
    return *this;
  }
  TMCFixedString& operator+=(const TMCString& inText) override {
    TMCString::operator+=(inText);
    return *this;
  }
  TMCFixedString& operator+=(const TMCFixedString& inText) {
    if (inText.ByteLength() <= kCapacity - ByteLength()) {
      AppendTo(fBytes, inText.fBytes, inText.ByteLength());
    } else {
      TMCString::operator+=(inText);
    }
    return *this;
  }

  char* Buffer() override {
    fCount.SetKnown(false);
    return fBytes;
  }

 private:
  char fBytes[kCapacity + 1];
};

template <uint32 kCapacity>
TMCFixedString<kCapacity>::TMCFixedString(const char* inText) {
  Initialise(kCapacity, inText, inText ? std::strlen(inText) : 0);
}

using TMCString15 = TMCFixedString<15>;
using TMCString31 = TMCFixedString<31>;
using TMCString63 = TMCFixedString<63>;
using TMCString255 = TMCFixedString<255>;
using TMCString1023 = TMCFixedString<1023>;

// Owns a block of capacity + 1 bytes, or none while the capacity is 0. Made from a text it has exactly its capacity.
// Without memory it is empty.
class TMCDynamicString final : public TMCString {
 public:
  TMCDynamicString() noexcept = default;
  TMCDynamicString(const char* inText);
  TMCDynamicString(const char* inText, MCSize byteLength);
  TMCDynamicString(const TMCString& inSource);
  TMCDynamicString(const TMCDynamicString& inSource);
  TMCDynamicString(const TMCString& inSource, int32 index, int32 length);
  ~TMCDynamicString() override;

  using TMCString::operator=;
  using TMCString::operator+=;
  TMCDynamicString& operator=(const TMCString& inSource) override;
  TMCDynamicString& operator=(const TMCDynamicString& inSource);
  TMCDynamicString& operator+=(char inByte) override {
    if (fByteLength < fMaxLength) {
      AddByte(fStringBuffer, inByte);
    } else {
      AppendCharacter(&inByte, 1);
    }
    return *this;
  }
  TMCDynamicString& operator+=(const TMCString& inText) override;
  TMCDynamicString& operator+=(const TMCDynamicString& inText);
  void Insert(const TMCString& inText, int32 index) override;
  void SetByteLength(uint32 byteLength) override;
  // A capacity below the text's length cuts the text.
  void SetMaxLength(uint32 maxLength) override;
  // Reported when there is no block.
  char* Buffer() override;
  // Resizes the block. Without memory the text is lost and the capacity 0.
  virtual void Reallocate(uint32 maxLength);

  // A character of the platform's code page: two bytes when its high byte is a lead byte there, else one. Counts as
  // one character.
  TMCDynamicString& operator+=(uint16 inCodePageChar);

 private:
  void AppendCharacter(const char* inBytes, uint32 inCount);

  char* fStringBuffer = nullptr;
};

// Puts `inValue` in place of each "^0" (or "^1", ... by `inNumber`). A value must not hold its own marker: that never
// ends, and is reported and given up once the text's room would have been filled.
void SubstituteParam(TMCString& ioText, const TMCString& inValue, int32 inNumber = 0);
// Each value at its number; a null one is reported and left out.
void SubstituteParams(TMCString& ioText, const TMCPtrArray<TMCString>& inValues);

// Characters of a text in the platform's code page.
uint32 MCStrLen(const char* inText);

TMCString1023 operator+(const TMCString& inA, const TMCString& inB);

}  // namespace qlx
