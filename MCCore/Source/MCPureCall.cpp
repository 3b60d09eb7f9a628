#include "MCException.h"

namespace qlx {

void ThrowPureCall() {
  throw TMCException(MC_E_PURECALL);
}

}  // namespace qlx

#define QLX_TEXT_OF(name) #name
#define QLX_SYMBOL(prefix, name) QLX_TEXT_OF(prefix) name

// The runtime's own entry for pure operations ends the process. The tables of abstract classes refer to this symbol,
// and the linker takes it from this archive, ahead of the runtime's; hidden like all else here, so that other libraries
// keep theirs. It has another name in the source, because the compiler takes a function of the symbol's own name for
// one that never throws.
extern "C" [[noreturn]] __attribute__((used)) void QlxPureVirtual() __asm__(QLX_SYMBOL(__USER_LABEL_PREFIX__,
                                                                                       "__cxa_pure_virtual"));
extern "C" void QlxPureVirtual() {
  qlx::ThrowPureCall();
}
