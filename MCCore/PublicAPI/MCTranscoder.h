// Byte texts of any encoding, turned into the 16-bit characters of this system.
//
//   TMCCountedPtr<IMCTranscoder> transcoder;
//   CreateUtf8Transcoder(transcoder.WriteInto());
//   text.FromTranscoded(bytes, transcoder.Get());
#pragma once

#include "MCUnknown.h"

namespace qlx {

// Takes a text byte by byte. It keeps what it was given of an unfinished character, so one transcoder serves one text
// at a time; the end of a text leaves it ready for the next.
class IMCTranscoder : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5C0E8A52-9B1F-4D37-A6C4-2E71D08F3B96"_guid;

  // `Translate` wants the next byte before it can answer a character.
  static constexpr uint16 kIncomplete = 0xFFFF;
  static constexpr uint16 kEndOfText = 0;

  // The character that `inByte` completes, or one of the two values above. Throws nothing.
  virtual uint16 MC_CALL Translate(uint8 inByte) = 0;

 protected:
  ~IMCTranscoder() = default;
};

// UTF-8 by the rules of `TMCString`: a character is one 16-bit value, and the upper bits of a four-byte one are lost.
// A byte that begins no character reads as the replacement character U+FFFD, and so does a character whose value
// would be one of the two that are no characters here. A character that another one interrupts is dropped.
// Stores null when there is no memory; the creating reference is the caller's.
void CreateUtf8Transcoder(IMCTranscoder** outTranscoder) noexcept;

// The characters of an 8-bit code page: those below 0x80 are ASCII, those above are given.
struct MCCodePage {
  uint16 fUpperHalf[128];
};

// The Western code page 1252. Bytes that it leaves free read as the control characters of the same value.
extern const MCCodePage kWesternCodePage;

// As above. The page is copied; its characters must not be one of the two values that are no characters (they read as
// U+FFFD).
void CreateCodePageTranscoder(const MCCodePage& inPage, IMCTranscoder** outTranscoder) noexcept;

}  // namespace qlx
