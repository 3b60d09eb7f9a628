#include <cstring>
#include <new>

#include "PlainScene.h"
#include "StartedPlugin.h"

namespace qlx::contract {
namespace {

void ReadBadPointer() {
  volatile std::uintptr_t address = 64;
  *reinterpret_cast<volatile int32*>(address);
}

void ReadBadPointerWhereNothingUnwinds() noexcept {
  ReadBadPointer();
}

// A host's own translator is on ahead of the plug-in's, as in a running host.
class Faults : public testing::Test {
 protected:
  Faults() { SwitchFaultTranslator(true); }
  ~Faults() override { SwitchFaultTranslator(false); }
};

// A pin that is on: it reads its element.
class PinFaults : public Faults {
 protected:
  PinFaults() {
    static constexpr bool kPinned[] = {true, true};  // the block begins: a position was taken, the pin is on
    std::memcpy(MCQuery<IExDataExchanger>(fPin)->GetExtensionDataBuffer(), kPinned, sizeof kPinned);
  }

  std::optional<host::ComponentFailure> Apply(std::function<void()> inOnRead) {
    fStage.fElement.fOnRead = std::move(inOnRead);
    return Guarded([&] { fResult = fPin->SetTreeElement(&fStage.fElement); });
  }

  test::PlainStage fStage;
  StartedPlugin fStarted;
  TMCCountedPtr<I3DExModifier> fPin = fStarted.MakePin();
  MCResult fResult = MC_S_OK;
};

TEST_F(PinFaults, FaultInsideACallReachesTheHostAsAFailure) {
  const auto failure = Apply(ReadBadPointer);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->fCode, MC_E_FAULT);
  EXPECT_EQ(failure->fFile, nullptr) << "the place of a fault is not known";
  EXPECT_EQ(fStage.fElement.fChanged, 0);
  EXPECT_FALSE(Apply(nullptr)) << "the next call goes well";
  EXPECT_EQ(fStage.fElement.fChanged, 1);
}

TEST_F(PinFaults, TerminationInsideACallReachesTheHostAsAFailure) {
  for (int i = 0; i < 3; ++i) {
    const auto failure = Apply(ReadBadPointerWhereNothingUnwinds);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->GetText(), "call failed with 0x80010004 (MCException, line 53)");
  }
  EXPECT_FALSE(Apply(nullptr));
}

TEST_F(PinFaults, ForeignExceptionBecomesACodeInsideTheComponent) {
  EXPECT_FALSE(Apply([] { throw std::bad_alloc(); }));
  EXPECT_EQ(fResult, MC_E_OUTOFMEMORY);
  EXPECT_FALSE(Apply([] { throw 42; }));
  EXPECT_EQ(fResult, MC_E_FAULT);
}

TEST_F(PinFaults, FaultInTheFactoryBecomesAResult) {
  const auto factory = fStarted.GetFactory(kPinClass);
  fStarted.fHost.fMemory.fOnRequest = ReadBadPointer;
  void* pin = nullptr;
  EXPECT_EQ(factory->CreateInstance(nullptr, IMCUnknown::kInterfaceID, &pin), MC_E_FAULT);
  EXPECT_EQ(pin, nullptr);
  fStarted.fHost.fMemory.fOnRequest = nullptr;
}

TEST_F(PinFaults, HostTranslatesWhereThePluginDoesNot) {
  EXPECT_EQ(fStarted.fPlugin->fCleanUpExceptionTranslator(), MC_S_OK);
  const auto failure = Apply(ReadBadPointer);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->fCode, MC_E_FAULT);
  EXPECT_EQ(fStarted.fPlugin->fInitExceptionTranslator(), MC_S_OK);
}

TEST_F(Faults, UnloadedPluginLeavesNoHandlerBehind) {
  for (int i = 0; i < 3; ++i) {
    { const StartedPlugin started; }
    for (const auto fault : {ReadBadPointer, static_cast<void (*)()>(ReadBadPointerWhereNothingUnwinds)}) {
      const auto failure = Guarded(fault);
      ASSERT_TRUE(failure);
      EXPECT_EQ(failure->fCode, MC_E_FAULT);
    }
  }
}

TEST_F(PinFaults, SourceThatIsNoPartIsThrownWithItsPosition) {
  test::FakeObject<IMCUnknown> noPart;
  const auto exchanger = MCQuery<IExDataExchanger>(fPin);
  const auto failure = Guarded([&] { exchanger->HandleEvent(5, &noPart, nullptr); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->fCode, MC_E_INVALIDARG);
  EXPECT_STREQ(failure->fFile, "PinModifier");
  EXPECT_EQ(failure->fLine, 105);
  EXPECT_EQ(fStarted.fHost.fDebug.fAssertions, Log{"An exception is being thrown"});
  EXPECT_EQ(noPart.fCount, 0);
}

}  // namespace
}  // namespace qlx::contract
