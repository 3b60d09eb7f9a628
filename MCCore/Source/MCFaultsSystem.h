// The seam between what fault translation is (MCFaults.cpp) and how a system does it (MCFaultsPosix.cpp,
// MCFaultsWindows.cpp).
//
// A process may hold several copies of this code: a program and each library that it loads link the foundation
// statically. Each copy has its own switch for a thread and its own place in the chains of handlers; only the list of
// guards is shared, see MCFaultsGuard.h.
#pragma once

#include "MCTypes.h"

namespace qlx::detail {

// A word of the calling thread, 0 in a new one. Reading it allocates nothing, takes no lock and disturbs nothing: a
// fault may have happened anywhere.
uint32 ThreadSwitch() noexcept;
void SetThreadSwitch(uint32 inValue) noexcept;

// Puts this copy's handlers in front of those in force. One that still is in its chain stays where it is: put in
// front a second time, it would hand on to itself.
void HookFaults() noexcept;

// Takes out each handler that is the front of its chain. One that somebody has put another in front of stays: what it
// gets it hands on.
void UnhookFaults() noexcept;

// True when somebody's handler in front of ours keeps the address of ours.
bool AreFaultsHookedOver() noexcept;

// What switching on does besides, each time: error mode, invalid-parameter and pure-call handlers, where the system
// has them.
void SetRuntimeHandlers() noexcept;

// Takes those handlers out again, where they still are ours. The error mode stays.
void ClearRuntimeHandlers() noexcept;

// True when a fault on the calling thread is to be thrown.
bool IsThreadTranslated() noexcept;

// Throws the exception of a fault on the calling thread.
[[noreturn]] void ThrowFault();

}  // namespace qlx::detail
