#include "FakeOuter.h"
#include "StartedPlugin.h"
#include "services/PluginCatalog.h"

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

TEST(ClassFactory, InterfaceThatAFactoryLacksIsRefused) {
  const StartedPlugin started;
  void* view = &view;
  EXPECT_EQ(started.fPlugin->fGetClassObject(kPinClass, kNobody, &view), MC_E_NOINTERFACE);
  EXPECT_EQ(view, nullptr);
  EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 0);
}

TEST(ClassFactory, ObjectThatLacksTheInterfaceIsDestroyedAndReported) {
  const StartedPlugin started;
  void* object = &object;
  EXPECT_EQ(started.GetFactory(kPinClass)->CreateInstance(nullptr, kNobody, &object), MC_E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(started.fHost.fDebug.fAssertions, Log{"res == MC_S_OK"});
  EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 0);
}

TEST(ClassFactory, AggregatedObjectThatLacksTheInterfaceIsDestroyedWithoutTheOuterOne) {
  const StartedPlugin started;
  FakeOuter outer;
  void* object = &object;
  EXPECT_EQ(started.GetFactory(kPinClass)->CreateInstance(&outer, kNobody, &object), MC_E_NOINTERFACE);
  EXPECT_EQ(outer.GetReferences(), 0);
  EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 0);
}

TEST(Aggregation, ReferencesAreTheOuterObjects) {
  const StartedPlugin started;
  FakeOuter outer;
  IMCUnknown* const inner = started.MakeAggregatedPin(outer);
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(outer.GetReferences(), 0) << "the reference of the creation was given back";
  EXPECT_EQ(inner->AddRef(), 1U);
  EXPECT_EQ(outer.GetReferences(), 1);
  EXPECT_EQ(inner->Release(), 0U) << "the outer object's count; the inner one lives on";
  {
    const auto modifier = MCQuery<I3DExModifier>(inner);
    ASSERT_TRUE(modifier);
    EXPECT_EQ(outer.GetReferences(), 1);
    EXPECT_TRUE(MCQuery<I3DShModifierHolder>(modifier)) << "what it lacks is asked of the outer object";
  }
  EXPECT_EQ(outer.GetReferences(), 0);
  outer.End(*inner);
  EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 0) << "the outer object's answer ends it";
}

}  // namespace
}  // namespace qlx::contract
