#include "MCString.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "AssertionGuard.h"
#include "MCException.h"
#include "MCMemory.h"
#include "MCUtf8.h"
#include "TestMemory.h"

namespace qlx {

using test::AssertionGuard;
using test::TestMemory;

namespace {

const char* const kTooLong = "byteLength <= fMaxLength";
const char* const kNoBlock = "fStringBuffer != NULL";

// U+00E9 in two bytes, U+20AC in three, U+1F600 in four.
const char* const kMixed = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";

struct Expected {
  const char* fText;
  uint32 fLength;
};

void ExpectText(const TMCString& inText, const char* inExpected, uint32 inLength) {
  EXPECT_STREQ(inText.CStr(), inExpected);
  EXPECT_EQ(inText.ByteLength(), std::strlen(inExpected));
  EXPECT_EQ(inText.Length(), inLength);
}

// Both kinds of storage, for what they have in common.
template <class T>
class Strings : public testing::Test {
 protected:
  TestMemory fMemory;
};
using Forms = testing::Types<TMCString63, TMCDynamicString>;
TYPED_TEST_SUITE(Strings, Forms);

}  // namespace

TYPED_TEST(Strings, AreMadeFromTextsAndParts) {
  AssertionGuard guard;
  const TMCString63 mixed(kMixed);
  ExpectText(TypeParam(), "", 0);
  ExpectText(TypeParam(static_cast<const char*>(nullptr)), "", 0);
  ExpectText(TypeParam(nullptr, 7), "", 0);
  ExpectText(TypeParam(kMixed), kMixed, 5);
  ExpectText(TypeParam("abcdef", 3), "abc", 3);
  ExpectText(TypeParam(mixed), kMixed, 5);
  ExpectText(TypeParam(TypeParam("abc")), "abc", 3);
  const struct {
    int32 fIndex;
    int32 fLength;
    Expected fPart;
  } kRows[] = {
      {0, 1, {"a", 1}},
      {1, 2, {"\xC3\xA9\xE2\x82\xAC", 2}},
      {2, 1, {"\xE2\x82\xAC", 1}},
      {4, 0, {"z", 1}},
      {4, 99, {"z", 1}},
      {5, 1, {"", 0}},
      {99, 0, {"", 0}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.fIndex << ", " << row.fLength);
    ExpectText(TypeParam(mixed, row.fIndex, row.fLength), row.fPart.fText, row.fPart.fLength);
  }
}

TYPED_TEST(Strings, AreAssignedAndAppendedTo) {
  AssertionGuard guard;
  TypeParam text("before");
  text = static_cast<const char*>(nullptr);
  ExpectText(text, "before", 6);
  text = TMCString15("\xC3\xA9");
  ExpectText(text, "\xC3\xA9", 1);
  text += 'x';
  text += TMCString15("yz");
  text += "";
  text += static_cast<const char*>(nullptr);
  ExpectText(text,
             "\xC3\xA9"
             "xyz",
             4);
  text += text;
  ExpectText(text,
             "\xC3\xA9"
             "xyz\xC3\xA9"
             "xyz",
             8);
  text += text.CStr() + 7;
  ExpectText(text,
             "\xC3\xA9"
             "xyz\xC3\xA9"
             "xyzxyz",
             11);
  text = text.CStr() + 10;
  ExpectText(text, "xyz", 3);
  const TypeParam& self = text;
  text = self;
  text = "";
  ExpectText(text, "", 0);
}

// What an operation leaves at odds with the bytes, on purpose or by the caller's hand, ends with the next append.
TYPED_TEST(Strings, CountAnewWhenTheyAreAppendedTo) {
  AssertionGuard guard;
  const struct {
    const char* fLabel;
    void (*fChange)(TypeParam&);
  } kRows[] = {
      {"bytes of one character", [](TypeParam& text) { (text += '\xC3') += '\xA9'; }},
      {"a byte that begins nothing", [](TypeParam& text) { text += '\x80'; }},
      {"a pair of surrogates",
       [](TypeParam& text) {
         const uint16 pair[] = {0xD83D, 0xDE00, 0};
         text.FromUnicode(pair);
       }},
      {"bytes written by the caller",
       [](TypeParam& text) {
         text = "abc";
         text.Buffer()[1] = '\x80';
       }},
      {"a byte length set by the caller",
       [](TypeParam& text) {
         text = "abc";
         text.SetByteLength(1);
       }},
      {"an insertion of what was at odds",
       [](TypeParam& text) {
         TMCString15 odd;
         odd += '\x80';
         text.Insert(odd, 0);
       }},
  };
  for (const auto& row : kRows) {
    TypeParam text("a");
    row.fChange(text);
    for (const char* added : {"b", "\xC3\xA9"}) {
      text += added;
      const TypeParam counted(text.CStr());
      EXPECT_EQ(text.Length(), counted.Length()) << row.fLabel << ", " << added;
    }
  }
}

// Texts are copied and counted by words and vectors, whose ends overlap: every length, with one character of two bytes
// at every place, from a part of the same text.
TYPED_TEST(Strings, AreCopiedWholeAtEveryLength) {
  AssertionGuard guard;
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
  const uint16 kChars[] = {'a', 0xE9, 0x20AC, 0xF600, 'z', 0};
  for (int32 i = 0; i < 6; ++i) {
    EXPECT_EQ(text.GetChar(i), kChars[i]) << i;
  }
  EXPECT_EQ(text.GetByte(1), 0xC3);
  EXPECT_EQ(text.GetByte(11), 0);
  EXPECT_EQ(text.GetChar(-1), 'a');
  EXPECT_EQ(text.GetByte(-1), 'a');
  EXPECT_EQ(TypeParam().GetChar(0), 0);

  char copy[16];
  std::memset(copy, 'x', sizeof copy);
  text.ToCString(copy);
  EXPECT_STREQ(copy, kMixed);
}

TYPED_TEST(Strings, MeasureParts) {
  const char* const past = "Substring extends past end of string!";
  const struct {
    int32 fIndex;
    uint32 fLength;
    uint32 fBytes;
    std::vector<std::string> fReports;
  } kRows[] = {{0, 0, 0, {}},  {0, 5, 11, {}},     {1, 2, 5, {}},     {3, 1, 4, {}},
               {-3, 1, 1, {}}, {3, 9, 5, {past}},  {5, 1, 0, {past}}, {99, 0xFFFFFFFF, 0, {past}},
               {9, 0, 0, {}},  {0, 77, 11, {past}}};
  const TypeParam text(kMixed);
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.fIndex << ", " << row.fLength);
    AssertionGuard guard(row.fReports);
    EXPECT_EQ(text.GetSubStringByteLength(row.fIndex, row.fLength), row.fBytes);
  }
}

