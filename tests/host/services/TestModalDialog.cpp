// Dialogs and questions as a plug-in asks them, and panels whose resources are odd.
#include <gtest/gtest.h>

#include "HostServices.h"
#include "PanelTest.h"
#include "ProblemOf.h"
#include "model/HostObject.h"

namespace qlx::host {
namespace {

constexpr MCGuid kExplorerCode = "10E24B1C-1022-0123-1000-22201315ADBF"_guid;
constexpr MCGuid kNoCode = "00000000-1022-0123-1000-22201315ADBF"_guid;

// Answers as it is told, once each; then it throws.
class ToldPerson final : public Person {
 public:
  bool RunDialog(Form& ioDialog) override {
    fSeen += ioDialog.GetLabel() + " ";
    Answer();
    return true;
  }
  Element* ChooseElement(const std::string& inTitle, const std::string& /*inPrompt*/,
                         const std::vector<Element*>& inCandidates) override {
    fSeen += inTitle + ":";
    for (const Element* candidate : inCandidates) {
      fSeen += candidate->GetNameText() + " ";
    }
    Answer();
    return inCandidates.back();
  }
  std::optional<std::string> ChooseFile(FileChoice /*inChoice*/) override {
    Answer();
    return "a/long/path.txt";
  }
  int32 AnswerAlert(const Alert& inAlert) override {
    fSeen += inAlert.fText + std::to_string(inAlert.fButtons.size()) + " ";
    Answer();
    return fButton;
  }
  void Answer() {
    if (fAnswers-- <= 0) {
      throw UserError("the person", "has left");
    }
  }

  int fAnswers = 100;
  int32 fButton = 2;
  std::string fSeen;
};

class ModalDialogTest : public PanelTest {
 protected:
  ModalDialogTest() : PanelTest("fPIN"_id) {
    fHost.GetUser().SetPerson(&fTold);
    fHost.GetUser().SetScene(fScene.Get());
    Ask<IResourceManager>()->PushResourceContext("modi"_id, "fQLX"_id, fContext);
  }
  ~ModalDialogTest() override { fHost.GetUser().SetScene(nullptr); }

  template <class Service>
  TMCCountedPtr<Service> Ask() const {
    return MCQuery<Service>(&fHost.GetRoot());
  }
  TMCCountedPtr<IMFPart> Make(int32 inNumber) const {
    TMCCountedPtr<IMFPart> dialog;
    const MCResult result = Ask<IDialogFactory>()->CreateDialog(dialog.WriteInto(), "Dlog"_id, inNumber);
    EXPECT_EQ(result == MC_S_OK, bool(dialog));
    return dialog;
  }
  // A catalog of one dialog, 131, and one panel, the pin's.
  void Describe(const MCGuid& inCode, std::vector<ControlDescription> inControls) {
    ResourceContents contents;
    contents.fExtensions = fHost.GetCatalog()->GetClasses();
    contents.fMaps = {*fHost.GetCatalog()->FindMapDescription("fPIN"_id)};
    PartDescription part{"Dlog"_id, 131, "Odd", inCode, {}};
    part.fRoot.fChildren = std::move(inControls);
    contents.fParts.push_back(std::make_shared<const PartDescription>(part));
    part.fKind = "Panl"_id;
    part.fResourceId = 156;
    contents.fParts.push_back(std::make_shared<const PartDescription>(part));
    fHost.SetCatalog(std::make_shared<const PluginCatalog>(std::move(contents)));
  }

