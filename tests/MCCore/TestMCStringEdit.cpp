#include <gtest/gtest.h>

#include "AssertionGuard.h"
#include "MCPtrArray.h"
#include "MCString.h"
#include "PlatformTextGuard.h"
#include "TestMemory.h"

namespace qlx {

using test::AssertionGuard;
using test::PlatformTextGuard;
using test::TestMemory;

namespace {

const char* const kOverflow = "byteLength <= fMaxLength";
// U+00E9 in two bytes, U+20AC in three.
const char* const kShortMixed = "a\xC3\xA9\xE2\x82\xACz";

}  // namespace

TEST(MCStringEdit, ReplacesCharactersByShorterAndLongerOnes) {
  const struct {
    const char* fLabel;
    uint16 fChar;
    int32 fIndex;
    const char* fResult;
  } kRows[] = {{"as long", 'b', 0, "b\xC3\xA9\xE2\x82\xACz"},
               {"longer", 0x20AC, 0, "\xE2\x82\xAC\xC3\xA9\xE2\x82\xACz"},
               {"shorter", 'c', 2,
                "a\xC3\xA9"
                "cz"},
               {"the last", 0xE9, 3, "a\xC3\xA9\xE2\x82\xAC\xC3\xA9"},
               {"negative is the first", 'b', -7, "b\xC3\xA9\xE2\x82\xACz"},
               {"at the end", 'b', 4, kShortMixed},
               {"past the end", 'b', 99, kShortMixed}};
  TestMemory memory;
  AssertionGuard guard;
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    TMCString15 text(kShortMixed);
    text.SetChar(row.fChar, row.fIndex);
    EXPECT_STREQ(text.CStr(), row.fResult);
    EXPECT_EQ(text.Length(), 4U);
    TMCDynamicString grown(kShortMixed);
    grown.SetChar(row.fChar, row.fIndex);
    EXPECT_STREQ(grown.CStr(), row.fResult);
  }
}

TEST(MCStringEdit, AReplacedCharacterPushesTheTailOffAFixedForm) {
  AssertionGuard guard({kOverflow, kOverflow});
  TMCString15 text("123456789012345");
  text.SetChar(0x20AC, 0);
  EXPECT_STREQ(text.CStr(),
               "\xE2\x82\xAC"
               "234567890123");
  EXPECT_EQ(text.Length(), 13U);
  text.SetChar(0xE9, 12);
  EXPECT_STREQ(text.CStr(),
               "\xE2\x82\xAC"
               "23456789012\xC3");
}

TEST(MCStringEdit, SetByteKeepsToTheText) {
  AssertionGuard guard({"c==0", "nIndex <= int32(fByteLength)", "nIndex >= 0"});
  TMCString15 text("abc");
  text.SetByte('\xC3', 1);
  EXPECT_STREQ(text.CStr(),
               "a\xC3"
               "c");
  text.SetByte('\xA9', 2);
  EXPECT_EQ(text.Length(), 2U);
  text.SetByte(0, 3);
  text.SetByte('x', 3);
  text.SetByte('x', 4);
  text.SetByte('A', -2);
  EXPECT_STREQ(text.CStr(), "A\xC3\xA9");
}

