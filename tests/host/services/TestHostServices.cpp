#include <gtest/gtest.h>

#include "HostInterface.h"
#include "HostServices.h"
#include "MCAssert.h"
#include "MCString.h"
#include "model/Scene.h"
#include "services/Host.h"

namespace qlx::host {
namespace {

// Tells the update service of its element, as a modifier of a plug-in does.
class UpdatingModifier final : public Modifier {
 public:
  explicit UpdatingModifier(IUpdateService& inUpdates) : fUpdates(inUpdates) {}
  void Apply(Element& inElement) override {
    fUpdates.ElementUpdated(nullptr, &inElement);
    fUpdates.ElementUpdated(nullptr, nullptr);
  }
  TMCCountedPtr<Modifier> Copy() override { return nullptr; }
  MCID MC_CALL GetModifierClass() override { return "test"_id; }

 private:
  IUpdateService& fUpdates;
};

class HostServices : public testing::Test {
 protected:
  template <class Service>
  TMCCountedPtr<Service> Ask() {
    return MCQuery<Service>(&fHost.GetRoot());
  }
  TMCCountedPtr<IHostQuestion> AskQuestion(const MCGuid& inID) {
    void* view = nullptr;
    return fHost.GetRoot().QueryInterface(inID, &view) == MC_S_OK ? MCAdopt(static_cast<IHostQuestion*>(view))
                                                                  : nullptr;
  }

  Diagnostics fDiagnostics;
  Host fHost{fDiagnostics};
};

TEST_F(HostServices, ReportsBecomeWarningsWithTheirPlace) {
  MCAssert("Somewhere.cpp", 12, "this == that");
  MCAssert(nullptr, 0, "no place");
  const auto debug = Ask<IDebugUtilities>();
  debug->Report("a.cpp", 1);
  debug->Report2("a.cpp", 2, 10, 20);
  debug->Report3(nullptr, 0, 10, 20, 30);
  EXPECT_EQ(fDiagnostics.GetWarnings(),
            (std::vector<std::string>{"assertion: this == that (Somewhere.cpp:12)", "assertion: no place",
                                      "report (a.cpp:1)", "report: 10, 20 (a.cpp:2)", "report: 10, 20, 30"}));
}

TEST_F(HostServices, ReportInsideAReportDoesNotComeBack) {
  fDiagnostics.SetListener([](const std::string&) { MCAssert("Inner.cpp", 1, "inner"); });
  MCAssert("Outer.cpp", 1, "outer");
  EXPECT_EQ(fDiagnostics.GetWarnings(), std::vector<std::string>{"assertion: outer (Outer.cpp:1)"});
}

TEST_F(HostServices, CountedObjectsStandInTheHostsList) {
  CountedObjectBookkeeping books;
  Ask<IDebugUtilities>()->GetCountedObjectBookkeeping(books);
  TMCCountedObject* object = nullptr;
  TMCCountedObject::Create(&object);
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(*books.fHead, object);
  EXPECT_EQ(*books.fTail, object);
  EXPECT_EQ(*books.fLiveCount, 1);
  object->Release();
  EXPECT_EQ(*books.fLiveCount, 0);
}

TEST_F(HostServices, TextsOfOtherSystemsKeepTheirBytes) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    all.push_back(static_cast<char>(byte));
  }
  for (int32 direction = 0; direction < 2; ++direction) {
    TMCString1023 text(all.data(), all.size());
    text.TranslateAscii(direction);
    EXPECT_EQ(std::string(text.CStr(), text.ByteLength()), all) << direction;
  }
  EXPECT_EQ(fDiagnostics.GetWarnings(), std::vector<std::string>());
}

TEST_F(HostServices, MachineIsDescribed) {
  ProcessorFeatures features;
  Ask<IShSafeUtilities>()->GetProcessorFeatures(features);
  EXPECT_EQ(features.fBytes[0], 1);
  EXPECT_GE(Ask<IMultiProcessing>()->GetProcessorCount(), 1U);
  EXPECT_NE(Ask<IMultiProcessing>()->GetMainJobQueue(), nullptr);
}

TEST_F(HostServices, QuestionsAreAnsweredUnderTheirOwnIds) {
  for (const MCGuid& id : {IHostQuestion::kSecondGroupID, IHostQuestion::kThirdGroupID}) {
    const auto question = AskQuestion(id);
    ASSERT_TRUE(question);
    EXPECT_FALSE(question->Answer());
    void* other = nullptr;
    const MCGuid& otherID =
        id == IHostQuestion::kSecondGroupID ? IHostQuestion::kThirdGroupID : IHostQuestion::kSecondGroupID;
    EXPECT_EQ(question->QueryInterface(otherID, &other), MC_E_NOINTERFACE);
  }
  void* view = &view;
  EXPECT_EQ(fHost.GetRoot().QueryInterface("406FF750-5179-11D2-97C1-00A024418B95"_guid, &view), MC_E_NOINTERFACE);
  EXPECT_EQ(view, nullptr);
}

