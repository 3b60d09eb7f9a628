// Numbers as text.
#include <clocale>
#include <cmath>
#include <limits>
#include <tuple>

#include "TokenText.h"

namespace qlx::test {
namespace {

using StreamNumbers = HostedTest;

TEST_F(StreamNumbers, RealNumbersAreWrittenInTheirFewestDecimals) {
  constexpr real64 kInfinity = std::numeric_limits<real64>::infinity();
  const std::tuple<real64, int32, const char*> rows[] = {
      {1.5, 8, "1.5"},
      {-0.0, 8, "0"},
      {1.05, 8, "1.05"},  // the zero in front stays
      {0.00000001, 8, "0.00000001"},
      {0.000000004, 8, "0"},
      {-0.000000004, 8, "-0"},
      {1.999999999, 8, "2"},  // all decimals round up
      {9.99, 1, "10"},
      {1.4, 0, "1"},
      {1.5, 0, "2"},
      {0.1, 15, "0.1"},
      {1.0 / 3, 99, "0.333333333333333"},
      {1.25, -3, "1"},
      {2147483646.5, 8, "2147483646.5"},
      {2147483646.9999999, 2, "2147483647"},
      {-2147483648.5, 8, "-2147483647"},
      {kInfinity, 8, "2147483647"},
      {-kInfinity, 8, "-2147483647"},
      {5e-324, 15, "0"},
  };
  const auto written = [](real64 value, int32 precision) {
    return WrittenBy([&](TMCStream& s) {
      s.precision(precision);
      s.WriteDouble(value);
    });
  };
  for (const auto& [value, precision, text] : rows) {
    EXPECT_EQ(written(value, precision), text) << value << ", " << precision;
  }
}

TEST_F(StreamNumbers, AValueThatIsNoNumberIsReportedAndWrittenAsZero) {
  const AssertionGuard guard({"value is a number", "value is a number"});
  EXPECT_EQ(WrittenBy([](TMCStream& s) { s.WriteDouble(std::nan("")); }), "0");
  EXPECT_EQ(WrittenBy([](TMCStream& s) { s.WriteFloat(std::numeric_limits<real32>::quiet_NaN()); }), "0");
}

TEST_F(StreamNumbers, FloatsAreRoundedToSixDecimalsFirst) {
  const std::string written = WrittenBy([](TMCStream& s) {
    for (const real32 value : {0.1F, 1.0000004F, -0.0000014F, 16777216.0F, 3e38F}) {
      s.WriteFloat(value).WriteText(" ");
    }
  });
  EXPECT_EQ(written, "0.1 1 -0.000001 16777216 2147483647 ");
}

TEST_F(StreamNumbers, EightBitValuesAreRawBytes) {
  EXPECT_EQ(WrittenBy([](TMCStream& s) { s.WriteInt8(-1).WriteUInt8(200).WriteInt8('7'); }), "\xFF\xC8\x37");
  auto stream = Reading(" \r\n\t7 \xFF");
  uint8 byte = 0;
  int8 number = 0;
  EXPECT_EQ(stream.ReadUInt8(byte).state(), 0U);
  EXPECT_EQ(byte, '7');
  EXPECT_EQ(stream.ReadInt8(number).state(), 0U);
  EXPECT_EQ(number, -1);
  EXPECT_TRUE(stream.ReadInt8(number).eof());
}

TEST_F(StreamNumbers, IntegersReadWhatEitherWriterOfTheirWidthWrites) {
  const struct {
    const char* fText;
    int32 fAs32;
    bool fFails32;
    int16 fAs16;
    bool fFails16;
    const char* fRest;
  } rows[] = {
      {"0 ", 0, false, 0, false, " "},
      {" \t\r\n-12x", -12, false, -12, false, "x"},
      {"+7,8", 7, false, 7, false, ",8"},
      {"007}", 7, false, 7, false, "}"},
      {"65535", 65535, false, -1, false, ""},
      {"65536", 65536, false, 0, true, ""},
      {"-32769", -32769, false, 0, true, ""},
      {"2147483648", std::numeric_limits<int32>::min(), false, 0, true, ""},
      {"-2147483648", std::numeric_limits<int32>::min(), false, 0, true, ""},
      {"4294967295", -1, false, 0, true, ""},
      {"4294967296", 0, true, 0, true, ""},
      {"-2147483649", 0, true, 0, true, ""},
      {"99999999999999999999999 5", 0, true, 0, true, " 5"},
      {"-", 0, true, 0, true, ""},
      {"- 5", 0, true, 0, true, " 5"},
      {"", 0, true, 0, true, ""},
  };
  for (const auto& row : rows) {
    const auto reports = static_cast<std::size_t>(row.fFails32 + row.fFails16);
    const AssertionGuard guard(std::vector<std::string>(reports, kStreamReport));
    auto stream = Reading(row.fText);
    uint32 word = 0;
    EXPECT_EQ(stream.ReadUInt32(word).fail(), row.fFails32) << row.fText;
    EXPECT_EQ(static_cast<int32>(word), row.fAs32) << row.fText;
    EXPECT_EQ(Rest(stream), row.fRest) << row.fText;
    stream.Seek(0, kFromStart);
    int16 number = 0;
    EXPECT_EQ(stream.ReadInt16(number).fail(), row.fFails16) << row.fText;
    EXPECT_EQ(number, row.fAs16) << row.fText;
  }
}

TEST_F(StreamNumbers, RealNumbersAreReadWithFractionAndExponent) {
  constexpr real64 kInfinity = std::numeric_limits<real64>::infinity();
  const std::tuple<const char*, real64, bool, const char*> rows[] = {
      {"1.5 ", 1.5, false, " "},
      {"-0.1,", -0.1, false, ","},
      {".5", 0.5, false, ""},
      {"1e2", 100, false, ""},
      {"1.5E-3x", 0.0015, false, "x"},
      {"25e+4", 250000, false, ""},
      {"1e-5", 1e-5, false, ""},
      {"1e22", 1e22, false, ""},
      {"1e", 1, false, ""},  // an exponent without digits is 0
      {"12:30", 12, false, "30"},
      {"1/2", 1, false, "2"},
      {"1e999999999999", kInfinity, false, ""},
      {"-1e999", -kInfinity, false, ""},
      {"1e-999999999999", 0, false, ""},
      {"0e999999999999", 0, false, ""},
      {"123456789012345678901234567890", 123456789012345678901234567890.0, false, ""},
      {"0.1000000000000000000000000000001", 0.1, false, ""},
      {"1.2.3", 1.2, false, ".3"},
      {".", 0, true, ""},
      {"e5", 0, true, "e5"},
      {"nan", 0, true, "nan"},
      {":", 0, true, ":"},
      {"", 0, true, ""},
  };
  for (const auto& [text, expected, fails, rest] : rows) {
    const AssertionGuard guard(fails ? std::vector<std::string>{kStreamReport} : std::vector<std::string>{});
    auto stream = Reading(text);
    real64 value = 7;
    EXPECT_EQ(stream.ReadDouble(value).fail(), fails) << text;
    EXPECT_DOUBLE_EQ(value, expected) << text;
    EXPECT_EQ(Rest(stream), rest) << text;
  }
}

TEST_F(StreamNumbers, ALongRowOfDigitsIsReadInOnePass) {
  for (const char* const start : {"0.", "", "1e"}) {
    const std::string text = start + std::string(100000, '0') + "1 ";
    auto stream = Reading(text);
    real64 value = 0;
    EXPECT_FALSE(stream.ReadDouble(value).fail()) << start;
    EXPECT_TRUE(std::isfinite(value)) << start;
    EXPECT_EQ(stream.Tell(), static_cast<int32>(std::string_view(start).size()) + 100001) << start;
  }
}

TEST_F(StreamNumbers, FloatsBeyondTheirRangeAreInfinite) {
  auto stream = Reading("1e39 -1e39 1e-60 3.5");
  for (const real32 expected :
       {std::numeric_limits<real32>::infinity(), -std::numeric_limits<real32>::infinity(), 0.0F, 3.5F}) {
    real32 value = 0;
    stream.ReadFloat(value);
    EXPECT_EQ(value, expected);
  }
}

// A locale with a decimal comma, where the machine has one; else the plain one, which proves nothing.
TEST_F(StreamNumbers, TheLocaleOfTheProcessHasNoPartInIt) {
  const std::string earlier = std::setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "German_Germany.1252", "de_DE"}) {
    if (std::setlocale(LC_ALL, name) != nullptr) {
      break;
    }
  }
  EXPECT_EQ(WrittenBy([](TMCStream& s) { s.WriteDouble(1234567.5).WriteText(" ").WriteInt32(-1234567); }),
            "1234567.5 -1234567");
  real64 value = 0;
  Reading("1234.5 ").ReadDouble(value);
  EXPECT_EQ(value, 1234.5);
  std::setlocale(LC_ALL, earlier.c_str());
}

