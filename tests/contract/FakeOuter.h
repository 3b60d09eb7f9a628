// The outer object of an aggregated modifier.
#pragma once

#include "Fake.h"
#include "HostScene.h"

namespace qlx::contract {

class FakeOuter final : public Fake<I3DShModifierHolder> {
 public:
  explicit FakeOuter(TreeElement* inElement = nullptr) : fElement(inElement) {}

  void MC_CALL GetModifiedElement(TreeElement** outElement) override {
    if (fElement) {
      fElement->AddRef();
    }
    *outElement = fElement;
  }

  uint32 MC_CALL Release() override {
    if (fEnding) {
      fEnding = false;
      return kEndInner;
    }
    return Fake::Release();
  }

  // Ends the inner object, by the answer to the release that it passes on.
  void End(IMCUnknown& inInner) {
    fEnding = true;
    EXPECT_EQ(inInner.Release(), kEndInner);
  }

 private:
  TreeElement* fElement;
  bool fEnding = false;
};

}  // namespace qlx::contract
