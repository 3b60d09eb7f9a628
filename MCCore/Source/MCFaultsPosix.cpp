// Signals. A handler throws straight out of the signal's frame; the unwinder knows how to leave it.
//
// The handlers are installed once for the process, so each looks at the thread first. What is not ours goes to the
// action that was in force before, as if we were not there: a default one ends the process at the faulting
// instruction, with the right signal.
//
// A stack overflow is not translated: there is no stack to throw on. It goes to the earlier action as well, on the
// alternate stack where that action asked for one.
#include <csignal>
#include <cstring>
#include <initializer_list>
#include <iterator>

#include <dlfcn.h>
#include <pthread.h>
#include <ucontext.h>
#include <xmmintrin.h>

#include "MCFaultsGuard.h"
#include "MCFaultsSystem.h"

namespace qlx::detail {

namespace {

// Initial-exec: reached by one instruction, where the usual way into a loaded library may allocate.
#define MC_FAULT_THREAD_LOCAL thread_local __attribute__((tls_model("initial-exec")))
MC_FAULT_THREAD_LOCAL uint32 tSwitch = 0;
MC_FAULT_THREAD_LOCAL Guard* tInnermost = nullptr;

// SIGTRAP is missing on purpose: breakpoints pass.
struct Hook {
  int fSignal;
  struct sigaction fEarlier;
  bool fHooked;
};
Hook gHooks[] = {{SIGSEGV, {}, false}, {SIGBUS, {}, false}, {SIGFPE, {}, false}, {SIGILL, {}, false}};

Hook& HookOf(int inSignal) noexcept {
  Hook* hook = gHooks;
  while (hook->fSignal != inSignal) {
    ++hook;
  }
  return *hook;
}

#if defined(__x86_64__)
constexpr int kProgramCounter = REG_RIP;
constexpr int kStackPointer = REG_RSP;
#else
constexpr int kProgramCounter = REG_EIP;
constexpr int kStackPointer = REG_ESP;
#endif

// An access just around the stack's end: what runs into the page below it when the stack is used up. A live stack has
// memory there, so other faults are elsewhere.
bool IsStackOverflow(int inSignal, const siginfo_t& inInfo, const ucontext_t& inContext) noexcept {
  constexpr std::uintptr_t kBelow = 64 * 1024;
  constexpr std::uintptr_t kAbove = 4 * 1024;
  const std::uintptr_t low = static_cast<std::uintptr_t>(inContext.uc_mcontext.gregs[kStackPointer]) - kBelow;
  return inSignal == SIGSEGV && reinterpret_cast<std::uintptr_t>(inInfo.si_addr) - low < kBelow + kAbove;
}

// A call through a bad pointer faults where there is no code that the unwinder could know. The call is undone: the
// fault then lies in the caller.
void UndoBadCall(const siginfo_t& inInfo, ucontext_t& ioContext) noexcept {
  auto& registers = ioContext.uc_mcontext.gregs;
  if (reinterpret_cast<std::uintptr_t>(inInfo.si_addr) == static_cast<std::uintptr_t>(registers[kProgramCounter])) {
    const auto* top = reinterpret_cast<const std::uintptr_t*>(registers[kStackPointer]);
    registers[kProgramCounter] = static_cast<greg_t>(*top - 1);
    registers[kStackPointer] += static_cast<greg_t>(sizeof(*top));
  }
}

// A handler starts with the arithmetic controls of a new process. The code that catches expects those of the thread,
// its rounding say, but none of the complaints that stand there.
void RestoreArithmetic(const ucontext_t& inContext) noexcept {
  constexpr unsigned kComplaints = 0x3F;
  const auto* state = inContext.uc_mcontext.fpregs;
  if (!state) {
    return;
  }
#if defined(__x86_64__)
  const uint16 control = state->cwd;
  const uint32 vectorControl = state->mxcsr;
#else
  // Behind the old layout, which has no vector unit, the kernel puts the newer one; this is its field.
  constexpr std::size_t kVectorControl = 112 + 24;
  const uint16 control = static_cast<uint16>(state->cw);
  uint32 vectorControl = 0;
  std::memcpy(&vectorControl, reinterpret_cast<const char*>(state) + kVectorControl, sizeof(vectorControl));
#endif
  asm volatile("fldcw %0" : : "m"(control));
  _mm_setcsr(vectorControl & ~kComplaints);
}

bool HasDefaultAction(const struct sigaction& inAction) noexcept {
  return !(inAction.sa_flags & SA_SIGINFO) && inAction.sa_handler == SIG_DFL;
}

bool IsIgnored(const struct sigaction& inAction) noexcept {
  return !(inAction.sa_flags & SA_SIGINFO) && inAction.sa_handler == SIG_IGN;
}

// A fault comes again when the handler returns, and meets the default action; what was sent is sent again.
void TakeDefaultAction(int inSignal, bool inIsFault) noexcept {
  struct sigaction action = {};
  action.sa_handler = SIG_DFL;
  sigaction(inSignal, &action, nullptr);
  if (!inIsFault) {
    raise(inSignal);
  }
}

// Calls the earlier handler with the signals blocked that it asked for.
void CallEarlier(Hook& inHook, siginfo_t* inInfo, void* inContext) {
  const struct sigaction action = inHook.fEarlier;
  sigset_t blocked = action.sa_mask;
  if (!(action.sa_flags & SA_NODEFER)) {
    sigaddset(&blocked, inHook.fSignal);
  }
  if (action.sa_flags & SA_RESETHAND) {
    inHook.fEarlier = {};
  }
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  if (action.sa_flags & SA_SIGINFO) {
    action.sa_sigaction(inHook.fSignal, inInfo, inContext);
  } else {
    action.sa_handler(inHook.fSignal);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void HandOn(Hook& inHook, bool inIsFault, siginfo_t* inInfo, void* inContext) {
  if (IsIgnored(inHook.fEarlier) && !inIsFault) {
    return;
  }
  if (IsIgnored(inHook.fEarlier) || HasDefaultAction(inHook.fEarlier)) {
    TakeDefaultAction(inHook.fSignal, inIsFault);  // the system does not let a fault be ignored
    return;
  }
  CallEarlier(inHook, inInfo, inContext);
}

void OnSignal(int inSignal, siginfo_t* inInfo, void* inContext) {
  auto& context = *static_cast<ucontext_t*>(inContext);
  const bool isFault = inInfo->si_code > 0;  // the processor's, not sent by somebody
  if (isFault && IsThreadTranslated() && !IsStackOverflow(inSignal, *inInfo, context)) {
    if (inSignal == SIGSEGV) {
      UndoBadCall(*inInfo, context);
    }
    RestoreArithmetic(context);
    pthread_sigmask(SIG_SETMASK, &context.uc_sigmask, nullptr);  // a handler that called this one may have blocked some
    ThrowFault();
  }
  HandOn(HookOf(inSignal), isFault, inInfo, inContext);
}

bool IsOurs(const struct sigaction& inAction) noexcept {
  return (inAction.sa_flags & SA_SIGINFO) && inAction.sa_sigaction == OnSignal;
}

struct sigaction ActionOf(int inSignal) noexcept {
  struct sigaction action = {};
  sigaction(inSignal, nullptr, &action);
  return action;
}

// Somebody's handler is in front. A default action or an ignored signal leads nowhere: then ours was thrown out.
bool IsHookedOver(const Hook& inHook, const struct sigaction& inFront) noexcept {
  return inHook.fHooked && !IsOurs(inFront) && !HasDefaultAction(inFront) && !IsIgnored(inFront);
}

}  // namespace

uint32 ThreadSwitch() noexcept {
  return tSwitch;
}

void SetThreadSwitch(uint32 inValue) noexcept {
  tSwitch = inValue;
}

Guard* OwnInnermostGuard() noexcept {
  return tInnermost;
}

void SetOwnInnermostGuard(Guard* inGuard) noexcept {
  tInnermost = inGuard;
}

void* FindInProgram(const char* inName) noexcept {
  return dlsym(RTLD_DEFAULT, inName);
}

void* FrameHandlers() noexcept {
  return nullptr;
}

void JumpToGuard(Guard& inGuard) noexcept {
  longjmp(inGuard.fBack, 1);
}

void HookFaults() noexcept {
  for (Hook& hook : gHooks) {
    const struct sigaction front = ActionOf(hook.fSignal);
    if (IsOurs(front) || IsHookedOver(hook, front)) {
      continue;
    }
    hook.fEarlier = front;  // before a fault can ask for it
    struct sigaction action = {};
    action.sa_sigaction = OnSignal;
    action.sa_flags = SA_SIGINFO | SA_NODEFER | (front.sa_flags & SA_ONSTACK);
    sigemptyset(&action.sa_mask);
    sigaction(hook.fSignal, &action, nullptr);
    hook.fHooked = true;
  }
}

void UnhookFaults() noexcept {
  for (Hook& hook : gHooks) {
    const struct sigaction front = ActionOf(hook.fSignal);
    if (IsOurs(front)) {
      sigaction(hook.fSignal, &hook.fEarlier, nullptr);
    }
    hook.fHooked = IsHookedOver(hook, front);
  }
}

bool AreFaultsHookedOver() noexcept {
  for (const Hook& hook : gHooks) {
    if (IsHookedOver(hook, ActionOf(hook.fSignal))) {
      return true;
    }
  }
  return false;
}

// The C++ and C runtimes here have no such handlers.
void SetRuntimeHandlers() noexcept {}
void ClearRuntimeHandlers() noexcept {}

}  // namespace qlx::detail
