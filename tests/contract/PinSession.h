// A pin of the built library, with what a host does to it.
#pragma once

#include <cstddef>
#include <cstring>

#include "FakeScene.h"
#include "StartedPlugin.h"

namespace qlx::contract {

// The public block as hosts know it.
struct PinBlock {
  bool fPositionSet = false;
  bool fActive = false;
  bool fGlobal = false;
  uint8 fGap = 0;  // nobody reads or writes it
  TVector3 fPosition{};
  TVector3 fReserved{};

  friend bool operator==(const PinBlock& inA, const PinBlock& inB) {
    return inA.fPositionSet == inB.fPositionSet && inA.fActive == inB.fActive && inA.fGlobal == inB.fGlobal &&
           inA.fPosition == inB.fPosition && inA.fReserved == inB.fReserved;
  }
};
static_assert(sizeof(PinBlock) == 28 && offsetof(PinBlock, fPosition) == 4 && offsetof(PinBlock, fReserved) == 16);

inline constexpr uint32 kControlUsed = 5;

class PinSession {
 public:
  PinSession() : fPin(fStarted.MakePin()), fExchanger(MCQuery<IExDataExchanger>(fPin)) {}

  I3DExModifier* operator->() const { return fPin.Get(); }
  IExDataExchanger* GetExchanger() const { return fExchanger.Get(); }
  RecordingHost& GetHost() { return fStarted.fHost; }
  const LoadedPlugin& GetPlugin() const { return fStarted.fPlugin; }

  PinBlock Get() const {
    PinBlock block;
    std::memcpy(&block, fExchanger->GetExtensionDataBuffer(), sizeof block);
    return block;
  }
  void Set(const PinBlock& inBlock) { std::memcpy(fExchanger->GetExtensionDataBuffer(), &inBlock, sizeof inBlock); }

  MCResult Press(MCID inPart) {
    FakePart part(inPart);
    const MCResult result = fExchanger->HandleEvent(kControlUsed, &part, nullptr);
    EXPECT_EQ(part.GetReferences(), 0);
    return result;
  }

  // The last references go: what the pin held must be given back.
  void End() {
    fExchanger.Clear();
    fPin.Clear();
  }

 private:
  StartedPlugin fStarted;
  TMCCountedPtr<I3DExModifier> fPin;
  TMCCountedPtr<IExDataExchanger> fExchanger;
};

}  // namespace qlx::contract
