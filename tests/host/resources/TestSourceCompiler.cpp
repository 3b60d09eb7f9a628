#include <gtest/gtest.h>

#include "ResourceTexts.h"
#include "resources/ResourceCodec.h"

namespace qlx::host {
namespace {

// A class, its map and its panel, with the given lines in the panel's group: they stand in line 3.
std::string WithPanel(const std::string& inLines, const std::string& inFields = "bool fA re32 fB hidden") {
  return "modifier M 'mmmm' { class \"00000000-0000-0000-0000-000000000001\" resource 7 label \"L\" help \"H\" }\n"
         "panel 7 \"P\" { group {\n" +
         inLines + "\n} } parameters 'mmmm' { " + inFields + " }";
}

TEST(SourceCompiler, TakesEveryPropertyOfAControl) {
  Source source;
  ParseSource("a.res", R"(
    # a comment
    panel 7 "P" { group "G" columns 3 {
      list 'list' "\"L\" \\ ä" items "one" "two"
      pane 'pane' "Pane" of 'list' row 4 same-row help "Help" {
        number 'numb' "N" range -1.5 2e1 default 0.5 read-only
        radio 'radA' of 'grou' radio 'radB' of 'grou' default 1
      } } })",
              source);
  CheckSource(source);
  const ControlDescription& root = source.fParts[0].fPart.fRoot;
  EXPECT_EQ(root.fColumns, 3);
  const ControlDescription& list = root.fChildren[0];
  EXPECT_EQ(list.fLabel, "\"L\" \\ \u00e4");
  EXPECT_EQ(list.fItems, (std::vector<std::string>{"one", "two"}));
  const ControlDescription& pane = root.fChildren[1];
  EXPECT_EQ(pane.fPaneList, "list"_id);
  EXPECT_EQ(pane.fPaneRow, 4);
  EXPECT_TRUE(pane.fSameRow);
  EXPECT_EQ(pane.fHelp, "Help");
  const ControlDescription& number = pane.fChildren[0];
  EXPECT_TRUE(number.fReadOnly);
  EXPECT_EQ(number.fMinimum, -1.5f);
  EXPECT_EQ(number.fMaximum, 20.0f);
  EXPECT_EQ(number.fDefault, 0.5f);
  EXPECT_EQ(pane.fChildren[2].fRadioGroup, "grou"_id);
}

TEST(SourceCompiler, ErrorsNameThePlaceAndWhatWasExpected) {
  const std::string deep = [] {
    std::string text;
    for (int i = 0; i < 17; ++i) {
      text += "group { ";
    }
    return "panel 1 \"P\" {\n" + text;
  }();
  const struct {
    std::string fText;
    std::string fProblem;
  } kRows[] = {
      {"\n  widget",
       "a.res:2:3: expected modifier, command, part, panel, dialog or parameters, found the word \"widget\""},
      {"panel \"P\"", "a.res:1:7: expected the number of a resource, found the text \"P\""},
      {"panel 1.5", "a.res:1:7: the number of a resource is a whole number from 1 to 32767"},
      {"panel 40000", "a.res:1:7: the number of a resource is a whole number from 1 to 32767"},
      {"panel 1 2", "a.res:1:9: expected a label in double quotes, found the number 2"},
      {"panel 1 \"P\" {\n}", "a.res:2:1: expected a kind of control, such as group, check or button, found }"},
      {"panel 1 \"P\" { group group }",
       "a.res:1:21: expected } after the one control that holds all others, found the word \"group\""},
      {"panel 1 \"P\" { group",
       "a.res:1:20: expected } after the one control that holds all others, found the end of the file"},
      {"panel 1 \"ä\" { button 'b' }", "a.res:1:22: an id is four plain characters in single quotes, such as 'cset'"},
      {"panel 1 \"P\" { button 'butt", "a.res:1:22: an id is four plain characters in single quotes, such as 'cset'"},
      {"panel 1 \"P\n\"", "a.res:1:9: this text has no \" at its end, which stands in the same line"},
      {"panel 1 \"P\\n\"", "a.res:1:12: after a \\ stands \" or \\"},
      {"panel 1 \"P\" { number 'numb' default 1x }", "a.res:1:37: \"1x\" is no number"},
      {"panel 1 \"P\" { number 'numb' default 1e99 }", "a.res:1:37: \"1e99\" is no number"},
      {"panel 1 \"P\" { number 'numb' range 2 1 }",
       "a.res:1:29: a range goes from the smaller number to the larger one"},
      {"panel 1 \"P\" { button 'butt' default 1 }",
       "a.res:1:29: \"default\" is of switches and numbers, and this is a button"},
      {"panel 1 \"P\" { check 'chck' of 'grou' }", "a.res:1:28: \"of\" is of radios and panes, and this is a check"},
      {"panel 1 \"P\" { check 'chck' {", "a.res:1:28: a check has no controls in it"},
      {"panel 1 \"P\" { group columns 13 }", "a.res:1:29: the width in columns is a whole number from 1 to 12"},
      {deep, "a.res:2:129: controls in each other, more than 16 deep"},
      {"modifier M 'mmmm' { class \"1\" }",
       "a.res:1:21: a class id has the form \"00000000-0000-0000-0000-000000000000\", with digits 0 to 9 and A to F"},
      {"modifier M 'mmmm' { label \"L\"\n color }",
       "a.res:2:2: expected class, resource, label, help or }, found the word \"color\""},
      {"parameters 'mmmm' { re64 fA }",
       "a.res:1:21: expected the type of a field (bool, in32, re32, VEC3, s255 or sdyn), found the word \"re64\""},
      {"panel 1 \"\xC3\"", "a.res:1:10: this is not UTF-8"},
      {"panel 1 \"a\x80\nb", "a.res:1:11: this is not UTF-8"},
      {"panel 1 %", "a.res:1:9: no word, id, text or number begins with \"%\""},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(ProblemOfSource(row.fText), row.fProblem);
  }
}

TEST(SourceCompiler, RefusesWhatBreaksARule) {
  const std::string kTaken = "check 'a   ' field fA";
  const std::string kClass =
      "modifier N 'nnnn' { class \"00000000-0000-0000-0000-000000000001\" label \"L\" help \"H\" }\n";
  const struct {
    const char* fLabel;
    std::string fText;
    std::string fProblem;
  } kRows[] = {
      {"nothing wrong", WithPanel(kTaken), "taken"},
      {"two ids", WithPanel(kTaken + "\nbutton 'a   '"),
       "a.res:4:1: a control 'a   ' is there already, in a.res line 3"},
      {"no id", WithPanel(kTaken + " button \"B\""), "a.res:3:23: a button needs an id in single quotes"},
      {"no id of a value", WithPanel("check field fA"), "a.res:3:1: a check needs an id in single quotes"},
      {"a long label", WithPanel(kTaken + " button 'b   ' \"" + std::string(64, 'x') + "\""),
       "a.res:3:23: the label has 64 bytes, and 63 are the most"},
      {"the longest label", WithPanel(kTaken + " button 'b   ' \"" + std::string(63, 'x') + "\""), "taken"},
      {"a long help", WithPanel(kTaken + " help \"" + std::string(256, 'x') + "\""),
       "a.res:3:1: the help has 256 bytes, and 255 are the most"},
      {"a radio by itself", WithPanel(kTaken + " radio 'r   ' of 'grou'"),
       "a.res:3:23: the radio group 'grou' has this one member alone"},
      {"a radio without a group", WithPanel(kTaken + " radio 'r   '"),
       "a.res:3:23: a radio names its group, as in: of 'comb'"},
      {"a pane without a list", WithPanel(kTaken + " pane 'p   '"),
       "a.res:3:23: a pane names the list whose row it is, as in: of 'clis' row 0"},
      {"a pane of a missing list", WithPanel(kTaken + " pane 'p   ' of 'list' tree 'list'"),
       "a.res:3:23: this pane's list 'list' is not in this panel"},
      {"an unknown field", WithPanel(kTaken + " check 'b   ' field fX"), "a.res:3:42: 'mmmm' has no field fX"},
      {"a field of another type", WithPanel("number 'n   ' field fA"),
       "a.res:3:21: the field fA is 'bool', which a number does not show"},
      {"a text by a number", WithPanel("number 'n   ' field fA", "sdyn fA"),
       "a.res:3:21: the field fA is 'sdyn', which a number does not show"},
      {"a field twice", WithPanel(kTaken + " check 'b   ' field fA"),
       "a.res:3:42: the control 'a   ' shows fA already"},
      {"a field that is not shown", WithPanel("label \"L\""),
       "a.res:4:25: no control shows fA: bind one, or write: hidden"},
      {"a hidden field that is", WithPanel(kTaken, "bool fA hidden"),
       "a.res:4:25: fA is said to be hidden, and 'a   ' shows it"},
      {"a field in a dialog", "dialog 8 \"D\" { check 'a   ' field fA }",
       "a.res:1:35: dialog 8 shows no fields: no class with a parameter map has it"},
      {"two fields", WithPanel(kTaken, "bool fA bool fA"), "a.res:4:33: a field fA is there already, in a.res line 4"},
      {"two panels", "panel 1 \"P\" { group } panel 1 \"P\" { group }",
       "a.res:1:23: a panel 1 is there already, in a.res line 1"},
      {"a panel and a dialog", "panel 1 \"P\" { group } dialog 1 \"P\" { group }", "taken"},
      {"one class id twice", WithPanel(kTaken) + "\n" + kClass, "a.res:5:1: N has the class id of M"},
      {"no such panel",
       "modifier N 'nnnn' { class \"00000000-0000-0000-0000-000000000001\" resource 9 label \"L\" help \"H\" }",
       "a.res:1:1: no panel or dialog 9 is there for N"},
      {"no label", "modifier N 'nnnn' { class \"00000000-0000-0000-0000-000000000001\" help \"H\" }",
       "a.res:1:1: N has no label or no help"},
      {"no class id", "modifier N 'nnnn' { label \"L\" help \"H\" }", "a.res:1:1: N has no class id"},
      {"a map of nobody", "parameters 'pppp' { }", "a.res:1:1: no class 'pppp' is there"},
      {"code of nobody", "dialog 8 \"D\" { code X group }", "a.res:1:21: no part X is among the classes"},
      {"a modifier for code", kClass + "dialog 8 \"D\" { code N group }", "a.res:2:21: no part N is among the classes"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(ProblemOfSource(row.fText), row.fProblem) << row.fLabel;
  }
}

TEST(SourceCompiler, BindsControlsToFieldsAndCodeToDialogs) {
  Source source;
  ParseSource("a.res", WithPanel("check 'a   ' field fA"), source);
  ParseSource("b.res",
              "part P 'pppp' { class \"00000000-0000-0000-0000-0000000000FF\" label \"L\" help \"H\" }"
              "dialog 8 \"D\" { code P group }",
              source);
  CheckSource(source);
  EXPECT_EQ(source.fMaps[0].fMap.fFields[0].fControl, "a   "_id);
  EXPECT_EQ(source.fMaps[0].fMap.fFields[1].fControl, 0U);
  EXPECT_EQ(FindPart(source, kDialogType, 8)->fExtension, "00000000-0000-0000-0000-0000000000FF"_guid);
}

}  // namespace
}  // namespace qlx::host
