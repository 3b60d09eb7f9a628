#include "MCTranscoder.h"

#include <utility>

#include "MCObject.h"
#include "MCUtf8.h"

namespace qlx {

namespace {

constexpr uint16 kReplacement = 0xFFFD;

// A character, never one of the two values that say something else.
constexpr uint16 CharacterOf(uint16 inValue) noexcept {
  return inValue == IMCTranscoder::kEndOfText || inValue == IMCTranscoder::kIncomplete ? kReplacement : inValue;
}

class CountedTranscoder : public IMCTranscoder, public TMCObject {
 public:
  CountedTranscoder() noexcept = default;
  CountedTranscoder(const CountedTranscoder&) = delete;
  CountedTranscoder& operator=(const CountedTranscoder&) = delete;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    const bool known = inID == IMCUnknown::kInterfaceID || inID == IMCTranscoder::kInterfaceID;
    *outObject = known ? static_cast<IMCTranscoder*>(this) : nullptr;
    if (known) {
      AddRef();
    }
    return known ? MC_S_OK : MC_E_NOINTERFACE;
  }
  uint32 MC_CALL AddRef() override { return ++fRefCount; }
  uint32 MC_CALL Release() override {
    const uint32 left = --fRefCount;
    if (left == 0) {
      delete this;
    }
    return left;
  }

 protected:
  virtual ~CountedTranscoder() = default;

 private:
  uint32 fRefCount = 1;
};

class Utf8Transcoder final : public CountedTranscoder {
 public:
  uint16 MC_CALL Translate(uint8 inByte) override {
    if ((inByte & 0xC0) == 0x80 && fCount) {
      fBytes[fCount++] = static_cast<char>(inByte);
      return fCount < fWanted ? kIncomplete : Complete();
    }
    fCount = 0;
    if (inByte == 0) {
      return kEndOfText;
    }
    fWanted = MCUtf8SequenceLength(inByte);
    if (fWanted == 0) {
      return kReplacement;
    }
    fBytes[fCount++] = static_cast<char>(inByte);
    return fWanted > 1 ? kIncomplete : Complete();
  }

 private:
  uint16 Complete() noexcept { return CharacterOf(MCUtf8Decode(fBytes, std::exchange(fCount, 0U))); }

  char fBytes[4] = {};
  uint32 fCount = 0;
  uint32 fWanted = 0;
};

class CodePageTranscoder final : public CountedTranscoder {
 public:
  explicit CodePageTranscoder(const MCCodePage& inPage) noexcept : fPage(inPage) {}

  uint16 MC_CALL Translate(uint8 inByte) override {
    return inByte < 0x80 ? inByte : CharacterOf(fPage.fUpperHalf[inByte - 0x80]);
  }

 private:
  MCCodePage fPage;
};

constexpr MCCodePage MakeWesternCodePage() noexcept {
  // 0x80 to 0x9F, where the page differs from the first 256 characters.
  constexpr uint16 kOwn[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                               0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                               0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
  MCCodePage page{};
  for (uint16 i = 0; i < 128; ++i) {
    page.fUpperHalf[i] = i < 32 ? kOwn[i] : static_cast<uint16>(0x80 + i);
  }
  return page;
}

}  // namespace

constexpr MCCodePage kWesternCodePage = MakeWesternCodePage();

void CreateUtf8Transcoder(IMCTranscoder** outTranscoder) noexcept {
  *outTranscoder = new Utf8Transcoder;
}

void CreateCodePageTranscoder(const MCCodePage& inPage, IMCTranscoder** outTranscoder) noexcept {
  *outTranscoder = new CodePageTranscoder(inPage);
}

}  // namespace qlx