TEST(MCStringEdit, DeleteBytesCutsTheRestByItsCharacters) {
  AssertionGuard guard;
  const struct {
    const char* fLabel;
    const char* fText;
    int32 fIndex;
    int32 fCount;
    bool fResult;
    const char* fLeft;
  } kRows[] = {{"single bytes", "abcdef", 1, 2, true, "adef"},
               {"to the end", "abcdef", 4, 99, true, "abcd"},
               {"a character of two bytes costs one at the end", "a\xC3\xA9xyz", 1, 2, true, "axy"},
               {"characters fewer than the bytes", "\xC3\xA9", 0, 2, true, ""},
               {"before others of two bytes", "ab\xC3\xA9\xC3\xA9", 0, 1, true, "b\xC3\xA9\xC3\xA9"},
               {"negative", "abc", -1, 1, false, "abc"},
               {"none", "abc", 0, 0, false, "abc"},
               {"at the end", "abc", 3, 1, false, "abc"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    TMCString15 text(row.fText);
    EXPECT_EQ(text.DeleteBytes(row.fIndex, row.fCount), row.fResult);
    EXPECT_STREQ(text.CStr(), row.fLeft);
  }
}

TEST(MCStringEdit, ExtractKeepsAPart) {
  const struct {
    int32 fIndex;
    int32 fLength;
    const char* fPart;
    std::vector<std::string> fReports;
  } kRows[] = {{0, 2, "a\xC3\xA9", {}},
               {1, 2, "\xC3\xA9\xE2\x82\xAC", {}},
               {2, 99, "\xE2\x82\xACz", {}},
               {0, 4, kShortMixed, {}},
               {-1, 1, "a", {}},
               {1, 0, "", {}},
               {1, -3, "", {}},
               {4, 1, "", {"nIndex < Length()"}},
               {99, 99, "", {"nIndex < Length()"}}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.fIndex << ", " << row.fLength);
    AssertionGuard guard(row.fReports);
    TMCString15 text(kShortMixed);
    text.Extract(row.fIndex, row.fLength);
    EXPECT_STREQ(text.CStr(), row.fPart);
  }
}

