// What the controls of a pin's panel do, through the built library.
#include "FakeOuter.h"
#include "PinSession.h"

namespace qlx::contract {
namespace {

constexpr int32 kTime = 7500 * 12;

// An element with the three coordinate tracks, one other and one without an attribute.
struct AnimatedElement {
  AnimatedElement() {
    fElement.fScene.fTime = kTime;
    fElement.fTimeLineOwner.fTimeLines = {&fRotation, &fX, &fNameless, &fY, &fZ};
  }

  FakeElement fElement;
  FakeTimeLine fX{"XCOO"_id};
  FakeTimeLine fY{"YCOO"_id};
  FakeTimeLine fZ{"ZCOO"_id};
  FakeTimeLine fRotation{"RotX"_id};
  FakeTimeLine fNameless{0};
};

TEST(PinEvents, TakesTheOwnPosition) {
  FakeElement element;
  element.fLocal.SetPosition({24, 36, 6});
  element.fGlobal.SetPosition({-1, -1, -1});
  PinSession pin;
  pin->SetTreeElement(&element);
  EXPECT_EQ(pin.Press("setp"_id), MC_S_OK);
  EXPECT_EQ(pin.Get(), (PinBlock{.fPositionSet = true, .fPosition = {24, 36, 6}}));
  EXPECT_TRUE(element.fWrites.empty()) << "the pin is off";
}

// Taking goes through the pivot and the parent, applying replaces the plain translation: the two differ on purpose.
TEST(PinEvents, TakesTheScenePositionThroughPivotAndParent) {
  FakeElement element;
  element.fChain.GetTransform().SetPosition({1, 2, 3});
  element.fChain.SetPivot({10, 20, 30});
  element.fChain.SetParentMatrix(TMatrix33(0, -1, 0, 1, 0, 0, 0, 0, 2));
  element.fChain.SetParentOffset({100, 200, 300});
  element.fGlobal.SetPosition({5, 5, 5});
  PinSession pin;
  pin.Set({.fActive = true, .fGlobal = true});
  pin->SetTreeElement(&element);
  pin.Press("setp"_id);
  const TVector3 taken(100 - 22, 200 + 11, 300 + 66);
  EXPECT_EQ(pin.Get().fPosition, taken);
  pin->SetTreeElement(&element);
  ASSERT_EQ(element.fWrites.size(), 1U);
  EXPECT_TRUE(element.fWrites[0].fGlobal);
  EXPECT_EQ(element.fWrites[0].fTransform.GetPosition(), taken) << "written as it stands";
}

TEST(PinEvents, KeysATwelfthOfThePositionInTheCoordinateTracks) {
  for (const bool global : {false, true}) {
    SCOPED_TRACE(global ? "scene space" : "own space");
    AnimatedElement animated;
    PinSession pin;
    pin->SetTreeElement(&animated.fElement);
    pin.Set({.fPositionSet = true, .fGlobal = global, .fPosition = {24, 36, 6}});
    EXPECT_EQ(pin.Press("adkf"_id), MC_S_OK);
    EXPECT_EQ(animated.fX.fKeys, (std::vector<InsertedKey>{{kTime, 2, "qfix"_id}}));
    EXPECT_EQ(animated.fY.fKeys, (std::vector<InsertedKey>{{kTime, 3, "qfix"_id}}));
    EXPECT_EQ(animated.fZ.fKeys, (std::vector<InsertedKey>{{kTime, 0.5f, "qfix"_id}}));
    EXPECT_TRUE(animated.fRotation.fKeys.empty());
    EXPECT_TRUE(animated.fNameless.fKeys.empty());
    EXPECT_EQ(animated.fElement.fTimeLineOwner.GetReferences(), 0);
    EXPECT_EQ(animated.fX.GetAttributeReferences(), 0);
    EXPECT_EQ(animated.fElement.GetReferences(), 1) << "the pin's own";
  }
}

TEST(PinEvents, KeysThePositionThatItHadWhenTheWalkBegan) {
  AnimatedElement animated;
  PinSession pin;
  pin->SetTreeElement(&animated.fElement);
  pin.Set({.fPositionSet = true, .fPosition = {24, 36, 6}});
  animated.fElement.fTimeLineOwner.fAfterEach = [&] { pin.GetExchanger()->ExtensionDataChanged(); };
  pin.Press("adkf"_id);
  ASSERT_EQ(animated.fZ.fKeys.size(), 1U);
  EXPECT_EQ(animated.fZ.fKeys[0].fValue, 0.5f);
}

TEST(PinEvents, KeysNothingBeforeAPositionWasTaken) {
  AnimatedElement animated;
  PinSession pin;
  pin->SetTreeElement(&animated.fElement);
  pin.Set({.fActive = true, .fPosition = {24, 36, 6}});
  EXPECT_EQ(pin.Press("adkf"_id), MC_S_OK);
  EXPECT_EQ(animated.fElement.fTimeLineOwner.fWalks, 0);
}

TEST(PinEvents, OtherMessagesChangeNothing) {
  const struct {
    const char* fLabel;
    uint32 fMessage;
    MCID fPart;
    bool fHasSource, fSuspended;
  } kRows[] = {
      {"the message before", 4, "setp"_id, true, false},
      {"the message after", 6, "setp"_id, true, false},
      {"no source", 5, "setp"_id, false, false},
      {"an unknown control", 5, "othr"_id, true, false},
      {"while events are suspended", 5, "setp"_id, true, true},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    AnimatedElement animated;
    animated.fElement.fLocal.SetPosition({24, 36, 6});
    FakePart part(row.fPart);
    PinSession pin;
    pin->SetTreeElement(&animated.fElement);
    pin.GetHost().fShell.fSuspended = row.fSuspended;
    EXPECT_EQ(pin.GetExchanger()->HandleEvent(row.fMessage, row.fHasSource ? &part : nullptr, nullptr), MC_S_OK);
    EXPECT_EQ(pin.Get(), PinBlock());
    EXPECT_EQ(animated.fElement.fTimeLineOwner.fWalks, 0);
  }
}

// Suspended events are not looked at, not even at a source that would be refused.
TEST(PinEvents, SuspensionComesAheadOfTheSource) {
  FakeScene noPart;
  PinSession pin;
  pin.GetHost().fShell.fSuspended = true;
  EXPECT_FALSE(Guarded([&] { pin.GetExchanger()->HandleEvent(kControlUsed, &noPart, nullptr); }));
}

TEST(PinEvents, FindsItsElementThroughTheOuterObject) {
  FakeElement element;
  element.fLocal.SetPosition({1, 2, 3});
  const StartedPlugin started;
  FakeOuter outer(&element);
  IMCUnknown* const inner = started.MakeAggregatedPin(outer);
  ASSERT_NE(inner, nullptr);
  {
    const auto exchanger = MCQuery<IExDataExchanger>(inner);
    FakePart part("setp"_id);
    EXPECT_EQ(exchanger->HandleEvent(kControlUsed, &part, nullptr), MC_S_OK);
    PinBlock block;
    std::memcpy(&block, exchanger->GetExtensionDataBuffer(), sizeof block);
    EXPECT_EQ(block.fPosition, TVector3(1, 2, 3));
  }
  EXPECT_EQ(element.GetReferences(), 0) << "what was asked for is given back, and not kept";
  EXPECT_EQ(outer.GetReferences(), 0);
  outer.End(*inner);
}

}  // namespace
}  // namespace qlx::contract
