// What a pin does to its element, through the built library.
#include "PinSession.h"

namespace qlx::contract {
namespace {

TTreeTransform SomeTransform() {
  TTreeTransform transform;
  transform.GetRotation().SetEuler({0.1f, 0.2f, 0.3f}, false);
  transform.SetPosition({1, 2, 3});
  transform.SetUniformScale(1.5f);
  transform.SetScaling({2, 3, 4});
  transform.SetHotPoint({7, 8, 9});
  return transform;
}

TEST(PinModifier, AnswersOfANewPin) {
  PinSession pin;
  EXPECT_EQ(pin.Get(), PinBlock());
  EXPECT_EQ(pin.GetExchanger()->GetExtensionDataSize(), sizeof(PinBlock));
  EXPECT_EQ(pin.GetExchanger()->GetExtensionDataClassInfo(), nullptr);
  EXPECT_EQ(pin.GetExchanger()->GetResourceId(), 156);
  EXPECT_EQ(pin.GetExchanger()->GetSecondaryResourceId(), 0);
  EXPECT_EQ(pin->GetFlags(), 1U);
}

TEST(PinModifier, ClassIdIsAnsweredWithTheObject) {
  PinSession pin;
  void* view = nullptr;
  ASSERT_EQ(pin->QueryInterface(kPinClass, &view), MC_S_OK);
  const auto modifier = MCAdopt(static_cast<I3DExModifier*>(view));
  EXPECT_EQ(modifier.Get(), pin.operator->());
  EXPECT_EQ(pin->QueryInterface(IExStreamIO::kInterfaceID, &view), MC_E_NOINTERFACE) << "it has no stream";
}

TEST(PinModifier, WritesOnlyWhenItIsOnAndHasAPosition) {
  const struct {
    const char* fLabel;
    bool fPositionSet, fActive;
    std::size_t fWrites;
  } kRows[] = {
      {"new", false, false, 0},
      {"on without a position", false, true, 0},
      {"off with a position", true, false, 0},
      {"on with a position", true, true, 1},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    FakeElement element;
    PinSession pin;
    pin.Set({.fPositionSet = row.fPositionSet, .fActive = row.fActive});
    EXPECT_EQ(pin->SetTreeElement(&element), MC_S_OK);
    EXPECT_EQ(element.fWrites.size(), row.fWrites);
    EXPECT_EQ(element.fChanged, std::vector<int32>(row.fWrites, 0));
    EXPECT_EQ(element.GetReferences(), 1) << "the element is held in any case";
  }
}

TEST(PinModifier, ReplacesTheTranslationAlone) {
  for (const bool global : {false, true}) {
    SCOPED_TRACE(global ? "scene space" : "own space");
    FakeElement element;
    (global ? element.fGlobal : element.fLocal) = SomeTransform();
    PinSession pin;
    pin.Set({.fPositionSet = true, .fActive = true, .fGlobal = global, .fPosition = {10, -20, 0.25f}});
    pin->SetTreeElement(&element);
    ASSERT_EQ(element.fWrites.size(), 1U);
    EXPECT_EQ(element.fWrites[0].fGlobal, global);
    EXPECT_EQ(element.fWrites[0].fNumbers,
              global ? std::vector<int32>({0, 1, 0, 0, 0}) : std::vector<int32>({1, 0, 0, 0, 0, 1}));
    TTreeTransform expected = SomeTransform();
    expected.SetPosition({10, -20, 0.25f});
    EXPECT_EQ(element.fWrites[0].fTransform, expected);
  }
}

TEST(PinModifier, HoldsTheFirstElementAndWritesToTheGivenOne) {
  FakeElement first;
  FakeElement second;
  PinSession pin;
  pin.Set({.fPositionSet = true, .fActive = true});
  pin->SetTreeElement(&first);
  pin->SetTreeElement(&second);
  EXPECT_EQ(first.GetReferences(), 1);
  EXPECT_EQ(second.GetReferences(), 0);
  EXPECT_EQ(first.fWrites.size(), 1U);
  EXPECT_EQ(second.fWrites.size(), 1U);
  pin.End();
  EXPECT_EQ(first.GetReferences(), 0) << "the last release drops it";
}

TEST(PinModifier, ResetClearsTheBlockAndKeepsTheElement) {
  FakeElement element;
  PinSession pin;
  pin.Set({true, true, true, 0, {1, 2, 3}, {4, 5, 6}});
  pin->SetTreeElement(&element);
  EXPECT_EQ(pin.GetExchanger()->ExtensionDataChanged(), MC_S_OK);
  EXPECT_EQ(pin.Get(), PinBlock());
  pin->SetTreeElement(&element);
  EXPECT_EQ(element.fWrites.size(), 1U) << "off again";
  pin.Press("setp"_id);
  EXPECT_TRUE(pin.Get().fPositionSet) << "of the element that it still has";
}

TEST(PinModifier, WorkingCallAllocatesNothing) {
  FakeElement element;
  element.fWrites.reserve(2000);
  PinSession pin;
  const int32 before = pin.GetHost().fMemory.fRequests;
  for (const bool global : {false, true}) {
    pin.Set({.fPositionSet = true, .fActive = true, .fGlobal = global});
    for (int i = 0; i < 1000; ++i) {
      pin->SetTreeElement(&element);
    }
  }
  EXPECT_EQ(pin.GetHost().fMemory.fRequests, before);
}

}  // namespace
}  // namespace qlx::contract
