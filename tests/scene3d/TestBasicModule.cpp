#include "BasicModule.h"

#include <gtest/gtest.h>

#include "AssertionGuard.h"
#include "FakeObject.h"
#include "FakeRoot.h"
#include "MCException.h"
#include "TestMemory.h"

namespace qlx::test {
namespace {

class FakeContext final : public FakeObject<IModuleContext> {};

class FakeShell final : public FakeObject<IShellUtilities, IModuleContextSource> {
 public:
  bool MC_CALL IsEventHandlingSuspended() override { return false; }
  void MC_CALL SetShellState(uint32, uint8, uint8) override {}
  IMCUnknown* MC_CALL EnsureObjectHolder(TreeElement*) override { return nullptr; }
  bool MC_CALL ChooseObject(TreeElement**, const TMCString&, const TMCString&, int32, int32, int32) override {
    return false;
  }
  void MC_CALL GetModuleContext(IModuleContext** outContext) override {
    ++fAsked;
    MCAssignCounted(outContext, fContext);
  }

  IModuleContext* fContext = nullptr;
  int fAsked = 0;
};

class FakeResources final : public FakeObject<IResourceManager, IStringTables> {
 public:
  MCResult MC_CALL PushResourceContext(MCID, MCID, uint32&) override { return MC_E_NOTVALID; }
  MCResult MC_CALL PopResourceContext(uint32) override { return MC_E_NOTVALID; }
  void MC_CALL GetIndexedString(TMCString& outText, uint16 inTable, uint16 inIndex) override {
    outText = inTable == 3 && inIndex == 2 ? "Links" : "";
  }
};

class FakeStore final : public FakeObject<IPreferenceStore> {
 public:
  void MC_CALL SetContextName(const TMCString& inName) override { fName = inName; }
  TMCString31 fName{"before"};
};

class BasicModuleTest : public ::testing::Test {
 protected:
  TestMemory fMemory;
  FakeShell fShell;
  FakeResources fResources;
  FakeRoot fRoot{{static_cast<IShellUtilities*>(&fShell), static_cast<IResourceManager*>(&fResources)}};
};

TEST_F(BasicModuleTest, AsksForItsContextOnceAndThrowsWithoutOne) {
  FakeContext context;
  TMCCountedPtr<IModuleContext> passed;
  {
    const auto object = MCAdopt(new BasicModule);
    const auto module = MCQuery<IExModule>(static_cast<IExModule*>(object.Get()));
    {
      AssertionGuard guard({"An exception is being thrown"});
      EXPECT_THROW(module->PassContext(passed.WriteInto()), TMCException);
    }
    fShell.fContext = &context;
    module->PassContext(passed.WriteInto());
    module->PassContext(passed.WriteInto());
    EXPECT_EQ(passed, &context);
    EXPECT_EQ(fShell.fAsked, 2);
  }
  passed.Clear();
  EXPECT_EQ(context.fCount, 0);
}

TEST_F(BasicModuleTest, ThrowsWhereADerivedClassForgetsItsRelease) {
  const auto module = MCAdopt(new BasicModule);
  const auto client = MCAdopt(new BasicPropertiesClient);
  for (IExReleasable* const releasable :
       {static_cast<IExReleasable*>(module.Get()), static_cast<IExReleasable*>(client.Get())}) {
    ASSERT_TRUE(MCQuery<IExReleasable>(releasable));
    AssertionGuard guard({"STANDARD_RELEASE not implemented in base class!!", "An exception is being thrown"});
    EXPECT_THROW(releasable->StandardRelease(), TMCException);
  }
}

TEST_F(BasicModuleTest, RefusesAFilledArrayOfIDs) {
  const auto component = MCAdopt(new BasicDataComponent);
  TMCArray<MCID> ids;
  component->CollectParamIDs(ids);
  EXPECT_EQ(ids.GetElemCount(), 0u);
  ids.AddElem("valu"_id);
  AssertionGuard guard({"idArray.GetElemCount() == 0"});
  component->CollectParamIDs(ids);
  EXPECT_EQ(ids.GetElemCount(), 1u);
}

TEST_F(BasicModuleTest, NamesTheContextOfItsPreferences) {
  const struct {
    uint16 table, index;
    const char* name;
    std::vector<std::string> reports;
  } rows[] = {{3, 2, "Links", {}}, {3, 0, "", {}}, {0, 2, "", {}}, {4, 2, "", {"contextName.Length() > 0"}}};
  for (const auto& row : rows) {
    FakeStore store;
    const auto component = MCAdopt(new BasicPrefsComponent);
    AssertionGuard guard(row.reports);
    component->SetUp(&store, 7, row.table, row.index);
    EXPECT_STREQ(store.fName.CStr(), row.name);
    component->SetUp(nullptr, 7, 0, 0);
    EXPECT_EQ(store.fCount, 0);
  }
}

}  // namespace
}  // namespace qlx::test