TEST_F(HostServices, ResourceContextsNest) {
  const auto resources = Ask<IResourceManager>();
  uint32 outer = 0;
  uint32 inner = 0;
  EXPECT_EQ(resources->PushResourceContext("scmd"_id, "full"_id, outer), MC_S_OK);
  EXPECT_EQ(resources->PushResourceContext("modi"_id, "fPIN"_id, inner), MC_S_OK);
  EXPECT_NE(outer, inner);
  EXPECT_EQ(resources->PopResourceContext(outer), MC_E_INVALIDARG) << "the inner one is still there";
  EXPECT_EQ(resources->PopResourceContext(inner), MC_S_OK);
  EXPECT_EQ(resources->PopResourceContext(outer), MC_S_OK);
  EXPECT_EQ(resources->PopResourceContext(outer), MC_E_INVALIDARG);
}

TEST_F(HostServices, PersonIsTheOneWhoCancels) {
  EXPECT_EQ(Ask<IAlertService>()->ShowAlert(0, "Nothing is selected", "", "Select something", nullptr, 2, "", "", ""),
            2);
  EXPECT_EQ(fDiagnostics.GetWarnings(), std::vector<std::string>{"Nothing is selected Select something"});
  TMCString255 path;
  EXPECT_FALSE(Ask<IFileService>()->ChooseFileToOpen(path, "****"_id, "text"_id));
  EXPECT_FALSE(Ask<IFileService>()->ChooseFileToSave(path, "****"_id, "text"_id));
  EXPECT_FALSE(Ask<IShellUtilities>()->ChooseObject(nullptr, path, path, 0, 0, 0));
  TMCCountedPtr<IMFPart> dialog;
  EXPECT_NE(Ask<IDialogFactory>()->CreateDialog(dialog.WriteInto(), "dlog"_id, 131), MC_S_OK);
  EXPECT_FALSE(dialog);
}

TEST_F(HostServices, FactoryWrapsModifiers) {
  fHost.LoadPlugin(QLX_PLUGIN_FILE);
  const auto factory = Ask<IComponentFactory>();
  TMCCountedPtr<IMCUnknown> component;
  ASSERT_EQ(factory->CreateComponent("modi"_id, "fPIN"_id, component.WriteInto()), MC_S_OK);
  const auto modifier = MCQuery<I3DShModifier>(component);
  ASSERT_TRUE(modifier);
  EXPECT_EQ(modifier->GetModifierClass(), "fPIN"_id);
  EXPECT_NE(factory->CreateComponent("scmd"_id, "fPIN"_id, component.WriteInto()), MC_S_OK);
  EXPECT_FALSE(component);
  EXPECT_NE(factory->CreateComponent("modi"_id, "none"_id, component.WriteInto()), MC_S_OK);
}

TEST_F(HostServices, ObjectHolderIsGivenForElementsThatShowAnObject) {
  const auto scene = MakeHosted<Scene>(fDiagnostics);
  Element& empty = scene->AddElement(scene->GetRootElement(), "Empty");
  Element& box = scene->AddElement(scene->GetRootElement(), "Box");
  box.SetShownObject(&scene->AddObject("Box"));
  const auto shell = Ask<IShellUtilities>();
  EXPECT_EQ(shell->EnsureObjectHolder(nullptr), nullptr);
  EXPECT_EQ(shell->EnsureObjectHolder(&empty), nullptr);
  EXPECT_TRUE(MCQuery<I3DShObjectHolder>(MCAdopt(shell->EnsureObjectHolder(&box))));
  scene->Close();
}

TEST_F(HostServices, UpdatesMarkTheElement) {
  const auto scene = MakeHosted<Scene>(fDiagnostics);
  Element& element = scene->AddElement(scene->GetRootElement(), "Box");
  const auto updates = Ask<IUpdateService>();
  element.AddModifier(*MakeHosted<UpdatingModifier>(*updates), 0);
  scene->Evaluate(0);
  EXPECT_EQ(scene->GetTouched(), std::vector<Element*>{&element});
  scene->Close();
}

}  // namespace
}  // namespace qlx::host
