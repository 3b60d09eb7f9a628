// The dialogs of the built plug-in's commands, control by control: what a person does there reaches the dialog's code,
// and what the code answers reaches the screen and the scene.
#include "CommandTest.h"

namespace qlx::host {
namespace {

class ChainDialog : public PluginCommandTest {
 protected:
  static std::string Pick(const char* inName, const std::string& inSettings = "") {
    return std::string("press abtn {\npick ") + inName + "\n" + inSettings + "\nok\n}\n";
  }
  // A chain of one link on the lamp, with these settings: "done" or the problem.
  std::string LayOne(const std::string& inSettings) {
    fLamp.RemoveAllModifiers();
    return Do("chai"_id, Pick("Lamp", inSettings) + "ok");
  }
  // The rows of dialog 190 as it closes.
  std::string Rows(const std::string& inAnswers) {
    const std::string outcome = Do("chai"_id, inAnswers + "\ncancel");
    return outcome == "done" ? Screen("rows") : outcome;
  }
};

TEST_F(ChainDialog, EveryControlOfALinkReachesItsField) {
  const struct {
    const char* fControl;
    const char* fValue;
    const char* fField;
    const char* fStored;
  } rows[] = {
      {"mval", "2.5", "fModifyValue", "2.5"},     {"unit", "degrees", "fModifyUnit", "5"},
      {"unit", "<none>", "fModifyUnit", "0"},     {"decy", "on", "fDecayOn", "true"},
      {"grow", "on", "fGrowOn", "true"},          {"oscl", "on", "fOscillateOn", "true"},
      {"ltst", "on", "fStartOn", "true"},         {"lsvl", "-7", "fStartFrame", "-7"},
      {"coff", "on", "fEndOn", "true"},           {"covl", "48", "fEndFrame", "48"},
      {"uFRA", "on", "fStartOn", "true"},         {"uFRA", "on", "fEndOn", "true"},
      {"dely", "on", "fDelayOn", "true"},         {"dfrm", "4", "fDelayFrames", "4"},
      {"BTsX", "on", "fPositionX", "true"},       {"BTsY", "on", "fPositionY", "true"},
      {"BTsZ", "on", "fPositionZ", "true"},       {"BTiX", "on", "fPositionInvertX", "true"},
      {"BTiY", "on", "fPositionInvertY", "true"}, {"BTiZ", "on", "fPositionInvertZ", "true"},
      {"BRsX", "on", "fRotationX", "true"},       {"BRsY", "on", "fRotationY", "true"},
      {"BRsZ", "on", "fRotationZ", "true"},       {"BRiX", "on", "fRotationInvertX", "true"},
      {"BRiY", "on", "fRotationInvertY", "true"}, {"BRiZ", "on", "fRotationInvertZ", "true"},
      {"BSun", "on", "fScaleUniform", "true"},    {"BSsX", "on", "fScaleX", "true"},
      {"BSsY", "on", "fScaleY", "true"},          {"BSsZ", "on", "fScaleZ", "true"},
      {"LMin", "on", "fLowerLimitOn", "true"},    {"MinL", "-0.5", "fLowerLimit", "-0.5"},
      {"LMax", "on", "fUpperLimitOn", "true"},    {"MaxL", "0.25", "fUpperLimit", "0.25"},
      {"UnLm", "cm", "fLimitUnit", "1"},          {"CLim", "on", "fRangeOn", "true"},
      {"CMin", "-3", "fRangeMin", "-3"},          {"CMax", "3", "fRangeMax", "3"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.fControl) + " " + row.fValue);
    ASSERT_EQ(LayOne(""), "done");
    EXPECT_NE(FieldOf(fLamp, row.fField), row.fStored) << "as it begins";
    ASSERT_EQ(LayOne(std::string("set ") + row.fControl + " " + row.fValue), "done");
    EXPECT_EQ(FieldOf(fLamp, row.fField), row.fStored);
  }
}

TEST_F(ChainDialog, OneOfAGroupIsOnInTheLinkAndOnTheScreen) {
  struct Member {
    const char* fControl;
    const char* fField;
  };
  const std::vector<Member> groups[] = {
      {{"cset", "fCombineReplace"},
       {"ccst", "fCombineSelf"},
       {"cadd", "fCombineAdd"},
       {"csub", "fCombineSubtract"},
       {"cmul", "fCombineMultiply"},
       {"cdiv", "fCombineDivide"}},
      {{"madd", "fModifyAdd"},
       {"msub", "fModifySubtract"},
       {"mmul", "fModifyMultiply"},
       {"mdiv", "fModifyDivide"},
       {"mcst", "fModifySet"}},
      {{"BTal", "fPositionAll"}, {"BTno", "fPositionNone"}, {"BTso", "fPositionCustom"}},
      {{"BRal", "fRotationAll"}, {"BRno", "fRotationNone"}, {"BRso", "fRotationCustom"}},
  };
  for (const auto& group : groups) {
    for (const Member& first : group) {
      for (const Member& then : group) {
        const std::string settings = std::string("press ") + first.fControl + "\npress " + then.fControl;
        SCOPED_TRACE(settings);
        ASSERT_EQ(LayOne(settings), "done");
        for (const Member& member : group) {
          const char* const expected = &member == &then ? "true" : "false";
          EXPECT_EQ(FieldOf(fLamp, member.fField), expected) << member.fField;
          EXPECT_EQ(Screen(member.fControl), expected) << member.fControl;
        }
      }
    }
  }
}

TEST_F(ChainDialog, ALinkIsCancelledAndEditedAsItWasLeft) {
  EXPECT_EQ(Do("chai"_id, "press abtn {\npick Lamp\nset mval 9\ncancel\n}\npress abtn {\ncancel\n}\nok"), "done");
  EXPECT_EQ(Modifiers(fLamp), "");
  EXPECT_EQ(
      Do("chai"_id, Pick("Lamp", "set mval 2\nset unit feet\nset uFRA on") +
                        "choose clst Lamp\npress ebtn {\nset mval 3\ncancel\n}\n"
                        "press ebtn {\nset dfrm 6\nset ltst off\nok\n}\nok"),
      "script, line 5: unit (\"Unit\"): it has no row \"feet\"; it has \"<none>\", \"cm\", \"in\", \"ft\", \"m\", "
      "\"degrees\", \"radians\", \"percent\"");
  EXPECT_EQ(Do("chai"_id, Pick("Lamp", "set mval 2\nset unit ft\nset uFRA on") +
                              "choose clst Lamp\npress ebtn {\nset mval 3\ncancel\n}\n"
                              "press ebtn {\nset dfrm 6\nset ltst off\nok\n}\nok"),
            "done");
  EXPECT_EQ(FieldOf(fLamp, "fModifyValue") + " " + FieldOf(fLamp, "fDelayFrames"), "2 6");
  EXPECT_EQ(FieldOf(fLamp, "fModifyUnit") + FieldOf(fLamp, "fStartOn") + FieldOf(fLamp, "fEndOn"), "3falsetrue");
  ASSERT_EQ(LayOne("press BTso\npress BTsX\npress BTiY\npress TBno"), "done");
  for (const char* const field : {"fPositionCustom", "fPositionX", "fPositionInvertY"}) {
    EXPECT_EQ(FieldOf(fLamp, field), "false") << field << ", which the button takes back";
  }
  EXPECT_EQ(FieldOf(fLamp, "fPositionNone"), "true");
}

TEST_F(ChainDialog, CurvesOfALinkAreEditedInTheirOwnDialogs) {
  const struct {
    const char* fButton;
    const char* fControl;
  } rows[] = {{"sosc", "omax"}, {"sdcy", "dmax"}, {"sgrw", "gmax"}};
  for (const auto& row : rows) {
    const std::string change = std::string("press ") + row.fButton + " {\nset " + row.fControl + " 8.125\n";
    const auto text = [&](const char* end) {
      EXPECT_EQ(LayOne(change + end + "\n}"), "done");
      return dynamic_cast<PluginModifier&>(*fLamp.GetModifiers().at(0)).WritePrivate().value_or("");
    };
    EXPECT_EQ(text("cancel").find("8.125"), std::string::npos) << row.fButton;
    EXPECT_NE(text("ok").find("8.125"), std::string::npos) << row.fButton;
  }
}

TEST_F(ChainDialog, ButtonsWorkOnTheListAndTheCurrentRow) {
  const std::string three = Pick("Body") + Pick("Arm") + Pick("Lamp");
  const struct {
    const char* fLabel;
    std::string fAnswers;
    const char* fRows;
  } rows[] = {
      {"add", three, "Body Arm Lamp "},
      {"one element twice", Pick("Arm") + Pick("Arm"), "Arm Arm "},
      {"nothing current", three + "press dbtn\npress ubtn\npress mdbt\npress ebtn\npress achb", "Body Arm Lamp "},
      {"remove", three + "choose clst Arm\npress dbtn", "Body Lamp "},
      {"nothing is current behind a removal", three + "choose clst Arm\npress dbtn\npress dbtn", "Body Lamp "},
      {"up", three + "choose clst Lamp\npress ubtn", "Body Lamp Arm "},
      {"the moved row stays current", three + "choose clst Lamp\npress ubtn\npress ubtn", "Lamp Body Arm "},
      {"up from the first", three + "choose clst Body\npress ubtn", "Body Arm Lamp "},
      {"down", three + "choose clst Body\npress mdbt\npress mdbt", "Arm Lamp Body "},
      {"down from the last", three + "choose clst Lamp\npress mdbt", "Body Arm Lamp "},
      {"all below", Pick("Body") + "choose clst Body\npress achb {\nok\n}", "Body Arm Hand Finger "},
      {"all below, cancelled", Pick("Body") + "choose clst Body\npress achb {\ncancel\n}", "Body "},
      {"nothing below", Pick("Lamp") + "choose clst Lamp\npress achb {\nok\n}", "Lamp "},
      {"none left", Pick("Lamp") + "choose clst #0\npress dbtn", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Rows(row.fAnswers), row.fRows) << row.fLabel;
  }
  EXPECT_EQ(Do("chai"_id, "ok"), "done") << "no link at all";
  EXPECT_EQ(Modifiers(fBody) + Modifiers(fLamp), "");
}

TEST_F(ChainDialog, LinksAreLaidInTheOrderOfTheRows) {
  const std::string chain = Pick("Body", "set mval 1") + "choose clst Body\npress achb {\nset mval 5\nok\n}\n" +
                            "choose clst Finger\npress dbtn\n";
  for (const bool followsFirst : {false, true}) {
    ASSERT_EQ(Do("chai"_id, chain + (followsFirst ? "set cgrp on\nok" : "ok")), "done");
    EXPECT_EQ(Modifiers(fArm), followsFirst ? "fQLX fQLX " : "fQLX ") << "behind what stood there";
    const std::size_t number = followsFirst ? 1 : 0;
    EXPECT_EQ(FieldOf(fBody, "fSourceName", number), "");
    EXPECT_EQ(FieldOf(fArm, "fSourceName", number), "Body");
    EXPECT_EQ(FieldOf(fHand, "fSourceName", number), followsFirst ? "Body" : "Arm");
    EXPECT_EQ(FieldOf(fBody, "fModifyValue", number) + FieldOf(fHand, "fModifyValue", number), "15");
  }
  EXPECT_EQ(Modifiers(fFinger), "");
}

class ExplorerDialog : public PluginCommandTest {
 protected:
  ExplorerDialog() {
    fArm.SetValue(Channel::kPositionX, 10);
    fHand.SetValue(Channel::kPositionX, 2);
    SelectOnly({&fHand, &fLamp});
  }
};

TEST_F(ExplorerDialog, ShowsWhatIsChosenAndSetsIt) {
  const struct {
    const char* fLabel;
    const char* fAnswers;
    const char* fNow;
    const char* fNew;
    real32 fX;
  } rows[] = {
      {"a row", "choose plst \"Global X Position\"", "12", "12", 2},
      {"a number alone", "choose plst \"Global X Position\"\nset nVal 20", "12", "20", 2},
      {"in the scene", "choose plst \"Global X Position\"\nset nVal 20\npress upbn", "20", "20", 10},
      {"of its own", "choose plst \"Position X\"\nset nVal 0.5\npress upbn", "0.5", "0.5", 0.5},
      {"nothing chosen", "set nVal 20\npress upbn", "0", "20", 2},
      {"cancelled, and set all the same", "choose plst \"Global X Position\"\nset nVal 13\npress upbn", "13", "13", 3},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    fHand.SetValue(Channel::kPositionX, 2);
    fScene->Evaluate(0);
    const bool isCancelled = std::string(row.fLabel).starts_with("cancelled");
    EXPECT_EQ(Do("prex"_id, std::string(row.fAnswers) + (isCancelled ? "\ncancel" : "\nok")), "done");
    EXPECT_EQ(Screen("cVal") + " " + Screen("nVal"), std::string(row.fNow) + " " + row.fNew);
    EXPECT_FLOAT_EQ(fHand.GetValue(Channel::kPositionX), row.fX);
  }
  EXPECT_NE(Do("prex"_id, "set cVal 3\nok").find("is shown only and cannot be changed"), std::string::npos);
}

}  // namespace
}  // namespace qlx::host
