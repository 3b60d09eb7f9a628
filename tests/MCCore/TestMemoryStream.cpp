#include "TokenText.h"

namespace qlx::test {
namespace {

using MemoryStream = HostedTest;

TEST_F(MemoryStream, BeginsWithAnEmptyBlockThatGrowsBy4096OrToWhatIsNeeded) {
  TMCMemoryStream stream;
  EXPECT_EQ(stream.GetCapacity(), 4096);
  EXPECT_EQ(stream.GetSize(), 0);
  const std::string block(10000, 'x');
  const int32 kRows[][3] = {{4096, 4096, 4096}, {1, 4097, 8192}, {10000, 14097, 14097}, {1, 14098, 18193}};
  for (const auto& [written, size, capacity] : kRows) {
    stream.Write(block.data(), written);
    EXPECT_EQ(stream.GetSize(), size);
    EXPECT_EQ(stream.GetCapacity(), capacity);
  }
  stream.Seek(2, kFromStart).Write("abc", 3);
  EXPECT_EQ(stream.GetSize(), 14098);
  EXPECT_EQ(Written(stream).substr(0, 6), "xxabcx");
}

TEST_F(MemoryStream, AReadPastTheEndMovesWhatIsThere) {
  auto stream = Reading("abcd");
  char room[8] = {};
  EXPECT_EQ(stream.Read(room, 3).gcount(), 3);
  EXPECT_EQ(stream.state(), 0U);
  EXPECT_EQ(stream.Read(room, 3).gcount(), 1);
  EXPECT_EQ(room[0], 'd');
  EXPECT_EQ(stream.state(), kStreamEnd);
  uint8 byte = 7;
  EXPECT_TRUE(stream.GetByte(byte).eof());
  EXPECT_EQ(byte, 7);
  stream.Seek(-1, kFromEnd);
  EXPECT_FALSE(stream.GetByte(byte).eof()) << "the last byte is not the end";
}

TEST_F(MemoryStream, SeekOnTheEndIsTheEndOfFile) {
  auto stream = Reading("abcd");
  const struct {
    const char* fLabel;
    int32 fOffset, fOrigin, fPlace;
    uint32 fState;
  } rows[] = {
      {"start", 0, kFromStart, 0, 0},
      {"forth", 3, kFromCursor, 3, 0},
      {"onto the end", 1, kFromCursor, 4, kStreamEnd},
      {"back", -2, kFromEnd, 2, 0},
      {"past the end stays", 3, kFromCursor, 2, kStreamFailed},
      {"ahead of the start stays", -1, kFromStart, 2, kStreamFailed},
      {"far", 0x7FFFFFFF, kFromCursor, 2, kStreamFailed},
      {"far back", -0x7FFFFFFF - 1, kFromCursor, 2, kStreamFailed},
  };
  for (const auto& row : rows) {
    const bool fails = row.fState == kStreamFailed;
    const AssertionGuard guard(fails ? std::vector<std::string>{kStreamReport} : std::vector<std::string>{});
    stream.clear();
    stream.Seek(row.fOffset, row.fOrigin);
    EXPECT_EQ(stream.Tell(), row.fPlace) << row.fLabel;
    EXPECT_EQ(stream.state(), row.fState) << row.fLabel;
  }
}

TEST_F(MemoryStream, StreamFailDoesNotThrow) {
  const AssertionGuard guard({kStreamReport});
  TMCMemoryStream stream;
  stream.StreamFail(kStreamPastEnd);
  EXPECT_EQ(stream.state(), kStreamFailed);
  stream.Write("go on", 5);
  EXPECT_EQ(Written(stream), "go on");
  stream.Seek(0, kFromStart);
  uint8 byte = 0;
  EXPECT_EQ(stream.GetByte(byte).state(), 0U) << "a read clears the state first";
}

TEST_F(MemoryStream, ViewsAreCheckedWhenTheyAreMade) {
  char memory[8] = "abc";
  constexpr uint32 kBoth = kStreamReadable | kStreamWritable;
  const struct {
    const char* fLabel;
    void* fMemory;
    int32 fSize;
    uint32 fMode;
    int32 fExpectedSize;
    bool fFails;
  } rows[] = {
      {"readable", memory, 8, kStreamReadable, 8, false}, {"a C string", memory, 0, kStreamReadable, 3, false},
      {"nothing", nullptr, 0, kStreamReadable, 0, false}, {"null with a size", nullptr, 8, kStreamReadable, 0, true},
      {"no size, writable", memory, 0, kBoth, 0, true},   {"negative size", memory, -1, kStreamReadable, 0, true},
  };
  for (const auto& row : rows) {
    const AssertionGuard guard(row.fFails ? std::vector<std::string>{kStreamReport} : std::vector<std::string>{});
    const TMCMemoryStream stream(row.fMemory, row.fSize, row.fMode);
    EXPECT_EQ(stream.GetSize(), row.fExpectedSize) << row.fLabel;
    EXPECT_EQ(stream.fail(), row.fFails) << row.fLabel;
  }
}

TEST_F(MemoryStream, AViewCannotGrowAndKeepsItsMode) {
  char memory[4] = {'a', 'b', 'c', 'd'};
  uint8 byte = 0;
  const AssertionGuard guard({kStreamReport, kStreamReport, kStreamReport});
  TMCMemoryStream stream(memory, 4, kStreamWritable);
  stream.Seek(2, kFromStart).Write("xyz", 3);
  EXPECT_TRUE(stream.fail());
  EXPECT_EQ(std::string_view(memory, 4), "abcd") << "all or nothing";
  stream.Write("xy", 2);
  EXPECT_EQ(std::string_view(memory, 4), "abxy");
  stream.Seek(0, kFromStart);
  EXPECT_TRUE(stream.GetByte(byte).fail()) << "cannot be read";
  const TMCString15 text("text");
  EXPECT_TRUE(TMCMemoryStream(text).Write("x", 1).fail()) << "cannot be written";
  EXPECT_EQ(text, "text");
}

TEST_F(MemoryStream, PutBackStoresTheByte) {
  const AssertionGuard guard({kStreamReport, kStreamReport});
  char memory[2] = {'a', 'b'};
  uint8 byte = 0;
  TMCMemoryStream stream(memory, 2, kStreamReadable | kStreamWritable);
  EXPECT_TRUE(stream.PutBack('a').fail()) << "at the start";
  stream.GetByte(byte).PutBack('z').GetByte(byte);
  EXPECT_EQ(byte, 'z');
  EXPECT_EQ(memory[0], 'z');
  stream.Seek(0, kFromEnd);
  EXPECT_FALSE(stream.PutBack('b').eof());
  static constexpr char kText[] = "ab";  // may lie where nothing can be written
  TMCMemoryStream fixed(const_cast<char*>(kText), 2, kStreamReadable);
  fixed.GetByte(byte).PutBack('a');
  EXPECT_EQ(fixed.Tell(), 0);
  EXPECT_TRUE(fixed.GetByte(byte).PutBack('z').fail());
}

TEST_F(MemoryStream, HandsItsBlockOver) {
  TMCMemoryStream stream;
  stream.Write("abc", 3);
  uint8* const block = stream.DetachBlock();
  EXPECT_EQ(std::string_view(reinterpret_cast<char*>(block), 3), "abc");
  EXPECT_EQ(stream.GetSize(), -1);
  EXPECT_EQ(stream.GetCapacity(), -1);
  EXPECT_EQ(stream.DetachBlock(), nullptr);
  const AssertionGuard guard({kStreamReport, kStreamReport, kStreamReport});
  uint8 byte = 0;
  EXPECT_TRUE(stream.GetByte(byte).eof());
  EXPECT_TRUE(stream.Write("x", 1).fail());
  EXPECT_TRUE(stream.Seek(0, kFromStart).fail());
  EXPECT_TRUE(stream.PutBack('x').fail());
  EXPECT_EQ(MCToken::PeekKind(stream), MCToken::Kind::kEnd);
  MCfree(block);
}

TEST_F(MemoryStream, FilesAloneCanBeOpened) {
  const AssertionGuard guard({kStreamReport});
  TMCMemoryStream stream;
  EXPECT_EQ(stream.Open(TMCString15("x"), kStreamReadable, 0, nullptr), 0x426A);
  EXPECT_TRUE(stream.fail());
}

TEST_F(MemoryStream, InfosAreCopiesByKey) {
  TMCMemoryStream stream;
  int32 value = 5;
  EXPECT_EQ(stream.GetInfo("abcd"_id), nullptr);
  stream.SetInfo("abcd"_id, &value, sizeof value);
  stream.SetInfo("efgh"_id, &value, sizeof value);
  value = 6;
  EXPECT_EQ(*static_cast<const int32*>(stream.GetInfo("abcd"_id)), 5);
  stream.SetInfo("abcd"_id, &value, sizeof value);
  EXPECT_EQ(*static_cast<const int32*>(stream.GetInfo("abcd"_id)), 6);
  stream.RemoveInfo("abcd"_id);
  EXPECT_EQ(stream.GetInfo("abcd"_id), nullptr);
  EXPECT_EQ(*static_cast<const int32*>(stream.GetInfo("efgh"_id)), 5);
}

TEST_F(MemoryStream, LivesWithEveryRefusedAllocation) {
  WithEachAllocationRefused(fMemory, [](int) {
    EXPECT_EQ(TokenCodeOf([] {
                TMCMemoryStream stream;
                const std::string block(9000, 'x');
                stream.Write(block.data(), 9000);
                MCToken::SetTokenValue(stream, 3);
                EXPECT_TRUE(stream.fail() || stream.GetSize() == 9000);
                TMCMemoryStream other = Reading("{ a \"text\" } ");
                uint8* data = nullptr;
                uint32 size = 0;
                MCToken::CaptureGroup(other, data, size);
                EXPECT_EQ(data == nullptr, size == 0);
                MCfree(data);
              }),
              MC_S_OK);
  });
}

}  // namespace
}  // namespace qlx::test
