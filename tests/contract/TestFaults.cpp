#include <new>

#include "FakeScene.h"
#include "PinSession.h"

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

TEST_F(Faults, FaultInsideACallReachesTheHostAsAFailure) {
  FakeElement element;
  PinSession pin;
  pin.Set({.fPositionSet = true, .fActive = true});
  element.fOnRead = ReadBadPointer;
  const auto failure = Guarded([&] { pin->SetTreeElement(&element); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->fCode, MC_E_FAULT);
  EXPECT_EQ(failure->fFile, nullptr) << "the place of a fault is not known";
  EXPECT_TRUE(element.fWrites.empty());

  element.fOnRead = nullptr;
  EXPECT_FALSE(Guarded([&] { pin->SetTreeElement(&element); })) << "the next call goes well";
  EXPECT_EQ(element.fWrites.size(), 1U);
}

TEST_F(Faults, TerminationInsideACallReachesTheHostAsAFailure) {
  FakeElement element;
  PinSession pin;
  pin.Set({.fPositionSet = true, .fActive = true});
  element.fOnRead = ReadBadPointerWhereNothingUnwinds;
  for (int i = 0; i < 3; ++i) {
    const auto failure = Guarded([&] { pin->SetTreeElement(&element); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->GetText(), "call failed with 0x80010004 (MCException, line 53)");
  }
  element.fOnRead = nullptr;
  EXPECT_FALSE(Guarded([&] { pin->SetTreeElement(&element); }));
}

TEST_F(Faults, ForeignExceptionBecomesACodeInsideTheComponent) {
  FakeElement element;
  PinSession pin;
  pin.Set({.fPositionSet = true, .fActive = true});
  element.fOnRead = [] { throw std::bad_alloc(); };
  MCResult result = MC_S_OK;
  EXPECT_FALSE(Guarded([&] { result = pin->SetTreeElement(&element); }));
  EXPECT_EQ(result, MC_E_OUTOFMEMORY);
  element.fOnRead = [] { throw 42; };
  EXPECT_FALSE(Guarded([&] { result = pin->SetTreeElement(&element); }));
  EXPECT_EQ(result, MC_E_FAULT);
}

TEST_F(Faults, FaultInTheFactoryBecomesAResult) {
  StartedPlugin started;
  const auto factory = started.GetFactory(kPinClass);
  started.fHost.fMemory.fOnRequest = ReadBadPointer;
  void* pin = nullptr;
  EXPECT_EQ(factory->CreateInstance(nullptr, IMCUnknown::kInterfaceID, &pin), MC_E_FAULT);
  EXPECT_EQ(pin, nullptr);
  started.fHost.fMemory.fOnRequest = nullptr;
}

TEST_F(Faults, HostTranslatesWhereThePluginDoesNot) {
  FakeElement element;
  PinSession pin;
  pin.Set({.fPositionSet = true, .fActive = true});
  EXPECT_EQ(pin.GetPlugin()->fCleanUpExceptionTranslator(), MC_S_OK);
  element.fOnRead = ReadBadPointer;
  const auto failure = Guarded([&] { pin->SetTreeElement(&element); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->fCode, MC_E_FAULT);
  EXPECT_EQ(pin.GetPlugin()->fInitExceptionTranslator(), MC_S_OK);
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

TEST_F(Faults, SourceThatIsNoPartIsThrownWithItsPosition) {
  FakeScene noPart;
  PinSession pin;
  const auto failure = Guarded([&] { pin.GetExchanger()->HandleEvent(5, &noPart, nullptr); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->fCode, MC_E_INVALIDARG);
  EXPECT_STREQ(failure->fFile, "PinModifier");
  EXPECT_EQ(failure->fLine, 105);
  EXPECT_EQ(pin.GetHost().fDebug.fAssertions, Log{"An exception is being thrown"});
  EXPECT_EQ(pin.Get(), PinBlock());
  EXPECT_EQ(noPart.GetReferences(), 0);
}

}  // namespace
}  // namespace qlx::contract
