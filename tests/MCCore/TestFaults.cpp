// Faults and terminations as exceptions, on every target alike.
#include <gtest/gtest.h>

#include <cfenv>
#include <cstdlib>
#include <exception>
#include <string>
#include <thread>

#include "AssertionGuard.h"
#include "MCException.h"
#include "MCFaults.h"
#include "SilentReports.h"
#include "faults/FaultKinds.h"

#if defined(__SANITIZE_ADDRESS__)
// The frames that a termination jumps over keep what they hold: here, the exception that was on its way.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:FaultInDestructorWhileUnwinding\n";
}
#endif

#if defined(__SANITIZE_THREAD__)
// The exception of a fault is made where the fault happened, which TSan knows as a signal handler.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
  return "report_signal_unsafe=0";
}
#endif

namespace qlx {
namespace {

using test::AssertionGuard;

constexpr char kFaultReport[] = "An exception is being thrown";

// Translation for the thread of the test, the handlers for the process. Reports are discarded: tests that count them
// use the guard itself.
class FaultTranslation : public testing::Test {
 protected:
  FaultTranslation() { SwitchFaultTranslator(true); }
  ~FaultTranslation() override {
    SwitchFaultTranslator(false);
    RemoveFaultHandlers();
  }

 private:
  test::SilentReports fQuiet;
};

// The exception that a body ends with: its code and its place. Empty without one.
template <class Body>
std::string Catch(Body inBody) {
  try {
    inBody();
  } catch (const TMCException& exception) {
    const char* file = exception.GetFileName();
    return std::to_string(exception.GetCode()) + " at " + (file ? file : "-") + std::to_string(exception.GetLine());
  }
  return {};
}

const std::string kFault = std::to_string(MC_E_FAULT) + " at -0";
const std::string kTermination = std::to_string(MC_E_FAULT) + " at MCException53";

template <class Body>
std::string CatchGuarded(Body inBody) {
  return Catch([&] { CallGuarded(inBody); });
}

TEST_F(FaultTranslation, EachKindComesOutOfAGuardAsAnException) {
  for (int round = 0; round < 3; ++round) {  // one fault leaves nothing that hinders the next
    for (const test::FaultKind& kind : test::FaultKinds()) {
      SCOPED_TRACE(kind.fLabel);
      const auto caught = CatchGuarded(kind.fFault);
      EXPECT_TRUE(caught == kFault || (!kind.fUnwinds && caught == kTermination)) << caught;
      EXPECT_EQ(std::uncaught_exceptions(), 0);
      EXPECT_EQ(std::current_exception(), nullptr);
    }
  }
}

TEST_F(FaultTranslation, KindsThatUnwindNeedNoGuard) {
  for (const test::FaultKind& kind : test::FaultKinds()) {
    if (kind.fUnwinds) {
      SCOPED_TRACE(kind.fLabel);
      EXPECT_EQ(Catch(kind.fFault), kFault);
    }
  }
}

TEST_F(FaultTranslation, ThrowingRunsTheDestructorsOnTheWay) {
  int ended = 0;
  struct Counter {
    int& fEnded;
    ~Counter() { ++fEnded; }
  };
  EXPECT_EQ(CatchGuarded([&] {
              const Counter counter{ended};
              test::WriteNull();
            }),
            kFault);
  EXPECT_EQ(ended, 1);
}

void ThrowOne() {
  throw 1;
}

TEST_F(FaultTranslation, TerminationsNameTheExceptionModule) {
  EXPECT_EQ(CatchGuarded(test::FaultInNoexcept), kTermination);
  EXPECT_EQ(CatchGuarded([] { std::terminate(); }), kTermination);
  EXPECT_EQ(CatchGuarded([]() noexcept { ThrowOne(); }), kTermination);
}

TEST_F(FaultTranslation, ATerminationReachesTheInnermostGuard) {
  std::string inner;
  bool wentOn = false;
  const auto outer = CatchGuarded([&] {
    inner = CatchGuarded(test::FaultInNoexcept);
    wentOn = true;
    test::FaultInNoexcept();  // the inner guard is gone: this one is the outer's
  });
  EXPECT_EQ(inner, kTermination);
  EXPECT_TRUE(wentOn);
  EXPECT_EQ(outer, kTermination);
}

TEST_F(FaultTranslation, AnExceptionPassesAGuardUnchangedAndTakesItOff) {
  const auto outer = CatchGuarded([] {
    EXPECT_THROW(CallGuarded([] { throw 7; }), int);
    CallGuarded([] {});
    test::FaultInNoexcept();
  });
  EXPECT_EQ(outer, kTermination);
}

TEST_F(FaultTranslation, ATerminationLeavesTheHandlersAroundTheGuardAlone) {
  try {
    throw 7;
  } catch (int) {
    EXPECT_EQ(CatchGuarded(test::FaultInDestructorWhileHandling), kTermination);
    try {
      throw;
    } catch (int value) {
      EXPECT_EQ(value, 7);
    }
  }
  EXPECT_EQ(std::current_exception(), nullptr);
}

TEST_F(FaultTranslation, AFaultIsReportedOnceWithoutAPosition) {
  AssertionGuard reports({kFaultReport});
  EXPECT_EQ(Catch(test::WriteNull), kFault);
  ASSERT_EQ(reports.GetReports().size(), 1u);
  EXPECT_EQ(reports.GetReports()[0].fLine, 0);
}

// Faults itself, however often it is asked.
struct FaultyReports final : test::SilentReports {
  void MC_CALL ReportAssertion(const char*, int32, const char*) override { test::WriteNull(); }
};

TEST_F(FaultTranslation, AFaultInTheReportOfAFaultIsSurvived) {
  const FaultyReports reports;
  EXPECT_EQ(CatchGuarded(test::WriteNull), kFault);
  EXPECT_EQ(CatchGuarded(test::FaultInNoexcept), kTermination);
}

TEST_F(FaultTranslation, TheRoundingOfTheThreadStays) {
  std::fesetround(FE_UPWARD);
  CatchGuarded(test::WriteNull);
  const int afterFault = std::fegetround();
  CatchGuarded(test::FaultInNoexcept);
  const int afterTermination = std::fegetround();
  std::fesetround(FE_TONEAREST);
  EXPECT_EQ(afterFault, FE_UPWARD);
  EXPECT_EQ(afterTermination, FE_UPWARD);
}

TEST_F(FaultTranslation, EachThreadHasItsOwnSwitch) {
  std::string caught;
  bool onAtStart = true;
  std::thread([&] {
    onAtStart = IsFaultTranslatorOn();
    SwitchFaultTranslator(true);
    caught = CatchGuarded(test::FaultInNoexcept);
    SwitchFaultTranslator(false);
  }).join();
  EXPECT_FALSE(onAtStart);
  EXPECT_EQ(caught, kTermination);
  EXPECT_TRUE(IsFaultTranslatorOn());
}

TEST_F(FaultTranslation, ManyThreadsFaultAtOnce) {
  const auto work = [](int& outCaught) {
    SwitchFaultTranslator(true);
    for (int i = 0; i < 200; ++i) {
      outCaught += CatchGuarded(i % 2 ? test::FaultInNoexcept : test::WriteNull).empty() ? 0 : 1;
    }
  };
  int first = 0;
  int second = 0;
  std::thread other(work, std::ref(first));
  work(second);
  other.join();
  EXPECT_EQ(first, 200);
  EXPECT_EQ(second, 200);
}

TEST(Faults, RemovingTheHandlersSwitchesEveryThreadOff) {
  const auto earlier = std::get_terminate();
  SwitchFaultTranslator(true);
  SwitchFaultTranslator(true);  // does not take our own handler for the earlier one
  EXPECT_NE(std::get_terminate(), earlier);
  RemoveFaultHandlers();
  EXPECT_FALSE(IsFaultTranslatorOn());
  EXPECT_EQ(std::get_terminate(), earlier);
}

TEST_F(FaultTranslation, SwitchingOffLeavesTheTerminateHandler) {
  const auto handler = std::get_terminate();
  SwitchFaultTranslator(false);
  EXPECT_EQ(std::get_terminate(), handler);
  EXPECT_EQ(CatchGuarded([] { std::terminate(); }), kTermination);
}

// The tests below end the process that they run in: it is a child.
class FaultsDeathTest : public testing::Test {
 protected:
  FaultsDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(FaultsDeathTest, WithoutAGuardATerminationGoesToTheEarlierHandler) {
  EXPECT_EXIT(
      {
        std::set_terminate([] { std::_Exit(7); });
        SwitchFaultTranslator(true);
        CatchGuarded([] {});
        test::FaultInNoexcept();
      },
      testing::ExitedWithCode(7), "");
}

TEST_F(FaultsDeathTest, AHandlerInFrontOfOursIsLeftThere) {
  EXPECT_EXIT(
      {
        SwitchFaultTranslator(true);
        std::set_terminate([] { std::_Exit(8); });
        RemoveFaultHandlers();
        SwitchFaultTranslator(true);
        std::terminate();
      },
      testing::ExitedWithCode(8), "");
}

// By the fault itself, not by a handler of ours or an exception.
bool EndedByFault(int inStatus) {
#if defined(_WIN32)
  return static_cast<unsigned>(inStatus) == 0xC0000005u;
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return WIFEXITED(inStatus) && WEXITSTATUS(inStatus) != 0;  // the sanitizer's own handler was the earlier one
#else
  return WIFSIGNALED(inStatus) && WTERMSIG(inStatus) == SIGSEGV;
#endif
}

void FaultAndExit() {
  Catch(test::WriteNull);
  std::_Exit(0);
}

TEST_F(FaultsDeathTest, AThreadThatIsOffEndsTheProcessAsEver) {
  EXPECT_EXIT(
      {
        SwitchFaultTranslator(true);
        std::thread(FaultAndExit).join();
      },
      EndedByFault, "");
  EXPECT_EXIT(
      {
        SwitchFaultTranslator(true);
        SwitchFaultTranslator(false);
        FaultAndExit();
      },
      EndedByFault, "");
}

}  // namespace
}  // namespace qlx