TYPED_TEST(Strings, FindTextsAndCharacters) {
  AssertionGuard guard;
  const TypeParam text(
      "\xC3\xA9"
      "ab\xE2\x82\xAC"
      "ab\xC3\xA9");
  const struct {
    const char* fLabel;
    const char* fWanted;
    int32 fStart;
    int32 fIndex;
  } kRows[] = {{"first", "ab", 0, 1},
               {"from inside a match", "ab", 2, 4},
               {"at the end", "b\xC3\xA9", 0, 5},
               {"longer than the rest",
                "\xC3\xA9"
                "a",
                1, -1},
               {"from the end", "ab", 7, -1},
               {"past the end", "ab", 8, -1},
               {"negative start", "ab", -1, -1},
               {"nothing wanted", "", 0, -1},
               {"a continuation byte begins nothing", "\xA9", 0, -1}};
  for (const auto& row : kRows) {
    EXPECT_EQ(text.Find(TMCString31(row.fWanted), row.fStart), row.fIndex) << row.fLabel;
  }
  EXPECT_EQ(text.FindChar(0xE9, 0), 0);
  EXPECT_EQ(text.FindChar(0xE9, 1), 6);
  EXPECT_EQ(text.FindChar(0x20AC), 3);
  EXPECT_EQ(text.FindChar('q'), -1);
  EXPECT_EQ(text.FindChar('a', -1), -1);
  EXPECT_EQ(text.FindChar('a', 8), -1);
  EXPECT_EQ(TypeParam().Find(text), -1);
}

