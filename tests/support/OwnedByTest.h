// An object of an interface that its test owns: it answers for no view, and its references are counted alone.
#pragma once

#include "MCCountedPtr.h"

namespace qlx::test {

template <class Interface>
class OwnedByTest : public Interface {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid&, void** outObject) override { return MCStoreNone(outObject); }
  uint32 MC_CALL AddRef() override { return ++fRefs; }
  uint32 MC_CALL Release() override { return --fRefs; }
  uint32 fRefs = 1;

 protected:
  ~OwnedByTest() = default;
};

}  // namespace qlx::test
