// The handlers of Windows and of its C runtime.
#if defined(_WIN32)

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "MCException.h"
#include "MCFaults.h"
#include "SilentReports.h"
#include "ThrownBy.h"
#include "faults/FaultKinds.h"

namespace qlx {
namespace {

int gBreakpoints = 0;

// Goes on behind the breakpoint, as a debugger does.
LONG CALLBACK CountBreakpoints(EXCEPTION_POINTERS* inException) {
  if (inException->ExceptionRecord->ExceptionCode != EXCEPTION_BREAKPOINT) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  ++gBreakpoints;
  const auto place = reinterpret_cast<std::uintptr_t>(inException->ExceptionRecord->ExceptionAddress);
#if defined(_WIN64)
  inException->ContextRecord->Rip = place + 1;
#else
  inException->ContextRecord->Eip = place + 1;
#endif
  return EXCEPTION_CONTINUE_EXECUTION;
}

TEST(FaultWindows, ABreakpointPasses) {
  SwitchFaultTranslator(true);
  void* handler = AddVectoredExceptionHandler(0, CountBreakpoints);
  gBreakpoints = 0;
  EXPECT_NO_THROW(CallGuarded(test::Breakpoint));
  RemoveVectoredExceptionHandler(handler);
  RemoveFaultHandlers();
  EXPECT_EQ(gBreakpoints, 1);
}

LONG CALLBACK GoOn(EXCEPTION_POINTERS*) {
  return EXCEPTION_CONTINUE_EXECUTION;
}

// Exceptions that are raised by programs: another language's, a thread's name, a text for the debugger, our own code.
TEST(FaultWindows, WhatIsNoFaultOfTheProcessorPasses) {
  SwitchFaultTranslator(true);
  void* handler = AddVectoredExceptionHandler(0, GoOn);
  for (const DWORD code : {0xE06D7363ul, 0x406D1388ul, 0x40010006ul, 0xE0000001ul}) {
    EXPECT_NO_THROW(CallGuarded([&] { RaiseException(code, 0, 0, nullptr); }));
  }
  RemoveVectoredExceptionHandler(handler);
  RemoveFaultHandlers();
}

// The system probes memory under handlers of its own.
TEST(FaultWindows, TheSystemsOwnProbesKeepTheirFaults) {
  SwitchFaultTranslator(true);
  BOOL isBad = FALSE;
  EXPECT_NO_THROW(CallGuarded([&] { isBad = IsBadReadPtr(reinterpret_cast<const void*>(16), 4); }));
  RemoveFaultHandlers();
  EXPECT_TRUE(isBad);
}

TEST(FaultWindows, AGuardLeavesTheLastErrorAlone) {
  SetLastError(0);
  CallGuarded([] { SetLastError(1234); });
  EXPECT_EQ(GetLastError(), 1234u);
}

TEST(FaultWindows, TheErrorModeStaysWhenTranslationEnds) {
  SetErrorMode(0);
  SwitchFaultTranslator(true);
  SwitchFaultTranslator(false);
  RemoveFaultHandlers();
  EXPECT_EQ(SetErrorMode(0x8001), 0x8001u);
}

struct LastReport final : test::SilentReports {
  std::string fText;
  void MC_CALL ReportAssertion(const char* inName, int32 inPosition, const char* inText) override {
    fText = std::string(inName) + ":" + std::to_string(inPosition) + ": " + inText;
  }
};

// The reports of the runtime's invalid-parameter handler, which must not throw.
std::string ReportOf(const wchar_t* inExpression, const wchar_t* inFunction, const wchar_t* inFile, unsigned inLine) {
  SwitchFaultTranslator(true);
  SwitchFaultTranslator(false);  // the handler stays in force
  const LastReport report;
  _get_invalid_parameter_handler()(inExpression, inFunction, inFile, inLine, 0);
  RemoveFaultHandlers();
  return report.fText;
}

TEST(FaultWindows, AnInvalidParameterIsReported) {
  const std::string prefix = "MCException:66: Invalid parameter detected in function ";
  const struct {
    const wchar_t *fExpression, *fFunction, *fFile;
    const char* fReport;
  } rows[] = {
      {L"p != 0", L"strcpy_s", L"a.c", "strcpy_s.\r\nFile: a.c Line: 12\r\nExpression: p != 0"},
      // as a release runtime gives it
      {nullptr, nullptr, nullptr, "(null).\r\nFile: (null) Line: 12\r\nExpression: (null)"},
      {L"\u00e9 \u20ac", L"f", L"\U0001F600.c", "f.\r\nFile: \U0001F600.c Line: 12\r\nExpression: \u00E9 \u20AC"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ReportOf(row.fExpression, row.fFunction, row.fFile, 12), prefix + row.fReport);
  }
}

TEST(FaultWindows, ALongInvalidParameterIsCutBetweenCharacters) {
  for (std::size_t shift = 0; shift < 3; ++shift) {
    const std::wstring file = std::wstring(300 + shift, L'f') + std::wstring(300, L'\u20ac');
    const std::wstring longText(5000, L'\u20ac');
    const std::string report = ReportOf(longText.c_str(), longText.c_str(), file.c_str(), 1);
    const std::string text = report.substr(std::string("MCException:66: ").size());
    EXPECT_LE(text.size(), 1023u);
    EXPECT_GT(text.size(), 1019u);
    EXPECT_NE(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.c_str(), -1, nullptr, 0), 0);
  }
}

TEST(FaultWindows, ThePureCallHookThrows) {
  SwitchFaultTranslator(true);
  const _purecall_handler hook = _set_purecall_handler(nullptr);
  _set_purecall_handler(hook);
  ASSERT_TRUE(hook);
  EXPECT_EQ(test::CodeOf(hook, "MCException"), MC_E_FAULT);
  RemoveFaultHandlers();
}

}  // namespace
}  // namespace qlx

#endif