TYPED_TEST(Strings, BytesThatBeginNoCharacterAreReportedByFindChar) {
  AssertionGuard guard({"Invalid UTF8 string"});
  const TypeParam text("a\xFFz");
  EXPECT_EQ(text.Length(), 2U);
  EXPECT_EQ(text.FindChar('z'), -1);
}

TYPED_TEST(Strings, DeleteCharacters) {
  const struct {
    int32 fIndex;
    int32 fCount;
    bool fResult;
    Expected fLeft;
  } kRows[] = {{0, 1, true, {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z", 4}},
               {1, 3, true, {"az", 2}},
               {3, 99, true, {"a\xC3\xA9\xE2\x82\xAC", 3}},
               {0, 5, true, {"", 0}},
               {-1, 1, false, {kMixed, 5}},
               {0, 0, false, {kMixed, 5}},
               {5, 1, false, {kMixed, 5}}};
  AssertionGuard guard;
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.fIndex << ", " << row.fCount);
    TypeParam text(kMixed);
    EXPECT_EQ(text.Delete(row.fIndex, row.fCount), row.fResult);
    ExpectText(text, row.fLeft.fText, row.fLeft.fLength);
  }
  TypeParam stray("ab\x80\x80z");  // a stray byte is stepped over as wide as the one before
  EXPECT_TRUE(stray.Delete(1, 2));
  EXPECT_STREQ(stray.CStr(), "a\x80z");
}

TYPED_TEST(Strings, CutToALength) {
  AssertionGuard guard({"length < fLength"});
  TypeParam text(kMixed);
  text.SetLength(5);
  text.SetLength(2);
  ExpectText(text, "a\xC3\xA9", 2);
  text.SetLength(3);
  ExpectText(text, "a\xC3\xA9", 2);
  text.SetLength(0);
  ExpectText(text, "", 0);
}

TYPED_TEST(Strings, InsertAtACharacter) {
  const struct {
    int32 fIndex;
    const char* fInserted;
    Expected fResult;
  } kRows[] = {{0, "xy", {"xy\xC3\xA9z", 4}}, {1, "\xC3\xA9", {"\xC3\xA9\xC3\xA9z", 3}},
               {2, "!", {"\xC3\xA9z!", 3}},   {3, "!", {"\xC3\xA9z", 2}},
               {-1, "!", {"\xC3\xA9z", 2}},   {0, "", {"\xC3\xA9z", 2}}};
  AssertionGuard guard;
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.fIndex << " " << row.fInserted);
    TypeParam text("\xC3\xA9z");
    text.Insert(TMCString15(row.fInserted), row.fIndex);
    ExpectText(text, row.fResult.fText, row.fResult.fLength);
  }
  TypeParam self("ab");
  self.Insert(self, 1);
  ExpectText(self, "aabb", 4);
  TypeParam empty;
  empty.Insert(self, 0);
  ExpectText(empty, "aabb", 4);
}

