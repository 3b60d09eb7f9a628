#include "BasicPart.h"
#include "HostedTest.h"

namespace qlx {
namespace {

// A host part whose default extension is another `TBasicPart`.
class HostPart final : public TMCCountedObject, public IMFPart {
 public:
  explicit HostPart(TBasicPart* inDefault) : fDefault(inDefault) {}

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (inID == TBasicPart::kInterfaceID && fDefault != nullptr) {
      return MCStoreCounted<TBasicPart>(fDefault, outObject);
    }
    return TMCCountedObject::QueryInterface(inID, outObject);
  }
  uint32 MC_CALL AddRef() override { return TMCCountedObject::AddRef(); }
  uint32 MC_CALL Release() override { return TMCCountedObject::Release(); }
  MCID MC_CALL GetPartId() override { return "part"_id; }
  void MC_CALL FindChildPart(IMFPart** outPart, MCID /*inID*/, int32 /*inZero*/) override {
    MCAssignCounted<IMFPart>(outPart, nullptr);
  }
  void MC_CALL GetParentPart(IMFPart** outPart) override { MCAssignCounted<IMFPart>(outPart, nullptr); }
  MCResult MC_CALL GetPartValue(void* /*outBuffer*/, MCID /*inTypeId*/) override { return MC_E_NOTVALID; }
  MCResult MC_CALL SetPartValue(const void* /*inBuffer*/, MCID /*inTypeId*/, int32 /*inOne1*/,
                                int32 /*inOne2*/) override {
    return MC_E_NOTVALID;
  }

 private:
  TBasicPart* fDefault;
};

// The host's default extension: remembers what was passed on to it.
class DefaultExtension final : public TBasicPart {
 public:
  void MC_CALL TrackChanged(MCWord inValue) override { fTracked = inValue; }
  MCWord MC_CALL GetPartLabel() override { return 77; }
  MCWord fTracked = 0;
};

class Dialog final : public TBasicPart {
 public:
  bool HasPart() const { return static_cast<bool>(fPart); }
};

class BasicPart : public test::HostedTest {
 protected:
  test::TestBookkeeping fBookkeeping;
};

TEST_F(BasicPart, PassesOnToTheHostPartOnceAttached) {
  DefaultExtension fallback;
  auto host = MCAdopt(new HostPart(&fallback));
  Dialog dialog;
  dialog.TrackChanged(3);
  EXPECT_EQ(dialog.GetPartLabel(), 0U);
  dialog.Attach(host.Get());
  dialog.TrackChanged(4);
  EXPECT_EQ(fallback.fTracked, 4U);
  EXPECT_EQ(dialog.GetPartLabel(), 77U);
  EXPECT_EQ(dialog.GetPreferredValue(), -1);
  dialog.Destroy();
  EXPECT_FALSE(dialog.HasPart());
  EXPECT_EQ(dialog.GetPartLabel(), 0U);
}

TEST_F(BasicPart, APartThatAnswersWithItsOwnExtensionEndsThePassingOn) {
  Dialog dialog;
  auto host = MCAdopt(new HostPart(&dialog));
  dialog.Attach(host.Get());
  EXPECT_EQ(dialog.GetHelp(), 0U);
  dialog.Destroy();
}

TEST_F(BasicPart, UseAfterDestroyIsReported) {
  DefaultExtension fallback;
  auto host = MCAdopt(new HostPart(&fallback));
  Dialog dialog;
  dialog.Destroy();
  test::AssertionGuard guard({"fNeverCalledDestroy"});
  dialog.Attach(host.Get());
  dialog.Destroy();
}

}  // namespace
}  // namespace qlx
