// Commands of the built plug-in, run on a scene with a figure, by scripts that answer their dialogs.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "model/IDText.h"
#include "model/Scene.h"
#include "services/Host.h"
#include "services/SceneCommand.h"
#include "services/UserInterface.h"
#include "ui/Hand.h"
#include "ui/ScriptPerson.h"

namespace qlx::host {

// A script's person, who remembers what dialogs showed when they were closed: the values by the ids of the controls.
class SeeingPerson final : public Person {
 public:
  bool RunDialog(Form& ioDialog) override {
    const bool isOK = fScript.RunDialog(ioDialog);
    Look(ioDialog.GetRoot());
    return isOK;
  }
  Element* ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                         const std::vector<Element*>& inCandidates) override {
    return fScript.ChooseElement(inTitle, inPrompt, inCandidates);
  }
  std::optional<std::string> ChooseFile(FileChoice inChoice) override { return fScript.ChooseFile(inChoice); }
  int32 AnswerAlert(const Alert& inAlert) override { return fScript.AnswerAlert(inAlert); }

  ScriptPerson fScript{"script", {}};
  std::map<std::string, std::string> fScreen;

 private:
  void Look(const Part& inPart) {
    if (inPart.GetValueForm() != 0) {
      fScreen[TextFromID(inPart.GetDescription().fID)] = TextOfValue(inPart.GetValue());
    }
    for (const auto& child : inPart.GetChildren()) {
      Look(*child);
    }
  }
};

class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    fHost.GetUser().SetPerson(&fPerson);
    fScene->AddFigure("Skin", fBody, {&fArm, &fHand});
  }
  ~CommandTest() override {
    fHost.GetUser().SetPerson(nullptr);
    EXPECT_EQ(fHost.GetUser().GetScene(), nullptr);
    EXPECT_TRUE(fHost.GetUser().fContexts.empty());
    fScene->Close();
    fScene.Clear();
    EXPECT_TRUE(fHost.GetPlugin()->CanUnload()) << "a command, a dialog or a modifier was left";
    EXPECT_EQ(fDiagnostics.GetWarnings(), fExpectedWarnings);
  }

  const ExtensionRecord& Command(MCID inID) const { return *fHost.GetCatalog()->FindClass("scmd"_id, inID); }
  // "done", "cancelled" or the problem. The script answers what the command asks.
  std::string Do(MCID inCommand, const std::string& inAnswers = "") {
    const std::vector<ScriptStep> steps = ParseScript("script", "do {\n" + inAnswers + "\n}\n");
    fPerson.fScreen.clear();
    bool isDone = false;
    try {
      fPerson.fScript.Perform(steps[0], [&] { isDone = SceneCommand(fHost, *fScene, Command(inCommand)).Run(); });
    } catch (const UserError& problem) {
      return problem.what();
    }
    return isDone ? "done" : "cancelled";
  }
  // The modifiers of an element, by the numbers of their classes.
  static std::string Modifiers(const Element& inElement) {
    std::string text;
    for (const auto& modifier : inElement.GetModifiers()) {
      text += TextFromID(modifier->GetModifierClass()) + " ";
    }
    return text;
  }
  static std::string FieldOf(const Element& inElement, std::string_view inName, std::size_t inModifier = 0) {
    const auto* const modifier = dynamic_cast<const PluginModifier*>(inElement.GetModifiers().at(inModifier).Get());
    const ParameterField* const field = modifier->GetParameterMap()->Find(inName);
    return field ? TextOfValue(modifier->GetField(*field)) : "no such field";
  }
  void SelectOnly(std::vector<Element*> inElements) { fScene->Select(std::move(inElements)); }
  std::string Screen(const std::string& inControl) { return fPerson.fScreen[inControl]; }

  Diagnostics fDiagnostics;
  std::vector<std::string> fExpectedWarnings;
  Host fHost{fDiagnostics};
  SeeingPerson fPerson;
  TMCCountedPtr<Scene> fScene = MakeHosted<Scene>(fDiagnostics);
  Element& fBody = fScene->AddElement(fScene->GetRootElement(), "Body");
  Element& fArm = fScene->AddElement(fBody, "Arm");
  Element& fHand = fScene->AddElement(fArm, "Hand");
  Element& fFinger = fScene->AddElement(fHand, "Finger");  // no joint of the figure
  Element& fLamp = fScene->AddElement(fScene->GetRootElement(), "Lamp");
};

// The same with the plug-in of this program.
class PluginCommandTest : public CommandTest {
 protected:
  PluginCommandTest() { fHost.LoadPlugin(QLX_PLUGIN_FILE); }
};

}  // namespace qlx::host
