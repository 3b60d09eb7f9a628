// The base of what a test plays to others: an object on the stack that counts references and never ends itself.
#pragma once

#include "MCUnknown.h"

namespace qlx::test {

// Answers its interfaces, the first being its identity. Counts from 0: what is left is what somebody else still holds.
template <class First, class... Rest>
class FakeObject : public First, public Rest... {
 public:
  FakeObject() = default;
  FakeObject(const FakeObject&) = delete;
  FakeObject& operator=(const FakeObject&) = delete;
  virtual ~FakeObject() = default;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    void* found = inID == IMCUnknown::kInterfaceID || inID == First::kInterfaceID ? static_cast<First*>(this) : nullptr;
    ((inID == Rest::kInterfaceID ? void(found = static_cast<Rest*>(this)) : void()), ...);
    *outObject = found;
    fCount += found != nullptr;
    return found ? MC_S_OK : MC_E_NOINTERFACE;
  }
  uint32 MC_CALL AddRef() override { return static_cast<uint32>(++fCount); }
  uint32 MC_CALL Release() override { return static_cast<uint32>(--fCount); }

  int fCount = 0;
};

}  // namespace qlx::test
