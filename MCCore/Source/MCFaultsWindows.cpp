// A vectored handler. It cannot throw itself: the system's dispatcher is below it on the stack. It lets the thread go
// on as if the faulting instruction had called a function that throws.
//
// Such a handler sees a fault before the handlers of frames do, and a host's own code may count on those. So a fault is
// taken
// - inside a guard, whoever's code runs there, or in the code of the program or library that this is linked into;
// - never in the system libraries that probe memory under handlers of their own.
// All others go on to the handlers of frames, as does everything that is no fault of the processor: breakpoints, thread
// names, texts for a debugger, the exceptions of other languages. A stack overflow is not translated either: there is
// no stack to throw on.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <iterator>

#include "MCAssert.h"
#include "MCException.h"
#include "MCFaultsGuard.h"
#include "MCFaultsSystem.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

// Where the thread goes on: aligns the stack and calls `MCThrowFault`. Its unwind data say how to get back to the frame
// of the fault.
extern "C" void MCFaultThunk() asm("MCFaultThunk");
extern "C" [[noreturn]] __attribute__((used)) void MCThrowFault() asm("MCThrowFault");

#if defined(_WIN64)
asm(R"(
    .text
    .globl MCFaultThunk
    .def MCFaultThunk; .scl 2; .type 32; .endef
    .seh_proc MCFaultThunk
MCFaultThunk:
    pushq %rbp
    .seh_pushreg %rbp
    movq %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    andq $-16, %rsp
    subq $32, %rsp
    call MCThrowFault
    ud2
    .seh_endproc
)");
#else
asm(R"(
    .text
    .globl MCFaultThunk
    .def MCFaultThunk; .scl 2; .type 32; .endef
MCFaultThunk:
    .cfi_startproc
    pushl %ebp
    .cfi_def_cfa_offset 8
    .cfi_offset %ebp, -8
    movl %esp, %ebp
    .cfi_def_cfa_register %ebp
    andl $-16, %esp
    call MCThrowFault
    ud2
    .cfi_endproc
)");
#endif

void MCThrowFault() {
  qlx::detail::ThrowFault();
}

namespace qlx::detail {

namespace {

constexpr char kModule[] = "MCException";
constexpr int32 kPureCallLine = 53;
constexpr int32 kInvalidParameterLine = 66;
constexpr UINT kErrorMode = 0x8001;  // no boxes for critical errors and for files that are not found

// The system's own words of a thread: unlike the compiler's, they are read without allocating.
class ThreadWord {
 public:
  ThreadWord() noexcept : fIndex(TlsAlloc()) {}
  ~ThreadWord() { TlsFree(fIndex); }
  ThreadWord(const ThreadWord&) = delete;
  ThreadWord& operator=(const ThreadWord&) = delete;

  void* Get() const noexcept {
    const DWORD error = GetLastError();
    void* value = TlsGetValue(fIndex);  // forgets the thread's last error
    SetLastError(error);
    return value;
  }
  void Set(void* inValue) const noexcept { TlsSetValue(fIndex, inValue); }

 private:
  DWORD fIndex;
};

const ThreadWord& SwitchWord() noexcept {
  static const ThreadWord sWord;
  return sWord;
}

const ThreadWord& GuardWord() noexcept {
  static const ThreadWord sWord;
  return sWord;
}

// The memory of a loaded program or library.
struct ModuleRange {
  std::uintptr_t fBegin = 0;
  std::uintptr_t fSize = 0;

