#include "HostScene.h"
#include "StartedPlugin.h"

namespace qlx::contract {
namespace {

constexpr MCGuid kNobody = "11111111-2222-3333-4444-555555555555"_guid;

TEST(ClassFactory, UnknownClassHasAFactoryThatMakesNothing) {
  const StartedPlugin started;
  const auto factory = started.GetFactory(kNobody);
  ASSERT_TRUE(factory);
  int32 mark = 0;
  void* object = &mark;
  EXPECT_EQ(factory->CreateInstance(nullptr, IMCUnknown::kInterfaceID, &object), MC_E_NOTCREATED);
  EXPECT_EQ(object, &mark) << "the out pointer stays as it was";
}

TEST(ClassFactory, UnloadQueryCountsFactoriesAndComponents) {
  const StartedPlugin started;
  const auto& plugin = started.fPlugin;
  auto factory = started.GetFactory(kPinClass);
  EXPECT_EQ(plugin->fCanUnloadNow(), 1) << "a factory";
  auto pin = started.MakePin();
  factory.Clear();
  EXPECT_EQ(plugin->fCanUnloadNow(), 1) << "a component";
  pin.Clear();
  EXPECT_EQ(plugin->fCanUnloadNow(), 0);
}

TEST(ClassFactory, RootInterfaceIsAViewOfItsOwn) {
  const StartedPlugin started;
  void* view = nullptr;
  ASSERT_EQ(started.fPlugin->fGetClassObject(kPinClass, IMCUnknown::kInterfaceID, &view), MC_S_OK);
  const auto unknown = MCAdopt(static_cast<IMCUnknown*>(view));
  const auto factory = MCQuery<IMCClassFactory>(unknown);
  ASSERT_TRUE(factory);
  EXPECT_NE(static_cast<void*>(factory.Get()), view);
  EXPECT_EQ(MCQuery<IMCUnknown>(factory), unknown);
}

TEST(ClassFactory, LockKeepsNoCount) {
  const StartedPlugin started;
  EXPECT_EQ(started.GetFactory(kPinClass)->LockServer(true), MC_S_OK);
  EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 0);
}

TEST(ClassFactory, InterfaceThatIsMissingIsRefused) {
  const StartedPlugin started;
  void* view = &view;
  EXPECT_EQ(started.fPlugin->fGetClassObject(kPinClass, kNobody, &view), MC_E_NOINTERFACE);
  EXPECT_EQ(view, nullptr);
  test::FakeObject<IMCUnknown> outer;
  for (IMCUnknown* const each : {static_cast<IMCUnknown*>(nullptr), static_cast<IMCUnknown*>(&outer)}) {
    view = &view;
    EXPECT_EQ(started.GetFactory(kPinClass)->CreateInstance(each, kNobody, &view), MC_E_NOINTERFACE);
    EXPECT_EQ(view, nullptr);
    EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 0) << "what was made is destroyed";
  }
  EXPECT_EQ(outer.fCount, 0);
  EXPECT_EQ(started.fHost.fDebug.fAssertions.at(0), "res == MC_S_OK");
}

// The outer object of an aggregated one.
class FakeOuter final : public test::FakeObject<I3DShModifierHolder> {
 public:
  void MC_CALL GetModifiedElement(TreeElement**) override {}
  uint32 MC_CALL Release() override { return fIsEnding ? kEndInner : FakeObject::Release(); }
  bool fIsEnding = false;
};

TEST(Aggregation, ReferencesAreTheOuterObjects) {
  const StartedPlugin started;
  FakeOuter outer;
  void* object = nullptr;
  started.GetFactory(kPinClass)->CreateInstance(&outer, IMCUnknown::kInterfaceID, &object);
  auto* const inner = static_cast<IMCUnknown*>(object);
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(outer.fCount, 0) << "the reference of the creation was given back";
  EXPECT_EQ(inner->AddRef(), 1U);
  EXPECT_EQ(outer.fCount, 1);
  EXPECT_EQ(inner->Release(), 0U) << "the outer object's count; the inner one lives on";
  {
    const auto modifier = MCQuery<I3DExModifier>(inner);
    ASSERT_TRUE(modifier);
    EXPECT_EQ(outer.fCount, 1);
    EXPECT_TRUE(MCQuery<I3DShModifierHolder>(modifier)) << "what it lacks is asked of the outer object";
  }
  EXPECT_EQ(outer.fCount, 0);
  outer.fIsEnding = true;
  EXPECT_EQ(inner->Release(), kEndInner);
  EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 0) << "the outer object's answer ends it";
}

}  // namespace
}  // namespace qlx::contract
