#include <gtest/gtest.h>

#include <tuple>

#include "AssertionGuard.h"
#include "MCAssert.h"
#include "MCException.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

struct CountingDetail : TMCExceptionDetail {
  explicit CountingDetail(int& inDeleted) : fDeleted(inDeleted) {}
  ~CountingDetail() override { ++fDeleted; }
  int& fDeleted;
};

TEST(MCAssert, GoesToStandardErrorWithoutTheService) {
  IDebugUtilities* const earlier = std::exchange(gDebugUtilities, nullptr);
  testing::internal::CaptureStderr();
  MCAssert("Somewhere", 17, "fCount == 2");
  MCAssert(nullptr, 0, "no position");
  MCAssert("Somewhere", 17, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Assertion: fCount == 2 (Somewhere:17)\nAssertion: no position\nAssertion:  (Somewhere:17)\n");
  gDebugUtilities = earlier;
}

TEST(MCAssert, AHostThatThrowsStillGetsTheReportShown) {
  AssertionGuard guard({"fCount == 2"});
  guard.ThrowOnReport();
  testing::internal::CaptureStderr();
  MCAssert("Somewhere", 17, "fCount == 2");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Assertion: fCount == 2 (Somewhere:17)\n");
}

TEST(MCAssert, TheMacroAnswersTheCheck) {
  AssertionGuard guard({"1 + 1 == 3", "said otherwise"});
  EXPECT_TRUE(MC_ASSERT(1 + 1 == 2));
  EXPECT_FALSE(MC_ASSERT(1 + 1 == 3));
  EXPECT_FALSE(MC_ASSERT_TEXT(1 + 1 == 3, "said otherwise"));
}

TEST(TMCException, ReportsItselfByItsCode) {
  const std::tuple<const char*, MCResult, std::vector<std::string>> kRows[] = {
      {"success", MC_S_OK, {}},
      {"silent", MC_E_SILENT, {}},
      {"cancel", MC_E_CANCEL, {"A cancel exception is being thrown"}},
      {"second cancel", MC_E_CANCEL2, {"A cancel exception is being thrown"}},
      {"not connected", MC_E_NOTCONNECTED, {"An unable to connect exception is being thrown"}},
      {"fault", MC_E_FAULT, {"An exception is being thrown"}},
      {"unknown", 77, {"An exception is being thrown"}},
  };
  for (const auto& [label, code, reports] : kRows) {
    SCOPED_TRACE(label);
    AssertionGuard guard(reports);
    const TMCException exception(code, "Module", 5);
    const TMCException copy(exception);  // a copy is no second throw
    EXPECT_EQ(copy.GetCode(), code);
    EXPECT_STREQ(copy.GetFileName(), "Module");
    EXPECT_EQ(copy.GetLine(), 5);
    if (!guard.GetReports().empty()) {
      EXPECT_EQ(guard.GetReports()[0].fFile, "Module");
      EXPECT_EQ(guard.GetReports()[0].fLine, 5);
    }
  }
}

TEST(TMCException, TheDetailHasOneOwnerAtATime) {
  int deleted = 0;
  int replaced = 0;
  {
    const TMCException source(MC_E_SILENT, nullptr, 0, new CountingDetail(deleted));
    const TMCException copy(source);
    EXPECT_EQ(source.GetDetail(), nullptr);
    ASSERT_NE(copy.GetDetail(), nullptr);

    TMCException target(MC_E_SILENT, nullptr, 0, new CountingDetail(replaced));
    target = copy;
    EXPECT_EQ(copy.GetDetail(), nullptr);
    EXPECT_EQ(replaced, 1);
    const TMCException& self = target;
    target = self;
    EXPECT_NE(target.GetDetail(), nullptr);
    EXPECT_EQ(deleted, 0);
  }
  EXPECT_EQ(deleted, 1);
}

struct Abstract {
  Abstract() {
    Abstract* volatile self = this;  // a call through the table, as it happens by mistake
    self->Missing();
  }
  virtual ~Abstract() = default;
  virtual void Missing() = 0;
};

struct Concrete : Abstract {
  void Missing() override {}
};

TEST(PureCall, ThrowsInsteadOfEndingTheProcess) {
  EXPECT_EQ(CodeOf([] { Concrete(); }), MC_E_PURECALL);
}

}  // namespace
}  // namespace qlx::test
