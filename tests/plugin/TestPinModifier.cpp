// A pin: what it does to its element, and what the controls of its panel do.
#include <gtest/gtest.h>

#include "LinkServices.h"
#include "LinkTest.h"
#include "PlainScene.h"
#include "RealConstants.h"
#include "WildLine.h"

namespace qlx::test {
namespace {

using host::Channel;

// An element of another host's scene, below one that is moved, turned and stretched.
class PinTest : public testing::Test {
 protected:
  PinTest() {
    fParent.SetBase(MakeValues({100, 200, 300}, {0, 0, kRealHalfPI}, {1, 1, 2}));
    fTarget.SetBase(MakeValues({1, 2, 3}, {0.1f, 0.2f, 0.3f}, {2, 3, 4}, 1.5f));
    fTarget.SetMode(kPoser);
    fTarget.SetHotPoint({10, 20, 30});
    fScene.Play(12);
  }
  ~PinTest() override {
    fPin.Clear();
    EXPECT_EQ(fElement.fCount, 1) << "the last release drops it";
  }
  void Press(MCID inPart, uint32 inMessage = 5) {
    FakeControl part(inPart);
    EXPECT_EQ(fPin->HandleEvent(inMessage, part.AsPart(), nullptr), MC_S_OK);
    EXPECT_EQ(part.fCount, 0);
  }
  // A pin that is on.
  void PinTo(TVector3 inPosition, bool inIsGlobal) { fData = {true, true, inIsGlobal, 0, inPosition, {}}; }

