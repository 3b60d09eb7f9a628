// The bytes of every kind of line, read back.
#include <functional>
#include <tuple>

#include "PlatformTextGuard.h"
#include "SilentReports.h"
#include "TokenText.h"

namespace qlx::test {
namespace {

using TokenLines = HostedTest;

// One layout of groups and values.
void WriteGroups(TMCStream& ioStream) {
  EXPECT_EQ(MCToken::BeginToken(ioStream, "decy"_id, true), 4);
  MCToken::WriteBool(ioStream, "dlin"_id, true);
  MCToken::BeginSection(ioStream);
  MCToken::WriteString(ioStream, "id  "_id, TMCString15("x"));
  MCToken::EndToken(ioStream);
  EXPECT_EQ(MCToken::BeginToken(ioStream, "none"_id), 0);
  MCToken::EndToken(ioStream);
  MCToken::EndToken(ioStream);
}

TEST_F(TokenLines, ABoolIsTrueForAnythingButZero) {
  EXPECT_EQ(WrittenBy([](TMCStream& s) { MCToken::WriteBool(s, "abcd"_id, false); }), "abcd 0\r\n");
  auto stream = Reading("2 ");
  EXPECT_TRUE(MCToken::ReadBool(stream));
}

TEST_F(TokenLines, ArraysMayHaveNoValuesOrNoId) {
  const real32 reals[] = {0.5F, -1};
  const std::string written = WrittenBy([&](TMCStream& s) {
    MCToken::WriteFloatArray(s, "none"_id, reals, 0);
    MCToken::WriteFloatArray(s, 0, reals, 2);  // the values alone
  });
  EXPECT_EQ(written, "none \r\n0.5,-1");
}

TEST_F(TokenLines, BadValuesEndInAnException) {
  uint16 shorts[3];
  using Reader = std::function<void(TMCStream&)>;
  const Reader array = [&](TMCStream& s) { MCToken::ReadUInt16Array(s, shorts, 3); };
  const std::tuple<const char*, Reader, const char*, MCResult> rows[] = {
      {"a blank for a comma", array, "1 2,3 ", MC_E_BADTOKEN},
      {"blanks behind commas are fine", array, "1, 2,\r\n3 ", 0},
      {"no value between commas", array, "1,,3 ", MC_E_BADTOKEN},
      {"too few values", array, "1,2", MC_E_EOF},
      {"ends behind a comma", array, "1,2,", MC_E_EOF},
      {"the last value ends with the stream", array, "1,2,3", 0},
      {"a value too large", array, "1,2,70000 ", MC_E_BADTOKEN},
      {"point", [](TMCStream& s) { MCToken::ReadPoint(s); }, "1;2", MC_E_BADTOKEN},
      {"rect", [](TMCStream& s) { MCToken::ReadRect(s); }, "1,2,3}", MC_E_BADTOKEN},
      {"number", [](TMCStream& s) { MCToken::ReadInt32(s); }, "abc", MC_E_BADTOKEN},
      {"a number at the end", [](TMCStream& s) { MCToken::ReadDouble(s); }, " ", MC_E_EOF},
      {"a byte at the end", [](TMCStream& s) { MCToken::ReadInt8(s); }, " ", MC_E_EOF},
      {"the last byte", [](TMCStream& s) { MCToken::ReadUInt8(s); }, " x", 0},
      {"id", [](TMCStream& s) { MCToken::ReadIdValue(s); }, "ab", MC_E_EOF},
  };
  const auto codeOf = [](const Reader& inReader, auto&& inStream) { return TokenCodeOf([&] { inReader(inStream); }); };
  for (const auto& [label, reader, text, code] : rows) {
    EXPECT_EQ(codeOf(reader, Reading(text)), code) << label;
    EXPECT_EQ(codeOf(reader, Reading<ForeignStream>(text)), code) << label << ", foreign";
  }
}

TEST_F(TokenLines, LayoutFollowsTheStreamsRecord) {
  TMCMemoryStream stream;
  MCToken::EditState(stream)->indent = 1;
  WriteGroups(stream);
  // A closing line stands at the depth of what it closes.
  EXPECT_EQ(Written(stream), "decy {\r\n dlin 1\r\n {\r\n  id   \"x\"\r\n  }\r\n none {\r\n  }\r\n }\r\n");
  EXPECT_EQ(MCToken::GetState(stream).depth, 0);
  MCToken::EndToken(stream);
  MCToken::EndToken(stream);
  EXPECT_EQ(MCToken::GetState(stream).depth, -2);
  MCToken::EditState(stream)->depth = 1000;
  const int32 before = stream.Tell();
  MCToken::BeginSection(stream);
  EXPECT_EQ(stream.Tell() - before, 1003);
}

TEST_F(TokenLines, TheSharedRecordIsNeverWrittenTo) {
  TMCMemoryStream first;
  const MCTokenState* const shared = &MCToken::GetState(first);
  WriteGroups(first);
  MCToken::BeginBinaryBlock(first, "DATA"_id, 0);
  EXPECT_EQ(&MCToken::GetState(first), shared);
  MCToken::SetTokenValue(first, 7);
  MCToken::EditState(first)->pending = 0x1234;
  MCToken::BeginBinaryBlock(first, "DATA"_id, 0);
  EXPECT_EQ(MCToken::GetState(first).pending, 0U) << "a block begins with no group unfinished";
  const TMCMemoryStream second;
  EXPECT_EQ(&MCToken::GetState(second), shared);
  EXPECT_EQ(MCToken::GetTokenValue(first), 7);
  EXPECT_EQ(MCToken::GetTokenValue(second), 1);
  EXPECT_EQ(shared->flag0, 1);
  EXPECT_EQ(shared->compact + shared->indent + shared->depth + static_cast<int32>(shared->pending), 0);
}

TEST_F(TokenLines, TextsComeBackUnchanged) {
  PlatformTextGuard platform;
  platform.UseUtf8CodePage();  // nothing is translated
  const std::string longText(100000, '"');
  for (const std::string& text : {std::string(), std::string("plain"), std::string("\\ and \" {}#$\r\n\t,"),
                                  std::string("caf\u00E9 \u20AC"), std::string("\\"), longText}) {
    TMCMemoryStream stream;
    MCToken::WriteString(stream, "text"_id, TMCDynamicString(text.c_str()));
    if (text.size() < 255) {
      stream.Seek(0, kFromStart);
      MCToken::ReadTokenId(stream);
      TMCDynamicString again("before");
      MCToken::ReadString(stream, again);
      EXPECT_EQ(again.CStr(), text);
      EXPECT_EQ(Rest(stream), "\r\n");
    }
    stream.Seek(0, kFromStart);
    TMCDynamicString again("before");
    MCToken::ReadLongString(stream, again);
    EXPECT_EQ(std::string(again.CStr()), text);
  }
}

TEST_F(TokenLines, AByte01InATextEscapesAndIsLost) {
  const SilentReports silence;  // on Windows each text asks for a translation table
  TMCMemoryStream stream;
  MCToken::WriteString(stream, "text"_id, TMCString15("a\x01\x62"));
  EXPECT_EQ(Written(stream), "text \"a\x01\x62\"\r\n");
  stream.Seek(5, kFromStart);
  TMCDynamicString text;
  MCToken::ReadString(stream, text);
  EXPECT_EQ(text, "ab");
  stream.Seek(5, kFromStart);
  MCToken::ReadLongString(stream, text);
  EXPECT_EQ(text, "ab");
}

TEST_F(TokenLines, TextsAreDecodedAsTheStreamSays) {
  const SilentReports silence;  // on Windows each text asks for a translation table
  auto stream = Reading("\"caf\xE9 \x80\" ");
  stream.SetEncoding(&kCodePageEncoding);
  TMCString31 decoded;
  MCToken::ReadString(stream, decoded);
  EXPECT_STREQ(decoded.CStr(), "caf\u00E9 \u20AC");
  stream.Seek(0, kFromStart).SetEncoding(&kBinaryEncoding);
  MCToken::ReadString(stream, decoded);
  EXPECT_STREQ(decoded.CStr(), "caf\xE9 \x80");
  stream.Seek(0, kFromStart).SetEncoding(nullptr);
  MCToken::ReadString(stream, decoded);
  EXPECT_STREQ(decoded.CStr(), "caf\xE9 \x80");
}

TEST_F(TokenLines, TextsForOtherSystemsAreLeftOut) {
  PlatformTextGuard platform;
  platform.UseUtf8CodePage();
  auto stream = Reading("\"@Mother@Wours@Xrest\" \"@Wmine@\" ");
  TMCDynamicString read;
  MCToken::ReadString(stream, read);
  EXPECT_STREQ(read.CStr(), "ours");
  const int32 place = stream.Tell();
  MCToken::ReadLongString(stream, read);
  EXPECT_STREQ(read.CStr(), "@Wmine@");
  stream.Seek(place, kFromStart);
  MCToken::ReadLongString(stream, read, true);
  EXPECT_STREQ(read.CStr(), "mine");
}

TEST_F(TokenLines, BadTextsEndInAnException) {
  TMCDynamicString text;
  const std::tuple<const char*, MCResult, MCResult> rows[] = {
      {"{", MC_E_BADTOKEN, MC_E_EOF},
      {"} \"x\"", MC_E_BADTOKEN, 0},
      {"$00000001\rx$ ", MC_E_BADTOKEN, MC_E_EOF},
      {"\"never closed", MC_E_EOF, MC_E_EOF},
      {"\"cut\\", MC_E_EOF, MC_E_EOF},
      {"word ", 0, MC_E_EOF},
      {"", MC_E_EOF, MC_E_EOF},
  };
  for (const auto& [givenText, shortCode, longCode] : rows) {
    auto stream = Reading(givenText);
    EXPECT_EQ(TokenCodeOf([&] { MCToken::ReadString(stream, text); }), shortCode) << givenText;
    stream.Seek(0, kFromStart);
    EXPECT_EQ(TokenCodeOf([&] { MCToken::ReadLongString(stream, text); }), longCode) << givenText;
  }
}

}  // namespace
}  // namespace qlx::test
