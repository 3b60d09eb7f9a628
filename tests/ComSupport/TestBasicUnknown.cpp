#include "BasicMCFCOMImplementations.h"
#include "HostedTest.h"
#include "ThrownBy.h"

namespace qlx {
namespace {

// A component that tells when it goes.
class Component : public TBasicTreeModifier {
 public:
  explicit Component(int* outDestroyed = nullptr) : fDestroyed(outDestroyed) {}
  ~Component() override {
    if (fDestroyed != nullptr) {
      ++*fDestroyed;
    }
  }
  uint32 MC_CALL GetExtensionDataSize() override { return 0; }
  int32 GetOwnCount() const { return fRefCount; }

 private:
  int* fDestroyed;
};

// An outer object that counts what is forwarded to it.
class Outer final : public IMCUnknown {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    fAsked = inID;
    *outObject = nullptr;
    return MC_E_NOINTERFACE;
  }
  uint32 MC_CALL AddRef() override { return ++fCount; }
  uint32 MC_CALL Release() override { return fEnding ? kEndInner : --fCount; }

  uint32 fCount = 1;
  bool fEnding = false;
  MCGuid fAsked{};
};

using BasicUnknown = test::HostedTest;

TEST_F(BasicUnknown, AnswersItsViewsAndClearsThePointerForUnknownIDs) {
  auto* const component = new Component;
  TBasicUnknown* const own = component;
  void* view = nullptr;
  ASSERT_EQ(own->QueryInterface(IMCUnknown::kInterfaceID, &view), MC_S_OK);
  EXPECT_EQ(view, own);
  ASSERT_EQ(own->QueryInterface(I3DExModifier::kInterfaceID, &view), MC_S_OK);
  EXPECT_EQ(view, static_cast<I3DExModifier*>(component));
  ASSERT_EQ(own->QueryInterface(IExDataExchanger::kInterfaceID, &view), MC_S_OK);
  EXPECT_EQ(view, static_cast<IExDataExchanger*>(component));
  EXPECT_EQ(component->GetOwnCount(), 4);
  EXPECT_EQ(own->QueryInterface(IExStreamIO::kInterfaceID, &view), MC_E_NOINTERFACE);
  EXPECT_EQ(view, nullptr);
  for (int i = 0; i < 4; ++i) {
    own->Release();
  }
}

TEST_F(BasicUnknown, EveryViewCountsTheSameObjectAndTheLastReleaseDestroysIt) {
  const int32 before = GetLiveObjectCount();
  int destroyed = 0;
  auto* const component = new Component(&destroyed);
  EXPECT_EQ(GetLiveObjectCount(), before + 1);
  EXPECT_EQ(static_cast<I3DExModifier*>(component)->AddRef(), 2U);
  EXPECT_EQ(static_cast<IExDataExchanger*>(component)->Release(), 1U);
  EXPECT_EQ(destroyed, 0);
  EXPECT_EQ(static_cast<TBasicUnknown*>(component)->Release(), 0U);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(GetLiveObjectCount(), before);
}

TEST_F(BasicUnknown, ReleasePastZeroThrows) {
  struct Held final : Component {
    Held() { fRefCount = 0; }
  } component;
  EXPECT_EQ(test::CodeOf([&] { component.Release(); }), MC_E_OVERRELEASED);
}

TEST_F(BasicUnknown, AnAggregatedObjectForwardsItsCountAndUnknownIDs) {
  Outer outer;
  int destroyed = 0;
  auto* const component = new Component(&destroyed);
  component->SetOuter(&outer);
  EXPECT_EQ(component->AddRef(), 2U);
  EXPECT_EQ(component->GetOwnCount(), 1);
  EXPECT_EQ(component->Release(), 1U);
  void* view = &outer;
  EXPECT_EQ(component->QueryInterface(IExStreamIO::kInterfaceID, &view), MC_E_NOINTERFACE);
  EXPECT_TRUE(outer.fAsked == IExStreamIO::kInterfaceID);
  // Its own views do not go to the outer object, but their references do.
  ASSERT_EQ(component->QueryInterface(I3DExModifier::kInterfaceID, &view), MC_S_OK);
  EXPECT_EQ(outer.fCount, 2U);
  outer.fEnding = true;
  EXPECT_EQ(component->Release(), kEndInner);
  EXPECT_EQ(destroyed, 1);
}

TEST_F(BasicUnknown, DefaultsOfAModifier) {
  Component component;
  EXPECT_EQ(component.GetFlags(), 1U);
  EXPECT_EQ(component.GetTimeDependence(), 0x7FFFFFFFU);
  EXPECT_EQ(component.SetTreeElement(nullptr), MC_E_NOTIMPLEMENTED);
  int32 time = 0;
  EXPECT_EQ(component.MapTime(-7, &time), MC_S_OK);
  EXPECT_EQ(time, -7);
  EXPECT_TRUE(component.CanExchangeData(nullptr));
  EXPECT_EQ(component.HandleEvent(5, nullptr, nullptr), MC_E_NOTIMPLEMENTED);
  EXPECT_EQ(component.ExtensionDataChanged(), MC_E_NOTVALID);
  EXPECT_EQ(component.CopyDataTo(nullptr), MC_E_NOTVALID);
}

TEST_F(BasicUnknown, CloneByDefaultGivesNothingAndDropsWhatTheResultHeld) {
  Component component;
  int destroyed = 0;
  IExDataExchanger* held = new Component(&destroyed);
  component.Clone(&held, nullptr);
  EXPECT_EQ(held, nullptr);
  EXPECT_EQ(destroyed, 1);
}

}  // namespace
}  // namespace qlx