TEST(MCStringEdit, ReplacesTexts) {
  TestMemory memory;
  const struct {
    const char* fLabel;
    const char* fText;
    const char* fFind;
    const char* fReplacement;
    int32 fStart;
    int32 fCount;
    const char* fResult;
  } kRows[] = {
      {"all", "a-b-c", "-", "==", 0, 2, "a==b==c"},
      {"with nothing", "a-b-c-", "-", "", 0, 3, "abc"},
      {"everything", "--", "-", "", 0, 2, ""},
      {"what overlaps once", "aaa", "aa", "b", 0, 1, "ba"},
      {"what it puts in it does not look at", "ab", "a", "aa", 0, 1, "aab"},
      {"wide characters", "x\xC3\xA9y\xC3\xA9", "\xC3\xA9", "\xE2\x82\xAC", 0, 2, "x\xE2\x82\xACy\xE2\x82\xAC"},
      {"none", "abc", "x", "y", 0, 0, "abc"},
      {"an empty text is nowhere", "abc", "", "y", 0, 0, "abc"},
      {"a lone continuation byte too", "\xC3\xA9", "\xA9", "y", 0, 0, "\xC3\xA9"},
      {"negative start", "abc", "a", "y", -1, 0, "abc"},
      {"start past the end", "abc", "a", "y", 4, 0, "abc"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    AssertionGuard guard;
    TMCString15 text(row.fText);
    EXPECT_EQ(text.Replace(TMCString15(row.fFind), TMCString15(row.fReplacement), row.fStart), row.fCount);
    EXPECT_STREQ(text.CStr(), row.fResult);
  }
  AssertionGuard guard({kOverflow});
  TMCString15 text("1-2-3-4-5-6-7-8");
  EXPECT_EQ(text.Replace(TMCString15("-"), TMCString15("--")), 7);
  EXPECT_STREQ(text.CStr(), "1--2--3--4--5--");
  text = "a-b";
  EXPECT_EQ(text.Replace(text, TMCString15("x")), 1);
  EXPECT_STREQ(text.CStr(), "x");
}

TEST(MCStringEdit, ReplaceFromAStartDropsWhatStandsBefore) {
  TestMemory memory;
  AssertionGuard guard;
  TMCString15 text("a-b-c");
  EXPECT_EQ(text.Replace(TMCString15("-"), TMCString15("+"), 2), 1);
  EXPECT_STREQ(text.CStr(), "b+c");
  EXPECT_EQ(text.Replace(TMCString15("-"), TMCString15("+"), 2), 0);
  EXPECT_STREQ(text.CStr(), "b+c");
}

TEST(MCStringEdit, ReplaceWithoutMemoryKeepsTheText) {
  TestMemory memory;
  AssertionGuard guard({kOverflow});
  TMCString15 text("a-b");
  memory.RefuseAfter(0);
  EXPECT_EQ(text.Replace(TMCString15("-"), TMCString15("+")), 0);
  EXPECT_STREQ(text.CStr(), "a-b");
}

TEST(MCStringEdit, LineEndsOfEachSystem) {
  TestMemory memory;
  AssertionGuard guard;
  const struct {
    const char* fText;
    const char* fCr;
    const char* fLf;
    const char* fCrLf;
  } kRows[] = {
      {"", "", "", ""},
      {"a\rb\nc\r\nd", "a\rb\rc\rd", "a\nb\nc\nd", "a\r\nb\r\nc\r\nd"},
      {"\r\r\n\n", "\r\r\r", "\n\n\n", "\r\n\r\n\r\n"},
      {"\xC3\xA9\r\n\xE2\x82\xAC", "\xC3\xA9\r\xE2\x82\xAC", "\xC3\xA9\n\xE2\x82\xAC", "\xC3\xA9\r\n\xE2\x82\xAC"},
      {"none", "none", "none", "none"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fText);
    const char* const kExpected[] = {row.fCr, row.fLf, row.fCrLf, row.fCrLf};
    for (int32 mode = 0; mode < 4; ++mode) {
      TMCString15 text(row.fText);
      text.NormalizeLineEnds(mode);
      EXPECT_STREQ(text.CStr(), kExpected[mode]) << mode;
      EXPECT_EQ(text.Length(), TMCString15(kExpected[mode]).Length());
      TMCDynamicString grown(row.fText);
      grown.NormalizeLineEnds(mode);
      EXPECT_STREQ(grown.CStr(), kExpected[mode]) << mode;
    }
  }
}

TEST(MCStringEdit, CaseIsThePlatforms) {
  AssertionGuard guard;
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

TEST(MCStringEdit, CompareCaselessSeesTheFirstThousandBytes) {
  TestMemory memory;
  AssertionGuard guard({kOverflow, kOverflow});
  const std::string start(1023, 'x');
  EXPECT_TRUE(TMCDynamicString((start + "a").c_str()).CompareCaseless(TMCDynamicString((start + "b").c_str())));
}

#if !defined(_WIN32)
TEST(MCStringEdit, CaseOfOtherLettersKeepsTheirBytes) {
  TMCString31 text("\xC3\xA9\xC4\xB1\xFFz\xE2");  // U+0131 would become one byte
  text.ToUpper();
  EXPECT_STREQ(text.CStr(), "\xC3\x89\xC4\xB1\xFFZ\xE2");
  text.ToLower();
  EXPECT_STREQ(text.CStr(), "\xC3\xA9\xC4\xB1\xFFz\xE2");
  text.Capitalize();
  EXPECT_EQ(text.GetChar(0), 0xE9);
}
#endif

TEST(MCStringEdit, PascalStringsKeepEightBitsOfTheirLength) {
  TestMemory memory;
  AssertionGuard guard;
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

TEST(MCStringEdit, ParametersAreSubstituted) {
  TestMemory memory;
  const struct {
    const char* fText;
    const char* fValue;
    int32 fNumber;
    const char* fResult;
  } kRows[] = {{"Move ^0 to ^1", "X", 0, "Move X to ^1"},
               {"Move ^0 to ^1", "X", 1, "Move ^0 to X"},
               {"^0^0", "", 0, ""},
               {"^^00", "", 0, ""},            // what closes up is looked at again
               {"^10", "x", 1, "x0"},          // the marker of 10 begins with that of 1
               {"^0^0^0", "0^", 0, "000^^^"},  // each moves past the others
               {"\xC3\xA9^7\xC3\xA9", "\xE2\x82\xAC", 7, "\xC3\xA9\xE2\x82\xAC\xC3\xA9"},
               {"none", "x", 0, "none"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fText);
    AssertionGuard guard;
    TMCString31 text(row.fText);
    SubstituteParam(text, TMCString15(row.fValue), row.fNumber);
    EXPECT_STREQ(text.CStr(), row.fResult);
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

TEST(MCStringEdit, AValueThatHoldsItsOwnMarkerEnds) {
  TestMemory memory;
  AssertionGuard guard({"SubstituteParam: the value holds its own marker"});
  TMCDynamicString text("^0");
  SubstituteParam(text, TMCString15("x^0"));
  EXPECT_STREQ(text.CStr(), "xxx^0");
}

TEST(MCStringEdit, CharactersOfTheCodePageAreCounted) {
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

TEST(MCStringEdit, AGrowingTextTakesCharactersOfTwoBytes) {
  TestMemory memory;
  AssertionGuard guard;
  PlatformTextGuard platform;
  platform.UseDoubleByteCodePage();
  TMCDynamicString text;
  text += uint16{0x82A0};
  EXPECT_EQ(text.Length(), 1U);
  text += uint16{0x4142};
  EXPECT_STREQ(text.CStr(), "\x82\xA0\x42");
  platform.UseWesternCodePage();
  text += uint16{0x82A1};
  EXPECT_STREQ(text.CStr(), "\x82\xA0\x42\xA1");
  EXPECT_EQ(text.Length(), 3U);
}

TEST(MCStringSearch, FindsBytesAndFromTheEnd) {
  AssertionGuard guard;
  const TMCString31 text("a\xC3\xA9z\xC3\xA9");
  EXPECT_EQ(text.FindBytes(TMCString15("\xA9"), 0), 2);
  EXPECT_EQ(text.FindBytes(TMCString15("\xA9"), 3), 5);
  EXPECT_EQ(text.FindBytes(TMCString15("\xA9"), 6), -1);
  EXPECT_EQ(text.FindBytes(TMCString15(""), 0), -1);
  EXPECT_EQ(text.FindBytes(text, -1), -1);
  EXPECT_EQ(text.FindByte('z', 0), 3);
  EXPECT_EQ(text.FindByte('z', 4), -1);
  EXPECT_EQ(text.FindByte('z', 99), -1);
  EXPECT_EQ(text.FindByte('z', -1), -1);
  const std::pair<int32, int32> kRows[] = {{-1, -1}, {0, -1}, {1, 1}, {2, 1}, {3, 3}, {99, 3}};
  for (const auto& [start, index] : kRows) {
    EXPECT_EQ(text.ReverseFindChar(0xE9, start), index) << start;
  }
  EXPECT_EQ(text.ReverseFindChar('q', 99), -1);
}

TEST(MCStringSearch, FindCountsWhatItSkipsInSixteenBits) {
  TestMemory memory;
  AssertionGuard guard;
  std::string text;
  for (int i = 0; i < 65536; ++i) {
    text += "\xC3\xA9";
  }
  EXPECT_EQ(TMCDynamicString((text.substr(2) + "z").c_str()).Find(TMCString15("z")), 65535);
  EXPECT_EQ(TMCDynamicString((text + "z").c_str()).Find(TMCString15("z")), 65536 + 65536);
}

TEST(MCStringEdit, UnequalIsLessAndGreater) {
  TestMemory memory;
  EXPECT_TRUE(TMCString15("a") != TMCString15("b"));
  EXPECT_TRUE(TMCString15("b") != TMCString15("a"));
  EXPECT_TRUE(TMCString15("a") != TMCString15("\xFF"));
  EXPECT_FALSE(TMCString15("a") != TMCDynamicString("a"));
}

TEST(MCStringEdit, FixedFormsAllocateNothing) {
  TestMemory memory;
  AssertionGuard guard;
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
  EXPECT_EQ(memory.GetRequests(), 0);
}

}  // namespace qlx
