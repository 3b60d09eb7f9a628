// What the test library exports: it holds a copy of the foundation of its own, as a plug-in does.
#pragma once

#if defined(_WIN32)
#define MC_TEST_EXPORT extern "C" __declspec(dllexport)
#else
#define MC_TEST_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace qlx::test {

using SwitchFunction = void (*)(bool inOn);
using PlainFunction = void (*)();
// Runs the body under a guard of the library, and lets out what comes.
using GuardedFunction = void (*)(void (*inBody)());

}  // namespace qlx::test
