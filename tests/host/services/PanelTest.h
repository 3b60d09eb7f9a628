// Panels of the built plug-in with its own resources, used by scripts.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "model/Scene.h"
#include "services/Host.h"
#include "services/ModifierPanel.h"
#include "services/UserInterface.h"
#include "ui/Hand.h"
#include "ui/ScriptPerson.h"

namespace qlx::host {

// A scene of an arm with a hand and a leg, and a panel of a modifier on the hand.
class PanelTest : public testing::Test {
 protected:
  explicit PanelTest(MCID inClass) {
    fHost.LoadPlugin(QLX_PLUGIN_FILE);
    fHost.GetUser().SetPerson(&fPerson);
    fModifier = fHost.CreateModifier(inClass);
    fHand.AddModifier(*fModifier, 0);
  }
  ~PanelTest() override {
    fPanel.reset();
    fModifier.Clear();
    fHost.GetUser().SetPerson(nullptr);
    fScene->Close();
    fScene.Clear();
    EXPECT_TRUE(fHost.GetPlugin()->CanUnload());
    EXPECT_EQ(fDiagnostics.GetWarnings(), fExpectedWarnings);
  }

  void Open() { fPanel = std::make_unique<ModifierPanel>(fHost, *fModifier); }

  // Nothing, or the problem.
  std::string Run(const std::string& inScript) {
    try {
      for (const ScriptStep& step : ParseScript("script", inScript)) {
        EXPECT_TRUE(fPerson.UseForm(fPanel->GetForm(), step)) << TextOfStep(step);
      }
    } catch (const ScriptError& problem) {
      return problem.what();
    }
    return "";
  }
  std::string Field(std::string_view inName) const {
    const ParameterField* const field = fModifier->GetParameterMap()->Find(inName);
    return field ? TextOfValue(fModifier->GetField(*field)) : "no such field";
  }
  void SetField(std::string_view inName, const ParameterValue& inValue) {
    EXPECT_TRUE(fModifier->SetField(*fModifier->GetParameterMap()->Find(inName), inValue)) << inName;
  }
  std::string Shown(MCID inControl) const {
    const Part* const part = fPanel->GetForm().Find(inControl);
    return part ? TextOfValue(part->GetValue()) : "no such control";
  }

  Diagnostics fDiagnostics;
  std::vector<std::string> fExpectedWarnings;
  Host fHost{fDiagnostics};
  ScriptPerson fPerson{"script", std::filesystem::temp_directory_path()};
  TMCCountedPtr<Scene> fScene = MakeHosted<Scene>(fDiagnostics);
  Element& fArm = fScene->AddElement(fScene->GetRootElement(), "Arm");
  Element& fHand = fScene->AddElement(fArm, "Hand");
  Element& fLeg = fScene->AddElement(fScene->GetRootElement(), "Leg");
  TMCCountedPtr<PluginModifier> fModifier;
  std::unique_ptr<ModifierPanel> fPanel;
};

}  // namespace qlx::host
