// The menu of the built plug-in: which commands are enabled, what each does to a scene and its keys, and that what a
// person does in their dialogs reaches them.
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

TEST_F(MenuCommands, DeleteAndDedupeKeysInTheScopeThatIsChosen) {
  const std::vector<int32> whole = {0, kStep, 2 * kStep, 3 * kStep};
  const struct {
    MCID fCommand;
    const char* fAnswers;
    const char* fOutcome;
    std::vector<Element*> fTouched;
    std::vector<int32> fLeft;
  } rows[] = {
      {"dkey"_id, "set figu on\nok", "done", {&fBody, &fArm, &fHand, &fFinger}, {kStep, 2 * kStep, 3 * kStep}},
      {"rdup"_id, "set subt on\nok", "done", {&fHand, &fFinger}, {0, 3 * kStep}},
      {"rdup"_id, "set figu on\nset selo on\nok", "done", {&fHand}, {0, 3 * kStep}},
      {"dkey"_id, "set figu on\ncancel", "done", {}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fAnswers);
    fScene->Evaluate(0);
    for (Element* const element : {&fBody, &fArm, &fHand, &fFinger, &fLamp}) {
      element->GetOrMakeCurve(Channel::kRotationX).Clear();
      Animate(*element);
    }
    SelectOnly({&fHand});
    EXPECT_EQ(Do(row.fCommand, row.fAnswers), row.fOutcome);
    for (Element* const element : {&fBody, &fArm, &fHand, &fFinger, &fLamp}) {
      const bool isTouched = std::ranges::count(row.fTouched, element) > 0;
      EXPECT_EQ(Times(*element), isTouched ? row.fLeft : whole) << element->GetNameText();
    }
  }
  SelectOnly({&fLamp});
  EXPECT_EQ(Do("dkey"_id, "set figu on\nok\nanswer OK"), "done");
  EXPECT_EQ(Times(fLamp), whole) << "in no figure";
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
  EXPECT_NE(Do("wigl"_id, "set maxf 1001").find("is out of its range"), std::string::npos);
  EXPECT_EQ(Do("wigl"_id, "set maxf 9\nok"), "done");
  EXPECT_EQ(Screen("minf") + " " + Screen("maxf"), "-3 9") << "each run begins with the command's own numbers";
  for (std::size_t i = 0; i < 81; ++i) {
    const int32 moved = Times(fHand)[i] - before[i];
    EXPECT_TRUE(i % 2 == 0 || moved == 0) << "only selected keys move";
    EXPECT_TRUE(moved % kFrame == 0 && moved >= -kFrame && moved <= 9 * kFrame) << moved;
  }
  EXPECT_NE(Times(fHand), before);
}

// Picks an element for a link of a chain, and answers the link's dialog.
std::string Pick(const char* inName, const std::string& inSettings = "") {
  return std::string("press abtn {\npick ") + inName + "\n" + inSettings + "\nok\n}\n";
}

TEST_F(MenuCommands, LinksOfAChainAreLaidWithTheirSettings) {
  const std::string chain =
      Pick("Body", "set mval 1") + "choose clst Body\npress achb {\nset mval 5\nok\n}\n" +
      "choose clst Finger\npress ubtn\npress mdbt\npress dbtn\nchoose clst Arm\npress ebtn {\nset mval 7\nset uFRA "
      "on\npress BTal\nset unit ft\npress sdcy {\nset dmax 8.125\nok\n}\nok\n}\n";
  for (const bool followsFirst : {false, true}) {
    ASSERT_EQ(Do("chai"_id, chain + (followsFirst ? "set cgrp on\nok" : "ok")), "done");
    EXPECT_EQ(Modifiers(fArm), followsFirst ? "fQLX fQLX " : "fQLX ") << "behind what stood there";
    const std::size_t number = followsFirst ? 1 : 0;
    EXPECT_EQ(FieldOf(fBody, "fSourceName", number), "");
    EXPECT_EQ(FieldOf(fArm, "fSourceName", number), "Body");
    EXPECT_EQ(FieldOf(fHand, "fSourceName", number), followsFirst ? "Body" : "Arm");
    std::string fields;
    for (const char* const name : {"fModifyValue", "fStartOn", "fEndOn", "fPositionAll", "fPositionNone"}) {
      fields += FieldOf(fArm, name, number) + " ";
    }
    EXPECT_EQ(fields, "7 true true true false ");
    EXPECT_EQ(FieldOf(fArm, "fModifyUnit", number), "3");
    EXPECT_EQ(FieldOf(fBody, "fModifyValue", number) + FieldOf(fHand, "fModifyValue", number), "15");
    auto& link = dynamic_cast<PluginModifier&>(*fArm.GetModifiers().at(number));
    EXPECT_NE(link.WritePrivate().value_or("").find("8.125"), std::string::npos);
  }
  EXPECT_EQ(Modifiers(fFinger), "");
}

TEST_F(MenuCommands, ExplorerShowsWhatIsChosenAndSetsIt) {
  fArm.SetValue(Channel::kPositionX, 10);
  SelectOnly({&fHand, &fLamp});
  const struct {
    const char* fLabel;
    const char* fAnswers;
    const char* fValues;  // now and new
    real32 fX;
  } rows[] = {
      {"a number alone", "choose plst \"Global X Position\"\nset nVal 20\nok", "12 20", 2},
      {"in the scene", "choose plst \"Global X Position\"\nset nVal 20\npress upbn\nok", "20 20", 10},
      {"nothing chosen", "set nVal 20\npress upbn\nok", "0 20", 2},
      {"cancelled, and set all the same", "choose plst \"Position X\"\nset nVal 3\npress upbn\ncancel", "3 3", 3},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    fHand.SetValue(Channel::kPositionX, 2);
    fScene->Evaluate(0);
    EXPECT_EQ(Do("prex"_id, row.fAnswers), "done");
    EXPECT_EQ(Screen("cVal") + " " + Screen("nVal"), row.fValues);
    EXPECT_FLOAT_EQ(fHand.GetValue(Channel::kPositionX), row.fX);
  }
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
