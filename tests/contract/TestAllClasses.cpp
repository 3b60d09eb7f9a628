// Every class of the library: made, asked for what it is, driven once with little, and released. What each of them
// leaves behind shows in the session's end: no component, no block and no service is held then.
#include <set>

#include "BasicPart.h"
#include "FakeScene.h"
#include "HostCommands.h"
#include "StartedPlugin.h"
#include "services/PluginCatalog.h"

namespace qlx::contract {
namespace {

// A context with one element selected, and itself as the document.
class FakeContext final : public Fake<ISceneCommandContext, ISceneSelectionOwner, ISceneSelection> {
 public:
  explicit FakeContext(FakeElement& inElement) : fElement(inElement) {}

  void MC_CALL GetScene(I3DShScene** outScene) override { Give(outScene, &fElement.fScene); }
  void MC_CALL GetSelectionOwner(ISceneSelectionOwner** outOwner) override {
    Give<ISceneSelectionOwner>(outOwner, this);
  }
  void MC_CALL GetDocument(IMCUnknown** outDocument) override {
    Give<IMCUnknown>(outDocument, static_cast<ISceneSelection*>(this));
  }
  void MC_CALL GetSelection(ISceneSelection** outSelection) override { Give<ISceneSelection>(outSelection, this); }
  uint32 MC_CALL GetEntryCount() override { return 1; }
  const MCID* MC_CALL GetEntry(uint32, uint32& outCount) override {
    static constexpr MCID kTypes[] = {"Objc"_id, "Tree"_id};
    outCount = 2;
    return kTypes;
  }
  IMCUnknown* MC_CALL GetEntryObject(uint32, int32) override { return static_cast<TreeElement*>(&fElement); }

