// The six exports: all that the host knows of the library before it has a component. None lets anything thrown out.
#pragma once

#include "MCUnknown.h"

#if defined(_WIN32)
#define MC_EXPORT extern "C"
#else
#define MC_EXPORT extern "C" __attribute__((visibility("default")))
#endif

// Start-up with the host's root; the first call that the host makes. Always 0.
MC_EXPORT qlx::MCResult MC_CALL MCDllInit(qlx::IMCUnknown* inUtilities);

// Shut-down. Always 0. Only the first call of a process does anything, also when another start-up came between.
MC_EXPORT qlx::MCResult MC_CALL MCDllCleanUp();

// A factory for the class, asked for `inInterfaceID`. The class id is not checked here: a factory for an unknown class
// is made, and fails at `CreateInstance`.
MC_EXPORT qlx::MCResult MC_CALL MCDllGetClassObject(const qlx::MCGuid& inClassID, const qlx::MCGuid& inInterfaceID,
                                                    void** outObject);

// 1 while a component is alive, factories included; 0 when the library may be unloaded.
MC_EXPORT qlx::MCResult MC_CALL MCDllCanUnloadNow();

// Translation of processor faults into exceptions, for the calling thread. Always 0.
MC_EXPORT qlx::MCResult MC_CALL MCDllInitExceptionTranslator();
MC_EXPORT qlx::MCResult MC_CALL MCDllCleanUpExceptionTranslator();
