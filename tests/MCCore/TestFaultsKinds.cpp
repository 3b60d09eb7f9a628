#include "faults/FaultKinds.h"

// Neither keeps unwind data. The words that it pushes are what an unwinder that does not know the frame takes for the
// return address.
extern "C" void MCTestBareFrame(void (*inBody)()) asm("MCTestBareFrame");
#if defined(_WIN64)
asm(".text\nMCTestBareFrame:\n pushq $0\n pushq $0\n subq $40, %rsp\n call *%rcx\n addq $56, %rsp\n ret\n");
#elif defined(__x86_64__)
asm(".text\nMCTestBareFrame:\n pushq $0\n pushq $0\n pushq $0\n call *%rdi\n addq $24, %rsp\n ret\n");
#else
asm(".text\nMCTestBareFrame:\n movl 4(%esp), %eax\n pushl $0\n pushl $0\n pushl $0\n call *%eax\n addl $12, %esp\n "
    "ret\n");
#endif

namespace qlx::test {

void FaultBelowBareFrame() {
  MCTestBareFrame(WriteNull);
}

const std::vector<FaultKind>& FaultKinds() {
  static const std::vector<FaultKind> sKinds = {
      {"null read", ReadNull, true},
      {"null write", WriteNull, true},
      {"null call", CallNull, true},
      {"integer division by zero", DivideByZero, true},
      {"illegal instruction", IllegalInstruction, true},
      {"in a no-throw function", FaultInNoexcept, false},
      {"in a destructor", FaultInDestructor, false},
      {"in a destructor while unwinding", FaultInDestructorWhileUnwinding, false},
      {"in a destructor while handling", FaultInDestructorWhileHandling, false},
      {"in memcpy", FaultInMemcpy, false},
      {"in strlen", FaultInStrlen, false},
      {"below a frame without unwind data", FaultBelowBareFrame, false},
  };
  return sKinds;
}

}  // namespace qlx::test
