// The bytes of every kind of line, read back.
#include <functional>

#include "PlatformTextGuard.h"
#include "TokenText.h"

namespace qlx::test {
namespace {

using TokenLines = HostedTest;

// Reads a value of a line behind its id.
template <class Reader>
auto ValueOf(const std::string& inLine, Reader&& inReader) {
  auto stream = Reading(inLine);
  MCToken::ReadTokenId(stream);
  return inReader(static_cast<TMCStream&>(stream));
}

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

TEST_F(TokenLines, ValuesAreWrittenAndReadBack) {
  const std::string int8s = WrittenBy([](TMCStream& s) { MCToken::WriteInt8(s, "abcd"_id, -3); });
  EXPECT_EQ(int8s, "abcd \xFD\r\n");
  EXPECT_EQ(ValueOf(int8s, MCToken::ReadInt8), -3);
  const std::string bytes = WrittenBy([](TMCStream& s) { MCToken::WriteUInt8(s, "abcd"_id, 65); });
  EXPECT_EQ(bytes, "abcd A\r\n");
  EXPECT_EQ(ValueOf(bytes, MCToken::ReadUInt8), 65);
  const std::string shorts = WrittenBy([](TMCStream& s) { MCToken::WriteInt16(s, "abcd"_id, -32768); });
  EXPECT_EQ(shorts, "abcd -32768\r\n");
  EXPECT_EQ(ValueOf(shorts, MCToken::ReadInt16), -32768);
  EXPECT_EQ(ValueOf(WrittenBy([](TMCStream& s) { MCToken::WriteUInt16(s, "abcd"_id, 65535); }), MCToken::ReadUInt16),
            65535);
  EXPECT_EQ(ValueOf(WrittenBy([](TMCStream& s) { MCToken::WriteInt32(s, "id  "_id, -5); }), MCToken::ReadInt32), -5);
  EXPECT_EQ(
      ValueOf(WrittenBy([](TMCStream& s) { MCToken::WriteUInt32(s, "abcd"_id, 4000000000U); }), MCToken::ReadUInt32),
      4000000000U);
  EXPECT_EQ(ValueOf(WrittenBy([](TMCStream& s) { MCToken::WriteFloat(s, "abcd"_id, -0.5F); }), MCToken::ReadFloat),
            -0.5F);
  EXPECT_EQ(
      ValueOf(WrittenBy([](TMCStream& s) { MCToken::WriteDouble(s, "abcd"_id, 1234.5678); }), MCToken::ReadDouble),
      1234.5678);
  EXPECT_EQ(WrittenBy([](TMCStream& s) { MCToken::WriteBool(s, "abcd"_id, false); }), "abcd 0\r\n");
  EXPECT_TRUE(ValueOf("abcd 2\r\n", MCToken::ReadBool)) << "anything but 0";
  const std::string id = WrittenBy([](TMCStream& s) { MCToken::WriteIdValue(s, "abcd"_id, "x\0y "_id); });
  EXPECT_EQ(id, "abcd x'y \r\n");
  EXPECT_EQ(ValueOf(id, MCToken::ReadIdValue), "x\0y "_id);
}

TEST_F(TokenLines, RectsStandInTheOrderSecondFirstFourthThird) {
  const std::string point = WrittenBy([](TMCStream& s) { MCToken::WritePoint(s, "pont"_id, {1, -2}); });
  EXPECT_EQ(point, "pont 1,-2\r\n");
  EXPECT_EQ(ValueOf(point, MCToken::ReadPoint).fSecond, -2);
  const std::string text = WrittenBy([](TMCStream& s) { MCToken::WriteRect(s, "rect"_id, {1, 2, 3, 4}); });
  EXPECT_EQ(text, "rect 2,1,4,3\r\n");
  const MCRect rect = ValueOf(text, MCToken::ReadRect);
  EXPECT_EQ(rect.fFirst, 1);
  EXPECT_EQ(rect.fSecond, 2);
  EXPECT_EQ(rect.fThird, 3);
  EXPECT_EQ(rect.fFourth, 4);
}

TEST_F(TokenLines, ArraysHaveCommasBetweenTheirValues) {
  const uint16 shorts[] = {1, 65535, 0};
  const uint32 words[] = {4294967295U};
  const real32 reals[] = {0.5F, -1, 2.25F};
  const std::string written = WrittenBy([&](TMCStream& s) {
    MCToken::WriteUInt16Array(s, "shrt"_id, shorts, 3);
    MCToken::WriteUInt32Array(s, "word"_id, words, 1);
    MCToken::WriteFloatArray(s, "real"_id, reals, 3);
    MCToken::WriteFloatArray(s, "none"_id, reals, 0);
    MCToken::WriteFloatArray(s, 0, reals, 2);  // the values alone
  });
  EXPECT_EQ(written, "shrt 1,65535,0\r\nword 4294967295\r\nreal 0.5,-1,2.25\r\nnone \r\n0.5,-1");
  auto stream = Reading(written);
  uint16 shortsAgain[3];
  uint32 wordsAgain[1];
  real32 realsAgain[3];
  MCToken::ReadTokenId(stream);
  MCToken::ReadUInt16Array(stream, shortsAgain, 3);
  MCToken::ReadTokenId(stream);
  MCToken::ReadUInt32Array(stream, wordsAgain, 1);
  MCToken::ReadTokenId(stream);
  MCToken::ReadFloatArray(stream, realsAgain, 3);
  EXPECT_TRUE(std::equal(shorts, shorts + 3, shortsAgain));
  EXPECT_EQ(wordsAgain[0], words[0]);
  EXPECT_TRUE(std::equal(reals, reals + 3, realsAgain));
}

TEST_F(TokenLines, BadValuesEndInAnException) {
  uint16 shorts[3];
  using Reader = std::function<void(TMCStream&)>;
  const Reader array = [&](TMCStream& s) { MCToken::ReadUInt16Array(s, shorts, 3); };
  const struct {
    const char* fLabel;
    Reader fReader;
    const char* fText;
    MCResult fCode;
  } rows[] = {
      {"a blank for a comma", array, "1 2,3 ", MC_E_BADTOKEN},
      {"a blank ahead of the comma", array, "1 ,2,3 ", MC_E_BADTOKEN},
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
  for (const auto& row : rows) {
    auto stream = Reading(row.fText);
    EXPECT_EQ(CodeOf([&] { row.fReader(stream); }), row.fCode) << row.fLabel;
    auto foreign = Reading<ForeignStream>(row.fText);
    EXPECT_EQ(CodeOf([&] { row.fReader(foreign); }), row.fCode) << row.fLabel << ", foreign";
  }
}

TEST_F(TokenLines, LayoutFollowsTheStreamsRecord) {
  EXPECT_EQ(WrittenBy(WriteGroups), "decy {\r\ndlin 1\r\n{\r\nid   \"x\"\r\n}\r\nnone {\r\n}\r\n}\r\n");
  EXPECT_EQ(WrittenBy([](TMCStream& s) {
              MCToken::EditState(s)->compact = 1;
              WriteGroups(s);
            }),
            "decy{\r\ndlin 1\r\n{\r\nid  \"x\"\r\n}\r\nnone{\r\n}\r\n}\r\n");
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
                                  std::string("caf\xC3\xA9 \xE2\x82\xAC"), std::string("\\"), longText}) {
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
  TMCMemoryStream stream;
  MCToken::WriteString(stream, "text"_id, TMCString15("a\x01\x62"));
  EXPECT_EQ(Written(stream), "text \"a\x01\x62\"\r\n");
  stream.Seek(5, kFromStart);
  TMCString15 text;
  MCToken::ReadString(stream, text);
  EXPECT_EQ(text, "ab");
}

TEST_F(TokenLines, TextsAreDecodedAsTheStreamSays) {
  const std::string text = "\"caf\xE9 \x80\" ";
  auto stream = Reading(text);
  stream.SetEncoding(&kCodePageEncoding);
  TMCString31 decoded;
  MCToken::ReadString(stream, decoded);
  EXPECT_STREQ(decoded.CStr(), "caf\xC3\xA9 \xE2\x82\xAC");
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
  const std::string text = "\"@Mother@Wours@Xrest\" \"@Wmine@\" ";
  auto stream = Reading(text);
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
  const struct {
    const char* fText;
    MCResult fShort;
    MCResult fLong;
  } rows[] = {
      {"{", MC_E_BADTOKEN, MC_E_EOF},
      {"} \"x\"", MC_E_BADTOKEN, 0},
      {"$00000001\rx$ ", MC_E_BADTOKEN, MC_E_EOF},
      {"\"never closed", MC_E_EOF, MC_E_EOF},
      {"\"cut\\", MC_E_EOF, MC_E_EOF},
      {"word ", 0, MC_E_EOF},
      {"", MC_E_EOF, MC_E_EOF},
  };
  for (const auto& row : rows) {
    auto stream = Reading(row.fText);
    EXPECT_EQ(CodeOf([&] { MCToken::ReadString(stream, text); }), row.fShort) << row.fText;
    stream.Seek(0, kFromStart);
    EXPECT_EQ(CodeOf([&] { MCToken::ReadLongString(stream, text); }), row.fLong) << row.fText;
  }
}

}  // namespace
}  // namespace qlx::test
