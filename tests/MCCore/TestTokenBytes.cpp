// Hex lines, binary blocks, raw data and the packed form.
#include <numeric>
#include <tuple>
#include <vector>

#include "TokenText.h"

namespace qlx::test {
namespace {

using TokenHexData = HostedTest;
using TokenPacked = HostedTest;

template <class Stream>
using TokenBytes = HostedTest;

using Streams = testing::Types<TMCMemoryStream, ForeignStream>;
TYPED_TEST_SUITE(TokenBytes, Streams);

std::vector<uint8> Counting(uint32 inCount) {
  std::vector<uint8> bytes(inCount);
  std::iota(bytes.begin(), bytes.end(), uint8{0});
  return bytes;
}

TEST_F(TokenHexData, GoesInLinesOf64Bytes) {
  const std::vector<uint8> data(65, 0xAA);
  const auto write = [&](uint32 count) {
    return WrittenBy([&](TMCStream& s) { MCToken::WriteHexData(s, "DATA"_id, count, data.data()); });
  };
  const std::string line(128, 'A');
  EXPECT_EQ(write(0), "DATA \r\n");
  EXPECT_EQ(write(1), "DATA AA\r\n");
  EXPECT_EQ(write(64), "DATA " + line + "\r\n");
  EXPECT_EQ(write(65), "DATA " + line + "\r\nMORE AA\r\n");
}

TEST_F(TokenHexData, ComesBackWhateverItsSize) {
  for (const uint32 count : {0U, 1U, 63U, 64U, 65U, 128U, 1000U}) {
    const std::vector<uint8> data = Counting(count);
    TMCMemoryStream stream;
    MCToken::EditState(stream)->indent = 1;
    MCToken::BeginSection(stream);
    MCToken::WriteHexData(stream, "DATA"_id, count, data.data());
    MCToken::EndToken(stream);
    stream.Seek(0, kFromStart);
    std::vector<uint8> again(count);
    MCToken::ReadBegin(stream);
    EXPECT_EQ(MCToken::ReadTokenId(stream), "DATA"_id);
    MCToken::ReadHexData(stream, count, again.data());
    EXPECT_EQ(again, data);
    MCToken::ReadEnd(stream);
  }
}

TYPED_TEST(TokenBytes, BadHexDataEndsInAnException) {
  const std::string line(128, 'F');
  const std::tuple<const char*, std::string, uint32, MCResult> rows[] = {
      {"two lines", line + " MORE FF ", 65, 0},
      {"shorter lines", "01 MORE 02 MORE 03 ", 3, 0},
      {"a text with line ends in it", "\"01\r\n02\" ", 2, 0},
      {"no more", line + " NEXT FF ", 65, MC_E_BADTOKEN},
      {"small letters", "0f ", 1, MC_E_BADTOKEN},
      {"a sign", "-1 ", 1, MC_E_BADTOKEN},
      {"half a byte", "012 ", 2, MC_E_BADTOKEN},
      {"no digits", "\"\" ", 1, MC_E_BADTOKEN},
      {"no digits in a further line", "01 MORE \"\" ", 2, MC_E_BADTOKEN},
      {"a brace", "{ ", 1, MC_E_BADTOKEN},
      {"a block", "$00000002\r01$ ", 1, MC_E_BADTOKEN},
      {"ends early", "01 MO", 2, MC_E_EOF},
      {"ends behind the digits", "01", 1, MC_E_EOF},
      {"more digits than a line holds", line + "1122 MORE FF ", 65, 0},
  };
  const auto codeOf = [](const std::string& text, uint32 count) {
    std::vector<uint8> data(count);
    auto stream = Reading<TypeParam>(text);
    return TokenCodeOf([&] { MCToken::ReadHexData(stream, count, data.data()); });
  };
  for (const auto& [label, text, count, code] : rows) {
    EXPECT_EQ(codeOf(text, count), code) << label;
  }
}

TYPED_TEST(TokenBytes, BlocksHoldAnyBytes) {
  const std::string data("{}\"$\0#\\\x01$", 9);
  const std::string written = WrittenBy([&](TMCStream& s) {
    MCToken::BeginBinaryBlock(s, "DATA"_id, static_cast<uint32>(data.size()));
    MCToken::WriteRawHex(s, data.data(), static_cast<uint32>(data.size()), true);
    MCToken::EndBinaryBlock(s);
    MCToken::BeginBinaryBlock(s, "UNKN"_id, MCToken::kUnknownLength);
    MCToken::WriteRawHex(s, data.data(), 2, false);
    MCToken::EndBinaryBlock(s);
    MCToken::WriteBool(s, "next"_id, true);
  });
  EXPECT_EQ(written, "DATA $00000009\r" + data + "$\r\nUNKN $FFFFFFFF\r7B7D$\r\nnext 1\r\n");
  auto stream = Reading<TypeParam>(written);
  for (const char* id : {"DATA", "UNKN"}) {
    EXPECT_EQ(MCToken::ReadTokenId(stream), MCToken::MakeToken(id));
    MCToken::SkipToken(stream);
  }
  EXPECT_EQ(MCToken::ReadTokenId(stream), "next"_id);
}

TYPED_TEST(TokenBytes, BadBlocksEndInAnException) {
  const struct {
    const char* fText;
    MCResult fHeader, fData, fHex, fEnd;  // of the header, four bytes, two bytes in digits, the end
  } rows[] = {
      {" $00000004\r0A\r\nF0$ ", 0, 0, 0, 0},
      {"abc", MC_E_BADTOKEN, 0, 0, 0},
      {"", MC_E_EOF, 0, 0, 0},
      {"$0000000", MC_E_EOF, 0, 0, 0},
      {"$00000004", MC_E_EOF, 0, 0, 0},
      {"$000000$4\r", MC_E_BADTOKEN, 0, 0, 0},
      {"$00000004\rab", 0, MC_E_EOF, MC_E_BADTOKEN, MC_E_EOF},
      {"$00000004\rABC", 0, MC_E_EOF, MC_E_EOF, MC_E_EOF},
      {"$FFFFFFFF\rABCD", 0, 0, 0, MC_E_EOF},
  };
  for (const auto& row : rows) {
    uint8 data[4];
    const auto at = [&](auto&& inWork) {
      auto stream = Reading<TypeParam>(row.fText);
      MCToken::ReadBinaryBlock(stream);
      inWork(stream);
    };
    EXPECT_EQ(TokenCodeOf([&] { at([](TMCStream&) {}); }), row.fHeader) << row.fText;
    if (row.fHeader == MC_S_OK) {
      EXPECT_EQ(TokenCodeOf([&] { at([&](TMCStream& s) { MCToken::ReadRawHex(s, data, 4, true); }); }), row.fData)
          << row.fText;
      EXPECT_EQ(TokenCodeOf([&] { at([&](TMCStream& s) { MCToken::ReadRawHex(s, data, 2, false); }); }), row.fHex)
          << row.fText;
      EXPECT_EQ(TokenCodeOf([&] { at([](TMCStream& s) { MCToken::ReadBinaryBlockEnd(s); }); }), row.fEnd) << row.fText;
    }
  }
  auto huge = Reading<TypeParam>("ab");
  uint8 byte[2];
  EXPECT_EQ(TokenCodeOf([&] { MCToken::ReadRawHex(huge, byte, 3, true); }), MC_E_EOF);
}

TEST_F(TokenPacked, ThreeBytesAreFourCharactersFromZeroOn) {
  const struct {
    std::vector<uint8> fData;
    const char* fText;
  } rows[] = {
      {{0, 0, 0}, "0000"},       {{0xFF, 0xFF, 0xFF}, "oooo"},
      {{0x3F, 0, 0}, "o000"},    {{0xC0, 0x0F, 0}, "0o00"},
      {{0, 0xF0, 0x03}, "00o0"}, {{0, 0, 0xFC}, "000o"},
      {{1, 2, 3, 4}, "18`040"},  // 4 bytes are 6 characters
      {{1, 2}, "180"},           {{0xC1}, "13"},
  };
  for (const auto& row : rows) {
    uint32 state = 0;
    EXPECT_EQ(WrittenBy([&](TMCStream& s) {
                MCToken::WritePacked(s, row.fData.data(), static_cast<uint32>(row.fData.size()), state);
                MCToken::FlushPacked(s, state);
                MCToken::FlushPacked(s, state);  // nothing is pending any more
              }),
              row.fText);
    EXPECT_EQ(state, 0U);
  }
}

TEST_F(TokenPacked, AWritersStateHoldsCountAndBytes) {
  TMCMemoryStream stream;
  const uint8 data[] = {0x11, 0x22, 0x33, 0x44};
  uint32 state = 0;
  MCToken::WritePacked(stream, data, 1, state);
  EXPECT_EQ(state, 0x1101U);
  MCToken::WritePacked(stream, data + 1, 1, state);
  EXPECT_EQ(state, 0x221102U);
  EXPECT_EQ(stream.Tell(), 0);
  MCToken::WritePacked(stream, data + 2, 2, state);
  EXPECT_EQ(state, 0x4401U);
  EXPECT_EQ(stream.Tell(), 4);
}

TYPED_TEST(TokenBytes, PackedDataIsReadInOtherPiecesThanItWasWritten) {
  const std::vector<uint8> data = Counting(251);
  for (const uint32 written : {1U, 2U, 3U, 5U, 251U}) {
    for (const uint32 read : {1U, 2U, 3U, 4U, 7U, 251U}) {
      TypeParam stream;
      uint32 state = 0;
      for (uint32 i = 0; i < data.size(); i += written) {
        MCToken::WritePacked(stream, &data[i], std::min<uint32>(written, static_cast<uint32>(data.size()) - i), state);
        stream.Apply(endl);  // bytes outside the form are passed over
      }
      MCToken::FlushPacked(stream, state);
      stream.Write("0 ", 2);
      stream.Seek(0, kFromStart);
      std::vector<uint8> again(data.size());
      for (uint32 i = 0; i < data.size(); i += read) {
        MCToken::ReadPacked(stream, &again[i], std::min<uint32>(read, static_cast<uint32>(data.size()) - i), state);
      }
      EXPECT_EQ(again, data) << written << ", " << read;
      EXPECT_EQ(Rest(stream), "0 ") << "no character more than needed is taken";
    }
  }
}

TYPED_TEST(TokenBytes, BadPackedDataIsReportedAndEndsInAnException) {
  const std::tuple<const char*, MCResult, const char*> rows[] = {
      {"000", MC_E_EOF, "!stream.eof()"},
      {"00$ \xFFp/", MC_E_EOF, "!stream.eof()"},
      {"00}", MC_E_INVALIDARG, "d!='}'"},
      {"{", MC_E_INVALIDARG, "d!='{'"},
  };
  for (const auto& [text, code, report] : rows) {
    const AssertionGuard guard({report, kThrowReport});
    uint8 data[3];
    uint32 state = 0;
    auto stream = Reading<TypeParam>(text);
    EXPECT_THROW(MCToken::ReadPacked(stream, data, 3, state), TMCException) << text;
    stream.Seek(0, kFromStart);
    EXPECT_EQ(CodeOf([&] { MCToken::ReadPacked(stream, data, 3, state); }), code) << text;
  }
}

TEST_F(TokenPacked, MisuseIsReportedAndRepaired) {
  AssertionGuard guard(
      {"count>=1", "size", "Problemo here", "Problemo here", "We have a problem here", "d2 == kFirstBinHex"});
  uint8 data[3] = {0, 0, 0};
  TMCMemoryStream stream;
  uint32 state = 0;
  MCToken::WritePacked(stream, data, 0, state);
  MCToken::ReadPacked(stream, data, 0, state);
  state = 0xFFFFFF03;
  MCToken::WritePacked(stream, data, 3, state);
  EXPECT_EQ(state, 0U);
  EXPECT_EQ(Written(stream), "0000");
  state = 0xFF;
  MCToken::FlushPacked(stream, state);
  EXPECT_EQ(state, 0U);
  stream.Seek(0, kFromStart);
  state = 0x77;
  MCToken::ReadPacked(stream, data, 3, state);
  EXPECT_EQ(state, 0U);
  state = 0xFF4101;  // a byte beyond those that are pending
  MCToken::FlushPacked(stream, state);
}

}  // namespace
}  // namespace qlx::test
