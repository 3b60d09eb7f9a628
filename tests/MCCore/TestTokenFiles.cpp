// Token files that were saved once and must be written and read like that for ever. They change with an entry in
// CHANGELOG.md alone.
#include <array>
#include <fstream>
#include <functional>
#include <iterator>
#include <numeric>
#include <type_traits>
#include <vector>

#include "MCFilePath.h"
#include "MCFileStream.h"
#include "SilentReports.h"
#include "TokenText.h"

namespace qlx::test {
namespace {

const std::array<real32, 4> kReals = {0.5F, -1.25F, 1e9F, 0};
const std::array<uint32, 2> kTwoWords = {0, 4294967295U};
const std::array<uint16, 2> kShorts = {1, 65535};

std::vector<uint8> AllBytes() {
  std::vector<uint8> bytes(256);
  std::iota(bytes.begin(), bytes.end(), uint8{0});
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
  MCToken::WriteUInt16Array(ioStream, "ar16"_id, kShorts.data(), 2);
  MCToken::WriteUInt32Array(ioStream, "ar32"_id, kTwoWords.data(), 2);
  MCToken::WriteFloatArray(ioStream, "arfl"_id, kReals.data(), 4);
  MCToken::EndToken(ioStream);
}

void ReadValues(TMCStream& ioStream) {
  const auto expectID = [&](MCID inID) { EXPECT_EQ(MCToken::ReadTokenId(ioStream), inID); };
  const auto expect = [&](MCID inID, auto inReader, auto inValue) {
    expectID(inID);
    EXPECT_EQ(inReader(ioStream), inValue);
  };
  expectID("ALL "_id);
  MCToken::ReadBegin(ioStream);
  expect("bool"_id, MCToken::ReadBool, true);
  expect("int8"_id, MCToken::ReadInt8, 'x');
  expect("uin8"_id, MCToken::ReadUInt8, 0xE9);
  expect("in16"_id, MCToken::ReadInt16, -32768);
  expect("ui16"_id, MCToken::ReadUInt16, 65535);
  expect("in32"_id, MCToken::ReadInt32, -2147483647 - 1);
  expect("ui32"_id, MCToken::ReadUInt32, 4294967295U);
  expect("flot"_id, MCToken::ReadFloat, -0.333333F);
  expect("dbl "_id, MCToken::ReadDouble, 1234.05678);
  MCToken::ReadBegin(ioStream);
  expectID("text"_id);
  TMCString31 text;
  MCToken::ReadString(ioStream, text);
  EXPECT_STREQ(text.CStr(), "\"a\" \\ {b} caf\xC3\xA9");
  expect("idva"_id, MCToken::ReadIdValue, "a\0b "_id);
  MCToken::ReadEnd(ioStream);
  expectID("pont"_id);
  const MCPoint point = MCToken::ReadPoint(ioStream);
  EXPECT_TRUE(point.fFirst == 1 && point.fSecond == -2);
  expectID("rect"_id);
  const MCRect rect = MCToken::ReadRect(ioStream);
  EXPECT_TRUE(rect.fFirst == 1 && rect.fSecond == 2 && rect.fThird == 3 && rect.fFourth == 4);
  const auto expectAll = [&](MCID inID, auto inReader, const auto& inValues) {
    expectID(inID);
    std::remove_cvref_t<decltype(inValues)> read;
    inReader(ioStream, read.data(), static_cast<uint32>(read.size()));
    EXPECT_EQ(read, inValues);
  };
  expectAll("ar16"_id, MCToken::ReadUInt16Array, kShorts);
  expectAll("ar32"_id, MCToken::ReadUInt32Array, kTwoWords);
  expectAll("arfl"_id, MCToken::ReadFloatArray, kReals);
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

using TokenFiles = HostedTest;

struct SavedFile {
  const char* fName;
  void (*fWrite)(TMCStream&);
  void (*fRead)(TMCStream&);
};

const SavedFile kSavedFiles[] = {
    {QLX_TEST_DATA "/tokens/values.tok", WriteValues, ReadValues},
    {QLX_TEST_DATA "/tokens/indented.tok", WriteIndented, ReadValues},
    {QLX_TEST_DATA "/tokens/compact.tok", WriteCompact, ReadValues},
    {QLX_TEST_DATA "/tokens/bytes.tok", WriteBytes, ReadBytes},
};

TEST_F(TokenFiles, AreWrittenByteForByte) {
  for (const SavedFile& saved : kSavedFiles) {
    TMCMemoryStream stream;
    saved.fWrite(stream);
    std::ifstream file(PathOfText(saved.fName), std::ios::binary);
    ASSERT_TRUE(file) << saved.fName;
    EXPECT_EQ(Written(stream), std::string(std::istreambuf_iterator<char>(file), {})) << saved.fName;
  }
}

TEST_F(TokenFiles, AreReadBack) {
  const SilentReports silence;  // on Windows each text asks for a translation table
  for (const SavedFile& saved : kSavedFiles) {
    SCOPED_TRACE(saved.fName);
    TMCFileStream stream;
    ASSERT_EQ(stream.Open(TMCDynamicString(saved.fName), kStreamReadable, 100, nullptr), MC_S_OK);
    saved.fRead(stream);
    EXPECT_EQ(MCToken::PeekKind(stream), MCToken::Kind::kEnd);
  }
}

}  // namespace
}  // namespace qlx::test