  LinkScene fScene;
  LinkServices fServices;
  host::Element& fParent = fScene.Add("Parent");
  host::Element& fTarget = fScene->AddElement(fParent, "Target");
  PlainScene fPlain{*fScene.operator->()};
  PlainElement fElement{fTarget, &fPlain};
  TMCCountedPtr<PinModifier> fPin = MCAdopt(new PinModifier);
  PinPublicData& fData = *static_cast<PinPublicData*>(fPin->GetExtensionDataBuffer());
};

TEST_F(PinTest, WritesOnlyWhenItIsOnAndHasAPosition) {
  for (const bool hasPosition : {false, true}) {
    for (const bool isActive : {false, true}) {
      SCOPED_TRACE(testing::Message() << hasPosition << isActive);
      fElement.fChanged = 0;
      fData.fPositionSet = hasPosition;
      fData.fActive = isActive;
      EXPECT_EQ(fPin->SetTreeElement(&fElement), MC_S_OK);
      EXPECT_EQ(fElement.fChanged, hasPosition && isActive ? 1 : 0);
      EXPECT_EQ(fElement.fCount, 2) << "held in any case";
    }
  }
}

TEST_F(PinTest, ReplacesTheTranslationAlone) {
  const TVector3 position(10, -20, 0.25f);
  for (const bool isGlobal : {false, true}) {
    const auto read = [&] {
      TTreeTransform transform;
      isGlobal ? fTarget.GetGlobalTransform(transform) : fTarget.GetLocalTransform(transform);
      return transform;
    };
    PinTo(position, isGlobal);
    const TMatrix33 before = read().GetLocalToParent().fMatrix;
    fPin->SetTreeElement(&fElement);
    EXPECT_TRUE(read().GetPosition().IsEqual(position, 1e-4f)) << isGlobal;
    EXPECT_TRUE(read().GetLocalToParent().fMatrix.IsEqual(before, 1e-5f)) << isGlobal;
    EXPECT_EQ(fElement.fArguments,
              isGlobal ? std::vector<int32>({0, 1, 0, 0, 0}) : std::vector<int32>({1, 0, 0, 0, 0, 1}));
  }
}

TEST_F(PinTest, HoldsTheFirstElementAndWritesToTheGivenOne) {
  PlainElement second(fScene.fA, &fPlain);
  PinTo({1, 2, 3}, false);
  fPin->SetTreeElement(&fElement);
  fPin->SetTreeElement(&second);
  EXPECT_EQ(fElement.fCount, 2);
  EXPECT_EQ(second.fCount, 1);
  EXPECT_EQ(second.fChanged, 1);
}

TEST_F(PinTest, ResetClearsTheBlockAndKeepsTheElement) {
  PinTo({4, 5, 6}, true);
  fPin->SetTreeElement(&fElement);
  EXPECT_EQ(fPin->ExtensionDataChanged(), MC_S_OK);
  EXPECT_FALSE(fData.fPositionSet || fData.fActive || fData.fGlobal);
  EXPECT_EQ(fData.fPosition, kZeroVector);
  Press("setp"_id);
  EXPECT_TRUE(fData.fPositionSet) << "of the element that it still has";
}

TEST_F(PinTest, WorkingCallAllocatesNothing) {
  const auto& memory = static_cast<const TestMemory&>(*gMemoryUtilities);
  PlainElement element(fScene.fB, &fPlain);
  for (const bool isGlobal : {false, true}) {
    PinTo({1, 2, 3}, isGlobal);
    fPin->SetTreeElement(&element);
    const int requests = memory.GetRequests();
    for (int i = 0; i < 100; ++i) {
      fPin->SetTreeElement(&element);
    }
    EXPECT_EQ(memory.GetRequests(), requests);
  }
  fPin.Clear();
}

// Taking a position in the scene goes through the pivot and the parent, applying it replaces the plain translation: the
// two differ on purpose.
TEST_F(PinTest, TakesThePositionOfItsSpace) {
  fPin->SetTreeElement(&fElement);
  Press("setp"_id);
  EXPECT_TRUE(fData.fPositionSet && !fData.fActive && !fData.fGlobal);
  EXPECT_EQ(fData.fPosition, TVector3(1, 2, 3));
  fData.fGlobal = true;
  Press("setp"_id);
  EXPECT_TRUE(fData.fPosition.IsEqual({100 - 22, 200 + 11, 300 + 66}, 1e-4f));
}

TEST_F(PinTest, KeysATwelfthOfThePositionInTheCoordinateTracks) {
  for (const bool isGlobal : {false, true}) {
    WildLine line(0);
    line.fVisits = 1;
    Attach(line, fElement);
    fPin->SetTreeElement(&fElement);
    fData = {true, false, isGlobal, 0, {24, 36, 6}, {}};
    for (const MCID track : {"XCOO"_id, "RotX"_id, "YCOO"_id, MCID{0}, "ZCOO"_id}) {
      line.fAttribute = track;
      Press("adkf"_id);
    }
    EXPECT_EQ(line.fInserted, (std::vector<real32>{2, 3, 0.5f})) << isGlobal;
    EXPECT_EQ(line.fCount, 0);
  }
  fElement.fAnswer = nullptr;
  Press("adkf"_id);
  for (const auto& [channel, value] :
       {std::pair(Channel::kPositionX, 24.0f), {Channel::kPositionY, 36}, {Channel::kPositionZ, 6}}) {
    const auto& keys = fTarget.GetOrMakeCurve(channel).GetKeys();
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(std::pair(keys[0].fTime, keys[0].fValue), std::pair(12 * kFrameTicks, value));
  }
  EXPECT_TRUE(fTarget.GetOrMakeCurve(Channel::kRotationX).GetKeys().empty());
}

TEST_F(PinTest, KeysThePositionThatItHadWhenTheWalkBegan) {
  WildLine line(0);
  line.fAttribute = "XCOO"_id;
  line.fOnVisited = [this] { fPin->ExtensionDataChanged(); };
  Attach(line, fElement);
  fPin->SetTreeElement(&fElement);
  fData.fPosition = {24, 36, 6};
  Press("adkf"_id);
  EXPECT_TRUE(line.fInserted.empty()) << "no position was taken";
  fData.fPositionSet = true;
  Press("adkf"_id);
  EXPECT_EQ(line.fInserted, (std::vector<real32>{2, 2}));
}

TEST_F(PinTest, OtherMessagesChangeNothing) {
  fPin->SetTreeElement(&fElement);
  Press("setp"_id, 4);
  Press("setp"_id, 6);
  Press("othr"_id);
  EXPECT_EQ(fPin->HandleEvent(5, nullptr, nullptr), MC_S_OK);
  fServices.fShell.fIsSuspended = true;
  Press("setp"_id);
  EXPECT_FALSE(fData.fPositionSet);
  FakeObject<IMCUnknown> noPart;
  EXPECT_EQ(fPin->HandleEvent(5, &noPart, nullptr), MC_S_OK) << "not looked at, not even where it would be refused";
}

TEST_F(PinTest, FindsItsElementThroughTheOuterObject) {
  HostedComponent& hosted = HostedComponent::AddTo(fTarget, "fPIN"_id, PinModifier::kInterfaceID);
  FakeControl part("setp"_id);
  EXPECT_EQ(hosted.GetExchanger().HandleEvent(5, part.AsPart(), nullptr), MC_S_OK);
  EXPECT_EQ(static_cast<PinPublicData*>(hosted.GetExchanger().GetExtensionDataBuffer())->fPosition, TVector3(1, 2, 3));
}

}  // namespace
}  // namespace qlx::test