 private:
  template <class I, class Object>
  static void Give(I** outPointer, Object* inObject) {
    inObject->AddRef();
    *outPointer = inObject;
  }
  FakeElement& fElement;
};

template <class Interface>
TMCCountedPtr<Interface> Make(const StartedPlugin& inStarted, const MCGuid& inClassID) {
  void* object = nullptr;
  EXPECT_EQ(inStarted.GetFactory(inClassID)->CreateInstance(nullptr, Interface::kInterfaceID, &object), MC_S_OK);
  return MCAdopt(static_cast<Interface*>(object));
}

struct OddUnknown final : Fake<IMCUnknown> {};

struct ClassRow {
  const char* fName;
  MCGuid fID;
  int16 fResource;
  uint32 fSize32;  // of the public block on 32-bit targets
  int32 fDialog;   // that it asks for as it is driven, 0 for none
};

constexpr ClassRow kModifiers[] = {
    {"QLXModifier", "1F3AE15F-FDC2-001D-13E1-1FF121717497"_guid, 150, 1468, 0},
    {"PinModifier", kPinClass, 156, 28, 0},
    {"SliderModifier", "203FF150-EDC1-991D-93E9-19E1A1710098"_guid, 183, 304, 0},
};

TEST(AllClasses, AreFourteen) {
  const StartedPlugin started;
  std::set<std::string> names;
  for (const host::ExtensionRecord& offered : host::PluginCatalog::GetBuiltIn()->GetClasses()) {
    EXPECT_TRUE(Make<IMCUnknown>(started, offered.fClassID)) << offered.fName;
    names.insert(offered.fName);
  }
  EXPECT_EQ(names.size(), 14U);
}

TEST(AllClasses, ModifiersWork) {
  for (const ClassRow& row : kModifiers) {
    SCOPED_TRACE(row.fName);
    FakeElement element;
    const StartedPlugin started;
    const auto modifier = Make<I3DExModifier>(started, row.fID);
    const auto exchanger = MCQuery<IExDataExchanger>(modifier);
    ASSERT_TRUE(modifier && exchanger);
    void* self = nullptr;
    EXPECT_EQ(modifier->QueryInterface(row.fID, &self), MC_S_OK) << "the class id gives the object";
    MCAdopt(static_cast<I3DExModifier*>(self)).Clear();
    EXPECT_EQ(exchanger->GetResourceId(), row.fResource);
    EXPECT_NE(exchanger->GetExtensionDataBuffer(), nullptr);
    if constexpr (sizeof(void*) == 4) {
      EXPECT_EQ(exchanger->GetExtensionDataSize(), row.fSize32);
    }
    EXPECT_EQ(modifier->SetTreeElement(nullptr), MC_S_OK);
    EXPECT_EQ(modifier->SetTreeElement(&element), MC_S_OK);
    FakePart part("othr"_id);
    EXPECT_EQ(exchanger->HandleEvent(1, nullptr, nullptr), MC_S_OK);
    EXPECT_EQ(exchanger->HandleEvent(1, &part, nullptr), MC_S_OK);
    EXPECT_EQ(exchanger->HandleEvent(5, &part, nullptr), MC_S_OK);
    EXPECT_EQ(part.GetReferences(), 0);
    EXPECT_EQ(exchanger->ExtensionDataChanged(), MC_S_OK);
    OddUnknown odd;
    EXPECT_TRUE(Guarded([&] { exchanger->HandleEvent(5, &odd, nullptr); })) << "no UI part";
    EXPECT_TRUE(element.fWrites.empty());
  }
}

TEST(AllClasses, CommandsRunWithAHostThatHasNothingForThem) {
  constexpr ClassRow kCommands[] = {
      {"AddQLXModifierCommand", "10D400AB-1490-3211-DFF0-210FA01799B1"_guid, 155, 0, 0},
      {"AddPinModifierCommand", "3759F866-BD74-4B85-AE16-4F022E419105"_guid, 155, 0, 0},
      {"AddSliderModifierCommand", "3759F866-BD74-4B85-AE16-4F022E419106"_guid, 155, 0, 0},
      {"RemoveDupKeyframesCommand", "5D95B36C-C4BD-4242-96BB-067A18E44CDB"_guid, 158, 0, 158},
      {"WiggleKeyframesCommand", "AEE6DF60-DAB9-47F2-BCDF-0843BA52133A"_guid, 159, 8, 0},
      {"DeleteKeyframesCommand", "AE16DF61-D1B1-17F1-1C1F-18131A12131A"_guid, 0, 0, 165},
      {"QLXChainCommand", "10E24BAB-1020-0121-0FFF-211F1212AABB"_guid, 0, 0, 190},
      {"PropertyExplorer", "10E24B1C-1022-0123-1000-22201314ACBE"_guid, 0, 0, 181},
  };
  for (const ClassRow& row : kCommands) {
    SCOPED_TRACE(row.fName);
    FakeElement element;
    FakeContext context(element);
    StartedPlugin started;
    const auto command = Make<I3DExSceneCommand>(started, row.fID);
    const auto exchanger = MCQuery<IExDataExchanger>(command);
    ASSERT_TRUE(command && exchanger);
    EXPECT_EQ(exchanger->GetResourceId(), row.fResource);
    EXPECT_EQ(exchanger->GetExtensionDataSize(), row.fSize32);
    EXPECT_EQ(exchanger->GetExtensionDataBuffer() != nullptr, row.fSize32 != 0);
    TMCCountedPtr<ISelfPrepareMenuCallBack> callBack;
    command->GetMenuCallBack(callBack.WriteInto());
    EXPECT_FALSE(callBack->SelfPrepare(nullptr));
    callBack->SelfPrepare(&context);
    EXPECT_EQ(command->Init(&context), MC_S_OK);
    EXPECT_EQ(command->Prepare(), MC_S_OK);
    EXPECT_FALSE(command->BeforeDo());
    EXPECT_TRUE(command->Do());
    EXPECT_FALSE(command->AfterDo() || command->AfterUndo());
    EXPECT_TRUE(command->Finish());
    const bool adds = row.fResource == 155;
    EXPECT_EQ(started.fHost.fComponents.fAsked.size(), adds ? 1U : 0U);
    EXPECT_EQ(started.fHost.fDialogs.fAsked, row.fDialog ? std::vector<int32>{row.fDialog} : std::vector<int32>{});
    EXPECT_EQ(started.fHost.fResources.fContexts, 0U);
  }
}

TEST(AllClasses, DialogsHearTheirMessageAlone) {
  constexpr ClassRow kDialogs[] = {
      {"QLXChainDialog", "10E24B1B-1020-0122-0FFF-211F1212AABC"_guid, 0, 0, 0},
      {"QLXChainQLXSubDlg", "10E24B1B-1020-0122-0FFF-211F1213ABBD"_guid, 0, 0, 0},
      {"PropertyExplorerDialog", "10E24B1C-1022-0123-1000-22201315ADBF"_guid, 0, 0, 0},
  };
  for (const ClassRow& row : kDialogs) {
    SCOPED_TRACE(row.fName);
    FakePart part("othr"_id);
    const StartedPlugin started;
    const auto responder = Make<IMFExResponder>(started, row.fID);
    const auto extension = MCQuery<IMFExPart>(responder);
    ASSERT_TRUE(responder && extension && MCQuery<TBasicPart>(responder));
    void* self = nullptr;
    EXPECT_EQ(responder->QueryInterface(row.fID, &self), MC_S_OK) << "the class id gives the object";
    responder->Release();
    extension->Attach(&part);
    OddUnknown odd;
    EXPECT_EQ(responder->Receive(5, &odd, nullptr), MC_S_OK);
    EXPECT_EQ(responder->Receive(9, &part, nullptr), MC_S_OK);
    EXPECT_TRUE(Guarded([&] { responder->Receive(9, &odd, nullptr); })) << "no UI part";
    extension->Destroy();
    EXPECT_EQ(part.GetReferences(), 0);
  }
}

}  // namespace
}  // namespace qlx::contract
