#include "MCString.h"

#include <string>
#include <tuple>
#include <type_traits>

#include "HostedTest.h"
#include "MCMemory.h"
#include "MCUtf8.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

using MCString = HostedTest;
using DynamicString = HostedTest;

const char* const kTooLong = "byteLength <= fMaxLength";
const char* const kNoBlock = "fStringBuffer != NULL";

// Characters of one, two, three and four bytes.
const char* const kMixed = "a\u00E9\u20AC\U0001F600z";

void ExpectText(const TMCString& inText, const char* inExpected, uint32 inLength) {
  EXPECT_STREQ(inText.CStr(), inExpected);
  EXPECT_EQ(inText.ByteLength(), std::strlen(inExpected));
  EXPECT_EQ(inText.Length(), inLength);
}

// Both kinds of storage, for what they have in common.
template <class T>
using Strings = HostedTest;

using Forms = testing::Types<TMCString63, TMCDynamicString>;
TYPED_TEST_SUITE(Strings, Forms);

TYPED_TEST(Strings, AreMadeFromTextsAndParts) {
  const TMCString63 mixed(kMixed);
  ExpectText(TypeParam(), "", 0);
  ExpectText(TypeParam(static_cast<const char*>(nullptr)), "", 0);
  ExpectText(TypeParam(nullptr, 7), "", 0);
  ExpectText(TypeParam("abcdef", 3), "abc", 3);
  ExpectText(TypeParam(mixed), kMixed, 5);
  ExpectText(TypeParam(TypeParam("abc")), "abc", 3);
  ExpectText(TypeParam(mixed, 1, 2), "\u00E9\u20AC", 2);
  ExpectText(TypeParam(mixed, 4, 0), "z", 1);
  ExpectText(TypeParam(mixed, 4, 99), "z", 1);
  ExpectText(TypeParam(mixed, 5, 1), "", 0);
}

TYPED_TEST(Strings, AreAssignedAndAppendedTo) {
  TypeParam text("before");
  text = static_cast<const char*>(nullptr);
  ExpectText(text, "before", 6);
  text = TMCString15("\u00E9");
  text += 'x';
  text += TMCString15("yz");
  text += "";
  text += static_cast<const char*>(nullptr);
  ExpectText(text, "\u00E9xyz", 4);
  text += text;
  text += text.CStr() + 7;
  ExpectText(text, "\u00E9xyz\u00E9xyzxyz", 11);
  text = text.CStr() + 10;
  const TypeParam& self = text;
  text = self;
  ExpectText(text, "xyz", 3);
  text = TypeParam();
  ExpectText(text, "", 0);
}

// What an operation leaves at odds with the bytes, on purpose or by the caller's hand, ends with the next append.
TYPED_TEST(Strings, CountAnewWhenTheyAreAppendedTo) {
  static constexpr uint16 kSurrogates[] = {0xD83D, 0xDE00, 0};
  const std::pair<const char*, void (*)(TypeParam&)> kRows[] = {
      {"bytes of one character", [](TypeParam& text) { (text += '\xC3') += '\xA9'; }},
      {"a byte that begins nothing", [](TypeParam& text) { text += '\x80'; }},
      {"a pair of surrogates", [](TypeParam& text) { text.FromUnicode(kSurrogates); }},
      {"bytes written by the caller", [](TypeParam& text) { text.Buffer()[1] = '\x80'; }},
      {"a byte length set by the caller", [](TypeParam& text) { text.SetByteLength(1); }},
      {"an insertion of what was at odds", [](TypeParam& text) { text.Insert(TMCString15() += '\x80', 0); }},
  };
  for (const auto& [label, change] : kRows) {
    TypeParam text("abc");
    change(text);
    for (const char* added : {"b", "\xC3\xA9"}) {
      text += added;
      const TypeParam counted(text.CStr());
      EXPECT_EQ(text.Length(), counted.Length()) << label << ", " << added;
    }
  }
}

