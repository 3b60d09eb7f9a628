#include <fmt/format.h>
#include <gtest/gtest.h>

#include "HostInterface.h"
#include "MCLibrary.h"
#include "model/Scene.h"
#include "odd/OddPlugin.h"
#include "services/Host.h"

namespace qlx::host {
namespace {

using test::OddMode;
using Vector = std::array<real32, 3>;
using Warnings = std::vector<std::string>;

// A scene with one element, and a plug-in.
class PluginModifierTest : public testing::Test {
 protected:
  PluginModifierTest() : fElement(fScene->AddElement(fScene->GetRootElement(), "Foot")) {}
  ~PluginModifierTest() override {
    fModifier.Clear();
    fScene->Close();
    EXPECT_TRUE(!fHost.GetPlugin() || fHost.GetPlugin()->CanUnload());
  }

  void Load(const char* inFile) {
    fHost.LoadPlugin(inFile);
    fModifier = fHost.CreateModifier("fPIN"_id);
  }
  void LoadOdd(OddMode inMode) {
    ASSERT_TRUE(fOdd.Open(QLX_ODD_PLUGIN_FILE)) << fOdd.GetErrorText();
    fOdd.Find<test::SetOddMode>("OddSetMode")(inMode);
    Load(QLX_ODD_PLUGIN_FILE);
  }
  void Set(const char* inField, const ParameterValue& inValue) {
    ASSERT_NE(fModifier->GetParameterMap(), nullptr);
    EXPECT_TRUE(fModifier->SetField(*fModifier->GetParameterMap()->Find(inField), inValue));
  }
  static ParameterValue Get(const PluginModifier& inModifier, const char* inField) {
    return inModifier.GetField(*inModifier.GetParameterMap()->Find(inField));
  }

