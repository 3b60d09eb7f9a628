#include <tuple>

#include "HostedTest.h"
#include "MCPtrArray.h"
#include "MCString.h"
#include "PlatformTextGuard.h"

namespace qlx::test {
namespace {

using MCStringEdit = HostedTest;

const char* const kOverflow = "byteLength <= fMaxLength";

TEST_F(MCStringEdit, AReplacedCharacterPushesTheTailOffAFixedForm) {
  AssertionGuard guard({kOverflow, kOverflow});
  TMCString15 text("123456789012345");
  text.SetChar(0x20AC, 0);
  EXPECT_STREQ(text.CStr(), "\u20AC234567890123");
  EXPECT_EQ(text.Length(), 13U);
  text.SetChar(0xE9, 12);
  EXPECT_EQ(text.CStr(), std::string("\u20AC23456789012\xC3"));
}

TEST_F(MCStringEdit, SetByteKeepsToTheText) {
  AssertionGuard guard({"c==0", "nIndex <= int32(fByteLength)", "nIndex >= 0"});
  TMCString15 text("abc");
  text.SetByte('\xC3', 1);
  text.SetByte('\xA9', 2);
  EXPECT_EQ(text.Length(), 2U);
  text.SetByte(0, 3);
  text.SetByte('x', 3);
  text.SetByte('x', 4);
  text.SetByte('A', -2);
  EXPECT_STREQ(text.CStr(), "A\xC3\xA9");
}

TEST_F(MCStringEdit, ExtractReportsAnIndexPastTheEnd) {
  AssertionGuard guard({"nIndex < Length()"});
  TMCString15 text("a\u00E9\u20ACz");
  text.Extract(1, 3);
  EXPECT_STREQ(text.CStr(), "\u00E9\u20ACz");
  text.Extract(3, 1);
  EXPECT_STREQ(text.CStr(), "");
}

TEST_F(MCStringEdit, ReplacementsPushTheTailOffAFixedForm) {
  AssertionGuard guard({kOverflow});
  TMCString15 text("1-2-3-4-5-6-7-8");
  EXPECT_EQ(text.Replace(TMCString15("-"), TMCString15("--")), 7);
  EXPECT_STREQ(text.CStr(), "1--2--3--4--5--");
  EXPECT_EQ(text.Replace(text, TMCString15("--")), 1);
  EXPECT_EQ(text.Replace(TMCString15("-"), TMCString15()), 2);
  EXPECT_STREQ(text.CStr(), "");
}

TEST_F(MCStringEdit, ReplaceWithoutMemoryKeepsTheText) {
  AssertionGuard guard({kOverflow});
  TMCString15 text("a-b");
  fMemory.RefuseAfter(0);
  EXPECT_EQ(text.Replace(TMCString15("-"), TMCString15("+")), 0);
  EXPECT_STREQ(text.CStr(), "a-b");
}

TEST_F(MCStringEdit, AnyOtherModeIsThatOfCrLf) {
  TMCString15 text("a\rb\nc\r\n\rd");
  text.NormalizeLineEnds(3);
  EXPECT_STREQ(text.CStr(), "a\r\nb\r\nc\r\n\r\nd");
}

TEST_F(MCStringEdit, CaseIsThePlatforms) {
  PlatformTextGuard platform;
  platform->fToUpper = [](char* text) noexcept {
    for (; *text; ++text) {
      *text = static_cast<char>(*text >= 'a' && *text <= 'z' ? *text - 0x20 : *text);
    }
  };
  platform->fToLower = [](char* text) noexcept { std::memset(text, 'l', std::strlen(text)); };
  TMCString15 text("aBc");
  text.ToUpper();
  EXPECT_STREQ(text.CStr(), "ABC");
  EXPECT_TRUE(text.CompareCaseless(TMCString31("abC")));
  EXPECT_FALSE(text.CompareCaseless(TMCString31("abCd")));
  text = "\xC3\xA9";
  text.ToLower();
  EXPECT_EQ(text.Length(), 2U);
  text.Capitalize();
  EXPECT_STREQ(text.CStr(), "Ll");
  TMCDynamicString().ToUpper();
}

TEST_F(MCStringEdit, CompareCaselessSeesTheFirstThousandBytes) {
  AssertionGuard guard({kOverflow, kOverflow});
  const std::string start(1023, 'x');
  EXPECT_TRUE(TMCDynamicString((start + "a").c_str()).CompareCaseless(TMCDynamicString((start + "b").c_str())));
}

#if !defined(_WIN32)
TEST_F(MCStringEdit, CaseOfOtherLettersKeepsTheirBytes) {
  TMCString31 text("\xC3\xA9\xC4\xB1\xFFz\xE2");  // U+0131 would become one byte
  text.ToUpper();
  EXPECT_STREQ(text.CStr(), "\xC3\x89\xC4\xB1\xFFZ\xE2");
  text.ToLower();
  EXPECT_STREQ(text.CStr(), "\xC3\xA9\xC4\xB1\xFFz\xE2");
  text.Capitalize();
  EXPECT_EQ(text.GetChar(0), 0xE9);
}
#endif

TEST_F(MCStringEdit, PascalStringsKeepEightBitsOfTheirLength) {
  uint8 bytes[300];
  std::memset(bytes, 0xCD, sizeof bytes);
  TMCDynamicString(std::string(260, 'x').c_str()).ToPascalString(bytes);
  EXPECT_EQ(bytes[0], 4);
  EXPECT_EQ(bytes[260], 'x');
  EXPECT_EQ(bytes[261], 0xCD);
  TMCString15 text;
  text.FromPascalString(bytes);
  EXPECT_STREQ(text.CStr(), "xxxx");
  text.FromPascalString(nullptr);
  EXPECT_STREQ(text.CStr(), "xxxx");
}

TEST_F(MCStringEdit, ParametersAreSubstituted) {
  const std::tuple<const char*, const char*, int32, const char*> kRows[] = {
      {"Move ^0 to ^1", "X", 1, "Move ^0 to X"},
      {"^^00", "", 0, ""},            // what closes up is looked at again
      {"^10", "x", 1, "x0"},          // the marker of 10 begins with that of 1
      {"^0^0^0", "0^", 0, "000^^^"},  // each moves past the others
      {"\u00E9^7\u00E9", "\u20AC", 7, "\u00E9\u20AC\u00E9"}};
  for (const auto& [givenText, value, number, result] : kRows) {
    TMCString31 text(givenText);
    SubstituteParam(text, TMCString15(value), number);
    EXPECT_STREQ(text.CStr(), result) << givenText;
  }
  AssertionGuard guard({"arg"});
  TMCString15 first("one");
  TMCString15 third("three");
  TMCPtrArray<TMCString> values;
  values.AddElem(&first);
  values.AddElem(nullptr);
  values.AddElem(&third);
  TMCDynamicString text("^0 ^1 ^2");
  SubstituteParams(text, values);
  EXPECT_STREQ(text.CStr(), "one ^1 three");
}

TEST_F(MCStringEdit, AValueThatHoldsItsOwnMarkerEnds) {
  AssertionGuard guard({"SubstituteParam: the value holds its own marker"});
  TMCDynamicString text("^0");
  SubstituteParam(text, TMCString15("x^0"));
  EXPECT_STREQ(text.CStr(), "xxx^0");
}

TEST_F(MCStringEdit, CharactersOfTheCodePageAreCounted) {
  PlatformTextGuard platform;
  platform.UseWesternCodePage();
  EXPECT_EQ(MCStrLen("a\xC3\xA9"), 3U);
  platform.UseDoubleByteCodePage();
  EXPECT_EQ(MCStrLen("a\x82\xA0z\x82"), 4U);
  platform.UseUtf8CodePage();
  EXPECT_EQ(MCStrLen(""), 0U);
#if !defined(_WIN32)
  const PlatformTextGuard system;
  EXPECT_EQ(MCStrLen("a\xC3\xA9\xE2\x82\xAC\xFF\xE2"), 5U);
#endif
}

TEST_F(MCStringEdit, AGrowingTextTakesCharactersOfTheCodePage) {
  TMCDynamicString text;
  text += uint16{'b'};
  PlatformTextGuard platform;
  platform.UseDoubleByteCodePage();
  text += uint16{0x82A0};
  EXPECT_EQ(text.Length(), 2U);
  text += uint16{0x4142};
  platform.UseWesternCodePage();
  text += uint16{0x82A1};
  text += static_cast<char>(0xE9);
  EXPECT_STREQ(text.CStr(), "b\x82\xA0\x42\xA1\xE9");
  EXPECT_EQ(text.Length(), 5U);  // one appended is one more, whatever its byte
}

TEST_F(MCStringEdit, FindCountsWhatItSkipsInSixteenBits) {
  std::string text;
  for (int i = 0; i < 65536; ++i) {
    text += "\xC3\xA9";
  }
  EXPECT_EQ(TMCDynamicString((text.substr(2) + "z").c_str()).Find(TMCString15("z")), 65535);
  EXPECT_EQ(TMCDynamicString((text + "z").c_str()).Find(TMCString15("z")), 65536 + 65536);
}

TEST_F(MCStringEdit, FixedFormsAllocateNothing) {
  TMCString255 text("a-^0");
  TMCString255 other(text);
  text += other;
  text.Insert(other, 1);
  text.SetChar(0x20AC, 2);
  text.Delete(0, 1);
  text.Extract(0, 5);
  text.FromUnicode(reinterpret_cast<const uint16*>(u"abc\u20AC"));
  text.FromDouble(1.25, 10);
  text.TrimZeros();
  text.IncrementNumber(other);
  text.ToUpper();
  text.NormalizeLineEnds(1);
  SubstituteParam(text, other);
  EXPECT_FALSE(text.CompareCaseless(other));
  EXPECT_LT(text.Find(other), 1);
  EXPECT_EQ(fMemory.GetRequests(), 0);
}

}  // namespace
}  // namespace qlx::test
