// Guards: the places on a thread's stack that a termination is brought back to.
//
// A thread has one list of them, the innermost first. A program and the libraries that it loads each contain a copy of
// this code, and their guards alternate on the stack: the program calls a library under a guard, the library guards
// its own work and calls back. A termination must reach the innermost of all, so the copies share the list of the
// program, which exports it under `kGuardListName` (MCGuardListExport.cpp). Where the program does not, each copy has
// a list of its own, and knows its own guards only.
#pragma once

#include <setjmp.h>

namespace qlx::detail {

// Lives in the frame of `RunGuarded`. Copies that share a list must agree on this layout: when it changes, the number
// in `kGuardListName` goes up.
struct Guard {
  Guard* fOuter;         // the next guard of this thread, or null
  void* fCaught;         // the exceptions being handled when the guard began, as the C++ runtime lists them
  unsigned fUncaught;    // how many were on their way
  void* fFrameHandlers;  // head of the system's list of frame handlers (Windows)
  jmp_buf fBack;
};

// How to reach the list of the calling thread. Null is an empty list.
struct GuardList {
  Guard* (*fGet)() noexcept;
  void (*fSet)(Guard* inInnermost) noexcept;
};

inline constexpr char kGuardListName[] = "MCGuardList1";
using GetGuardList = const GuardList* (*)();

// The list of this copy, and the one that it uses.
const GuardList& OwnGuardList() noexcept;
const GuardList& SharedGuardList() noexcept;

// The calling thread's innermost guard, or null.
inline Guard* InnermostGuard() noexcept {
  return SharedGuardList().fGet();
}

// A jump consists of two ends. `MC_MARK_GUARD` stands in the guard's own frame: it answers 0, and something else when
// `JumpToGuard` brought the thread back.
#if defined(_WIN64)
#define MC_MARK_GUARD(guard) _setjmp((guard).fBack, nullptr)  // a null frame: jump, and unwind nothing
#elif defined(_WIN32)
#define MC_MARK_GUARD(guard) _setjmp3((guard).fBack, nullptr)
#else
#define MC_MARK_GUARD(guard) _setjmp((guard).fBack)  // without the signal mask: nothing here changes it
#endif
[[noreturn]] void JumpToGuard(Guard& inGuard) noexcept;
void* FrameHandlers() noexcept;

// This copy's list on this system, and a name that the program exports, or null.
Guard* OwnInnermostGuard() noexcept;
void SetOwnInnermostGuard(Guard* inGuard) noexcept;
void* FindInProgram(const char* inName) noexcept;

}  // namespace qlx::detail