  Diagnostics fDiagnostics;
  MCLibrary fOdd;  // one more opening, so that its mode can be set ahead of the host's
  Host fHost{fDiagnostics};
  TMCCountedPtr<Scene> fScene = MakeHosted<Scene>(fDiagnostics);
  Element& fElement;
  TMCCountedPtr<PluginModifier> fModifier;
};

TEST_F(PluginModifierTest, OneIdentityAnswersForBoth) {
  Load(QLX_PLUGIN_FILE);
  const auto inner = MCQuery<I3DExModifier>(static_cast<I3DShModifier*>(fModifier.Get()));
  ASSERT_TRUE(inner);
  EXPECT_EQ(MCQuery<I3DShModifier>(inner), static_cast<I3DShModifier*>(fModifier.Get()));
  EXPECT_TRUE(MCQuery<I3DShModifierHolder>(inner));
  EXPECT_FALSE(fModifier->GetStreamIO()) << "neither has it, and they do not ask each other without end";
  EXPECT_FALSE(MCQuery<IMFPart>(inner));
}

TEST_F(PluginModifierTest, ComponentsReferencesKeepTheWhole) {
  Load(QLX_PLUGIN_FILE);
  auto inner = MCQuery<I3DExModifier>(static_cast<I3DShModifier*>(fModifier.Get()));
  fModifier.Clear();
  EXPECT_FALSE(fHost.GetPlugin()->CanUnload());
  EXPECT_EQ(inner->GetFlags(), 1U);
  inner.Clear();
  EXPECT_TRUE(fHost.GetPlugin()->CanUnload());
}

TEST_F(PluginModifierTest, CopyTakesTheFieldsAndTheSwitch) {
  Load(QLX_PLUGIN_FILE);
  Set("fGlobal", true);
  Set("fPosition", Vector{1, 2, 3});
  Set("fReserved", Vector{4, 5, 6});
  fModifier->SetEnabled(false);
  fElement.AddModifier(*fModifier, 0);
  const auto copy = fModifier->Copy();
  ASSERT_TRUE(copy);
  EXPECT_FALSE(copy->IsEnabled());
  EXPECT_EQ(copy->GetElement(), nullptr);
  auto& pin = static_cast<PluginModifier&>(*copy);
  for (const ParameterField& field : fModifier->GetParameterMap()->GetFields()) {
    EXPECT_EQ(pin.GetField(field), fModifier->GetField(field)) << field.fName;
  }
  Set("fPosition", Vector{7, 8, 9});
  EXPECT_EQ(Get(pin, "fPosition"), ParameterValue(Vector{1, 2, 3}));
}

TEST_F(PluginModifierTest, LinksAreCopiedWithTheirPrivateData) {
  Load(QLX_PLUGIN_FILE);
  const auto link = fHost.CreateModifier("fQLX"_id);
  ASSERT_TRUE(link);
  const ParameterField& name = *link->GetParameterMap()->Find("fName");
  EXPECT_EQ(link->GetField(name), ParameterValue("QLX"));
  EXPECT_TRUE(link->SetField(name, std::string("Wheel")));
  EXPECT_EQ(link->ReadPrivate("pset 1\nsobj \"07000000\"\nspar \"self,amet,TRAN,SCAL\"\n"), std::nullopt);
  const auto copied = link->Copy();
  ASSERT_TRUE(copied);
  auto& copy = static_cast<PluginModifier&>(*copied);
  EXPECT_EQ(copy.GetField(name), ParameterValue("Wheel"));
  EXPECT_EQ(copy.WritePrivate(), link->WritePrivate());
  EXPECT_NE(copy.WritePrivate()->find("07000000"), std::string::npos);
  EXPECT_EQ(fModifier->WritePrivate(), std::nullopt) << "a pin has none";
  EXPECT_EQ(fModifier->ReadPrivate("pset 1\n"), "the class has no private data");
}

// So many that their memory is fetched ahead, from a plan that each change of the modifiers makes old.
TEST_F(PluginModifierTest, ManyLinksFollowWhileSomeGo) {
  Load(QLX_PLUGIN_FILE);
  constexpr std::size_t kLinks = 300;
  Curve& curve = fElement.GetOrMakeCurve(Channel::kUniformScale);
  curve.SetKey({.fTime = 0, .fValue = 1});
  curve.SetKey({.fTime = 1000, .fValue = 11});
  fScene->SetTimeRange(0, 1000);
  std::vector<Element*> followers;
  for (std::size_t i = 0; i < kLinks; ++i) {
    followers.push_back(&fScene->AddElement(fScene->GetRootElement(), "Follower"));
    const auto link = fHost.CreateModifier("fQLX"_id);
    ASSERT_EQ(link->ReadPrivate(fmt::format("pset 1\ncpsl \"self,amet,TRAN,SCAL\"\ncpst 1\n"
                                            "spar \"self,amet,TRAN,SCAL\"\nsobj \"{:02x}000000\"\n",
                                            fElement.GetUniqueID())),
              std::nullopt);
    ASSERT_TRUE(link->SetField(*link->GetParameterMap()->Find("fAttributeMode"), true));
    followers.back()->AddModifier(*link, 0);
  }
  for (int32 time = 100; time <= 900; time += 100) {
    if (time > 300) {  // one goes, from the end of the list on
      followers[kLinks - static_cast<std::size_t>(time) / 100]->RemoveModifier(0);
    }
    fScene->Evaluate(time);
    for (const Element* const follower : followers) {
      const bool isLinked = !follower->GetModifiers().empty();
      ASSERT_EQ(follower->GetValue(Channel::kUniformScale), isLinked ? fElement.GetValue(Channel::kUniformScale) : 1.0f)
          << "at " << time;
    }
  }
}

TEST_F(PluginModifierTest, EventThatThrowsIsReportedAndAnswersItsCode) {
  Load(QLX_PLUGIN_FILE);
  EXPECT_EQ(fModifier->SendEvent(5, static_cast<I3DShScene*>(fScene.Get())), MC_E_INVALIDARG);
  EXPECT_EQ(fDiagnostics.GetWarnings().back(),
            "PinModifier::HandleEvent failed with 0x80010005 (PinModifier, line 105)");
  fHost.SetEventHandlingSuspended(true);
  EXPECT_EQ(fModifier->SendEvent(5, static_cast<I3DShScene*>(fScene.Get())), MC_S_OK) << "nobody looks at the message";
}

TEST_F(PluginModifierTest, BlockOfAnotherSizeIsNeverWritten) {
  for (const OddMode mode : {OddMode::kSmallBlock, OddMode::kNullBlock}) {
    LoadOdd(mode);
    ASSERT_TRUE(fModifier);
    EXPECT_EQ(fModifier->GetParameterMap(), nullptr);
    const ParameterField& last = *fHost.GetCatalog()->FindMap("fPIN"_id)->Find("fReserved");
    EXPECT_FALSE(fModifier->SetField(last, Vector{1, 1, 1}));
    EXPECT_EQ(fDiagnostics.GetWarnings().front(),
              "PinModifier: its parameters cannot be used, the block is not the one that the host knows");
    EXPECT_FALSE(fModifier->Copy());
    fModifier.Clear();
  }
}

TEST_F(PluginModifierTest, ComponentsOwnCopyIsTakenOver) {
  LoadOdd(OddMode::kClones);
  Set("fPosition", Vector{1, 2, 3});
  fModifier->SendEvent(42, nullptr);  // its private number
  const auto copy = fModifier->Copy();
  ASSERT_TRUE(copy);
  auto& pin = static_cast<PluginModifier&>(*copy);
  EXPECT_EQ(Get(pin, "fPosition"), ParameterValue(Vector{2, 2, 3}));
  const auto exchanger = MCQuery<IExDataExchanger>(static_cast<I3DShModifier*>(&pin));
  EXPECT_EQ(exchanger->GetSecondaryResourceId(), 42);
  EXPECT_TRUE(MCQuery<I3DShModifierHolder>(exchanger)) << "it is aggregated as any other";
}

TEST_F(PluginModifierTest, CopyInPartIsNone) {
  LoadOdd(OddMode::kClonesInPart);
  EXPECT_FALSE(fModifier->Copy());
  EXPECT_EQ(fDiagnostics.GetWarnings(), Warnings{"PinModifier cannot be copied: its private data is not whole"});
}

TEST_F(PluginModifierTest, FailureIsToldOnceForAnElementAndTheSceneGoesOn) {
  const struct {
    OddMode fMode;
    Warnings fWarnings;
  } kRows[] = {
      {OddMode::kThrows,
       {"element \"Foot\": PinModifier::SetTreeElement failed with 0x80010004: threw a foreign exception, odd"}},
      {OddMode::kFails, {"element \"Foot\": PinModifier::SetTreeElement failed with 0x80010006"}},
      {OddMode::kNotImplemented, {}},
  };
  for (const auto& row : kRows) {
    LoadOdd(row.fMode);
    const std::size_t before = fDiagnostics.GetWarnings().size();
    fElement.AddModifier(*fModifier, 0);
    for (int32 time = 0; time < 3; ++time) {
      fScene->Evaluate(time);
    }
    const Warnings told(fDiagnostics.GetWarnings().begin() + static_cast<std::ptrdiff_t>(before),
                        fDiagnostics.GetWarnings().end());
    EXPECT_EQ(told, row.fWarnings);
    fElement.RemoveAllModifiers();
    fModifier.Clear();
  }
}

TEST_F(PluginModifierTest, ComponentThatIsNoModifierIsRefusedAndEnded) {
  LoadOdd(OddMode::kNoModifier);
  EXPECT_FALSE(fModifier);
  EXPECT_EQ(fDiagnostics.GetWarnings(), Warnings{"PinModifier is no modifier: it lacks an interface of one"});
  EXPECT_TRUE(fHost.GetPlugin()->CanUnload());
}

TEST_F(PluginModifierTest, ComponentMayUseItsOuterObjectWhileItEnds) {
  LoadOdd(OddMode::kAsksAtItsEnd);
  ASSERT_TRUE(fModifier);
  fModifier.Clear();
  EXPECT_TRUE(fHost.GetPlugin()->CanUnload());
  EXPECT_EQ(fHost.GetMemoryCounts().fAlive, 0U);
}

TEST_F(PluginModifierTest, PluginWhoseStartFailsIsRefused) {
  ASSERT_TRUE(fOdd.Open(QLX_ODD_PLUGIN_FILE));
  fOdd.Find<test::SetOddMode>("OddSetMode")(OddMode::kStartFails);
  EXPECT_THROW(fHost.LoadPlugin(QLX_ODD_PLUGIN_FILE), UserError);
  EXPECT_EQ(fHost.GetPlugin(), nullptr);
}

}  // namespace
}  // namespace qlx::host
