// Every class of the library: asked for what it is, with every operation of every interface that it answers called, as
// a host that knows nothing of the class may. What they leave behind shows in the session's end: no component, no block
// and no service is held then.
#include <cstring>
#include <iterator>

#include "BasicPart.h"
#include "FakePanel.h"
#include "HostCommands.h"
#include "MCMemoryStream.h"
#include "ModelTest.h"
#include "PlainScene.h"
#include "StartedPlugin.h"
#include "services/PluginCatalog.h"

namespace qlx::contract {
namespace {

constexpr struct {
  const char* fName;
  MCGuid fID;
} kInterfaces[] = {
    {"exchanger", IExDataExchanger::kInterfaceID}, {"modifier", I3DExModifier::kInterfaceID},
    {"stream", IExStreamIO::kInterfaceID},         {"command", I3DExSceneCommand::kInterfaceID},
    {"responder", IMFExResponder::kInterfaceID},   {"part", IMFExPart::kInterfaceID},
    {"basic part", TBasicPart::kInterfaceID},      {"callback", ISelfPrepareMenuCallBack::kInterfaceID},
    {"factory", IMCClassFactory::kInterfaceID},    {"work", IModifierWork::kInterfaceID},
};

constexpr const char* kCommand = "exchanger command ";
constexpr const char* kDialog = "responder part basic part own ";

struct ClassRow {
  const char* fName;
  MCGuid fID;
  const char* fInterfaces;  // of those above, and "own" for its class id
  int16 fResource = 0;
  uint32 fSize32 = 0;  // of the public block on 32-bit targets
};

constexpr ClassRow kClasses[] = {
    {"QLXModifier", "1F3AE15F-FDC2-001D-13E1-1FF121717497"_guid, "exchanger modifier stream work own ", 150, 1468},
    {"PinModifier", kPinClass, "exchanger modifier own ", 156, 28},
    {"SliderModifier", "203FF150-EDC1-991D-93E9-19E1A1710098"_guid, "exchanger modifier own ", 183, 304},
    {"AddQLXModifierCommand", "10D400AB-1490-3211-DFF0-210FA01799B1"_guid, kCommand, 155},
    {"AddPinModifierCommand", "3759F866-BD74-4B85-AE16-4F022E419105"_guid, kCommand, 155},
    {"AddSliderModifierCommand", "3759F866-BD74-4B85-AE16-4F022E419106"_guid, kCommand, 155},
    {"RemoveDupKeyframesCommand", "5D95B36C-C4BD-4242-96BB-067A18E44CDB"_guid, kCommand, 158},
    {"WiggleKeyframesCommand", "AEE6DF60-DAB9-47F2-BCDF-0843BA52133A"_guid, kCommand, 159, 8},
    {"DeleteKeyframesCommand", "AE16DF61-D1B1-17F1-1C1F-18131A12131A"_guid, kCommand},
    {"QLXChainCommand", "10E24BAB-1020-0121-0FFF-211F1212AABB"_guid, kCommand},
    {"PropertyExplorer", "10E24B1C-1022-0123-1000-22201314ACBE"_guid, kCommand},
    {"QLXChainDialog", "10E24B1B-1020-0122-0FFF-211F1212AABC"_guid, kDialog},
    {"QLXChainQLXSubDlg", "10E24B1B-1020-0122-0FFF-211F1213ABBD"_guid, kDialog},
    {"PropertyExplorerDialog", "10E24B1C-1022-0123-1000-22201315ADBF"_guid, kDialog},
};

TMCCountedPtr<IMCUnknown> Make(const StartedPlugin& inStarted, const ClassRow& inClass) {
  void* object = nullptr;
  EXPECT_EQ(inStarted.GetFactory(inClass.fID)->CreateInstance(nullptr, IMCUnknown::kInterfaceID, &object), MC_S_OK);
  return MCAdopt(static_cast<IMCUnknown*>(object));
}

TEST(AllClasses, AreThoseOfTheRecords) {
  const auto& offered = host::PluginCatalog::GetBuiltIn()->GetClasses();
  ASSERT_EQ(offered.size(), std::size(kClasses));
  for (const ClassRow& row : kClasses) {
    EXPECT_TRUE(std::ranges::any_of(offered, [&row](const host::ExtensionRecord& inRecord) {
      return inRecord.fName == row.fName && inRecord.fClassID == row.fID;
    })) << row.fName;
  }
}

TEST(AllClasses, AnswerTheirInterfacesAndAreOneObject) {
  const StartedPlugin started;
  for (const ClassRow& row : kClasses) {
    SCOPED_TRACE(row.fName);
    const auto object = Make(started, row);
    std::string names;
    for (const auto& [name, id] : kInterfaces) {
      void* view = &names;
      if (object->QueryInterface(id, &view) == MC_S_OK) {
        names += std::string(name) + " ";
        const auto held = MCAdopt(static_cast<IMCUnknown*>(view));
        EXPECT_EQ(MCQuery<IMCUnknown>(held), object) << name;
      } else {
        EXPECT_EQ(view, nullptr) << name;
      }
    }
    void* self = nullptr;
    if (object->QueryInterface(row.fID, &self) == MC_S_OK) {
      names += "own ";
      object->Release();
    }
    EXPECT_EQ(names, row.fInterfaces);
    if (const auto exchanger = MCQuery<IExDataExchanger>(object)) {
      EXPECT_EQ(exchanger->GetResourceId(), row.fResource);
      EXPECT_TRUE(sizeof(void*) != 4 || exchanger->GetExtensionDataSize() == row.fSize32);
    }
  }
}

void DriveExchanger(IExDataExchanger& inExchanger, IExDataExchanger& inOther) {
  TMCCountedPtr<IExDataExchanger> copy;
  inExchanger.Clone(copy.WriteInto(), nullptr);
  EXPECT_TRUE(inExchanger.CanExchangeData(nullptr));
  EXPECT_NE(inExchanger.SetExchangeValue(0, 0), MC_S_OK);
  EXPECT_NE(inExchanger.GetExchangeValue(0, 0), MC_S_OK);
  EXPECT_EQ(inExchanger.GetExtensionDataBuffer() != nullptr, inExchanger.GetExtensionDataSize() != 0);
  EXPECT_EQ(inExchanger.GetExtensionDataClassInfo(), nullptr);
  EXPECT_NE(inExchanger.QueryExchangeItem(0, 0, 0), MC_S_OK);
  test::FakeControl part("othr"_id);
  for (const uint32 message : {0U, 1U, 5U, 9U, 0xFFFFFFFFU}) {
    inExchanger.HandleEvent(message, part.AsPart(), nullptr);
    inExchanger.HandleEvent(message, nullptr, nullptr);
  }
  EXPECT_EQ(part.fCount, 0);
  inExchanger.GetExtensionKind();
  EXPECT_EQ(inExchanger.GetSecondaryResourceId(), 0);
  EXPECT_NE(inExchanger.GetExchangeStatus(), MC_S_OK);
  inExchanger.ExtensionDataChanged();
  inExchanger.CopyDataTo(nullptr);
  inExchanger.CopyDataTo(&inOther);
}

void DriveModifier(I3DExModifier& inModifier, TreeElement& inElement) {
  EXPECT_EQ(inModifier.GetFlags(), 1U);
  EXPECT_EQ(inModifier.SetTreeElement(nullptr), MC_S_OK);
  EXPECT_EQ(inModifier.SetTreeElement(&inElement), MC_S_OK);
  inModifier.GetTimeDependence();
  EXPECT_FALSE(inModifier.ApplyToNode(0, 0));
  inModifier.PrepareNode(0, 0);
  TVector3 vectors[2] = {{1, 2, 3}, {4, 5, 6}};
  EXPECT_NE(inModifier.TransformPoint(&vectors[0]), MC_S_OK);
  EXPECT_NE(inModifier.TransformNormal(&vectors[0], &vectors[1]), MC_S_OK);
  EXPECT_NE(inModifier.TransformTangent(&vectors[0], &vectors[1]), MC_S_OK);
  EXPECT_NE(inModifier.TransformBox(&vectors[0], &vectors[1]), MC_S_OK);
  EXPECT_TRUE(vectors[0] == TVector3(1, 2, 3) && vectors[1] == TVector3(4, 5, 6));
  int32 time = 0;
  EXPECT_EQ(inModifier.MapTime(-7, &time), MC_S_OK);
  EXPECT_EQ(time, -7);
  EXPECT_NE(inModifier.TransformOther(nullptr), MC_S_OK);
  inModifier.BeginApply();
  inModifier.EndApply();
  EXPECT_FALSE(inModifier.IsPassive());
}

void DriveStream(IExStreamIO& inStreamIO) {
  // The host reads what was written as a level of its own.
  static char sBytes[1 << 16] = "{\n";
  TMCMemoryStream written(sBytes + 2, sizeof sBytes - 8, kStreamWritable);
  EXPECT_EQ(inStreamIO.Write(&written), MC_S_OK);
  EXPECT_GT(written.Tell(), 0);
  std::memcpy(sBytes + 2 + written.Tell(), "\n}\n", 4);
  TMCMemoryStream read(sBytes, written.Tell() + 5, kStreamReadable);
  EXPECT_EQ(inStreamIO.Read(&read, nullptr, nullptr), MC_S_OK);
  EXPECT_EQ(inStreamIO.StreamState(0), MC_S_OK);
}

void DriveWork(IModifierWork& inWork) {
  WorkCall call{};
  inWork.GetWorkCall(call);
  EXPECT_EQ(call.fRun(call.fModifier, nullptr), MC_S_OK);
  WorkMemory ranges[32] = {};
  EXPECT_EQ(inWork.ListWorkMemory(ranges, 0), 0U);
  EXPECT_EQ(inWork.ListWorkMemory(ranges, 1), 1U);
  EXPECT_EQ(ranges[1].fStart, nullptr);
  const uint32 count = inWork.ListWorkMemory(ranges, std::size(ranges));
  for (uint32 i = 0; i < std::size(ranges); ++i) {
    EXPECT_LE(ranges[i].fBytes, i < count ? 4096U : 0U) << i;
  }
}

// Without a context: as a menu is built.
void DriveCommand(I3DExSceneCommand& inCommand) {
  TMCCountedPtr<ISelfPrepareMenuCallBack> callBack;
  inCommand.GetMenuCallBack(callBack.WriteInto());
  EXPECT_FALSE(callBack->SelfPrepare(nullptr));
  EXPECT_FALSE(inCommand.BeforeDo() || inCommand.AfterDo() || inCommand.AfterUndo());
  EXPECT_TRUE(inCommand.Finish());
}

void DriveResponder(IMFExResponder& inResponder, test::FakeControl& inPart) {
  for (const uint32 message : {0U, 5U, 9U, 0xFFFFFFFFU}) {
    EXPECT_EQ(inResponder.Receive(message, inPart.AsPart(), nullptr), MC_S_OK);
  }
  EXPECT_FALSE(inResponder.AcceptsFocus(0) || inResponder.CanHandleCommand(0) || inResponder.CanTrack(0, 0));
  inResponder.SetFocused(1);
  inResponder.HandleCommand(0, 0);
  inResponder.TrackChanged(0);
  inResponder.GetCursor();
  inResponder.GetHelp();
}

void DrivePart(IMFExPart& inPart) {
  inPart.Created();
  inPart.Shown(1);
  inPart.Enabled(1);
  inPart.Activated(1);
  inPart.IsHit(0, 0);
  inPart.Draw(0);
  inPart.Invalidate(0);
  inPart.Update(0);
  inPart.Moved(0, 0);
  inPart.Resized(0, 0);
  inPart.ParentChanged(0);
  inPart.GetPartSize();
  EXPECT_FALSE(inPart.MouseDown(0, 0) || inPart.MouseUp(0, 0) || inPart.KeyDown(0, 0, 0));
  inPart.ChildrenChanged();
  inPart.ForwardEvent(0);
  EXPECT_FALSE(inPart.CanDrag(0, 0) || inPart.CanDrop(0, 0) || inPart.Drop(0, 0, 0));
  inPart.GetPartLabel();
  inPart.ValueWillChange(0, 0, 0);
  inPart.ValueChanged(0, 0);
  inPart.Idle();
  inPart.GetIdleInterval();
  inPart.LayoutChanged();
  inPart.IsOpaque();
  inPart.GetPreferredValue();
}

template <class Interface, class Drive>
void DriveIf(const TMCCountedPtr<Interface>& inObject, const Drive& inDrive) {
  if (inObject) {
    inDrive(*inObject);
  }
}

// Twice with the same object, and with a second one beside it.
TEST(AllClasses, AnswerEveryOperation) {
  for (const ClassRow& row : kClasses) {
    SCOPED_TRACE(row.fName);
    test::PlainStage stage;
    test::FakeControl part("part"_id);
    test::FakeObject<IMCUnknown> noPart;
    const StartedPlugin started;
    const auto object = Make(started, row);
    const auto other = MCQuery<IExDataExchanger>(Make(started, row));
    const auto exchanger = MCQuery<IExDataExchanger>(object);
    const auto modifier = MCQuery<I3DExModifier>(object);
    const auto responder = MCQuery<IMFExResponder>(object);
    const auto extension = MCQuery<IMFExPart>(object);
    const auto failure = Guarded([&] {
      if (extension) {
        DrivePart(*extension);  // before it has a part
        extension->Attach(part.AsPart());
      }
      for (int round = 0; round < 2; ++round) {
        DriveIf(exchanger, [&](auto& driven) { DriveExchanger(driven, *other); });
        DriveIf(modifier, [&](auto& driven) { DriveModifier(driven, stage.fElement); });
        DriveIf(MCQuery<IExStreamIO>(object), DriveStream);
        DriveIf(MCQuery<IModifierWork>(object), DriveWork);
        DriveIf(MCQuery<I3DExSceneCommand>(object), DriveCommand);
        DriveIf(responder, [&](auto& driven) { DriveResponder(driven, part); });
        DriveIf(extension, DrivePart);
      }
    });
    EXPECT_FALSE(failure) << failure->GetText();
    EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 1) << "it is alive";
    EXPECT_TRUE(stage.fElement.fArguments.empty()) << "a new modifier writes nothing";
    EXPECT_TRUE(started.fHost.fDebug.fAssertions.empty());
    EXPECT_EQ(Guarded([&] {
                DriveIf(modifier, [&](auto&) { exchanger->HandleEvent(5, &noPart, nullptr); });
                DriveIf(responder, [&](auto& driven) { driven.Receive(9, &noPart, nullptr); });
              }).has_value(),
              modifier || responder)
        << "a source that is no part";
    DriveIf(extension, [](auto& driven) { driven.Destroy(); });
    EXPECT_EQ(part.fCount, 0);
  }
}

}  // namespace
}  // namespace qlx::contract
