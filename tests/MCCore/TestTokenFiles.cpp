// Token files that were saved once and must be written and read like that for ever. They change with an entry in
// CHANGELOG.md alone.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

#include "MCFilePath.h"
#include "MCFileStream.h"
#include "TokenText.h"

namespace qlx {

using test::TestMemory;
using test::Written;

namespace {

const real32 kReals[] = {0.5F, -1.25F, 1e9F, 0};
const uint32 kTwoWords[] = {0, 4294967295U};
const uint16 kShorts[] = {1, 65535};

std::vector<uint8> AllBytes() {
  std::vector<uint8> bytes;
  for (int i = 0; i < 256; ++i) {
    bytes.push_back(static_cast<uint8>(i));
  }
  return bytes;
}

void WriteValues(TMCStream& ioStream) {
  MCToken::BeginToken(ioStream, "ALL "_id);
  MCToken::WriteBool(ioStream, "bool"_id, true);
  MCToken::WriteInt8(ioStream, "int8"_id, 'x');
  MCToken::WriteUInt8(ioStream, "uin8"_id, 0xE9);
  MCToken::WriteInt16(ioStream, "in16"_id, -32768);
  MCToken::WriteUInt16(ioStream, "ui16"_id, 65535);
  MCToken::WriteInt32(ioStream, "in32"_id, -2147483647 - 1);
  MCToken::WriteUInt32(ioStream, "ui32"_id, 4294967295U);
  MCToken::WriteFloat(ioStream, "flot"_id, -0.333333F);
  MCToken::WriteDouble(ioStream, "dbl "_id, 1234.05678);
  MCToken::BeginSection(ioStream);
  MCToken::WriteString(ioStream, "text"_id, TMCString31("\"a\" \\ {b} caf\xC3\xA9"));
  MCToken::WriteIdValue(ioStream, "idva"_id, "a\0b "_id);
  MCToken::EndToken(ioStream);
  MCToken::WritePoint(ioStream, "pont"_id, {1, -2});
  MCToken::WriteRect(ioStream, "rect"_id, {1, 2, 3, 4});
  MCToken::WriteUInt16Array(ioStream, "ar16"_id, kShorts, 2);
  MCToken::WriteUInt32Array(ioStream, "ar32"_id, kTwoWords, 2);
  MCToken::WriteFloatArray(ioStream, "arfl"_id, kReals, 4);
  MCToken::EndToken(ioStream);
}

void ReadValues(TMCStream& ioStream) {
  const auto expectID = [&](MCID inID) { EXPECT_EQ(MCToken::ReadTokenId(ioStream), inID); };
  expectID("ALL "_id);
  MCToken::ReadBegin(ioStream);
  expectID("bool"_id);
  EXPECT_TRUE(MCToken::ReadBool(ioStream));
  expectID("int8"_id);
  EXPECT_EQ(MCToken::ReadInt8(ioStream), 'x');
  expectID("uin8"_id);
  EXPECT_EQ(MCToken::ReadUInt8(ioStream), 0xE9);
  expectID("in16"_id);
  EXPECT_EQ(MCToken::ReadInt16(ioStream), -32768);
  expectID("ui16"_id);
  EXPECT_EQ(MCToken::ReadUInt16(ioStream), 65535);
  expectID("in32"_id);
  EXPECT_EQ(MCToken::ReadInt32(ioStream), -2147483647 - 1);
  expectID("ui32"_id);
  EXPECT_EQ(MCToken::ReadUInt32(ioStream), 4294967295U);
  expectID("flot"_id);
  EXPECT_EQ(MCToken::ReadFloat(ioStream), -0.333333F);
  expectID("dbl "_id);
  EXPECT_EQ(MCToken::ReadDouble(ioStream), 1234.05678);
  MCToken::ReadBegin(ioStream);
  expectID("text"_id);
  TMCString31 text;
  MCToken::ReadString(ioStream, text);
  EXPECT_STREQ(text.CStr(), "\"a\" \\ {b} caf\xC3\xA9");
  expectID("idva"_id);
  EXPECT_EQ(MCToken::ReadIdValue(ioStream), "a\0b "_id);
  MCToken::ReadEnd(ioStream);
  expectID("pont"_id);
  EXPECT_EQ(MCToken::ReadPoint(ioStream).fSecond, -2);
  expectID("rect"_id);
  EXPECT_EQ(MCToken::ReadRect(ioStream).fFourth, 4);
  uint16 shorts[2];
  uint32 words[2];
  real32 reals[4];
  expectID("ar16"_id);
  MCToken::ReadUInt16Array(ioStream, shorts, 2);
  EXPECT_TRUE(std::equal(shorts, shorts + 2, kShorts));
  expectID("ar32"_id);
  MCToken::ReadUInt32Array(ioStream, words, 2);
  EXPECT_TRUE(std::equal(words, words + 2, kTwoWords));
  expectID("arfl"_id);
  MCToken::ReadFloatArray(ioStream, reals, 4);
  EXPECT_TRUE(std::equal(reals, reals + 4, kReals));
  MCToken::ReadEnd(ioStream);
}

void WriteIndented(TMCStream& ioStream) {
  MCToken::EditState(ioStream)->indent = 1;
  WriteValues(ioStream);
}

void WriteCompact(TMCStream& ioStream) {
  MCToken::EditState(ioStream)->compact = 1;
  WriteValues(ioStream);
}

void WriteBytes(TMCStream& ioStream) {
  const std::vector<uint8> data = AllBytes();
  MCToken::WriteHexData(ioStream, "HEX "_id, 256, data.data());
  MCToken::BeginBinaryBlock(ioStream, "RAW "_id, 256);
  MCToken::WriteRawHex(ioStream, data.data(), 256, true);
  MCToken::EndBinaryBlock(ioStream);
  MCToken::BeginBinaryBlock(ioStream, "DIGI"_id, 512);
  MCToken::WriteRawHex(ioStream, data.data(), 256, false);
  MCToken::EndBinaryBlock(ioStream);
  MCToken::BeginBinaryBlock(ioStream, "PACK"_id, MCToken::kUnknownLength);
  uint32& state = MCToken::EditState(ioStream)->pending;
  MCToken::WritePacked(ioStream, data.data(), 256, state);
  MCToken::FlushPacked(ioStream, state);
  MCToken::EndBinaryBlock(ioStream);
}

void ReadBytes(TMCStream& ioStream) {
  std::vector<uint8> data(256);
  uint32 state = 0;
  const auto block = [&](MCID inID, uint32 inLength, const std::function<void()>& inRead) {
    EXPECT_EQ(MCToken::ReadTokenId(ioStream), inID);
    EXPECT_EQ(MCToken::ReadBinaryBlock(ioStream), inLength);
    data.assign(256, 0);
    inRead();
    EXPECT_EQ(data, AllBytes());
    MCToken::ReadBinaryBlockEnd(ioStream);
  };
  EXPECT_EQ(MCToken::ReadTokenId(ioStream), "HEX "_id);
  MCToken::ReadHexData(ioStream, 256, data.data());
  EXPECT_EQ(data, AllBytes());
  block("RAW "_id, 256, [&] { MCToken::ReadRawHex(ioStream, data.data(), 256, true); });
  block("DIGI"_id, 512, [&] { MCToken::ReadRawHex(ioStream, data.data(), 256, false); });
  block("PACK"_id, MCToken::kUnknownLength, [&] { MCToken::ReadPacked(ioStream, data.data(), 256, state); });
}

struct SavedFile {
  const char* fName;
  void (*fWrite)(TMCStream&);
  void (*fRead)(TMCStream&);
};

class TokenFiles : public testing::TestWithParam<SavedFile> {
 protected:
  std::string Path() const { return std::string(QLX_TEST_DATA "/tokens/") + GetParam().fName; }
  TestMemory fMemory;
};

}  // namespace

TEST_P(TokenFiles, AreWrittenByteForByte) {
  TMCMemoryStream stream;
  GetParam().fWrite(stream);
  std::ifstream file(PathOfText(Path()), std::ios::binary);
  ASSERT_TRUE(file) << Path();
  EXPECT_EQ(Written(stream), std::string(std::istreambuf_iterator<char>(file), {}));
}

TEST_P(TokenFiles, AreReadBack) {
  TMCFileStream stream;
  ASSERT_EQ(stream.Open(TMCDynamicString(Path().c_str()), kStreamReadable, 100, nullptr), MC_S_OK) << Path();
  GetParam().fRead(stream);
  EXPECT_EQ(MCToken::PeekKind(stream), MCToken::Kind::kEnd);
}

INSTANTIATE_TEST_SUITE_P(Saved, TokenFiles,
                         testing::Values(SavedFile{"values.tok", WriteValues, ReadValues},
                                         SavedFile{"indented.tok", WriteIndented, ReadValues},
                                         SavedFile{"compact.tok", WriteCompact, ReadValues},
                                         SavedFile{"bytes.tok", WriteBytes, ReadBytes}),
                         [](const auto& inInfo) {
                           const std::string name = inInfo.param.fName;
                           return name.substr(0, name.find('.'));
                         });

}  // namespace qlx