TYPED_TEST(Strings, HoldNumbersAndIds) {
  AssertionGuard guard;
  const struct {
    MCID fID;
    bool fLiteral;
    const char* fText;
  } kRows[] = {{"pset"_id, false, "pset"},   {"id  "_id, true, "id  "},  {0x21212121, false, "555819297"},
               {0x21212122, false, "!!!\""}, {0x21212121, true, "!!!!"}, {0, false, "0"},
               {0x41420000, false, "AB"},    {0x41420043, false, "AB"}};
  for (const auto& row : kRows) {
    TypeParam text("earlier");
    text.FromID(row.fID, row.fLiteral);
    EXPECT_STREQ(text.CStr(), row.fText) << std::hex << row.fID;
  }
  TypeParam text;
  text.FromID(0x41420043, true);
  EXPECT_EQ(text.ByteLength(), 4U);
  EXPECT_EQ(text.ToID(), 0x41420043U);
  EXPECT_EQ(TypeParam("ab").ToID(), 0x61620000U);
  EXPECT_EQ(TypeParam("pset and more").ToID(), "pset"_id);
  const std::pair<int32, const char*> kNumbers[] = {
      {0, "0"}, {7, "7"}, {-120, "-120"}, {INT32_MAX, "2147483647"}, {INT32_MIN, "-2147483648"}};
  for (const auto& [number, expected] : kNumbers) {
    text.FromInt(number);
    EXPECT_STREQ(text.CStr(), expected);
  }
}

TEST(MCString, OrderIgnoresCaseAndEqualityDoesNot) {
  AssertionGuard guard;
  const TMCString15 lower("abc");
  const TMCString31 upper("ABC");
  EXPECT_FALSE(lower < upper);
  EXPECT_FALSE(lower > upper);
  EXPECT_TRUE(lower <= upper);
  EXPECT_TRUE(lower >= upper);
  EXPECT_FALSE(lower == upper);
  EXPECT_TRUE(lower != upper);
  EXPECT_TRUE(lower == "abc");
  EXPECT_TRUE(lower != "abd");
  EXPECT_FALSE(lower == static_cast<const char*>(nullptr));
  EXPECT_TRUE(TMCString15("B") > lower);
  EXPECT_TRUE(lower < TMCString15("abcd"));
  EXPECT_TRUE(TMCString15() < lower);
  EXPECT_TRUE(lower == TMCString15("abc"));
}

#if !defined(_WIN32)
TEST(MCString, OrderKnowsTheCaseOfOtherLetters) {
  AssertionGuard guard;
  EXPECT_TRUE(TMCString15("\xC3\x89") <= TMCString15("\xC3\xA9"));  // U+00C9, U+00E9
  EXPECT_TRUE(TMCString15("\xC3\x89") >= TMCString15("\xC3\xA9"));
  EXPECT_TRUE(TMCString15("\xC3") != TMCString15("\xFF\xC3"));
  EXPECT_TRUE(TMCString15("\xC3") < TMCString15("\xFF\xC3"));  // a broken text has an order too
}
#endif

