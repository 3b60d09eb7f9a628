// Signals beside ours, and what a library that comes and goes leaves of them.
#if !defined(_WIN32)

#include <gtest/gtest.h>
#include <setjmp.h>
#include <sys/mman.h>

#include <csignal>
#include <cstdlib>

#include "MCException.h"
#include "MCFaults.h"
#include "faults/FaultKinds.h"

namespace qlx {
namespace {

sigjmp_buf gBack;
volatile sig_atomic_t gCalls = 0;
volatile sig_atomic_t gOwnBlocked = 0;
volatile sig_atomic_t gOtherBlocked = 0;

bool IsBlocked(int inSignal) {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return sigismember(&mask, inSignal) == 1;
}

void CountAndJumpBack(int inSignal) {
  gCalls = gCalls + 1;
  gOwnBlocked = IsBlocked(inSignal);
  gOtherBlocked = IsBlocked(SIGUSR1);
  siglongjmp(gBack, 1);
}

void Count(int) {
  gCalls = gCalls + 1;
}

// An action of our own while it lives.
class OtherAction {
 public:
  OtherAction(int inSignal, void (*inHandler)(int)) : fSignal(inSignal) {
    struct sigaction action = {};
    action.sa_handler = inHandler;
    sigaddset(&action.sa_mask, SIGUSR1);
    sigaction(inSignal, &action, &fEarlier);
    gCalls = 0;
  }
  ~OtherAction() { sigaction(fSignal, &fEarlier, nullptr); }

 private:
  int fSignal;
  struct sigaction fEarlier = {};
};

void (*HandlerOf(int inSignal))(int) {
  struct sigaction action = {};
  sigaction(inSignal, nullptr, &action);
  return action.sa_handler;
}

TEST(FaultSignals, AFaultOnAThreadThatIsOffGoesToTheEarlierHandler) {
  const OtherAction other(SIGSEGV, CountAndJumpBack);
  SwitchFaultTranslator(true);
  SwitchFaultTranslator(false);
  if (sigsetjmp(gBack, 1) == 0) {
    test::WriteNull();
  }
  RemoveFaultHandlers();
  EXPECT_EQ(gCalls, 1);
  EXPECT_TRUE(gOwnBlocked);
  EXPECT_TRUE(gOtherBlocked);
  EXPECT_FALSE(IsBlocked(SIGSEGV));
  EXPECT_EQ(HandlerOf(SIGSEGV), CountAndJumpBack);
}

TEST(FaultSignals, WhatSomebodySendsIsNoFault) {
  const OtherAction other(SIGFPE, Count);
  SwitchFaultTranslator(true);
  EXPECT_NO_THROW(raise(SIGFPE));
  EXPECT_EQ(gCalls, 1);
  RemoveFaultHandlers();
}

TEST(FaultSignals, ABreakpointPasses) {
  const OtherAction other(SIGTRAP, Count);
  SwitchFaultTranslator(true);
  EXPECT_NO_THROW(CallGuarded(test::Breakpoint));
  EXPECT_EQ(gCalls, 1);
  RemoveFaultHandlers();
}

// Beyond the end of a mapped file.
TEST(FaultSignals, ABusErrorIsAFault) {
  std::FILE* file = std::tmpfile();
  ASSERT_TRUE(file);
  void* page = mmap(nullptr, 4096, PROT_READ, MAP_SHARED, fileno(file), 0);
  ASSERT_NE(page, MAP_FAILED);
  SwitchFaultTranslator(true);
  volatile const char* first = static_cast<const char*>(page);
  EXPECT_THROW(CallGuarded([&]() MC_FAULTY { test::gZero = *first; }), TMCException);
  test::gZero = 0;
  RemoveFaultHandlers();
  munmap(page, 4096);
  std::fclose(file);
}

TEST(FaultSignals, NoSignalStaysBlockedAfterAFault) {
  SwitchFaultTranslator(true);
  EXPECT_THROW(CallGuarded(test::WriteNull), TMCException);
  EXPECT_THROW(CallGuarded(test::FaultInNoexcept), TMCException);
  RemoveFaultHandlers();
  EXPECT_FALSE(IsBlocked(SIGSEGV));
}

TEST(FaultSignals, AHandlerInFrontOfOursIsLeftThereAndReachesOurs) {
  SwitchFaultTranslator(true);
  static struct sigaction sOurs;
  sigaction(SIGSEGV, nullptr, &sOurs);
  struct sigaction front = {};
  front.sa_flags = SA_SIGINFO;
  front.sa_sigaction = [](int inSignal, siginfo_t* inInfo, void* inContext) {
    gCalls = gCalls + 1;
    sOurs.sa_sigaction(inSignal, inInfo, inContext);
  };
  sigaction(SIGSEGV, &front, nullptr);
  gCalls = 0;
  RemoveFaultHandlers();
  SwitchFaultTranslator(true);  // in the chain still: not once more
  EXPECT_EQ(reinterpret_cast<void*>(HandlerOf(SIGSEGV)), reinterpret_cast<void*>(front.sa_sigaction));
  for (int i = 0; i < 2; ++i) {  // the front handler blocks the signal: it must not stay so
    EXPECT_THROW(CallGuarded(test::WriteNull), TMCException);
  }
  EXPECT_EQ(gCalls, 2);
  sigaction(SIGSEGV, &sOurs, nullptr);
  RemoveFaultHandlers();
}

TEST(FaultSignalsDeathTest, AnIgnoredFaultEndsTheProcessAndAnIgnoredSignalDoesNot) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        signal(SIGFPE, SIG_IGN);
        SwitchFaultTranslator(true);
        SwitchFaultTranslator(false);
        raise(SIGFPE);
        std::fputs("went on", stderr);
        test::DivideByZero();
        std::_Exit(0);
      },
      testing::KilledBySignal(SIGFPE), "went on");
}

}  // namespace
}  // namespace qlx

#endif