// Texts are copied and counted by words and vectors, whose ends overlap: every length, with one character of two bytes
// at every place, from a part of the same text.
TYPED_TEST(Strings, AreCopiedWholeAtEveryLength) {
  for (uint32 length = 2; length <= (std::is_same_v<TypeParam, TMCDynamicString> ? 150 : 63); ++length) {
    for (uint32 place = 0; place + 2 <= length; place += 1 + length / 16) {
      std::string bytes(length, 'a');
      for (uint32 i = 0; i < length; ++i) {
        bytes[i] = static_cast<char>('a' + i % 26);
      }
      bytes.replace(place, 2, "\xC3\xA9");
      TypeParam text(bytes.c_str());
      ASSERT_EQ(text.Length(), length - 1) << place;
      ASSERT_EQ(text.CStr(), bytes);
      text = text.CStr() + length / 3;
      const bool isSplit = place + 1 == length / 3;
      ASSERT_EQ(text.CStr(), bytes.substr(length / 3)) << length << ", " << place;
      ASSERT_EQ(text.Length(), length - length / 3 - (place >= length / 3 || isSplit ? 1 : 0))
          << length << ", " << place;
    }
  }
}

TYPED_TEST(Strings, ReadCharactersAndBytes) {
  AssertionGuard guard({"Index Pb in GetChar", "Index Pb in GetChar"});
  const TypeParam text(kMixed);
  EXPECT_EQ(text.GetChar(3), 0xF600);
  EXPECT_EQ(text.GetChar(-1), 'a');
  EXPECT_EQ(text.GetByte(1), 0xC3);
  EXPECT_EQ(text.GetByte(11), 0);
  EXPECT_EQ(text.GetByte(-1), 'a');
  char copy[16];
  std::memset(copy, 'x', sizeof copy);
  text.ToCString(copy);
  EXPECT_STREQ(copy, kMixed);
}

TYPED_TEST(Strings, ReportPartsPastTheirEnd) {
  const char* const past = "Substring extends past end of string!";
  AssertionGuard guard({past, past});
  const TypeParam text(kMixed);
  EXPECT_EQ(text.GetSubStringByteLength(3, 9), 5U);
  EXPECT_EQ(text.GetSubStringByteLength(99, 0xFFFFFFFF), 0U);
  EXPECT_EQ(text.GetSubStringByteLength(9, 0), 0U);
}

TYPED_TEST(Strings, BytesThatBeginNoCharacterAreReportedByFindChar) {
  AssertionGuard guard({"Invalid UTF8 string"});
  const TypeParam text("a\xFFz");
  EXPECT_EQ(text.Length(), 2U);
  EXPECT_EQ(text.FindChar('z'), -1);
}

TYPED_TEST(Strings, CutToALength) {
  AssertionGuard guard({"length < fLength"});
  TypeParam text(kMixed);
  text.SetLength(2);
  text.SetLength(3);
  ExpectText(text, "a\u00E9", 2);
}

TYPED_TEST(Strings, InsertThemselves) {
  TypeParam text("ab");
  text.Insert(text, 1);
  ExpectText(text, "aabb", 4);
}

TYPED_TEST(Strings, HoldIds) {
  const std::tuple<MCID, bool, const char*> kRows[] = {{"pset"_id, false, "pset"},       {"id  "_id, true, "id  "},
                                                       {0x21212121, false, "555819297"}, {0x21212122, false, "!!!\""},
                                                       {0x21212121, true, "!!!!"},       {0x41420043, false, "AB"}};
  for (const auto& [id, literal, expected] : kRows) {
    TypeParam text("earlier");
    text.FromID(id, literal);
    EXPECT_STREQ(text.CStr(), expected) << std::hex << id;
  }
  TypeParam text;
  text.FromID(0x41420043, true);
  EXPECT_EQ(text.ToID(), 0x41420043U);
  EXPECT_EQ(TypeParam("ab").ToID(), 0x61620000U);
  EXPECT_EQ(TypeParam("pset and more").ToID(), "pset"_id);
}