TEST(MCString, AFixedFormCutsAtItsCapacity) {
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

TEST(MCString, AnOverflowingInsertKeepsTheEarlierLength) {
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

TEST(MCString, TheBaseHasNoBytes) {
  AssertionGuard guard({"An exception is being thrown"});
  TMCString15 text;
  try {
    text.TMCString::Buffer();
    FAIL() << "the base has no bytes";
  } catch (const TMCException& exception) {
    EXPECT_EQ(exception.GetCode(), MC_E_PURECALL);
  }
}

TEST(MCString, DeletingManyCharactersNarrowsTheCount) {
  TestMemory memory;
  AssertionGuard guard;
  TMCDynamicString text(std::string(40000, 'x').c_str());
  EXPECT_TRUE(text.Delete(0, 40000));
  EXPECT_EQ(text.ByteLength(), 0U);
  EXPECT_EQ(text.Length(), 65536U);  // 40000 - int16(40000)
}

TEST(MCString, ASumIsALongFixedText) {
  AssertionGuard guard({kTooLong});
  EXPECT_STREQ((TMCString15("ab") + TMCString255("cd")).CStr(), "abcd");
  const TMCString1023 half(std::string(600, 'x').c_str());
  EXPECT_EQ((half + half).ByteLength(), 1023U);
}

TEST(TMCDynamicString, HasExactlyTheCapacityThatItWasMadeWith) {
  TestMemory memory;
  AssertionGuard guard;
  TMCDynamicString text("abc");
  EXPECT_EQ(text.MaxLength(), 3U);
  text += "de";
  EXPECT_EQ(text.MaxLength(), 5U);
  text = "x";
  EXPECT_EQ(text.MaxLength(), 5U);
  text.Insert(TMCString15("yz"), 0);
  EXPECT_EQ(text.MaxLength(), 3U);
  text.SetMaxLength(100);
  ExpectText(text, "yzx", 3);
  text.SetMaxLength(2);
  ExpectText(text, "yz", 2);
  EXPECT_EQ(TMCDynamicString().MaxLength(), 0U);
  EXPECT_EQ(TMCDynamicString("").MaxLength(), 0U);
}

TEST(TMCDynamicString, AppendsACharacterOfTheCodePage) {
  TestMemory memory;
  AssertionGuard guard;
  TMCDynamicString text;
  text += 'a';
  text += uint16{'b'};
  text += static_cast<char>(0xE9);
  EXPECT_STREQ(text.CStr(), "ab\xE9");
  EXPECT_EQ(text.Length(), 3U);  // one appended is one more, whatever its byte
}

TEST(TMCDynamicString, ReportsThatThereIsNoBlock) {
  TMCDynamicString text;
  AssertionGuard guard({kNoBlock, kNoBlock, "Bad Pointer"});
  EXPECT_EQ(text.Buffer(), nullptr);
  EXPECT_STREQ(text.CStr(), "");
  text.SetLength(0);
}

TEST(TMCDynamicString, IsEmptyWhenMemoryIsRefused) {
  TestMemory memory;
  const struct {
    const char* fLabel;
    void (*fChange)(TMCDynamicString&);
    std::vector<std::string> fReports;
    const char* fLeft;
  } kRows[] = {
      {"assignment", [](TMCDynamicString& text) { text = "longer than before"; }, {kTooLong}, ""},
      {"append", [](TMCDynamicString& text) { text += "more"; }, {kTooLong}, ""},
      {"append to itself", [](TMCDynamicString& text) { text += text; }, {kTooLong}, ""},
      {"a character", [](TMCDynamicString& text) { text += 'x'; }, {}, ""},
      {"a capacity", [](TMCDynamicString& text) { text.SetMaxLength(50); }, {}, ""},
      {"insertion", [](TMCDynamicString& text) { text.Insert(TMCString15("x"), 1); }, {"block"}, "abc"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    AssertionGuard guard(row.fReports);
    TMCDynamicString text("abc");
    memory.RefuseAfter(0);
    row.fChange(text);
    EXPECT_TRUE(memory.HasRefused());
    memory.RefuseNothing();
    ExpectText(text, row.fLeft, static_cast<uint32>(std::strlen(row.fLeft)));
    text = "usable";
    ExpectText(text, "usable", 6);
  }
  AssertionGuard guard({kTooLong});
  memory.RefuseAfter(0);
  const TMCDynamicString text("abc");
  ExpectText(text, "", 0);
}

TEST(TMCDynamicString, ACapacityBeyondTheAddressSpaceIsRefused) {
  TestMemory memory;
  AssertionGuard guard({kTooLong});
  TMCDynamicString text("abc");
#if SIZE_MAX > UINT32_MAX
  memory.RefuseAfter(0);
  text.SetByteLength(0xFFFFFFFE);
#else
  text.SetByteLength(0xFFFFFFFF);
#endif
  ExpectText(text, "", 0);
}

TEST(MCString, LivesOnTheHostsHeap) {
  TestMemory memory;
  AssertionGuard guard;
  TMCString* text = new TMCString255("on the heap");
  EXPECT_EQ(memory.GetLiveBlocks(), 1);
  delete text;
  text = new TMCDynamicString("on the heap");
  EXPECT_EQ(memory.GetLiveBlocks(), 2);
  delete text;
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

}  // namespace qlx
