// Tokens, ids, groups: what is read, where reading stops, and how bad input ends.
#include <tuple>

#include "TokenText.h"

namespace qlx::test {
namespace {

using TokenIds = HostedTest;

using MCToken::Kind;

// Every test runs on a stream of ours, whose bytes are taken from memory, and on a foreign one.
template <class Stream>
using TokenLexer = HostedTest;

using Streams = testing::Types<TMCMemoryStream, ForeignStream>;
TYPED_TEST_SUITE(TokenLexer, Streams);

// The bytes of the group that comes next.
std::string Captured(TMCStream& ioStream) {
  uint8* data = nullptr;
  uint32 size = 0;
  MCToken::CaptureGroup(ioStream, data, size);
  const std::string bytes(reinterpret_cast<char*>(data), size);
  MCfree(data);
  return bytes;
}

struct TokenRow {
  const char* fLabel;
  std::string fText;
  MCResult fResult;
  std::string fToken;
  std::string fKept;  // with quotes and comments
  std::string fRest;
};

const std::string kLongWord(300, 'w');

const TokenRow kTokenRows[] = {
    {"word", " \t\r\nabc def", MC_S_OK, "abc", "abc", " def"},
    {"word up to a comment", "abc#x", MC_S_OK, "abc", "abc", "#x"},
    {"word up to a quote", "abc\"x\"", MC_S_OK, "abc", "abc", "\"x\""},
    {"a dollar within a word", "a$b ", MC_S_OK, "a$b", "a$b", " "},
    {"braces", "{}", MC_S_OK, "{", "{", "}"},
    {"text", "\"a {b} # $\" ", MC_S_OK, "a {b} # $", "\"a {b} # $\"", " "},
    {"empty text", "\"\"x", MC_S_OK, "", "\"\"", "x"},
    {"escapes", "\"\\\"\\\\\\n\" ", MC_S_OK, "\"\\n", "\"\\\"\\\\\\n\"", " "},
    {"the old escape", "\"\x01\"\x01\x01\" ", MC_S_OK, "\"\x01", "\"\x01\"\x01\x01\"", " "},
    {"comment", "# one\r# two\r\n abc ", MC_S_OK, "abc", "# one\r# two\rabc", " "},
    {"block", "$00000003\r}\"$$ x", MC_S_OK, "$", "$", " x"},
    {"block of unknown length", "$FFFFFFFFabc$x", MC_S_OK, "$", "$", "x"},
    {"digits apart", "$ 00-00\r0003abcd$x", MC_S_OK, "$", "$", "x"},
    {"data longer than the length", "$00000001\rabc$x", MC_S_OK, "$", "$", "x"},
    {"long word", kLongWord + " x", MC_S_OK, kLongWord.substr(0, 255), kLongWord.substr(0, 255), " x"},
    {"long text", '"' + kLongWord + "\"x", MC_S_OK, kLongWord.substr(0, 255), '"' + kLongWord.substr(0, 254), "x"},
    {"a word that ends with the stream", "abc", MC_E_EOF, "abc", "abc", ""},
    {"nothing", "", MC_E_EOF, "", "", ""},
    {"blanks alone", " \r\n", MC_E_EOF, "", "", ""},
    {"an open comment", "# abc", MC_E_EOF, "", "# abc", ""},
    {"an open text", "\"abc", MC_E_EOF, "abc", "\"abc", ""},
    {"an open escape", "\"abc\\", MC_E_EOF, "abc", "\"abc\\", ""},
    {"an open block", "$00000003\rabc", MC_E_EOF, "", "", ""},
};

TYPED_TEST(TokenLexer, ReadsOneTokenAndStopsBehindIt) {
  for (const TokenRow& row : kTokenRows) {
    SCOPED_TRACE(row.fLabel);
    for (const bool keepQuotes : {false, true}) {
      auto stream = Reading<TypeParam>(row.fText);
      MCToken::Buffer buffer;
      EXPECT_EQ(MCToken::ReadToken(stream, buffer, keepQuotes), row.fResult);
      EXPECT_EQ(buffer, keepQuotes ? row.fKept : row.fToken);
      EXPECT_EQ(stream.eof(), row.fResult == MC_E_EOF);
      EXPECT_EQ(Rest(stream), row.fRest);
    }
  }
}

TYPED_TEST(TokenLexer, SkippingStopsBehindATokenOrItsWholeGroup) {
  const struct {
    const char* fLabel;
    const char* fText;
    MCResult fCode;
    const char* fRest;
    bool fInside;
  } rows[] = {
      {"value", " 1,2 3", 0, " 3", false},
      {"of two tokens the first alone", "one two", 0, " two", false},
      {"group", "{ a { } b } c", 0, " c", false},
      {"a text that holds a brace", "{ \"{\" } c", 0, " c", false},
      {"a comment that holds a brace", "{ # }\r } c", 0, " c", false},
      {"a block that holds braces and quotes", "{ $00000004\r{}\"{$ } c", 0, " c", false},
      {"a closing brace", "} c", 0, " c", false},
      {"block", "$00000001\rx$ c", 0, " c", false},
      {"rest of a group", "a { b } } c", 0, " c", true},
      {"rest of an empty group", "} c", 0, " c", true},
      {"a group without an end", "{ a { } ", MC_E_EOF, "", false},
      {"length past the end ends at the next $", "{ $00FFFFFF\rab$ } c", 0, " c", false},
      {"length + 1 beyond 31 bits", "{ $7FFFFFFF\rab$ } c", 0, " c", false},
      {"length + 1 beyond 32 bits", "{ $FFFFFFFE\rab$ } c", 0, " c", false},
      {"length that would lead back", "{ $FFFFFFF0\rab$ } c", 0, " c", false},
      {"length past the end, no $", "{ $00FFFFFF\rab } c", MC_E_EOF, "", false},
      {"header with another $", "{ $00$ } c", MC_E_BADTOKEN, "$ } c", false},
      {"header cut by the end", "{ $0000", MC_E_EOF, "", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    auto stream = Reading<TypeParam>(row.fText);
    EXPECT_EQ(TokenCodeOf([&] { row.fInside ? MCToken::SkipToEnd(stream) : MCToken::SkipToken(stream); }), row.fCode);
    EXPECT_EQ(Rest(stream), row.fRest);
    if (!row.fInside) {  // capturing ends where skipping does
      auto again = Reading<TypeParam>(row.fText);
      EXPECT_EQ(TokenCodeOf([&] { Captured(again); }), row.fCode);
      EXPECT_EQ(Rest(again), row.fRest);
    }
  }
}

TYPED_TEST(TokenLexer, AMillionGroupsInEachOther) {
  constexpr std::size_t kDepth = 1000000;
  const std::string text =
      std::string(kDepth, '{') + "a \"" + std::string(kDepth, 'x') + "\" " + std::string(kDepth, '}') + " end ";
  auto stream = Reading<TypeParam>(text);
  MCToken::SkipToken(stream);
  EXPECT_EQ(Rest(stream), " end ");
  stream.Seek(0, kFromStart);
  EXPECT_EQ(Captured(stream).size(), text.size() - 5);
  stream.Seek(0, kFromStart);
  TMCDynamicString captured;
  MCToken::CaptureGroupText(stream, captured);
  EXPECT_EQ(captured.ByteLength(), text.size() - 5 + 2 * kDepth);
  auto open = Reading<TypeParam>(std::string_view(text).substr(0, kDepth));
  EXPECT_EQ(TokenCodeOf([&] { MCToken::SkipToken(open); }), MC_E_EOF);
}

TYPED_TEST(TokenLexer, IdsArePaddedAndStopAtBlanksAndCommas) {
  const struct {
    const char* fText;
    MCID fID;
    const char* fRest;
  } rows[] = {
      {"pset 1", "pset"_id, " 1"},     {"\r\n  psetx", "pset"_id, "x"}, {"id   5", "id  "_id, "  5"},
      {"id,self", "id  "_id, ",self"}, {"XYZ\r\n5", "XYZ "_id, "\n5"},  {"a'b'", 0x61006200, ""},
      {"{}\"# ", "{}\"#"_id, " "},
  };
  for (const auto& row : rows) {
    auto stream = Reading<TypeParam>(row.fText);
    EXPECT_EQ(MCToken::ReadTokenId(stream), row.fID) << row.fText;
    EXPECT_EQ(Rest(stream), row.fRest) << row.fText;
  }
  for (const char* const text : {"", "  ", "a", "abc"}) {
    auto stream = Reading<TypeParam>(text);
    EXPECT_EQ(TokenCodeOf([&] { MCToken::ReadTokenId(stream); }), MC_E_EOF) << "an id cut by the end: " << text;
  }
}

TYPED_TEST(TokenLexer, PeekingLeavesTheToken) {
  const std::tuple<const char*, Kind, const char*> rows[] = {
      {" # c\r\n a", Kind::kWord, "a"}, {" \"a\"", Kind::kString, "\"a\""}, {"$x", Kind::kBlock, "$x"},
      {"{", Kind::kOpen, "{"},          {" }", Kind::kClose, "}"},          {" ", Kind::kEnd, ""},
      {"# open", Kind::kEnd, ""},
  };
  for (const auto& [text, kind, rest] : rows) {
    auto stream = Reading<TypeParam>(text);
    EXPECT_EQ(MCToken::PeekKind(stream), kind) << text;
    EXPECT_EQ(Rest(stream), rest) << text;
    stream.Seek(0, kFromStart);
    bool atEnd = false;
    EXPECT_EQ(TokenCodeOf([&] { atEnd = MCToken::IsAtEnd(stream); }), kind == Kind::kEnd ? MC_E_EOF : MC_S_OK);
    EXPECT_EQ(atEnd, kind == Kind::kClose) << text;
  }
}

TYPED_TEST(TokenLexer, BracesAreExpectedWhereTheyMustStand) {
  const std::tuple<const char*, MCResult, MCResult> rows[] = {
      {" { ", 0, MC_E_BADTOKEN},
      {" } ", MC_E_BADTOKEN, 0},
      {"\"{\"", MC_E_BADTOKEN, MC_E_BADTOKEN},
      {"a ", MC_E_BADTOKEN, MC_E_BADTOKEN},
      {"$00000001\r{$", MC_E_BADTOKEN, MC_E_BADTOKEN},
      {"", MC_E_EOF, MC_E_EOF},
  };
  for (const auto& [text, beginCode, endCode] : rows) {
    auto begin = Reading<TypeParam>(text);
    EXPECT_EQ(TokenCodeOf([&] { MCToken::ReadBegin(begin); }), beginCode) << text;
    auto end = Reading<TypeParam>(text);
    EXPECT_EQ(TokenCodeOf([&] { MCToken::ReadEnd(end); }), endCode) << text;
  }
}

TYPED_TEST(TokenLexer, CaptureTakesAGroupAsItStandsOrAsSingleTokens) {
  auto stream = Reading<TypeParam>(" {\r\n a\t\"b \\\" c\" # note }\r\n $00000001\r}$ d{}\r\n} e");
  EXPECT_EQ(Captured(stream), " {\r\n a\t\"b \\\" c\" \r\n  d{}\r\n}");
  EXPECT_EQ(Rest(stream), " e");
  stream.Seek(0, kFromStart);
  TMCDynamicString text;
  MCToken::CaptureGroupText(stream, text);
  EXPECT_STREQ(text.CStr(), "{ a \"b \\\" c\" d { } } ");
  EXPECT_EQ(Rest(stream), " e");
}

TEST_F(TokenIds, ReadBackWithTheSameBits) {
  const std::tuple<MCID, const char*, const char*> rows[] = {
      {"pset"_id, "pset", "pset"},
      {"id  "_id, "id  ", "id"},
      {0x61006200, "a'b'", "a'b'"},
      {0, "''''", "''''"},
      {0xFF80C3A9, "\xFF\x80\xC3\xA9", "\xFF\x80\xC3\xA9"},
  };
  const auto written = [](MCID id, bool dropBlanks) {
    return WrittenBy([&](TMCStream& s) { MCToken::WriteTokenId(s, id, dropBlanks); });
  };
  for (const auto& [id, whole, shortened] : rows) {
    EXPECT_EQ(written(id, false), whole);
    EXPECT_EQ(written(id, true), shortened);
    EXPECT_EQ(MCToken::MakeToken(whole), id);
    const std::string text = shortened + std::string(" ");
    auto stream = Reading(text);
    EXPECT_EQ(MCToken::ReadTokenId(stream), id);
  }
  EXPECT_EQ(written("a  b"_id, true), "a");
  EXPECT_EQ(MCToken::MakeToken(nullptr), "    "_id);
  EXPECT_EQ(MCToken::MakeToken("ab"), "ab  "_id);
  EXPECT_EQ(MCToken::MakeToken("abcdef"), "abcd"_id);
}

TEST_F(TokenIds, ACommaInTheirPlaceIsReportedAndLeft) {
  const AssertionGuard guard({"c != tCOMMA", "c != tCOMMA"});
  EXPECT_EQ(WrittenBy([](TMCStream& s) { MCToken::WriteTokenId(s, "a,b "_id); }), "a,b ");
  auto stream = Reading(" ,abc");
  EXPECT_EQ(MCToken::ReadTokenId(stream), "    "_id);
  EXPECT_EQ(Rest(stream), ",abc");
}

}  // namespace
}  // namespace qlx::test