TEST_F(MCString, OrderIgnoresCaseAndEqualityDoesNot) {
  const TMCString15 lower("abc");
  const TMCString31 upper("ABC");
  EXPECT_FALSE(lower < upper || lower > upper);
  EXPECT_TRUE(lower <= upper && lower >= upper);
  EXPECT_TRUE(lower != upper && upper != lower && !(lower == upper));
  EXPECT_TRUE(lower == "abc" && lower == TMCString15("abc") && !(lower != TMCDynamicString("abc")));
  EXPECT_TRUE(lower != "abd" && lower != TMCString15("\xFF"));
  EXPECT_FALSE(lower == static_cast<const char*>(nullptr));
  EXPECT_TRUE(TMCString15("B") > lower);
  EXPECT_TRUE(lower < TMCString15("abcd") && TMCString15() < lower);
}

#if !defined(_WIN32)
TEST_F(MCString, OrderKnowsTheCaseOfOtherLetters) {
  EXPECT_TRUE(TMCString15("\u00C9") <= TMCString15("\u00E9"));
  EXPECT_TRUE(TMCString15("\u00C9") >= TMCString15("\u00E9"));
  EXPECT_TRUE(TMCString15("\xC3") != TMCString15("\xFF\xC3"));
  EXPECT_TRUE(TMCString15("\xC3") < TMCString15("\xFF\xC3"));  // a broken text has an order too
}
#endif

TEST_F(MCString, AFixedFormCutsAtItsCapacity) {
  AssertionGuard guard({kTooLong, kTooLong, kTooLong, kTooLong, "fByteLength > oldByteLength", kTooLong});
  TMCString15 text("earlier");
  text = "12345678901234567890";
  ExpectText(text, "123456789012345", 15);
  ExpectText(TMCString15("12345678901234567890"), "123456789012345", 15);
  const TMCString15 split("12345678901234\xC3\xA9");
  ExpectText(split, "12345678901234\xC3", 15);  // the lone first byte still counts
  EXPECT_EQ(split.GetChar(14), 0xC0);
  EXPECT_EQ(split.GetSubStringByteLength(14, 1), 1U);
  text += 'x';
  ExpectText(text, "123456789012345", 15);
  text = "123456789012";
  text += TMCString15("abcdef");
  ExpectText(text, "123456789012abc", 15);
  text.SetMaxLength(100);
  EXPECT_EQ(text.MaxLength(), 15U);
}

