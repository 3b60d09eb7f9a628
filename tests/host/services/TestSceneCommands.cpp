// The menu of the built plug-in: which commands are enabled, and what each does to a scene and its keys.
#include <algorithm>

#include "CommandTest.h"
#include "MCLibrary.h"
#include "odd/OddPlugin.h"

namespace qlx::host {
namespace {

class MenuCommands : public PluginCommandTest {
 protected:
  // Keys of equal value, with one at the current time, 0.
  void Animate(Element& ioElement, int32 inKeys = 4) {
    Curve& curve = ioElement.GetOrMakeCurve(Channel::kRotationX);
    for (int32 i = 0; i < inKeys; ++i) {
      curve.SetKey({.fTime = i * kStep, .fValue = 1});
      curve.SelectKey(i * kStep, i % 2 == 0);
    }
  }
  std::vector<int32> Times(const Element& inElement) const {
    std::vector<int32> times;
    for (const CurveKey& key : inElement.GetCurve(Channel::kRotationX)->GetKeys()) {
      times.push_back(key.fTime);
    }
    return times;
  }

  static constexpr int32 kStep = 75000;         // ten frames
  static constexpr int32 kFrame = 180000 / 24;  // of the scene's rate
};

TEST_F(MenuCommands, AreEnabledByWhatIsSelected) {
  const struct {
    const char* fLabel;
    std::vector<Element*> fSelected;
    const char* fDisabled;
  } rows[] = {
      {"nothing", {}, "aQLX aPIN aSLD rdup dkey prex "},
      {"the root alone", {&fScene->GetRootElement()}, "aQLX aPIN aSLD rdup dkey prex "},
      {"an element", {&fHand}, ""},
      {"the root and an element", {&fScene->GetRootElement(), &fLamp}, ""},
  };
  for (const auto& row : rows) {
    SelectOnly(row.fSelected);
    std::string disabled;
    std::size_t count = 0;
    for (const MenuEntry& entry : ListCommands(fHost, *fScene)) {
      disabled += entry.fIsEnabled ? "" : TextFromID(entry.fCommand->fID) + " ";
      ++count;
    }
    EXPECT_EQ(disabled, row.fDisabled) << row.fLabel;
    EXPECT_EQ(count, 8U);
  }
  SelectOnly({});
  EXPECT_EQ(Do("dkey"_id), "script, line 1: Delete Keyframes: is not enabled for what is selected");
}

TEST_F(MenuCommands, AddAModifierToTheFirstSelectedElement) {
  SelectOnly({&fHand, &fLamp});
  for (const MCID command : {"aPIN"_id, "aQLX"_id, "aSLD"_id, "aPIN"_id}) {
    EXPECT_EQ(Do(command), "done");
  }
  EXPECT_EQ(Modifiers(fHand), "fPIN fQLX fSLD fPIN ");
  EXPECT_EQ(Modifiers(fLamp), "");
}

TEST_F(MenuCommands, DeleteAndDedupeKeysInTheScopeThatIsChosen) {
  const std::vector<int32> whole = {0, kStep, 2 * kStep, 3 * kStep};
  const struct {
    MCID fCommand;
    std::vector<int32> fLeft;
  } commands[] = {{"dkey"_id, {kStep, 2 * kStep, 3 * kStep}}, {"rdup"_id, {0, 3 * kStep}}};
  const struct {
    const char* fAnswers;
    const char* fOutcome;
    std::vector<Element*> fTouched;
  } scopes[] = {
      {"set figu on\nok", "done", {&fBody, &fArm, &fHand, &fFinger}},
      {"set subt on\nok", "done", {&fHand, &fFinger}},
      {"ok", "done", {&fHand}},
      {"set selo on\nok", "done", {&fHand}},
      {"set figu on\nset selo on\nok", "done", {&fHand}},
      {"set figu on\ncancel", "done", {}},
  };
  SelectOnly({&fHand});
  for (const auto& command : commands) {
    for (const auto& scope : scopes) {
      SCOPED_TRACE(TextFromID(command.fCommand) + " " + scope.fAnswers);
      for (Element* const element : {&fBody, &fArm, &fHand, &fFinger, &fLamp}) {
        element->GetOrMakeCurve(Channel::kRotationX).Clear();
        Animate(*element);
      }
      fScene->Evaluate(0);
      EXPECT_EQ(Do(command.fCommand, scope.fAnswers), scope.fOutcome);
      for (Element* const element : {&fBody, &fArm, &fHand, &fFinger, &fLamp}) {
        const bool isTouched = std::count(scope.fTouched.begin(), scope.fTouched.end(), element) > 0;
        EXPECT_EQ(Times(*element), isTouched ? command.fLeft : whole) << element->GetNameText();
      }
    }
  }
}

TEST_F(MenuCommands, AlertsWhereAnElementIsInNoFigure) {
  for (Element* const element : {&fHand, &fLamp}) {
    Animate(*element);
  }
  SelectOnly({&fHand, &fLamp});
  EXPECT_EQ(Do("dkey"_id, "set figu on\nok\nanswer OK"), "done");
  EXPECT_EQ(Times(fHand).size() + Times(fLamp).size(), 7U) << "the first item's key is gone";
  EXPECT_EQ(Do("dkey"_id, "set figu on\nok"),
            "script, line 1: \"do\" shows an alert: The selected item is not a figure: answer in its block with answer "
            "BUTTON");
}

TEST_F(MenuCommands, WiggleSelectedKeysByTheFramesOfThePanel) {
  SelectOnly({&fHand});
  Animate(fHand, 81);
  const std::vector<int32> before = Times(fHand);
  EXPECT_EQ(Do("wigl"_id, "set maxf 1\ncancel"), "cancelled");
  EXPECT_EQ(Do("wigl"_id, "set minf -2\nset maxf 0\nok"), "done");
  EXPECT_EQ(Times(fHand), before) << "none to move by";
  for (const char* const refused : {"set minf -1", "set maxf 1001", "set maxf -1", "set minf -1001"}) {
    EXPECT_NE(Do("wigl"_id, refused).find("is out of its range"), std::string::npos) << refused;
  }
  EXPECT_EQ(Do("wigl"_id, "set maxf 9\nok"), "done");
  EXPECT_EQ(Screen("minf") + " " + Screen("maxf"), "-3 9") << "each run begins with the command's own numbers";
  bool isFar = false;
  for (int32 i = 0; i < 81; ++i) {
    const int32 moved = Times(fHand)[static_cast<std::size_t>(i)] - before[static_cast<std::size_t>(i)];
    EXPECT_TRUE(i % 2 == 0 || moved == 0) << "only selected keys move";
    EXPECT_TRUE(moved % kFrame == 0 && moved >= -kFrame && moved <= 9 * kFrame) << moved;
    isFar = isFar || moved > 3 * kFrame;
  }
  EXPECT_TRUE(isFar) << "past the command's own limit";
}

TEST_F(MenuCommands, TellWhatThePersonDidWrong) {
  SelectOnly({&fHand});
  EXPECT_NE(Do("dkey"_id, "set figure on\nok").find("line 2: \"Delete keyframes\": there is no control \"figure\""),
            std::string::npos);
  EXPECT_NE(Do("dkey"_id).find("opens the dialog \"Delete keyframes\""), std::string::npos);
  EXPECT_EQ(Do("aPIN"_id, "ok"), "script, line 2: nothing asks for \"ok\": \"do\" in line 1 asked nothing");
  EXPECT_EQ(Modifiers(fHand), "fPIN ");
  EXPECT_EQ(Do("dkey"_id, "ok"), "done");
}

TEST_F(MenuCommands, RefuseRecordsThatDoNotFit) {
  ResourceContents contents;
  contents.fExtensions = {Command("wigl"_id), Command("aPIN"_id), Command("dkey"_id)};
  contents.fExtensions[1].fClassID = fHost.GetCatalog()->FindClass("part"_id, "pexd"_id)->fClassID;
  contents.fExtensions[2].fClassID.fData1 ^= 1;
  contents.fMaps = {{"wigl"_id, {{"fMinFrames", "in32"_id, "minf"_id}}}};
  contents.fParts = {fHost.GetCatalog()->FindPart("Panl"_id, 159)};
  fHost.SetCatalog(std::make_shared<const PluginCatalog>(std::move(contents)));
  SelectOnly({&fHand});
  EXPECT_EQ(Do("wigl"_id), "script, line 1: Wiggle Keyframes: its settings have 8 bytes, and its fields 4");
  EXPECT_EQ(Do("aPIN"_id), "script, line 1: Add Pin: this class is no command");
  EXPECT_EQ(Do("dkey"_id).rfind("script, line 1: Delete Keyframes: the plug-in does not make this command (0x", 0), 0U);
  EXPECT_EQ(ListCommands(fHost, *fScene).size(), 3U);
  fExpectedWarnings = fDiagnostics.GetWarnings();
  EXPECT_EQ(fExpectedWarnings.size(), 2U);
}

using test::OddMode;

class OddCommands : public CommandTest {
 protected:
  std::string DoOdd(OddMode inMode) {
    MCLibrary odd;
    EXPECT_TRUE(odd.Open(QLX_ODD_PLUGIN_FILE)) << odd.GetErrorText();
    odd.Find<test::SetOddMode>("OddSetMode")(inMode);
    fHost.LoadPlugin(QLX_ODD_PLUGIN_FILE);
    SelectOnly({&fHand});
    return Do("dkey"_id, inMode == OddMode::kLeavesADialog ? "ok" : "");
  }
};

TEST_F(OddCommands, AreEndedAndNamed) {
  const struct {
    OddMode fMode;
    const char* fOutcome;
  } rows[] = {
      {OddMode::kPlain, "done"},
      {OddMode::kFails, "script, line 1: Delete Keyframes: cannot be prepared (0x80010006)"},
      {OddMode::kThrows, "script, line 1: Delete Keyframes: Do failed with 0x80010004: threw a foreign exception, odd"},
      {OddMode::kLeavesADialog,
       "script, line 1: Delete Keyframes: Do failed with 0x80010004: threw a foreign exception, odd"},
      {OddMode::kNotImplemented, "cancelled"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DoOdd(row.fMode), row.fOutcome);
    EXPECT_TRUE(fHost.GetUser().fContexts.empty());
  }
  EXPECT_EQ(DoOdd(OddMode::kDisabledByFault), "script, line 1: Delete Keyframes: is not enabled for what is selected");
  ASSERT_EQ(fDiagnostics.GetWarnings().size(), 1U);
  EXPECT_EQ(fDiagnostics.GetWarnings()[0].rfind("Delete Keyframes: SelfPrepare failed with 0x", 0), 0U);
  fExpectedWarnings = fDiagnostics.GetWarnings();
}

}  // namespace
}  // namespace qlx::host
