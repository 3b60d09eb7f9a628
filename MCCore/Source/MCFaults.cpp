#include "MCFaults.h"

#include <cxxabi.h>
#include <atomic>
#include <cstdlib>
#include <exception>
#include <mutex>

#include "MCException.h"
#include "MCFaultsGuard.h"
#include "MCFaultsSystem.h"
#include "MCPlatform.h"

namespace qlx {

namespace {

using detail::Guard;

// The exception module's name and the line that it gives for a termination. Fixed: hosts know them.
constexpr char kModule[] = "MCException";
constexpr int32 kTerminateLine = 53;

// What the C++ runtime keeps for each thread, as the Itanium ABI lays it out.
struct RuntimeExceptions {
  void* fCaught;       // the innermost exception being handled; it leads to the next
  unsigned fUncaught;  // how many are on their way to a handler
};

RuntimeExceptions& ExceptionsOfThread() noexcept {
  return *reinterpret_cast<RuntimeExceptions*>(abi::__cxa_get_globals());
}

std::mutex gLock;  // held while the chains of handlers change
std::atomic<std::terminate_handler> gEarlierTerminate{nullptr};
bool gTerminateHooked = false;

// A thread is on when its switch holds the current generation: taking the handlers out switches every thread off.
std::atomic<uint32> gGeneration{1};

// Part of the switch: the thread is making the exception of a fault.
constexpr uint32 kReporting = 0x80000000;

// Makes the guard the innermost one while it lives.
class GuardScope {
 public:
  explicit GuardScope(Guard& inGuard) noexcept : fGuard(inGuard) {
    const RuntimeExceptions& exceptions = ExceptionsOfThread();
    fGuard.fOuter = fList.fGet();
    fGuard.fCaught = exceptions.fCaught;
    fGuard.fUncaught = exceptions.fUncaught;
    fGuard.fFrameHandlers = detail::FrameHandlers();
    fList.fSet(&fGuard);
  }
  ~GuardScope() { Leave(); }
  void Leave() noexcept { fList.fSet(fGuard.fOuter); }
  GuardScope(const GuardScope&) = delete;
  GuardScope& operator=(const GuardScope&) = delete;

 private:
  const detail::GuardList& fList = detail::SharedGuardList();
  Guard& fGuard;
};

// Ends what was caught inside the guard: the frames that would have ended it are jumped over.
void EndExceptionsInside(const Guard& inGuard) noexcept {
  RuntimeExceptions& exceptions = ExceptionsOfThread();
  while (exceptions.fCaught && exceptions.fCaught != inGuard.fCaught) {
    abi::__cxa_end_catch();
  }
  exceptions.fUncaught = inGuard.fUncaught;
}

[[noreturn]] void OnTerminate() {
  if (Guard* guard = detail::InnermostGuard()) {
    EndExceptionsInside(*guard);
    detail::SetThreadSwitch(detail::ThreadSwitch() & ~kReporting);
    detail::JumpToGuard(*guard);
  }
  if (const std::terminate_handler earlier = gEarlierTerminate) {
    earlier();
  }
  std::abort();
}

bool IsTerminateHookedOver() noexcept {
  const std::terminate_handler front = std::get_terminate();
  return gTerminateHooked && front != OnTerminate && front != gEarlierTerminate;
}

void HookTerminate() noexcept {
  const std::terminate_handler front = std::get_terminate();
  if (front == OnTerminate || IsTerminateHookedOver()) {
    return;
  }
  gEarlierTerminate = front;
  std::set_terminate(OnTerminate);
  gTerminateHooked = true;
}

void UnhookTerminate() noexcept {
  if (std::get_terminate() == OnTerminate) {
    std::set_terminate(gEarlierTerminate);
  }
  gTerminateHooked = IsTerminateHookedOver();
}

// Somebody who put a handler in front of ours hands on to it for as long as the process lives, so then the code has
// to stay in memory. Once unloading has begun it is too late to see to that: it is done when a thread switches off.
void StayLoadedIfHookedOver() noexcept {
  if (IsTerminateHookedOver() || detail::AreFaultsHookedOver()) {
    KeepThisLibraryLoaded();
  }
}

}  // namespace

namespace detail {

const GuardList& OwnGuardList() noexcept {
  static constexpr GuardList kList = {OwnInnermostGuard, SetOwnInnermostGuard};
  return kList;
}

const GuardList& SharedGuardList() noexcept {
  static const GuardList& sList = []() -> const GuardList& {
    const auto getList = reinterpret_cast<GetGuardList>(FindInProgram(kGuardListName));
    return getList ? *getList() : OwnGuardList();
  }();
  return sList;
}

bool IsThreadTranslated() noexcept {
  return (ThreadSwitch() & ~kReporting) == gGeneration;
}

void ThrowFault() {
  // The report that comes with an exception may fault too. That fault is thrown in silence: what reports handles it as
  // it does any exception, and there is no report of a report.
  const uint32 state = ThreadSwitch();
  if (state & kReporting) {
    throw TMCException(MC_E_SILENT);
  }
  SetThreadSwitch(state | kReporting);
  TMCException exception(MC_E_FAULT);
  SetThreadSwitch(state);
  throw exception;
}

void RunGuarded(GuardedBody inBody, void* inContext) {
  Guard guard;
  GuardScope scope(guard);
  if (MC_MARK_GUARD(guard) == 0) {
    inBody(inContext);
  } else {
    SetThreadSwitch(ThreadSwitch() & ~kReporting);
    scope.Leave();  // a termination while the exception is made goes further out
    throw TMCException(MC_E_FAULT, kModule, kTerminateLine);
  }
}

}  // namespace detail

void SwitchFaultTranslator(bool inOn) noexcept {
  const std::scoped_lock lock(gLock);
  if (inOn) {
    detail::SharedGuardList();  // found now, not in the middle of a fault
    detail::HookFaults();
    HookTerminate();
    detail::SetRuntimeHandlers();
    detail::SetThreadSwitch(gGeneration);
  } else {
    detail::SetThreadSwitch(0);
    StayLoadedIfHookedOver();
  }
}

bool IsFaultTranslatorOn() noexcept {
  return detail::IsThreadTranslated();
}

void RemoveFaultHandlers() noexcept {
  const std::scoped_lock lock(gLock);
  ++gGeneration;
  detail::UnhookFaults();
  UnhookTerminate();
  detail::ClearRuntimeHandlers();
}

}  // namespace qlx
