// Every class of the library with every interface that it answers: all operations are called once, as a host that knows
// nothing of the class may, and nothing is left at the end of the session.
#include <cstring>
#include <iterator>
#include <map>

#include "BasicPart.h"
#include "FakeScene.h"
#include "HostCommands.h"
#include "MCMemoryStream.h"
#include "StartedPlugin.h"
#include "services/PluginCatalog.h"

namespace qlx::contract {
namespace {

struct InterfaceRow {
  const char* fName;
  MCGuid fID;
};

constexpr InterfaceRow kInterfaces[] = {
    {"exchanger", IExDataExchanger::kInterfaceID}, {"modifier", I3DExModifier::kInterfaceID},
    {"stream", IExStreamIO::kInterfaceID},         {"command", I3DExSceneCommand::kInterfaceID},
    {"responder", IMFExResponder::kInterfaceID},   {"part", IMFExPart::kInterfaceID},
    {"basic part", TBasicPart::kInterfaceID},      {"callback", ISelfPrepareMenuCallBack::kInterfaceID},
    {"factory", IMCClassFactory::kInterfaceID},    {"work", IModifierWork::kInterfaceID},
};

TMCCountedPtr<IMCUnknown> MakeUnknown(const StartedPlugin& inStarted, const MCGuid& inClass) {
  void* object = nullptr;
  EXPECT_EQ(inStarted.GetFactory(inClass)->CreateInstance(nullptr, IMCUnknown::kInterfaceID, &object), MC_S_OK);
  return MCAdopt(static_cast<IMCUnknown*>(object));
}

// By the name of each class, the rows above that it answers, and "own" for its class id.
std::map<std::string, std::string> ExpectedInterfaces() {
  const std::string command = "exchanger command ";
  const std::string dialog = "responder part basic part own ";
  return {{"QLXModifier", "exchanger modifier stream work own "},
          {"PinModifier", "exchanger modifier own "},
          {"SliderModifier", "exchanger modifier own "},
          {"AddQLXModifierCommand", command},
          {"AddPinModifierCommand", command},
          {"AddSliderModifierCommand", command},
          {"RemoveDupKeyframesCommand", command},
          {"WiggleKeyframesCommand", command},
          {"DeleteKeyframesCommand", command},
          {"QLXChainCommand", command},
          {"PropertyExplorer", command},
          {"QLXChainDialog", dialog},
          {"QLXChainQLXSubDlg", dialog},
          {"PropertyExplorerDialog", dialog}};
}

TEST(AllInterfaces, EachClassAnswersItsOwnAndIsOneObject) {
  const StartedPlugin started;
  std::map<std::string, std::string> answered;
  for (const host::ExtensionRecord& offered : host::PluginCatalog::GetBuiltIn()->GetClasses()) {
    const auto object = MakeUnknown(started, offered.fClassID);
    std::string names;
    for (const InterfaceRow& row : kInterfaces) {
      void* view = &names;
      if (object->QueryInterface(row.fID, &view) == MC_S_OK) {
        names += std::string(row.fName) + " ";
        const auto held = MCAdopt(static_cast<IMCUnknown*>(view));
        EXPECT_EQ(MCQuery<IMCUnknown>(held), object) << offered.fName << ' ' << row.fName;
      } else {
        EXPECT_EQ(view, nullptr) << offered.fName << ' ' << row.fName;
      }
    }
    void* self = nullptr;
    if (object->QueryInterface(offered.fClassID, &self) == MC_S_OK) {
      names += "own ";
      object->Release();
    }
    answered[offered.fName] = names;
  }
  EXPECT_EQ(answered, ExpectedInterfaces());
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
  FakePart part("othr"_id);
  for (const uint32 message : {0U, 1U, 5U, 9U, 0xFFFFFFFFU}) {
    inExchanger.HandleEvent(message, &part, nullptr);
    inExchanger.HandleEvent(message, nullptr, nullptr);
  }
  EXPECT_EQ(part.GetReferences(), 0);
  inExchanger.GetExtensionKind();
  inExchanger.GetResourceId();
  EXPECT_EQ(inExchanger.GetSecondaryResourceId(), 0);
  EXPECT_NE(inExchanger.GetExchangeStatus(), MC_S_OK);
  inExchanger.ExtensionDataChanged();
  inExchanger.CopyDataTo(nullptr);
  inExchanger.CopyDataTo(&inOther);
}

void DriveModifier(I3DExModifier& inModifier, FakeElement& inElement) {
  inModifier.GetFlags();
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

void DriveResponder(IMFExResponder& inResponder, FakePart& inPart) {
  for (const uint32 message : {0U, 5U, 9U, 0xFFFFFFFFU}) {
    EXPECT_EQ(inResponder.Receive(message, &inPart, nullptr), MC_S_OK);
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
TEST(AllInterfaces, EveryOperationIsAnswered) {
  for (const host::ExtensionRecord& offered : host::PluginCatalog::GetBuiltIn()->GetClasses()) {
    SCOPED_TRACE(offered.fName);
    FakeElement element;
    FakePart part("part"_id);
    const StartedPlugin started;
    const auto object = MakeUnknown(started, offered.fClassID);
    const auto other = MCQuery<IExDataExchanger>(MakeUnknown(started, offered.fClassID));
    const auto exchanger = MCQuery<IExDataExchanger>(object);
    const auto modifier = MCQuery<I3DExModifier>(object);
    const auto stream = MCQuery<IExStreamIO>(object);
    const auto command = MCQuery<I3DExSceneCommand>(object);
    const auto responder = MCQuery<IMFExResponder>(object);
    const auto extension = MCQuery<IMFExPart>(object);
    ASSERT_TRUE(modifier || command || responder);
    const auto failure = Guarded([&] {
      if (extension) {
        DrivePart(*extension);  // before it has a part
        extension->Attach(&part);
      }
      for (int round = 0; round < 2; ++round) {
        DriveIf(exchanger, [&](auto& driven) { DriveExchanger(driven, *other); });
        DriveIf(modifier, [&](auto& driven) { DriveModifier(driven, element); });
        DriveIf(stream, DriveStream);
        DriveIf(MCQuery<IModifierWork>(object), DriveWork);
        DriveIf(command, DriveCommand);
        DriveIf(responder, [&](auto& driven) { DriveResponder(driven, part); });
        DriveIf(extension, DrivePart);
      }
      if (extension) {
        extension->Destroy();
      }
    });
    EXPECT_FALSE(failure) << failure->GetText();
    EXPECT_EQ(started.fPlugin->fCanUnloadNow(), 1) << "it is alive";
    EXPECT_EQ(part.GetReferences(), 0);
    EXPECT_TRUE(started.fHost.fDebug.fAssertions.empty());
  }
}

}  // namespace
}  // namespace qlx::contract