TEST_F(StreamNumbers, WordsAreCutToTheirRoomAndReadWhole) {
  auto stream = Reading("  abcdef\tg");
  char word[4];
  stream.ReadWord(word, sizeof word);
  EXPECT_STREQ(word, "abc");
  EXPECT_EQ(Rest(stream), "\tg");
  stream.Seek(9, kFromStart).ReadWord(word, sizeof word);
  EXPECT_STREQ(word, "g");
  stream.ReadWord(word, sizeof word);
  EXPECT_STREQ(word, "");
  const AssertionGuard guard({kStreamReport});
  stream.ReadWord(word, 0);
}

TEST_F(StreamNumbers, TextValuesComeBackWhole) {
  const AssertionGuard guard({kStreamReport});
  const std::string written = WrittenBy([](TMCStream& s) {
    s.WriteTextValue("a \\ \"b\"")
        .WriteText(" bare ")
        .WriteMCString(TMCString15(""))
        .WriteTextValue(nullptr)
        .Apply(endl);
    s.Apply(ends);
  });
  EXPECT_EQ(written, std::string("\"a \\\\ \\\"b\\\"\" bare \"\"\"\"\r\n\0", 25));
  auto stream = Reading(written);
  TMCDynamicString text;
  for (const char* const expected : {"a \\ \"b\"", "bare", "", ""}) {
    EXPECT_EQ(stream.ReadMCString(text).state(), 0U);
    EXPECT_STREQ(text.CStr(), expected);
  }
  EXPECT_TRUE(Reading("\"open").ReadMCString(text).fail());
  EXPECT_STREQ(text.CStr(), "open");
}

}  // namespace
}  // namespace qlx::test
