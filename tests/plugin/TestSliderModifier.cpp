// A slider: the value that it writes, its panel, and the choice of its target.
#include <gtest/gtest.h>

#include "CountedNew.h"
#include "LinkServices.h"
#include "LinkTest.h"
#include "PlainScene.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

// An object with morphs, which its element holds at times.
class SliderObject final : public FakeObject<I3DShObjectHolder, I3DShObject> {
 public:
  I3DShObject* MC_CALL GetHeldObject() override { return this; }
  I3DShScene* MC_CALL GetScene() override { return nullptr; }
  const TMCString& MC_CALL GetName() override { return fName; }
  void MC_CALL GetObjectData(IMCUnknown** outData) override {
    ++fAsked;
    MCAssignCounted<IMCUnknown>(outData, &fMorphs);
  }
  TreeElement* MC_CALL GetInstance(uint32) override { return nullptr; }

  PlainMorphs fMorphs;
  int fAsked = 0;

 private:
  TMCString15 fName;
};

class SliderTest : public testing::Test {
 protected:
  SliderTest() {
    FakeControl& group = fPanel.Add("titl"_id, FakeControl::kLabelled).Add("grup"_id);
    group.Add("valu"_id, FakeControl::kSlider);
    FakeControl& row = group.Add("row "_id);
    for (const MCID id : {"vmin"_id, "vmax"_id, "sbtn"_id, "othr"_id}) {
      row.Add(id);
    }
  }
  ~SliderTest() override { EXPECT_EQ(fPanel.CountHeld(), 0); }

  void Send(uint32 inMessage, FakeControl& inSource) {
    EXPECT_EQ(fHosted.GetExchanger().HandleEvent(inMessage, inSource.AsPart(), nullptr), MC_S_OK);
  }
  real32 RotX() const { return ValueOf(fScene.fB, host::Channel::kRotationX); }

  LinkScene fScene;
  LinkServices fServices;
  FakeControl fPanel{"panl"_id};
  HostedComponent& fHosted = HostedComponent::AddTo(fScene.fB, "fSLD"_id, SliderModifier::kInterfaceID);
  SliderPublicData& fData = *static_cast<SliderPublicData*>(fHosted.GetExchanger().GetExtensionDataBuffer());
};

TEST_F(SliderTest, NewOneLeavesItsElementAlone) {
  fScene.fB.SetBase(MakeValues({1, 2, 3}, {4, 5, 6}));
  fScene.Play(1);
  EXPECT_EQ(RotX(), 4);
  Send(1, fPanel);
  FakeControl& slider = fPanel["valu"_id];
  EXPECT_EQ(slider.fText, "<not set>");
  EXPECT_EQ(slider.fMinimum, -100);
  EXPECT_EQ(slider.fMaximum, 100);
}

TEST_F(SliderTest, WritesItsValueAndAllocatesNothing) {
  const struct {
    const char* fPath;
    real32 fWritten;
  } rows[] = {
      {kRotX, 2.5f}, {"", 0},     {"self,none", 0},      {"self,amet,TRAN", 0},
      {"GlbX", 0},   {"RotX", 0}, {"shdr,0000,colo", 0}, {"self,amet,TRAN,ROTA,RotX,more", 2.5f},
      {kRotY, 0},
  };
  fData.fValue = 2.5f;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fPath);
    fData.fPath = row.fPath;
    fScene.Play(1);
    fScene.Play(2);
    const auto& memory = static_cast<const TestMemory&>(*gMemoryUtilities);
    const int requests = memory.GetRequests();
    const uint64 news = bench::GetNewCount();
    fScene.Play(3);
    EXPECT_EQ(memory.GetRequests(), requests);
    EXPECT_EQ(bench::GetNewCount(), news);
    EXPECT_EQ(RotX(), row.fWritten);
  }
  fData.fPath = std::string(2000, 'x').c_str();
  fScene.Play(4);  // longer than any path
}