TEST_F(MCString, AnOverflowingInsertKeepsTheEarlierLength) {
  const struct {
    const char* fLabel;
    int32 fIndex;
    const char* fInserted;
    const char* fResult;
    uint32 fLength;
    std::vector<std::string> fReports;
  } kRows[] = {
      {"fits exactly before a tail", 2, "XYZ", "12XYZ3456789012", 15, {}},
      {"fits exactly at the end", 12, "XYZ", "123456789012XYZ", 15, {"moveTo < (baseString + fMaxLength)"}},
      {"part of the tail falls off", 2, "UVWXYZ", "12UVWXYZ3456789", 12, {"newByteLength <= fMaxLength"}},
      {"part of the operand falls off", 10, "UVWXYZ", "1234567890UVWXY", 12, {"newByteLength <= fMaxLength"}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    AssertionGuard guard(row.fReports);
    TMCString15 text("123456789012");
    text.Insert(TMCString15(row.fInserted), row.fIndex);
    EXPECT_STREQ(text.CStr(), row.fResult);
    EXPECT_EQ(text.ByteLength(), 15U);
    EXPECT_EQ(text.Length(), row.fLength);
  }
}

TEST_F(MCString, TheBaseHasNoBytes) {
  TMCString15 text;
  EXPECT_EQ(CodeOf([&] { text.TMCString::Buffer(); }), MC_E_PURECALL);
}

TEST_F(MCString, DeletingManyCharactersNarrowsTheCount) {
  TMCDynamicString text(std::string(40000, 'x').c_str());
  EXPECT_TRUE(text.Delete(0, 40000));
  EXPECT_EQ(text.ByteLength(), 0U);
  EXPECT_EQ(text.Length(), 65536U);  // 40000 - int16(40000)
}

TEST_F(MCString, ASumIsALongFixedText) {
  AssertionGuard guard({kTooLong});
  EXPECT_STREQ((TMCString15("ab") + TMCString255("cd")).CStr(), "abcd");
  const TMCString1023 half(std::string(600, 'x').c_str());
  EXPECT_EQ((half + half).ByteLength(), 1023U);
}

TEST_F(DynamicString, HasExactlyTheCapacityThatItWasMadeWith) {
  EXPECT_EQ(TMCDynamicString("abc").MaxLength(), 3U);
  EXPECT_EQ(TMCDynamicString(TMCString15("abc")).MaxLength(), 3U);
  EXPECT_EQ(TMCDynamicString("").MaxLength(), 0U);
}

TEST_F(DynamicString, ReportsThatThereIsNoBlock) {
  TMCDynamicString text;
  AssertionGuard guard({kNoBlock, kNoBlock, "Bad Pointer"});
  EXPECT_EQ(text.Buffer(), nullptr);
  EXPECT_STREQ(text.CStr(), "");
  text.SetLength(0);
}

TEST_F(DynamicString, IsEmptyWhenMemoryIsRefused) {
  const std::tuple<const char*, void (*)(TMCDynamicString&), std::vector<std::string>, const char*> kRows[] = {
      {"assignment", [](TMCDynamicString& text) { text = "longer than before"; }, {kTooLong}, ""},
      {"append", [](TMCDynamicString& text) { text += "more"; }, {kTooLong}, ""},
      {"append to itself", [](TMCDynamicString& text) { text += text; }, {kTooLong}, ""},
      {"a character", [](TMCDynamicString& text) { text += 'x'; }, {}, ""},
      {"a capacity", [](TMCDynamicString& text) { text.SetMaxLength(50); }, {}, ""},
      {"insertion", [](TMCDynamicString& text) { text.Insert(TMCString15("x"), 1); }, {"block"}, "abc"},
  };
  for (const auto& [label, change, reports, left] : kRows) {
    SCOPED_TRACE(label);
    AssertionGuard guard(reports);
    TMCDynamicString text("abc");
    fMemory.RefuseAfter(0);
    change(text);
    EXPECT_TRUE(fMemory.HasRefused());
    fMemory.RefuseNothing();
    ExpectText(text, left, static_cast<uint32>(std::strlen(left)));
    text = "usable";
    ExpectText(text, "usable", 6);
  }
  AssertionGuard guard({kTooLong});
  fMemory.RefuseAfter(0);
  const TMCDynamicString text("abc");
  ExpectText(text, "", 0);
}

TEST_F(DynamicString, ACapacityBeyondTheAddressSpaceIsRefused) {
  AssertionGuard guard({kTooLong});
  TMCDynamicString text("abc");
#if SIZE_MAX > UINT32_MAX
  fMemory.RefuseAfter(0);
  text.SetByteLength(0xFFFFFFFE);
#else
  text.SetByteLength(0xFFFFFFFF);
#endif
  ExpectText(text, "", 0);
}

TEST(MCUtf8, MissingBytesReadAsZero) {
  static_assert(MCUtf8Decode("\xE2\x82\xAC", 3) == 0x20AC);
  static_assert(MCUtf8Decode("\xF0\x9F\x98\x80", 4) == 0xF600);
  static_assert(MCUtf8Decode("\x80", 1) == 0);
  for (uint32 lead = 0; lead < 256; ++lead) {
    const char byte = static_cast<char>(lead);
    const uint32 length = MCUtf8SequenceLength(static_cast<uint8>(lead));
    EXPECT_EQ(length, lead < 0x80   ? 1U
                      : lead < 0xC2 ? 0U
                      : lead < 0xE0 ? 2U
                      : lead < 0xF0 ? 3U
                      : lead < 0xF5 ? 4U
                                    : 0U);
    EXPECT_EQ(MCUtf8Decode(&byte, 0), 0);
    MCUtf8Decode(&byte, 1);  // reads no further, as the sanitizer sees
  }
}

}  // namespace
}  // namespace qlx::test