  bool Contains(std::uintptr_t inAddress) const noexcept { return inAddress - fBegin < fSize; }
};

ModuleRange RangeOf(const void* inModule) noexcept {
  if (!inModule) {
    return {};
  }
  const auto begin = reinterpret_cast<std::uintptr_t>(inModule);
  const auto offset = static_cast<std::uintptr_t>(static_cast<const IMAGE_DOS_HEADER*>(inModule)->e_lfanew);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(begin + offset);
  return {begin, headers->OptionalHeader.SizeOfImage};
}

// Filled before the handler is in place.
ModuleRange gThisModule;
ModuleRange gProbingModules[3];
void* gVectored = nullptr;

bool IsProcessorFault(DWORD inCode) noexcept {
  switch (inCode) {
    case EXCEPTION_ACCESS_VIOLATION:
    case EXCEPTION_IN_PAGE_ERROR:
    case EXCEPTION_DATATYPE_MISALIGNMENT:
    case EXCEPTION_ILLEGAL_INSTRUCTION:
    case EXCEPTION_PRIV_INSTRUCTION:
    case EXCEPTION_ARRAY_BOUNDS_EXCEEDED:
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
    case EXCEPTION_INT_OVERFLOW:
    case EXCEPTION_FLT_DENORMAL_OPERAND:
    case EXCEPTION_FLT_DIVIDE_BY_ZERO:
    case EXCEPTION_FLT_INEXACT_RESULT:
    case EXCEPTION_FLT_INVALID_OPERATION:
    case EXCEPTION_FLT_OVERFLOW:
    case EXCEPTION_FLT_STACK_CHECK:
    case EXCEPTION_FLT_UNDERFLOW:
      return true;
    default:
      return false;
  }
}

#if defined(_WIN64)
DWORD64& ProgramCounter(CONTEXT& ioContext) noexcept {
  return ioContext.Rip;
}
DWORD64& StackPointer(CONTEXT& ioContext) noexcept {
  return ioContext.Rsp;
}
#else
DWORD& ProgramCounter(CONTEXT& ioContext) noexcept {
  return ioContext.Eip;
}
DWORD& StackPointer(CONTEXT& ioContext) noexcept {
  return ioContext.Esp;
}
#endif

// A call through a bad pointer: what could not be read is the instruction itself. The return address is on the stack.
bool IsBadCall(const EXCEPTION_RECORD& inRecord, CONTEXT& inContext) noexcept {
  return inRecord.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && inRecord.NumberParameters >= 2 &&
         inRecord.ExceptionInformation[1] == ProgramCounter(inContext);
}

bool IsForUs(std::uintptr_t inPlace) noexcept {
  for (const ModuleRange& module : gProbingModules) {
    if (module.Contains(inPlace)) {
      return false;
    }
  }
  return gThisModule.Contains(inPlace) || InnermostGuard();
}

// Functions start with the direction flag clear and an empty x87 stack, and no complaint may stand there that would
// come again. The controls, such as the rounding, stay.
void CleanArithmetic(CONTEXT& ioContext) noexcept {
  constexpr DWORD kDirection = 0x400;
  constexpr WORD kX87Complaints = 0x80FF;
  constexpr DWORD kVectorComplaints = 0x3F;
  ioContext.EFlags &= ~kDirection;
#if defined(_WIN64)
  ioContext.FltSave.StatusWord &= static_cast<WORD>(~kX87Complaints);
  ioContext.FltSave.TagWord = 0;
  ioContext.FltSave.MxCsr &= ~kVectorComplaints;
  ioContext.MxCsr &= ~kVectorComplaints;
#else
  constexpr std::size_t kVectorControl = 24;
  ioContext.FloatSave.StatusWord &= ~static_cast<DWORD>(kX87Complaints);
  ioContext.FloatSave.TagWord = 0xFFFFFFFF;
  // The newer form of the same state, which wins where both are given.
  BYTE* extended = ioContext.ExtendedRegisters;
  WORD status = 0;
  std::memcpy(&status, extended + 2, sizeof(status));
  status &= static_cast<WORD>(~kX87Complaints);
  std::memcpy(extended + 2, &status, sizeof(status));
  extended[4] = 0;
  DWORD control = 0;
  std::memcpy(&control, extended + kVectorControl, sizeof(control));
  control &= ~kVectorComplaints;
  std::memcpy(extended + kVectorControl, &control, sizeof(control));
#endif
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* inException) {
  const EXCEPTION_RECORD& record = *inException->ExceptionRecord;
  CONTEXT& context = *inException->ContextRecord;
  if (!IsProcessorFault(record.ExceptionCode) || !IsThreadTranslated()) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  auto& counter = ProgramCounter(context);
  auto& stack = StackPointer(context);
  const bool isBadCall = IsBadCall(record, context);
  if (!IsForUs(isBadCall ? *reinterpret_cast<const std::uintptr_t*>(stack) : counter)) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  if (!isBadCall) {
    // Unwinders look one byte before a return address, which is then the instruction of the fault.
    stack -= sizeof(std::uintptr_t);
    *reinterpret_cast<std::uintptr_t*>(stack) = counter + 1;
  }
  counter = reinterpret_cast<std::uintptr_t>(&MCFaultThunk);
  CleanArithmetic(context);
  return EXCEPTION_CONTINUE_EXECUTION;
}

// At most this many characters of each text, so that what they become in UTF-8 fits.
constexpr std::size_t kMessageSize = 1024;
constexpr std::size_t kMaxCharacters = (kMessageSize - 1) / 3;

struct Utf8Text {
  char fText[kMessageSize] = "";
};

Utf8Text MakeUtf8(const wchar_t* inText) noexcept {
  Utf8Text text;
  if (!inText) {
    std::strcpy(text.fText, "(null)");
    return text;
  }
  std::size_t count = wcsnlen(inText, kMaxCharacters);
  if (count == kMaxCharacters && IS_HIGH_SURROGATE(inText[count - 1])) {
    --count;  // half of a character
  }
  WideCharToMultiByte(CP_UTF8, 0, inText, static_cast<int>(count), text.fText, kMessageSize - 1, nullptr, nullptr);
  return text;
}

// A text that was cut may end in a part of a character: takes that away.
void DropPartOfCharacter(char* ioText) noexcept {
  std::size_t end = std::strlen(ioText);
  std::size_t start = end;
  while (start > 0 && end - start < 3 && (ioText[start - 1] & 0xC0) == 0x80) {
    --start;
  }
  const auto lead = static_cast<unsigned char>(start > 0 ? ioText[start - 1] : 0);
  const std::size_t needed = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
  if (end - start < needed) {
    ioText[start - 1] = '\0';
  }
}

void __cdecl OnInvalidParameter(const wchar_t* inExpression, const wchar_t* inFunction, const wchar_t* inFile,
                                unsigned inLine, std::uintptr_t) {
  char message[kMessageSize];
  const int length = std::snprintf(
      message, sizeof(message), "Invalid parameter detected in function %s.\r\nFile: %s Line: %i\r\nExpression: %s",
      MakeUtf8(inFunction).fText, MakeUtf8(inFile).fText, static_cast<int>(inLine), MakeUtf8(inExpression).fText);
  if (length >= static_cast<int>(sizeof(message))) {
    DropPartOfCharacter(message);
  }
  MCAssert(kModule, kInvalidParameterLine, message);
}

void __cdecl OnPureCall() {
  throw TMCException(MC_E_FAULT, kModule, kPureCallLine);
}

_invalid_parameter_handler gEarlierInvalidParameter = nullptr;
_purecall_handler gEarlierPureCall = nullptr;
bool gRuntimeHooked = false;

}  // namespace

uint32 ThreadSwitch() noexcept {
  return static_cast<uint32>(reinterpret_cast<std::uintptr_t>(SwitchWord().Get()));
}

void SetThreadSwitch(uint32 inValue) noexcept {
  SwitchWord().Set(reinterpret_cast<void*>(static_cast<std::uintptr_t>(inValue)));
}

Guard* OwnInnermostGuard() noexcept {
  return static_cast<Guard*>(GuardWord().Get());
}

void SetOwnInnermostGuard(Guard* inGuard) noexcept {
  GuardWord().Set(inGuard);
}

void* FindInProgram(const char* inName) noexcept {
  return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(nullptr), inName));
}

