#include <cfloat>
#include <cmath>
#include <limits>
#include <tuple>

#include "HostedTest.h"
#include "MCString.h"
#include "PlatformTextGuard.h"

namespace qlx::test {
namespace {

using MCStringNumbers = HostedTest;

TEST_F(MCStringNumbers, AreWrittenWithTheUsersSeparator) {
  constexpr real64 kInfinity = std::numeric_limits<real64>::infinity();
  PlatformTextGuard platform;
  platform.UseDecimalSeparator<0x66B>();
  const auto written = [](auto&& inWrite) {
    TMCString63 text("earlier");
    inWrite(text);
    return std::string(text.CStr());
  };
  EXPECT_EQ(written([](TMCString& text) { text.FromFloat(1.5F, 2); }), "1\u066B50");
  EXPECT_EQ(written([](TMCString& text) { text.FromFloat(2.5F, 0); }), "2") << "halves go to even";
  EXPECT_EQ(written([](TMCString& text) { text.FromFloat(FLT_MAX, 0); }), "340282346638528859811704183484516925440");
  EXPECT_EQ(written([](TMCString& text) { text.FromFloat(-HUGE_VALF, 2); }), "-inf");
  EXPECT_EQ(written([](TMCString& text) { text.FromDouble(1.25e-5, 6); }), "1\u066B25E-05");
  EXPECT_EQ(written([](TMCString& text) { text.FromDouble(kInfinity, 6); }), "INF");
  EXPECT_EQ(written([](TMCString& text) { text.FromMoney(1234.567); }), "1234\u066B57");
}

TEST_F(MCStringNumbers, APrecisionOfAnySizeIsBounded) {
  AssertionGuard guard({"byteLength <= fMaxLength"});
  PlatformTextGuard platform;
  platform.UseDecimalSeparator<'.'>();
  TMCDynamicString text;
  text.FromDouble(0.5, 0xFFFFFFFF);
  EXPECT_STREQ(text.CStr(), "0.5");
  text.FromDouble(DBL_TRUE_MIN, 0xFFFFFFFF);
  EXPECT_EQ(text.ByteLength(), 751U + 1 + 5);  // all its digits, a point, an exponent
  text.FromDouble(-DBL_MAX, 0xFFFFFFFF);
  EXPECT_EQ(text.ByteLength(), 310U);
  text.FromFloat(1, 0xFFFFFFFF);
  EXPECT_EQ(text.ByteLength(), 2U + 1100);
  text.FromMoney(-DBL_MAX);
  EXPECT_EQ(text.ByteLength(), 313U);
  TMCString15 fixed;
  fixed.FromFloat(1, 0xFFFFFFFF);
  EXPECT_STREQ(fixed.CStr(), "1.0000000000000");
}

TEST_F(MCStringNumbers, AreRead) {
  const std::tuple<const char*, real32, real64, int32> kRows[] = {
      {"", 0, 0, 0},
      {"+12", 12, 12, 12},
      {" 7", 0, 7, 7},
      {"+-7", 0, 0, 0},
      {"1.2345678912345", 1.234567891F, 1.2345678912345, 1},
      {"0x1.8p1", 0, 3, 0},
      {"0X1p1", 0, 2, 0},
      {"0x", 0, 0, 0},
      {"1e999", 1, HUGE_VAL, 1},
      {"-1e999", -1, -HUGE_VAL, -1},
      {"1e-999", 1, 0, 1},
      {"infinity", 0, HUGE_VAL, 0},
      {"4294967297", 1, 4294967297.0, INT32_MAX},  // 32 bits wrap
      {"-2147483649", -2147483648.F, -2147483649.0, INT32_MIN}};
  PlatformTextGuard platform;
  platform.UseDecimalSeparator<'.'>();
  for (const auto& [givenText, asFloat, asDouble, asInt] : kRows) {
    SCOPED_TRACE(givenText);
    const TMCString31 text(givenText);
    EXPECT_EQ(text.ToFloat(), asFloat);
    EXPECT_EQ(text.ToDouble(), asDouble);
    EXPECT_EQ(text.ToInt(), asInt);
  }
  EXPECT_TRUE(std::isnan(TMCString15("nan").ToDouble()));
  platform.UseDecimalSeparator<','>();
  EXPECT_EQ(TMCString15("1,5").ToFloat(), 1.5F);
  EXPECT_EQ(TMCString15("1,5").ToDouble(), 1.5);
  EXPECT_EQ(TMCString15("1.5").ToFloat(), 1.F);
  EXPECT_EQ(TMCString15("1.5").ToDouble(), 1.5);
  platform.UseDecimalSeparator<0x66B>();
  EXPECT_EQ(TMCString15("1\u066B5").ToFloat(), 1.5F);
  EXPECT_EQ(TMCString15("1\u066B5").ToDouble(), 1.5);
}

TEST_F(MCStringNumbers, ToDoubleReadsSixtyThreeBytes) {
  PlatformTextGuard platform;
  platform.UseDecimalSeparator<'.'>();
  const std::string zeros(62, '0');
  EXPECT_EQ(TMCString255((zeros + "12").c_str()).ToDouble(), 1);
  EXPECT_EQ(TMCString255((zeros + "0" + "12").c_str()).ToDouble(), 0);
  EXPECT_EQ(TMCString255(std::string(255, '9').c_str()).ToDouble(), 1e63);
}

TEST_F(MCStringNumbers, TellNumericTexts) {
  PlatformTextGuard platform;
  platform.UseDecimalSeparator<','>();
  const std::pair<const char*, bool> kRows[] = {{"", true},    {"-+1,2", true}, {"1.5", false},
                                                {"1 ", false}, {"1e5", false},  {",", true}};
  for (const auto& [text, numeric] : kRows) {
    EXPECT_EQ(TMCString15(text).IsNumeric(), numeric) << text;
  }
}

TEST_F(MCStringNumbers, AreIncremented) {
  TMCString31 next("earlier");
  TMCString15("1,999.99").IncrementNumber(next);
  EXPECT_STREQ(next.CStr(), "2,000.00");
  AssertionGuard guard({"Unknown character!!", "Unknown character!!"});
  TMCString15("1-9").IncrementNumber(next);
  EXPECT_STREQ(next.CStr(), "2-0");
  next = "x";
  next.IncrementNumber(next);
  EXPECT_STREQ(next.CStr(), "1x");
}

TEST_F(MCStringNumbers, LoseTheZerosOfAFraction) {
  AssertionGuard guard({"TrimZeros: no separator"});
  TMCString15 text("\u00E9.100");
  text.TrimZeros();
  EXPECT_STREQ(text.CStr(), "\u00E9.1");
  text = "100";
  text.TrimZeros();
  EXPECT_STREQ(text.CStr(), "100");
}

TEST_F(MCStringNumbers, TrimZerosDeletesAThousandCharactersAtMost) {
  TMCDynamicString text(("1.5" + std::string(1100, '0')).c_str());
  text.TrimZeros();
  EXPECT_EQ(text.ByteLength(), 103U);
}

}  // namespace
}  // namespace qlx::test
