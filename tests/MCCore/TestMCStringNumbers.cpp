#include <cfloat>
#include <cmath>
#include <limits>

#include "HostedTest.h"
#include "MCString.h"
#include "PlatformTextGuard.h"

namespace qlx::test {
namespace {

using MCStringNumbers = HostedTest;

TEST_F(MCStringNumbers, AreWrittenWithTheUsersSeparator) {
  const real64 kInfinity = std::numeric_limits<real64>::infinity();
  const struct {
    char fKind;  // f: FromFloat, d: FromDouble, m: FromMoney
    real64 fValue;
    uint32 fPrecision;
    const char* fText;
  } kRows[] = {
      {'f', 1.5, 2, "1.50"},        {'f', 2.5, 0, "2"},  // halves go to even
      {'f', -kInfinity, 2, "-inf"}, {'f', static_cast<real64>(FLT_MAX), 0, "340282346638528859811704183484516925440"},
      {'d', 1e20, 6, "1E+20"},      {'d', 1.25e-5, 6, "1.25E-05"},
      {'d', kInfinity, 6, "INF"},   {'m', 1234.567, 0, "1234.57"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.fKind << " " << row.fValue << ", " << row.fPrecision);
    const auto write = [&](TMCString& text) {
      row.fKind == 'f'   ? text.FromFloat(static_cast<real32>(row.fValue), row.fPrecision)
      : row.fKind == 'd' ? text.FromDouble(row.fValue, row.fPrecision)
                         : text.FromMoney(row.fValue);
      return std::string(text.CStr());
    };
    PlatformTextGuard platform;
    platform.UseDecimalSeparator<'.'>();
    TMCString63 text;
    std::string expected = row.fText;
    EXPECT_EQ(write(text), expected);
    platform.UseDecimalSeparator<0x66B>();  // two bytes of UTF-8
    if (const auto point = expected.find('.'); point != std::string::npos) {
      expected.replace(point, 1, "\xD9\xAB");
    }
    EXPECT_EQ(write(text), expected);
  }
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
  const struct {
    const char* fText;
    real32 fFloat;
    real64 fDouble;
    int32 fInt;
  } kRows[] = {{"", 0, 0, 0},
               {"-", 0, 0, 0},
               {"+12", 12, 12, 12},
               {"1,234.5", 1234.5F, 1, 1234},
               {".5", 0.5F, 0.5, 0},
               {" 7", 0, 7, 7},
               {"+-7", 0, 0, 0},
               {"1.2345678912345", 1.234567891F, 1.2345678912345, 1},
               {"0x1.8p1", 0, 3, 0},
               {"0x", 0, 0, 0},
               {"1e999", 1, HUGE_VAL, 1},
               {"-1e999", -1, -HUGE_VAL, -1},
               {"1e-999", 1, 0, 1},
               {"infinity", 0, HUGE_VAL, 0},
               {"4294967297", 1, 4294967297.0, INT32_MAX},  // 32 bits wrap
               {"-2147483649", -2147483648.F, -2147483649.0, INT32_MIN},
               {",-,4,2,", 0, 0, -42}};
  PlatformTextGuard platform;
  platform.UseDecimalSeparator<'.'>();
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fText);
    const TMCString31 text(row.fText);
    EXPECT_EQ(text.ToFloat(), row.fFloat);
    EXPECT_EQ(text.ToDouble(), row.fDouble);
    EXPECT_EQ(text.ToInt(), row.fInt);
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
  const struct {
    const char* fText;
    const char* fNext;
    std::vector<std::string> fReports;
  } kRows[] = {{"1,999.99", "2,000.00", {}},
               {"", "1", {}},
               {"v19", "v20", {}},
               {"1-9", "2-0", {"Unknown character!!"}},
               {"x", "1x", {"Unknown character!!"}}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fText);
    AssertionGuard guard(row.fReports);
    const TMCString15 text(row.fText);
    TMCString31 next("earlier");
    text.IncrementNumber(next);
    EXPECT_STREQ(next.CStr(), row.fNext);
    EXPECT_STREQ(text.CStr(), row.fText);
    TMCString31 self(row.fText);
    {
      AssertionGuard again(row.fReports);
      self.IncrementNumber(self);
    }
    EXPECT_STREQ(self.CStr(), row.fNext);
  }
}

TEST_F(MCStringNumbers, LoseTheZerosOfAFraction) {
  const struct {
    const char* fText;
    const char* fTrimmed;
    std::vector<std::string> fReports;
  } kRows[] = {{"1,050", "1,05", {}},
               {".0", "", {}},
               {"\u00E9.10", "\u00E9.1", {}},
               {"100", "100", {"TrimZeros: no separator"}}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fText);
    AssertionGuard guard(row.fReports);
    TMCString15 text(row.fText);
    text.TrimZeros();
    EXPECT_STREQ(text.CStr(), row.fTrimmed);
  }
}

TEST_F(MCStringNumbers, TrimZerosDeletesAThousandCharactersAtMost) {
  TMCDynamicString text(("1.5" + std::string(1100, '0')).c_str());
  text.TrimZeros();
  EXPECT_EQ(text.ByteLength(), 103U);
}

}  // namespace
}  // namespace qlx::test