// The notifier is looked for at every call until it is found, through a holder that the shell makes where the element
// has none; then it is kept, also for another path.
TEST_F(SliderTest, TellsTheMorphsOfAMorphPathAlone) {
  SliderObject object;
  PlainElement element(fScene.fB, fScene.fB.GetScene());
  element.fAnswer = [&](const MCGuid& inID, void** outObject) {
    return object.fCount > 0 && inID == I3DShObjectHolder::kInterfaceID &&
           object.QueryInterface(inID, outObject) == MC_S_OK;
  };
  auto slider = MCAdopt(new SliderModifier);
  auto& data = *static_cast<SliderPublicData*>(slider->GetExtensionDataBuffer());
  data.fValue = 2;
  data.fPath = kRotX;
  slider->SetTreeElement(&element);
  EXPECT_EQ(object.fAsked, 0) << "there is none";
  fServices.fShell.fHolder = static_cast<I3DShObjectHolder*>(&object);
  for (int i = 0; i < 2; ++i) {
    slider->SetTreeElement(&element);
    EXPECT_EQ(object.fAsked, 1);
    EXPECT_EQ(object.fCount, 0) << "held while it is asked";
    EXPECT_EQ(object.fMorphs.fCount, 1);
  }
  EXPECT_EQ(object.fMorphs.fChanged, 0);
  host::SceneObject& face = fScene->AddObject("Face");
  face.AddMorphGroup("Mouth", {"Smile", "Frown"}, {0, 0.5f});
  fScene.fB.SetShownObject(&face);
  data.fPath = "RMPH,0,1";
  slider->SetTreeElement(&element);
  slider->SetTreeElement(&element);
  EXPECT_EQ(object.fMorphs.fChanged, 2);
  EXPECT_EQ(face.GetValues()->GetEvaluated(1)[0], 2);
  slider.Clear();
  EXPECT_EQ(object.fMorphs.fCount, 0);
  EXPECT_EQ(element.fCount, 1);
}

TEST_F(SliderTest, EveryMessageBringsTheSliderUpToDate) {
  fData.fLabel = "Bend";
  fData.fMin = -1;
  fData.fMax = 1;
  FakeControl& slider = fPanel["valu"_id];
  Send(1, fPanel);
  EXPECT_EQ(slider.fText, "Bend");
  EXPECT_EQ(slider.fMaximum, 1);
  for (const MCID end : {"vmin"_id, "vmax"_id}) {
    fData.fMin -= 1;
    fData.fMax += 1;
    fData.fLabel = "Other";
    Send(4, fPanel[end]);
    EXPECT_EQ(slider.fMinimum, fData.fMin + 1) << "no use of the control";
    Send(5, fPanel[end]);
    EXPECT_EQ(slider.fMinimum, fData.fMin);
    EXPECT_EQ(slider.fMaximum, fData.fMax);
    EXPECT_EQ(slider.fText, "Bend") << "the range alone";
  }
  fData.fMax = 50;
  Send(5, fPanel["othr"_id]);
  EXPECT_EQ(slider.fMaximum, 3);
  fServices.fShell.fIsSuspended = true;
  Send(1, fPanel);
  EXPECT_EQ(slider.fMaximum, 3);
}

TEST_F(SliderTest, ASourceThatIsNoPartIsRefused) {
  FakeObject<IMCUnknown> noPart;
  EXPECT_EQ(ThrownBy([&] { fHosted.GetExchanger().HandleEvent(1, &noPart, nullptr); }),
            (Thrown{MC_E_INVALIDARG, "SliderModifier", 42}));
  EXPECT_EQ(fHosted.GetExchanger().HandleEvent(5, nullptr, nullptr), MC_S_OK);
}

TEST_F(SliderTest, ChoosesItsTarget) {
  constexpr const char* kRow = "Rotation X (RotX) [qfix]";
  for (const bool isTaken : {false, true}) {
    FakeControl& dialog = fServices.OfferRow(kRow, isTaken);
    Send(5, fPanel["sbtn"_id]);
    const auto offered = fServices.OfferedRows().Labels();
    EXPECT_EQ(offered.at(0), "B");
    EXPECT_EQ(offered.at(1), "  Element (amet)") << "no position in the scene";
    EXPECT_EQ(TextOf(fData.fPath), isTaken ? kRotX : "");
    EXPECT_EQ(TextOf(fData.fLabel), isTaken ? kRow : "<not set>");
    EXPECT_EQ(fPanel["titl"_id].fText, isTaken ? kRow : "");
    EXPECT_EQ(fPanel["valu"_id].fText, isTaken ? kRow : "");
    EXPECT_EQ(dialog.fCloses, 1);
  }
  fServices.OfferRow(kRow);
  const int writes = fPanel["titl"_id].fWrites;
  Send(5, fPanel["sbtn"_id]);
  EXPECT_EQ(fPanel["titl"_id].fWrites, writes) << "the label stands there already";
  fData.fValue = 3;
  fScene.Play(1);
  EXPECT_EQ(RotX(), 3);
}

TEST_F(SliderTest, WithoutATitleTheChoiceStandsAllTheSame) {
  FakeControl lone("sbtn"_id);
  fServices.OfferRow("Rotation Y (RotY) [qfix]");
  Send(5, lone);
  EXPECT_EQ(TextOf(fData.fPath), kRotY);
}

}  // namespace
}  // namespace qlx::test
