// The base of what a test plays to the plug-in: an object on the stack that counts references and never ends itself.
#pragma once

#include <gtest/gtest.h>

#include "MCUnknown.h"

namespace qlx::contract {

// Answers the interfaces `First` and `Rest`, the first being its identity. Counts from 0: what is left is what somebody
// else still holds.
template <class First, class... Rest>
class Fake : public First, public Rest... {
 public:
  Fake() = default;
  Fake(const Fake&) = delete;
  Fake& operator=(const Fake&) = delete;
  virtual ~Fake() = default;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    void* view = inID == IMCUnknown::kInterfaceID || inID == First::kInterfaceID ? static_cast<First*>(this) : nullptr;
    ((inID == Rest::kInterfaceID ? void(view = static_cast<Rest*>(this)) : void()), ...);
    *outObject = view;
    if (!view) {
      return MC_E_NOINTERFACE;
    }
    AddRef();
    return MC_S_OK;
  }

  uint32 MC_CALL AddRef() override { return static_cast<uint32>(++fReferences); }

  uint32 MC_CALL Release() override {
    EXPECT_GT(fReferences, 0) << "released more often than referenced";
    return static_cast<uint32>(--fReferences);
  }

  int32 GetReferences() const { return fReferences; }

 private:
  int32 fReferences = 0;
};

}  // namespace qlx::contract
