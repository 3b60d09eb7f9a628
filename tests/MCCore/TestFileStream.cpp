// Files, buffered and not: the same content whatever the buffer, marks, failures, binary numbers.
#include <tuple>

#include "FileTest.h"
#include "MCBinaryFileIO.h"
#include "SilentReports.h"
#include "TokenText.h"

namespace qlx::test {
namespace {

constexpr uint32 kBoth = kStreamReadable | kStreamWritable;

using FileStream = FileTest;

// Sizes of the buffer: none, one byte, less than the data, more.
class FileStreamBuffers : public FileTest, public testing::WithParamInterface<int32> {};

TEST_P(FileStreamBuffers, AFileReadsAsItWasWritten) {
  bool created = false;
  TMCFileStream stream;
  ASSERT_EQ(stream.Open(Path(), kBoth, GetParam(), &created), MC_S_OK);
  EXPECT_TRUE(created);
  stream.WriteText("0123456789").Seek(3, kFromStart).Write("abc", 3);
  EXPECT_EQ(stream.Tell(), 6);
  EXPECT_EQ(stream.GetLength(), 10);
  uint8 byte = 0;
  EXPECT_EQ(stream.GetByte(byte).state(), 0U);
  EXPECT_EQ(byte, '6') << "reading goes on behind what was written";
  stream.PutBack('6').PutBack('C');
  EXPECT_EQ(stream.Tell(), 5);
  EXPECT_TRUE(stream.Seek(0, kFromEnd).eof());
  EXPECT_FALSE(stream.PutBack('9').eof());
  char room[8] = {};
  EXPECT_EQ(stream.Read(room, 8).gcount(), 1);
  EXPECT_TRUE(stream.eof());
  stream.WriteText("end").Seek(0, kFromStart);
  EXPECT_EQ(Rest(stream), "012abC6789end");
  stream.Close();
  EXPECT_EQ(Bytes(), "012abC6789end");
}

TEST_P(FileStreamBuffers, TokensReadFromAFileAsFromMemory) {
  const SilentReports silence;  // on Windows each text asks for a translation table
  std::string text;
  for (int i = 0; i < 300; ++i) {
    text += "valu " + std::to_string(i) + "\r\nDATA $00000004\r}{\"$$\r\n# comment\r\ntext \"a \\\"b\\\"\"\r\n";
  }
  Put(text);
  TMCFileStream stream;
  ASSERT_EQ(stream.Open(Path(), kStreamReadable, GetParam(), nullptr), MC_S_OK);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(MCToken::ReadTokenId(stream), "valu"_id);
    ASSERT_EQ(MCToken::ReadInt32(stream), i);
    ASSERT_EQ(MCToken::ReadTokenId(stream), "DATA"_id);
    MCToken::SkipToken(stream);
    ASSERT_EQ(MCToken::PeekKind(stream), MCToken::Kind::kWord);
    ASSERT_EQ(MCToken::ReadTokenId(stream), "text"_id);
    TMCString15 value;
    MCToken::ReadString(stream, value);
    ASSERT_EQ(value, "a \"b\"");
  }
  EXPECT_EQ(Rest(stream), "\r\n");
}

TEST_P(FileStreamBuffers, PositionAndLengthDoNotCountTheMark) {
  Put("\xEF\xBB\xBF text ");
  TMCFileStream stream;
  ASSERT_EQ(stream.Open(Path(), kBoth, GetParam(), nullptr), MC_S_OK);
  EXPECT_EQ(stream.GetMarkByteCount(), 3);
  EXPECT_EQ(stream.GetEncoding(), &kUtf8MarkedEncoding);
  EXPECT_EQ(stream.GetLength(), 6);
  char word[8];
  stream.ReadWord(word, sizeof word);
  EXPECT_STREQ(word, "text");
  EXPECT_EQ(stream.Tell(), 5);
  stream.Seek(0, kFromStart).Write("T", 1);
  stream.Close();
  EXPECT_EQ(Bytes(), "\xEF\xBB\xBFTtext ");

  ASSERT_EQ(stream.Open(Path(), kStreamWritable, GetParam(), nullptr), MC_S_OK);
  EXPECT_EQ(stream.Tell(), 0);
  stream.WriteText("new");
  EXPECT_EQ(stream.GetLength(), 3);
  stream.Close();
  EXPECT_EQ(Bytes(), "\xEF\xBB\xBFnew") << "the encoding's mark is written at the start";
}

INSTANTIATE_TEST_SUITE_P(Sizes, FileStreamBuffers, testing::Values(0, 1, 5, 4096));

TEST_F(FileStream, AMissingFileIsMadeWhereItMayBe) {
  const std::tuple<const char*, uint32, MCResult> rows[] = {
      {"to be read", kStreamReadable, MC_E_FILENOTFOUND},
      {"must exist", kBoth | kStreamMustExist, MC_E_FILENOTFOUND},
      {"to be written", kStreamWritable, MC_S_OK},
      {"to be read and written", kBoth, MC_S_OK},
  };
  for (const auto& [label, mode, result] : rows) {
    std::filesystem::remove(FilePath());
    bool created = result != MC_S_OK;
    TMCFileStream stream;
    EXPECT_EQ(stream.Open(Path(), mode, 0, &created), result) << label;
    EXPECT_EQ(created, result == MC_S_OK) << label;
    EXPECT_EQ(stream.fail(), result != MC_S_OK) << label;
    if (result == MC_S_OK) {
      ASSERT_EQ(stream.Open(Path(), mode | kStreamMustExist, 0, &created), MC_S_OK) << label;
      EXPECT_FALSE(created) << label;
    }
  }
}

TEST_F(FileStream, WhatCannotBeOpenedFails) {
  TMCFileStream stream;
  const AssertionGuard guard({kStreamReport, kStreamReport, kStreamReport});
  EXPECT_EQ(stream.Open(TMCDynamicString(PathText(fFolder).c_str()), kStreamReadable, 0, nullptr), MC_E_NOTVALID);
  EXPECT_EQ(stream.Open(Path("no/such/folder"), kBoth, 0, nullptr), MC_E_FILENOTFOUND);
  EXPECT_EQ(stream.Open(Path(), 0, 0, nullptr), MC_E_FILENOTFOUND);
  EXPECT_EQ(stream.state(), kStreamFailed);
  uint8 byte = 0;
  EXPECT_TRUE(stream.GetByte(byte).fail()) << "a stream without a file";
  EXPECT_TRUE(stream.Write("x", 1).fail());
  EXPECT_TRUE(stream.Seek(0, kFromStart).fail());
}

TEST_F(FileStream, TheBufferIsHalvedUntilThereIsMemory) {
  const TMCDynamicString path = Path();
  TMCFileStream stream;
  fMemory.RefuseAbove(300);
  const int before = fMemory.GetRequests();
  EXPECT_EQ(stream.Open(path, kBoth, 1000, nullptr), MC_S_OK);
  EXPECT_EQ(fMemory.GetRequests() - before, 3);  // 1000, 500, 250
  stream.Close();
  fMemory.RefuseAbove(0);
  EXPECT_EQ(stream.Open(path, kBoth, 1000, nullptr), MC_E_OUTOFMEMORY);
  EXPECT_EQ(stream.Open(path, kBoth, 0, nullptr), MC_S_OK) << "no buffer needs no memory";
}

TEST_F(FileStream, AnEmptyEncodingIsReportedOnOutput) {
  TMCFileStream stream;
  stream.SetEncoding(nullptr);
  const AssertionGuard guard({"fEncoding"});
  EXPECT_EQ(stream.Open(Path(), kBoth, 0, nullptr), MC_S_OK);
  EXPECT_EQ(stream.Open(Path(), kStreamReadable, 0, nullptr), MC_S_OK);
}

TEST_F(FileStream, BinaryNumbersFollowTheByteOrder) {
  MCBinaryFileIO file;
  ASSERT_EQ(file.Open(Path(), kBoth, 16, nullptr), MC_S_OK);
  const auto write = [&] {
    file.WriteInt8(-2).WriteUInt8(3).WriteInt16(-2).WriteUInt16(0x1234).WriteInt32(-2).WriteUInt32(0x12345678);
    file.WriteFloat(1.5F).WriteDouble(-0.1);
  };
  write();
  file.SetByteOrder(2);
  write();
  file.Flush();
  const std::string bytes = Bytes();
  ASSERT_EQ(bytes.size(), 52U);
  EXPECT_EQ(bytes.substr(4, 2), "\x34\x12");
  EXPECT_EQ(bytes.substr(30, 2), "\x12\x34");
  file.Seek(0, kFromStart);
  for (const int32 order : {1, 2}) {
    file.SetByteOrder(order);
    const auto expect = [&]<class Value>(TMCStream& (TMCStream::*inRead)(Value&), Value inValue) {
      Value value{};
      (file.*inRead)(value);
      EXPECT_EQ(value, inValue) << order;
    };
    expect(&TMCStream::ReadInt8, int8{-2});
    expect(&TMCStream::ReadUInt8, uint8{3});
    expect(&TMCStream::ReadInt16, int16{-2});
    expect(&TMCStream::ReadUInt16, uint16{0x1234});
    expect(&TMCStream::ReadInt32, int32{-2});
    expect(&TMCStream::ReadUInt32, uint32{0x12345678});
    expect(&TMCStream::ReadFloat, 1.5F);
    expect(&TMCStream::ReadDouble, -0.1);
  }
  const AssertionGuard guard({kStreamReport});
  int32 cut = 7;
  file.Seek(-3, kFromEnd).ReadInt32(cut);
  EXPECT_EQ(cut, 0);
  EXPECT_EQ(file.state(), kStreamEnd | kStreamFailed);
}

TEST_F(FileStream, BinaryFilesHaveNoMark) {
  Put("\xEF\xBB\xBF!");
  MCBinaryFileIO file;
  ASSERT_EQ(file.Open(Path(), kStreamReadable, 0, nullptr), MC_S_OK);
  uint32 value = 0;
  file.ReadUInt32(value);
  EXPECT_EQ(value, 0x21BFBBEFU);
}

}  // namespace
}  // namespace qlx::test