// The head of the system's list of frame handlers is the first word of the block that it keeps for a thread. The list
// is that of 32-bit Windows; the 64-bit one leaves it alone, but Wine uses it in both.
#if defined(_WIN64)
#define MC_FRAME_HANDLERS "%%gs:0"
#else
#define MC_FRAME_HANDLERS "%%fs:0"
#endif

void* FrameHandlers() noexcept {
  void* head = nullptr;
  asm volatile("mov " MC_FRAME_HANDLERS ", %0" : "=r"(head));
  return head;
}

void JumpToGuard(Guard& inGuard) noexcept {
  // The frames that are jumped over take their handlers with them. Done here, the jump has nothing to unwind.
  asm volatile("mov %0, " MC_FRAME_HANDLERS : : "r"(inGuard.fFrameHandlers) : "memory");
  longjmp(inGuard.fBack, 1);
}

void HookFaults() noexcept {
  if (gVectored) {
    return;
  }
  gThisModule = RangeOf(&__ImageBase);
  const wchar_t* const probing[] = {L"ntdll.dll", L"kernel32.dll", L"kernelbase.dll"};
  for (std::size_t i = 0; i < std::size(probing); ++i) {
    gProbingModules[i] = RangeOf(GetModuleHandleW(probing[i]));
  }
  gVectored = AddVectoredExceptionHandler(1, OnException);
}

// The system keeps a list: ours comes out of it wherever it stands.
void UnhookFaults() noexcept {
  if (gVectored) {
    RemoveVectoredExceptionHandler(gVectored);
    gVectored = nullptr;
  }
}

// Only the runtime's handlers form a chain here, and those are in front of nothing: they do not hand on.
bool AreFaultsHookedOver() noexcept {
  const _invalid_parameter_handler front = _get_invalid_parameter_handler();
  return gRuntimeHooked && front != OnInvalidParameter && front != gEarlierInvalidParameter;
}

void SetRuntimeHandlers() noexcept {
  SetErrorMode(kErrorMode);
  if (gRuntimeHooked) {
    return;
  }
  gEarlierInvalidParameter = _set_invalid_parameter_handler(OnInvalidParameter);
  gEarlierPureCall = _set_purecall_handler(OnPureCall);
  gRuntimeHooked = true;
}

void ClearRuntimeHandlers() noexcept {
  if (!gRuntimeHooked) {
    return;
  }
  const bool isHookedOver = AreFaultsHookedOver();
  if (!isHookedOver) {
    _set_invalid_parameter_handler(gEarlierInvalidParameter);
  }
  const _purecall_handler front = _set_purecall_handler(gEarlierPureCall);
  if (front != OnPureCall) {
    _set_purecall_handler(front);
  }
  gRuntimeHooked = isHookedOver;
}

}  // namespace qlx::detail
