// Ways to fault, for tests. Sanitizers look away: they would report the fault instead of letting it happen.
#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

#define MC_FAULTY __attribute__((noinline, no_sanitize("address,undefined,thread")))

namespace qlx::test {

inline int* volatile gNowhere = nullptr;
inline void (*volatile gNoFunction)() = nullptr;
inline volatile int gZero = 0;
inline volatile std::size_t gLength = 4096;

MC_FAULTY inline void ReadNull() {
  gZero = *gNowhere;
}
MC_FAULTY inline void WriteNull() {
  *gNowhere = 1;
}
MC_FAULTY inline void CallNull() {
  gNoFunction();
}
MC_FAULTY inline void DivideByZero() {
  gZero = 1 / gZero;
}
MC_FAULTY inline void IllegalInstruction() {
  asm volatile("ud2");
}
MC_FAULTY inline void Breakpoint() {
  asm volatile("int3");
}
MC_FAULTY inline void FaultInNoexcept() noexcept {
  *gNowhere = 1;
}

struct FaultyDestructor {
  MC_FAULTY ~FaultyDestructor() { *gNowhere = 1; }
};
inline void FaultInDestructor() {
  const FaultyDestructor object;
}
__attribute__((noinline)) inline void ThrowPastFaultyDestructor() {
  const FaultyDestructor object;
  throw 1;
}
// A frame of its own, by which the leak checker knows the exception that is lost here.
__attribute__((noinline)) inline void FaultInDestructorWhileUnwinding() {
  ThrowPastFaultyDestructor();
  asm volatile("");
}
inline void FaultInDestructorWhileHandling() {
  try {
    throw 1;
  } catch (int) {
    const FaultyDestructor object;
  }
}
MC_FAULTY inline void FaultInMemcpy() {
  static char sTarget[4096];
  std::memcpy(sTarget, static_cast<const void*>(gNowhere), gLength);
}
MC_FAULTY inline void FaultInStrlen() {
  gLength = std::strlen(reinterpret_cast<const char*>(gNowhere));
}

// Calls through a frame that no unwinder knows.
void FaultBelowBareFrame();

struct FaultKind {
  const char* fLabel;
  void (*fFault)();
  bool fUnwinds;  // comes out of the function as an exception; the others terminate, and need a guard
};
const std::vector<FaultKind>& FaultKinds();

}  // namespace qlx::test
