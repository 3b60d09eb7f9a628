#include <tuple>

#include "FakeObject.h"
#include "HostedTest.h"
#include "MCCountedPtr.h"
#include "MCTranscoder.h"
#include "MCUnicodeString.h"

namespace qlx::test {
namespace {

using MCStringUnicode = HostedTest;

using Units = std::vector<uint16>;

const uint16* Wide(const char16_t* inText) {
  return reinterpret_cast<const uint16*>(inText);
}

const uint8* Bytes(const char* inText) {
  return reinterpret_cast<const uint8*>(inText);
}

// Not a transcoder that anybody should write: it never ends a text.
class EndlessTranscoder final : public FakeObject<IMCTranscoder> {
 public:
  uint16 MC_CALL Translate(uint8) override { return fCalls++ % 3 ? 'x' : kIncomplete; }

 private:
  uint32 fCalls = 0;
};

TEST_F(MCStringUnicode, CharactersOfEveryWidthGoThereAndBack) {
  // The borders of the widths, and the halves of a surrogate pair as characters of their own.
  const Units kUnits = {1, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0xD83D, 0xDE00, 0};
  TMCString63 text;
  text.FromUnicode(kUnits.data());
  EXPECT_EQ(text.Length(), 8U);
  EXPECT_EQ(text.ByteLength(), 1U + 1 + 2 + 2 + 4 * 3);
  Units back(9, 0xCDCD);
  text.ToUnicode(back.data(), 9);
  EXPECT_EQ(back, kUnits);
  const TMCUnicodeString wide(text);
  EXPECT_EQ(Units(wide.CStr(), wide.CStr() + 9), kUnits);
  text.FromUnicode(nullptr);
  EXPECT_EQ(text.Length(), 8U);
  TMCDynamicString grown;
  grown.FromUnicode(kUnits.data());
  EXPECT_EQ(grown.MaxLength(), 18U);
}

TEST_F(MCStringUnicode, FromUnicodeSplitsNoCharacterAtTheCapacity) {
  AssertionGuard guard({"byteLength <= fMaxLength"});
  TMCString15 text;
  text.FromUnicode(Wide(u"12345678901234\u00E9x"));
  EXPECT_STREQ(text.CStr(), "12345678901234");
}

TEST_F(MCStringUnicode, ToUnicodeKeepsToTheRoom) {
  const char* const kRoom = "index < dataSize";
  const char* const kNoEnd = "Bad size in TMCString::ToUnicode";
  const struct {
    const char* fLabel;
    const char* fText;
    uint32 fRoom;
    Units fUnits;
    std::vector<std::string> fReports;
  } kRows[] = {{"none for the end", "ab", 2, {'a', 0, 0xCDCD, 0xCDCD}, {kNoEnd}},
               {"none for the last", "ab", 1, {0, 0xCDCD, 0xCDCD, 0xCDCD}, {kRoom, kNoEnd}},
               {"none at all", "ab", 0, {0xCDCD, 0xCDCD, 0xCDCD, 0xCDCD}, {kRoom, kNoEnd}},
               {"upper bits of four bytes are lost", "\U0001F600", 4, {0xF600, 0, 0xCDCD, 0xCDCD}, {}},
               {"a cut character", "a\xE2", 4, {'a', 0x2000, 0, 0xCDCD}, {}},
               {"an invalid byte fills the room with zeros", "a\xFFz", 4, {'a', 0, 0, 0}, {kRoom, kNoEnd}}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    AssertionGuard guard(row.fReports);
    Units units(4, 0xCDCD);
    TMCString15(row.fText).ToUnicode(units.data(), row.fRoom);
    EXPECT_EQ(units, row.fUnits);
  }
}

TEST_F(MCStringUnicode, TranscodedTextsOfEachEncoding) {
  const std::tuple<const char*, bool, const char*, const char*> kRows[] = {
      {"one, two and three bytes", true, "a\u00E9\u20AC", "a\u00E9\u20AC"},
      {"upper bits of four bytes are lost", true, "\U0001F600", "\xEF\x98\x80"},
      {"an interrupted character is dropped", true, "a\xE2\x82z", "az"},
      {"and one that the end interrupts", true, "a\xE2\x82", "a"},
      {"bytes that begin nothing are replaced", true, "a\xFF\x80z", "a\xEF\xBF\xBD\xEF\xBF\xBDz"},
      {"values that are no characters are replaced", true, "\xEF\xBF\xBFz\xF0\x90\x80\x80",
       "\xEF\xBF\xBDz\xEF\xBF\xBD"},
      {"Western", false, "caf\xE9 \x80 \x81", "caf\u00E9 \u20AC \xC2\x81"}};
  TMCCountedPtr<IMCTranscoder> utf8;
  CreateUtf8Transcoder(utf8.WriteInto());
  TMCCountedPtr<IMCTranscoder> western;
  CreateCodePageTranscoder(kWesternCodePage, western.WriteInto());
  for (const auto& [label, isUtf8, bytes, givenText] : kRows) {
    TMCString63 text("earlier");
    text.FromTranscoded(Bytes(bytes), isUtf8 ? utf8.Get() : western.Get());
    EXPECT_STREQ(text.CStr(), givenText) << label;
  }
  TMCDynamicString text("kept");
  text.FromTranscoded(nullptr, utf8.Get());
  text.FromTranscoded(Bytes("x"), nullptr);
  EXPECT_STREQ(text.CStr(), "kept");
  text.FromTranscoded(Bytes("a\xC3\xA9z"), 2, utf8.Get());  // the count cuts a character, and the next text is whole
  EXPECT_STREQ(text.CStr(), "a");
  text.FromTranscoded(Bytes("\xC3\xA9z"), 3, utf8.Get());
  EXPECT_STREQ(text.CStr(), "\xC3\xA9z");
  void* view = nullptr;
  EXPECT_EQ(utf8->QueryInterface(IMCTranscoder::kInterfaceID, &view), MC_S_OK);
  EXPECT_EQ(utf8->Release(), 1U);
}

TEST_F(MCStringUnicode, ATranscoderThatAnswersAnythingStaysInTheRoom) {
  AssertionGuard guard({"byteLength <= fMaxLength"});
  EndlessTranscoder endless;
  TMCString15 text;
  const std::vector<uint8> bytes(100);
  text.FromTranscoded(bytes.data(), bytes.size(), &endless);
  EXPECT_STREQ(text.CStr(), "xxxxxxxxxxxxxxx");
}

TEST_F(MCStringUnicode, AUnicodeStringIsAssignedFromTextsAndCharacters) {
  TMCUnicodeString text;
  EXPECT_EQ(text.Length(), 0U);
  EXPECT_EQ(text.CStr()[0], 0);
  text = Wide(u"abc");
  EXPECT_EQ(text.Length(), 3U);
  text = text.CStr() + 1;
  EXPECT_EQ(Units(text.CStr(), text.CStr() + 3), (Units{'b', 'c', 0}));
  text = TMCString15("\xC3\xA9");
  EXPECT_EQ(Units(text.CStr(), text.CStr() + 2), (Units{0xE9, 0}));
  text = static_cast<const uint16*>(nullptr);
  EXPECT_EQ(text.Length(), 1U);
  EXPECT_EQ(TMCUnicodeString("xyz").Length(), 3U);
}

}  // namespace
}  // namespace qlx::test
