#include <tuple>

#include "MCAsciiTranslation.h"

#include "HostedTest.h"
#include "MCString.h"
#include "PlatformTextGuard.h"
#include "TranslationTable.h"

namespace qlx::test {
namespace {

using MCAsciiTranslation = HostedTest;

const char* const kUntranslatable = "Untranslatable character";
const char* const kMissing = "Missing escape string";
const char* const kSkipped = "Skipping char in TranslateAscii";

// Outwards: 'a' becomes 'A', 'x' goes, 'e' becomes "<e>", 'n' nothing, 'm' has no text though it should.
// Inwards: 'A' becomes 'a'.
TableImage SomeTable() {
  TableImage image;
  image.fTables[1]['a'] = 'A';
  image.fTables[1]['x'] = 0;
  image.fTables[1]['e'] = image.fTables[1]['n'] = image.fTables[1]['m'] = 0x1B;
  image.fTables[0]['A'] = 'a';
  // The first block's last byte, of its own text the end, is the second one's length.
  image.fBlocks = {4, 'q', 'Q', 0, 8, 'e', '<', 'e', '>', 0, 'n', 0, 0};
  return image;
}

TEST_F(MCAsciiTranslation, ReadsTransposedTables) {
  const std::vector<uint8> bytes = SomeTable().Bytes();
  const HostedTable host(bytes);
  ASSERT_EQ(host.GetResult(), MC_S_OK);
  EXPECT_EQ(host.Table().Translate('a', 1), 'A');
  EXPECT_EQ(host.Table().Translate('a', 0), 'a');
  EXPECT_EQ(host.Table().Translate(0x1F, 0), bytes[0xF1]);
  EXPECT_EQ(host.Table().Translate(0xE2, 1), bytes[256 + 0x2E]);
}

TEST_F(MCAsciiTranslation, TheSecondBlockBeginsAtTheLastByteOfTheFirst) {
  const HostedTable host(SomeTable().Bytes());
  const TMCAsciiTranslationTable& table = host.Table();
  EXPECT_EQ(fMemory.GetLiveBlocks(), 2);
  EXPECT_STREQ(table.GetEscapeString('q', 0), "Q");
  EXPECT_EQ(table.GetEscapeString('q', 1), nullptr);
  EXPECT_EQ(table.GetEscapeString(8, 0), nullptr);  // the second's length is no key of the first
  EXPECT_STREQ(table.GetEscapeString('e', 1), "<e>");
  EXPECT_STREQ(table.GetEscapeString('n', 1), "");
  EXPECT_EQ(table.GetEscapeString('m', 1), nullptr);
}

TEST_F(MCAsciiTranslation, ImagesThatAreNotWholeAreRefused) {
  const std::tuple<const char*, std::vector<uint8>, MCResult, const char*> kRows[] = {
      {"no blocks", {}, MC_E_EOF, nullptr},
      {"an absent block is followed by itself", {0}, MC_S_OK, nullptr},
      {"the text's end is the second block, which is absent", {3, 'k', 'K', 0}, MC_S_OK, "K"},
      {"the first block ends early", {3, 'k', 'K'}, MC_E_EOF, nullptr},
      {"the second block ends early", {4, 'k', 'K', 0, 2, 'z'}, MC_E_EOF, nullptr},
      {"a text without an end", {3, 'k', 'K', 1, 0}, MC_S_OK, nullptr},
      {"a key without a text", {1, 'k', 0}, MC_E_EOF, nullptr}};
  for (const auto& [label, blocks, result, textOfK] : kRows) {
    SCOPED_TRACE(label);
    TableImage image;
    image.fBlocks = blocks;
    TMCAsciiTranslationTable table;
    const std::vector<uint8> bytes = image.Bytes();
    EXPECT_EQ(table.ReadImage(bytes.data(), bytes.size()), result);
    EXPECT_STREQ(table.GetEscapeString('k', 0), textOfK);
  }
  WithEachAllocationRefused(fMemory, [](int step) {
    const std::vector<uint8> bytes = SomeTable().Bytes();
    TMCAsciiTranslationTable table;
    EXPECT_EQ(table.ReadImage(bytes.data(), bytes.size()), step < 2 ? MC_E_OUTOFMEMORY : MC_S_OK);
    EXPECT_EQ(table.Translate('a', 1), step < 2 ? 0 : 'A');
  });
  EXPECT_EQ(TMCAsciiTranslationTable().ReadImage(nullptr, 0), MC_E_EOF);
}

TEST_F(MCAsciiTranslation, TextsAreTranslated) {
  const HostedTable host(SomeTable().Bytes());
  const std::tuple<const char*, const char*, const char*, std::vector<std::string>> kRows[] = {
      {"byte by byte", "baba", "bAbA", {}},
      {"untranslatable bytes are dropped", "xax", "A", {kUntranslatable, kUntranslatable}},
      {"a missing text is dropped", "ama", "AA", {kMissing}},
      {"an escape moves the tail", "beb", "b<e>b", {}},
      {"one that grows again and again", "eee", "<e><e><e>", {}},
      {"what was dropped is room", "xxe", "<e>", {kUntranslatable, kUntranslatable}},
      {"some room", "xeb", "<e>b", {kUntranslatable}},
  };
  const auto translate = [](TMCString&& text) {
    text.TranslateAscii(1);
    EXPECT_EQ(text.Length(), text.ByteLength());
    return std::string(text.CStr());
  };
  for (const auto& [label, text, translated, reports] : kRows) {
    SCOPED_TRACE(label);
    const AssertionGuard guard(reports);
    EXPECT_EQ(translate(TMCString15(text)), translated);
    const AssertionGuard second(reports);
    EXPECT_EQ(translate(TMCDynamicString(text)), translated);
  }
  EXPECT_EQ(translate(TMCDynamicString("123456789012ee")), "123456789012<e><e>");
  const AssertionGuard guard({kSkipped, kSkipped});
  EXPECT_EQ(translate(TMCString15("12345678901234e")), "12345678901234") << "a fixed form has no room";
  EXPECT_EQ(translate(TMCString15("123456789012ee")), "123456789012<e>") << "but for one of two";
}

TEST_F(MCAsciiTranslation, WithoutATableTheTextStays) {
  AssertionGuard guard({"asciiTranslationTable"});
  TMCString15 text("abc");
  text.TranslateAscii(0);
  EXPECT_STREQ(text.CStr(), "abc");
}

TEST_F(MCAsciiTranslation, AGrowingTextThatFindsNoMemoryIsEmpty) {
  const HostedTable host(SomeTable().Bytes());
  AssertionGuard guard({kSkipped});
  TMCDynamicString text("abe");
  fMemory.RefuseAfter(0);
  text.TranslateAscii(1);
  fMemory.RefuseNothing();
  EXPECT_STREQ(text.CStr(), "");
  EXPECT_EQ(text.Length(), 0U);
}

TEST_F(MCAsciiTranslation, ExportsToAnotherTextAndKeepsItsOwn) {
  const HostedTable host(SomeTable().Bytes());
  PlatformTextGuard platform;
  platform.UseWesternCodePage();
  TMCString15 text("beta");
  TMCDynamicString target;
  text.ExportTranslated(target);
  EXPECT_STREQ(target.CStr(), "b<e>tA");
  EXPECT_STREQ(text.CStr(), "beta");
  text.ExportTranslated(text);
  EXPECT_STREQ(text.CStr(), "b<e>tA");
  TMCDynamicString longText(std::string(2000, 'a').c_str());
  longText.ExportTranslated(target);
  EXPECT_EQ(target.CStr(), std::string(2000, 'A'));
  EXPECT_EQ(longText.GetByte(0), 'a');
  platform.UseUtf8CodePage();
  text = "beta";
  text.ExportTranslated(target);
  EXPECT_STREQ(target.CStr(), "beta");
}

TEST_F(MCAsciiTranslation, ImportsTheVariantOfThisSystem) {
  const HostedTable host(SomeTable().Bytes());
  PlatformTextGuard platform;
  const std::tuple<const char*, const char*, const char*, const char*> kRows[] = {
      {"no variants", "A@WB", "A@WB", "a@WB"},
      {"ours first", "@WmyA@Mx", "myA", "mya"},
      {"ours last", "@Mx@WmyA", "myA", "mya"},
      {"ours is not there", "@MxA", "", ""},
      {"more characters than one byte", "@W\u00E9@M", "\u00E9", "\u00E9"}};
  for (const auto& [label, given, untranslated, translated] : kRows) {
    SCOPED_TRACE(label);
    TMCString31 text(given);
    platform.UseUtf8CodePage();
    text.ImportTranslated();
    EXPECT_STREQ(text.CStr(), untranslated);
    text = given;
    platform.UseWesternCodePage();
    text.ImportTranslated();
    EXPECT_STREQ(text.CStr(), translated);
    text = given;
    platform.UseUtf8CodePage();
    text.ImportTranslatedBytes();
    EXPECT_STREQ(text.CStr(), translated);
  }
}

}  // namespace
}  // namespace qlx::test
