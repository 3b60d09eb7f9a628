// A program and a library, each with a copy of the foundation: faults across the border, in every order of coming and
// going. Each case has a process of its own, so that every handler starts as the system made it.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>

#include "MCException.h"
#include "MCFaults.h"
#include "MCLibrary.h"
#include "faults/FaultKinds.h"
#include "faults/FaultLibrary.h"

namespace qlx {
namespace {

struct FaultLibrary {
  MCLibrary fFile;
  bool fIsOpen = fFile.Open(QLX_FAULT_LIBRARY);
  test::SwitchFunction fSwitch = fFile.Find<test::SwitchFunction>("LibrarySwitch");
  test::PlainFunction fFault = fFile.Find<test::PlainFunction>("LibraryFault");
  test::PlainFunction fTerminate = fFile.Find<test::PlainFunction>("LibraryTerminate");
  test::GuardedFunction fGuarded = fFile.Find<test::GuardedFunction>("LibraryGuarded");
};

void Require(bool inValue, const char* inWhat) {
  if (!inValue) {
    std::fprintf(stderr, "not so: %s\n", inWhat);
    std::_Exit(1);
  }
}

template <class Body>
bool Faults(Body inBody) {
  try {
    inBody();
  } catch (const TMCException& exception) {
    return exception.GetCode() == MC_E_FAULT;
  }
  return false;
}

bool ProgramFaults() {
  return Faults([] { CallGuarded(test::WriteNull); }) && Faults([] { CallGuarded(test::FaultInNoexcept); });
}

bool LibraryFaults(const FaultLibrary& inLibrary) {
  return Faults([&] { CallGuarded(inLibrary.fFault); }) && Faults([&] { CallGuarded(inLibrary.fTerminate); }) &&
         Faults([&] { inLibrary.fGuarded(inLibrary.fFault); }) &&
         Faults([&] { inLibrary.fGuarded(inLibrary.fTerminate); });
}

void OnlyTheLibraryTranslates() {
  FaultLibrary library;
  library.fSwitch(true);
  Require(LibraryFaults(library), "the program catches what the library throws");
}

void OnlyTheProgramTranslates() {
  SwitchFaultTranslator(true);
  FaultLibrary library;
  Require(LibraryFaults(library), "the program translates faults in the library");
}

void TheLibraryComesLastAndGoesFirst() {
  const auto terminate = std::get_terminate();
  SwitchFaultTranslator(true);
  for (int i = 0; i < 3; ++i) {
    FaultLibrary library;
    library.fSwitch(true);
    Require(LibraryFaults(library) && ProgramFaults(), "both, one upon the other");
    library.fSwitch(false);
    Require(LibraryFaults(library) && ProgramFaults(), "the program's alone");
  }
  Require(ProgramFaults(), "the program's, with the library gone");
  RemoveFaultHandlers();
  Require(std::get_terminate() == terminate, "everything as it was");
}

volatile std::sig_atomic_t gSignals = 0;

void CountSignal(int) {
  gSignals = gSignals + 1;
}

void ExitWithNine() {
  std::_Exit(9);
}

// The program's handlers are in front and keep the address of the library's.
void TheLibraryComesFirstAndGoesFirst() {
  std::signal(SIGFPE, CountSignal);
  std::set_terminate(ExitWithNine);
  {
    FaultLibrary library;
    library.fSwitch(true);
    SwitchFaultTranslator(true);
    Require(LibraryFaults(library) && ProgramFaults(), "both, one upon the other");
    library.fSwitch(false);
  }
  Require(ProgramFaults(), "the program's, with the library closed");
  // Through the program's handlers to the library's, which must still be there, to those of the start.
  std::raise(SIGFPE);
  Require(gSignals == 1, "a signal reaches the first handler");
  std::terminate();
}

void TheProgramGoesFirst() {
  SwitchFaultTranslator(true);
  FaultLibrary library;
  library.fSwitch(true);
  RemoveFaultHandlers();
  Require(LibraryFaults(library), "the library's, with the program's taken out of the middle");
}

// Guards of both on one stack. Whose handler comes first must not matter.
void GuardsOfBothAlternate(bool inLibraryFirst) {
  FaultLibrary library;
  if (inLibraryFirst) {
    library.fSwitch(true);
  }
  SwitchFaultTranslator(true);
  library.fSwitch(true);
  static bool sInner;
  static bool sWentOn;
  static const FaultLibrary* sLibrary;
  sLibrary = &library;
  sInner = sWentOn = false;
  const bool outer = Faults([] {
    sLibrary->fGuarded([] {
      sInner = Faults([] { CallGuarded(test::FaultInNoexcept); });
      sWentOn = true;
      test::FaultInNoexcept();
    });
  });
  Require(sInner && sWentOn && outer, "the program's guard inside the library's");
  sInner = sWentOn = false;
  const bool program = Faults([] {
    CallGuarded([] {
      sInner = Faults([] { sLibrary->fGuarded(sLibrary->fTerminate); });
      sWentOn = true;
      sLibrary->fTerminate();
    });
  });
  Require(sInner && sWentOn && program, "the library's guard inside the program's");
}

class FaultLibraryDeathTest : public testing::Test {
 protected:
  FaultLibraryDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

#define EXPECT_CHILD_SUCCEEDS(statement) \
  EXPECT_EXIT(                           \
      {                                  \
        statement;                       \
        std::_Exit(0);                   \
      },                                 \
      testing::ExitedWithCode(0), "")

TEST_F(FaultLibraryDeathTest, AFaultCrossesTheBorder) {
  EXPECT_CHILD_SUCCEEDS(OnlyTheLibraryTranslates());
  EXPECT_CHILD_SUCCEEDS(OnlyTheProgramTranslates());
}

TEST_F(FaultLibraryDeathTest, LibrariesComeAndGo) {
  EXPECT_CHILD_SUCCEEDS(TheLibraryComesLastAndGoesFirst());
  EXPECT_CHILD_SUCCEEDS(TheProgramGoesFirst());
}

TEST_F(FaultLibraryDeathTest, AClosedLibraryWhoseHandlersAreNeededStaysLoaded) {
  EXPECT_EXIT(TheLibraryComesFirstAndGoesFirst(), testing::ExitedWithCode(9), "");
}

TEST_F(FaultLibraryDeathTest, ATerminationReachesTheInnermostGuardOfEither) {
  EXPECT_CHILD_SUCCEEDS(GuardsOfBothAlternate(false));
  EXPECT_CHILD_SUCCEEDS(GuardsOfBothAlternate(true));
}

TEST(Library, WhatCannotBeOpenedSaysWhy) {
  MCLibrary library;
  EXPECT_FALSE(library.Open("no/such/library.so"));
  EXPECT_FALSE(library.IsOpen());
  EXPECT_NE(library.GetErrorText().find("no/such/library.so"), std::string::npos) << library.GetErrorText();
  EXPECT_EQ(library.FindSymbol("LibraryFault"), nullptr);
  ASSERT_TRUE(library.Open(QLX_FAULT_LIBRARY)) << library.GetErrorText();
  EXPECT_EQ(library.GetErrorText(), "");
  EXPECT_NE(library.FindSymbol("LibraryFault"), nullptr);
  EXPECT_EQ(library.FindSymbol("NoSuchFunction"), nullptr);
  MCLibrary other = std::move(library);
  EXPECT_FALSE(library.IsOpen());
  EXPECT_NE(other.FindSymbol("LibraryFault"), nullptr);
}

}  // namespace
}  // namespace qlx