  ToldPerson fTold;
  uint32 fContext = 0;
};

TEST_F(ModalDialogTest, DialogsComeFromTheResourcesThatAreCurrent) {
  EXPECT_TRUE(Make(131));
  EXPECT_FALSE(Make(132));
  EXPECT_FALSE(Make(131 + 65536)) << "no id of 16 bits";
  uint32 inner = 0;
  Ask<IResourceManager>()->PushResourceContext("modi"_id, "none"_id, inner);
  EXPECT_FALSE(Make(131)) << "of a class that nobody offers";
  Ask<IResourceManager>()->PopResourceContext(inner);
  EXPECT_TRUE(Make(131));
  Ask<IResourceManager>()->PopResourceContext(fContext);
  EXPECT_FALSE(Make(131)) << "none are";
}

TEST_F(ModalDialogTest, ADialogAnswersForItsCodeUntilItIsClosed) {
  const auto dialog = Make(181);
  const auto modal = MCQuery<IModalDialog>(dialog);
  ASSERT_TRUE(modal);
  void* code = nullptr;
  ASSERT_EQ(dialog->QueryInterface(kExplorerCode, &code), MC_S_OK);
  ASSERT_NE(code, nullptr);
  static_cast<IMCUnknown*>(code)->Release();
  EXPECT_EQ(dialog->QueryInterface("10E24B1B-1020-0122-0FFF-211F1212AABC"_guid, &code), MC_E_NOINTERFACE)
      << "another dialog's code";
  EXPECT_TRUE(modal->RunModal());
  EXPECT_EQ(fTold.fSeen, "Property Explorer ");
  modal->CloseDialog();
  modal->CloseDialog();
  EXPECT_FALSE(modal->RunModal());
  EXPECT_EQ(dialog->QueryInterface(kExplorerCode, &code), MC_E_NOINTERFACE);
}

TEST_F(ModalDialogTest, AForgottenDialogEndsWithTheHost) {
  Make(181);  // its code and itself hold each other
  EXPECT_EQ(fModifier->GetPanelNumber(), 156);
  fHost.GetUser().CloseDialogs();  // what the host does ahead of the plug-in's end
}

TEST_F(ModalDialogTest, CodeThatCannotBeMadeMakesNoDialog) {
  Describe(kNoCode, {});
  EXPECT_FALSE(Make(131));
  ASSERT_EQ(fDiagnostics.GetWarnings().size(), 1U);
  EXPECT_EQ(fDiagnostics.GetWarnings()[0].rfind("dialog 131 \"Odd\": the plug-in does not make its code (0x", 0), 0U);
  fExpectedWarnings = fDiagnostics.GetWarnings();
}

TEST_F(ModalDialogTest, WhatThePersonThrowsWaitsUntilThePlugInReturned) {
  const auto modal = MCQuery<IModalDialog>(Make(131));
  fTold.fAnswers = 0;
  EXPECT_FALSE(modal->RunModal());
  fTold.fAnswers = 100;
  EXPECT_FALSE(modal->RunModal()) << "cancelled, as all is until then";
  TMCString255 path("as it was");
  EXPECT_FALSE(Ask<IFileService>()->ChooseFileToOpen(path, 0, 0));
  EXPECT_EQ(TextFrom(path), "as it was");
  EXPECT_THROW(fHost.GetUser().ThrowProblem(), UserError);
  EXPECT_NO_THROW(fHost.GetUser().ThrowProblem());
  EXPECT_TRUE(modal->RunModal());
}

TEST_F(ModalDialogTest, ObjectsFilesAndAlertsAreThePersonsToAnswer) {
  TMCCountedPtr<TreeElement> chosen;
  const TMCString31 title("Title");
  EXPECT_TRUE(Ask<IShellUtilities>()->ChooseObject(chosen.WriteInto(), title, title, 0, 0, 0));
  EXPECT_TRUE(chosen == static_cast<TreeElement*>(&fLeg));
  EXPECT_EQ(fTold.fSeen, "Title:Arm Hand Leg ") << "without the scene's root";
  EXPECT_FALSE(Ask<IShellUtilities>()->ChooseObject(nullptr, title, title, 0, 0, 0));
  fHost.GetUser().SetScene(nullptr);
  EXPECT_FALSE(Ask<IShellUtilities>()->ChooseObject(chosen.WriteInto(), title, title, 0, 0, 0));

  TMCString15 path("short");
  EXPECT_TRUE(Ask<IFileService>()->ChooseFileToSave(path, 0, 0));
  EXPECT_EQ(TextFrom(path), "a/long/path.txt");
  const auto alerts = Ask<IAlertService>();
  fTold.fSeen.clear();
  EXPECT_EQ(alerts->ShowAlert(0, "A", "b", "", nullptr, 1, "Yes", "No", ""), 2);
  EXPECT_EQ(alerts->ShowAlert(0, nullptr, nullptr, "", nullptr, 1, "", nullptr, ""), 1) << "there is no second button";
  EXPECT_EQ(fTold.fSeen, "A b2 1 ");
}

TEST_F(ModalDialogTest, APathThatDoesNotFitIsRefused) {
  class LongPath final : public CancellingPerson {
   public:
    using CancellingPerson::CancellingPerson;
    std::optional<std::string> ChooseFile(FileChoice /*inChoice*/) override { return std::string(16, 'x'); }
  } person(fDiagnostics);
  fHost.GetUser().SetPerson(&person);
  TMCString15 path("as it was");
  EXPECT_FALSE(Ask<IFileService>()->ChooseFileToOpen(path, 0, 0));
  EXPECT_EQ(TextFrom(path), "as it was");
  fExpectedWarnings = {"xxxxxxxxxxxxxxxx: the path is too long"};
  EXPECT_FALSE(MCQuery<IModalDialog>(Make(131))->RunModal()) << "cancelled";
  TMCCountedPtr<TreeElement> chosen;
  EXPECT_FALSE(Ask<IShellUtilities>()->ChooseObject(chosen.WriteInto(), path, path, 0, 0, 0));
}

TEST_F(ModalDialogTest, APanelShowsWhatItsResourcesAllow) {
  ControlDescription button;
  button.fKind = ControlKind::kButton;
  button.fID = "actv"_id;  // bound to a truth value
  button.fLabel = "Active";
  ControlDescription vector;
  vector.fKind = ControlKind::kVector;
  vector.fID = "posi"_id;
  Describe({}, {button, vector});
  fPerson = ScriptPerson("script", {});
  fHost.GetUser().SetPerson(&fPerson);
  Open();
  EXPECT_EQ(Run("set posi \"1 2 3\"\npress actv"), "");
  EXPECT_EQ(Field("fPosition") + Field("fActive"), "1 2 3false");
  fExpectedWarnings = {"panel 156 \"Odd\": the control actv (\"Active\") cannot show fActive, a 'bool'"};
  EXPECT_EQ(fDiagnostics.GetWarnings(), fExpectedWarnings);
  fHost.SetCatalog(PluginCatalog::GetBuiltIn());
  EXPECT_EQ(test::ProblemOf([&] { Open(); }), "PinModifier: its panel 156 is not in the resources");
}

}  // namespace
}  // namespace qlx::host
