#include "FaultLibrary.h"

#include "FaultKinds.h"
#include "MCFaults.h"

namespace {

struct UnloadHook {
  ~UnloadHook() { qlx::RemoveFaultHandlers(); }
};
UnloadHook sUnloadHook;

}  // namespace

MC_TEST_EXPORT void LibrarySwitch(bool inOn);
void LibrarySwitch(bool inOn) {
  qlx::SwitchFaultTranslator(inOn);
}

MC_TEST_EXPORT void LibraryFault();
void LibraryFault() {
  qlx::test::WriteNull();
}

MC_TEST_EXPORT void LibraryTerminate();
void LibraryTerminate() {
  qlx::test::FaultInNoexcept();
}

MC_TEST_EXPORT void LibraryGuarded(void (*inBody)());
void LibraryGuarded(void (*inBody)()) {
  qlx::CallGuarded(inBody);
}
