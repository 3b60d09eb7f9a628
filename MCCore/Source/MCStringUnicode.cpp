// Texts as 16-bit characters, and texts of other encodings.
#include "MCString.h"
#include "MCStringLengths.h"
#include "MCTranscoder.h"
#include "MCUnicodeString.h"
#include "MCUtf8.h"

namespace qlx {

namespace {

// A text of 16-bit characters. Can be read again from its start.
class WideSource {
 public:
  explicit WideSource(const uint16* inText) noexcept : fText(inText), fNext(inText) {}
  void Restart() noexcept { fNext = fText; }
  // 0 at the end.
  uint16 Next() noexcept { return *fNext ? *fNext++ : uint16{0}; }

 private:
  const uint16* fText;
  const uint16* fNext;
};

class TranscodedSource {
 public:
  TranscodedSource(const uint8* inBytes, MCSize inCount, IMCTranscoder& inTranscoder) noexcept
      : fBytes(inBytes), fCount(inCount), fTranscoder(inTranscoder) {}
  // The transcoder may hold the start of a character that the last reading did not finish.
  void Restart() {
    if (!fEnded) {
      fTranscoder.Translate(0);
    }
    fNext = 0;
    fEnded = false;
  }
  uint16 Next() {
    while (!fEnded && fNext < fCount) {
      const uint16 character = fTranscoder.Translate(fBytes[fNext++]);
      fEnded = character == IMCTranscoder::kEndOfText;
      if (character != IMCTranscoder::kIncomplete) {
        return character;
      }
    }
    return 0;
  }

 private:
  const uint8* fBytes;
  MCSize fCount;
  IMCTranscoder& fTranscoder;
  MCSize fNext = 0;
  bool fEnded = false;
};

}  // namespace

template <class Source>
void TMCString::FromCharacters(Source inSource) {
  uint32 sum = 0;
  for (uint16 character = inSource.Next(); character; character = inSource.Next()) {
    sum = detail::CheckedSum(sum, MCUtf8EncodedLength(character));
  }
  inSource.Restart();
  fLength = 0;
  if (sum) {
    SetByteLength(sum);
  } else {
    fByteLength = 0;
  }
  char* const text = fMaxLength ? Buffer() : nullptr;
  uint32 written = 0;
  uint32 length = 0;
  while (text) {
    const uint16 character = inSource.Next();
    // What the room cannot take whole ends the text: a character is never split here.
    if (character == 0 || MCUtf8EncodedLength(character) > fByteLength - written) {
      break;
    }
    written += MCUtf8Encode(character, text + written);
    ++length;
  }
  inSource.Restart();
  fByteLength = written;
  fLength = length;
  WriteNul();
}

void TMCString::FromUnicode(const uint16* inText) {
  if (inText) {
    FromCharacters(WideSource(inText));
  }
}

void TMCString::FromTranscoded(const uint8* inBytes, IMCTranscoder* inTranscoder) {
  FromTranscoded(inBytes, std::numeric_limits<uint32>::max(), inTranscoder);
}

void TMCString::FromTranscoded(const uint8* inBytes, MCSize inCount, IMCTranscoder* inTranscoder) {
  if (inBytes && inTranscoder) {
    FromCharacters(TranscodedSource(inBytes, inCount, *inTranscoder));
  }
}

void TMCString::ToUnicode(uint16* outDest, uint32 unitCount) const {
  const char* const text = CStr();
  uint32 index = 0;
  uint32 offset = 0;
  while (offset < fByteLength) {
    const uint32 dataSize = unitCount;
    if (!MC_ASSERT(index < dataSize)) {
      break;
    }
    // A byte that begins no character stops the reading here; zeros fill what is left of the room.
    outDest[index++] = MCUtf8Decode(text + offset, fByteLength - offset);
    offset += MCUtf8SequenceLength(static_cast<uint8>(text[offset]));
  }
  if (!MC_ASSERT_TEXT(index < unitCount, "Bad size in TMCString::ToUnicode")) {
    index = unitCount - 1;
  }
  if (unitCount) {
    outDest[index] = 0;
  }
}

TMCUnicodeString::TMCUnicodeString(const char* inText) {
  *this = TMCDynamicString(inText);
}

const uint16* TMCUnicodeString::CStr() const noexcept {
  static constexpr uint16 kEmpty = 0;
  return fUnits.GetElemCount() ? fUnits.BaseAddress() : &kEmpty;
}

TMCUnicodeString& TMCUnicodeString::operator=(const TMCString& inText) {
  // Bytes that begin no character add nothing to the length, and each character takes one unit at least.
  const uint32 count = inText.Length() + 1;
  if (count && fUnits.SetElemCount(count)) {
    inText.ToUnicode(fUnits.BaseAddress(), count);
  }
  return *this;
}

TMCUnicodeString& TMCUnicodeString::operator=(const uint16* inText) {
  if (!inText) {
    return *this;
  }
  uint32 length = 0;
  while (inText[length]) {
    ++length;
  }
  if (fUnits.SetElemCount(length + 1)) {
    MCMemoryMove(fUnits.BaseAddress(), inText, (static_cast<MCSize>(length) + 1) * sizeof(uint16));
  }
  return *this;
}

}  // namespace qlx
