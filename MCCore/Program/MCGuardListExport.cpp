// Linked into programs alone: lets the libraries that they load share the list of guards.
#include "MCFaultsGuard.h"

#if defined(_WIN32)
#define MC_PROGRAM_EXPORT __declspec(dllexport)
#else
#define MC_PROGRAM_EXPORT __attribute__((visibility("default")))
#endif

extern "C" MC_PROGRAM_EXPORT const qlx::detail::GuardList* MCGuardList1();
extern "C" const qlx::detail::GuardList* MCGuardList1() {
  return &qlx::detail::OwnGuardList();
}
