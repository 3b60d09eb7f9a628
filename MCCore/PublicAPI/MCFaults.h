// Processor faults, terminations and runtime complaints, turned into exceptions and reports.
//
// A fault (bad access, illegal instruction, division by zero) on a thread that has translation on is thrown as
// `TMCException` with `MC_E_FAULT` and no position. Breakpoints pass. Where the throw cannot unwind (a no-throw
// function or destructor, a C library call, a frame without unwind data) the runtime terminates; the terminate handler
// then jumps back to the innermost guard of that thread, which throws `TMCException` with `MC_E_FAULT`, "MCException",
// line 53. With no guard it hands on to the handler that was in force before.
//
// Not translated: breakpoints; signals that somebody sends; a stack overflow, which leaves no stack to throw on; and on
// Windows faults outside every guard in code that is not of this program or library, and those in the system's own
// libraries, which may be meant for the handlers of frames there. All of these go where they went before.
//
// The exception is made on the thread of the fault, so a fault inside the allocator may find its lock taken.
//
// A process may hold several copies of this code, one in the program and one in each library. Each has its own switch
// for a thread and its own place in the chain of handlers, and they come and go in any order. The guards of a thread
// are one list where the program links `mccore_program`; without it each copy knows its own guards only.
//
// A jump to a guard runs no destructors of the frames between: what they held is leaked, never touched again.
#pragma once

#include "MCResult.h"

namespace qlx {

// Translation is on or off for each thread. The first switch on of the process installs the handlers and keeps those
// that it replaces; switching on twice does not save our own as the earlier ones. Off puts the translator that was in
// force before back; the process error mode, the terminate and the invalid-parameter handler stay in force.
void SwitchFaultTranslator(bool inOn) noexcept;

// True while translation is on for the calling thread.
bool IsFaultTranslatorOn() noexcept;

// Takes every handler out again and switches every thread off. Called when the library is unloaded, so that nothing
// points into it. A handler that somebody has put another in front of is left there, and hands on what it gets: that
// somebody keeps its address. In this case switching a thread off keeps the library in memory until the process ends,
// so clean up (which switches off) before unloading.
void RemoveFaultHandlers() noexcept;

namespace detail {
using GuardedBody = void (*)(void* inContext);
void RunGuarded(GuardedBody inBody, void* inContext);
}  // namespace detail

// Runs `inBody()` as the innermost guard of this thread. Allocates nothing. What the body throws comes out unchanged;
// a termination inside it comes out as the exception told above.
template <class Body>
void CallGuarded(Body&& inBody) {
  auto call = [&inBody] { inBody(); };  // an object, where the body may be a function
  detail::RunGuarded([](void* inCall) { (*static_cast<decltype(call)*>(inCall))(); }, &call);
}

}  // namespace qlx
