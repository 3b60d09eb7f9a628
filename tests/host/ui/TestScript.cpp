// Scripts: how they are written, and the person who does what they say.
#include <gtest/gtest.h>

#include "Describe.h"
#include "ProblemOf.h"
#include "model/Scene.h"
#include "ui/ScriptPerson.h"

namespace qlx::host::test {
namespace {

std::string Written(const std::vector<ScriptStep>& inSteps) {
  std::string text;
  for (const ScriptStep& step : inSteps) {
    text += (text.empty() ? "" : "; ") + std::to_string(step.fLine) + ":";
    for (const std::string& word : step.fWords) {
      text += "<" + word + ">";
    }
    text += step.fHasBlock ? "{" + Written(step.fBlock) + "}" : "";
  }
  return text;
}

TEST(Script, IsReadWordByWord) {
  struct Row {
    const char* fLabel;
    const char* fText;
    const char* fRead;  // or the problem
  };
  const std::string deep = [] {
    std::string text;
    for (int i = 0; i < 33; ++i) {
      text += "a {\n";
    }
    return text;
  }();
  const Row rows[] = {
      {"nothing", "", ""},
      {"comments and blank lines", "# one\n\n   # two\nset a 1 # three\nset a 2 #", "4:<set><a><1>; 5:<set><a><2>"},
      {"the number of a row is no comment", "choose a #3\n#3", "1:<choose><a><#3>"},
      {"quotes", "set \"a b\" \"\\\"\\\\ #\"", "1:<set><a b><\"\\ #>"},
      {"an empty text", "set a \"\"", "1:<set><a><>"},
      {"line ends of another system", "set a 1\r\nok\r\n", "1:<set><a><1>; 2:<ok>"},
      {"blocks", "press a {\n  press b {\n    ok\n  }\n  ok\n}\nundo",
       "1:<press><a>{2:<press><b>{3:<ok>}; 5:<ok>}; 7:<undo>"},
      {"an empty block", "press a {\n}", "1:<press><a>{}"},
      {"a word with a brace", "set a {b}", "1:<set><a><{b}>"},
      {"a text that does not end", "\nset a \"b", "s, line 2: a quoted text does not end on its line"},
      {"a text that ends with its escape", "set a \"b\\", "s, line 1: a quoted text does not end on its line"},
      {"a block that is not closed", "a {\nb {\n}", "s, line 1: its { is never closed"},
      {"a } alone", "a\n}", "s, line 2: a } without a { in front of it"},
      {"a { alone", "a\n{", "s, line 2: a { stands behind an action, on its line"},
      {"a } behind an action", "a {\nok }", "s, line 2: a } stands on a line of its own"},
      {"something behind a {", "a { ok", "s, line 1: nothing may stand behind a brace on its line"},
      {"too deep", deep.c_str(), "s, line 33: blocks are at most 32 deep"},
  };
  for (const Row& row : rows) {
    std::string read;
    const std::string problem = qlx::test::ProblemOf([&] { read = Written(ParseScript("s", row.fText)); });
    EXPECT_EQ(read + problem, row.fRead) << row.fLabel;
  }
  EXPECT_EQ(TextOfStep(ParseScript("s", "set \"a b\" \"\\\"\" \"\"")[0]), "set \"a b\" \"\\\"\" \"\"");
}

// Stands for a plug-in: what a button asks of the person.
class AskingListener final : public FormListener {
 public:
  AskingListener(ScriptPerson& inPerson, const std::vector<Element*>& inElements)
      : fPerson(inPerson), fElements(inElements) {}

  void Receive(uint32 /*inMessage*/, Part& inSource, void* /*inData*/) override {
    switch (inSource.GetPartId()) {
      case "dlog"_id:
        fDialog->SetListener(this);
        fAnswers += fPerson.RunDialog(*fDialog) ? "OK " : "cancelled ";
        fDialog->SetListener(nullptr);
        break;
      case "pick"_id: {
        const Element* const chosen = fPerson.ChooseElement("Title", "Prompt", fElements);
        fAnswers += (chosen ? chosen->GetNameText() : "none") + " ";
        break;
      }
      case "file"_id: {
        const std::optional<std::string> path = fPerson.ChooseFile(FileChoice::kSave);
        fAnswers += (path ? std::filesystem::path(*path).generic_string() : "none") + " ";
        break;
      }
      case "alrt"_id:
        fAnswers += std::to_string(fPerson.AnswerAlert({"It is damaged", {"Stop", "Go on"}, 1})) + " ";
        break;
      default:
        break;
    }
  }
  bool IsSelectable(IMFHierarchyItem& /*inItem*/) override { return true; }

  std::string fAnswers;

 private:
  static ControlDescription Buttons() {
    return Describe(
        ControlKind::kGroup, 0, "",
        {Describe(ControlKind::kButton, "pick"_id, "Pick"), Describe(ControlKind::kInteger, "numb"_id, "N")});
  }

  ScriptPerson& fPerson;
  std::vector<Element*> fElements;
  TMCCountedPtr<Form> fDialog = MakeForm(Buttons(), kDialogControlUsed);
};

class ScriptPersonTest : public testing::Test {
 protected:
  ~ScriptPersonTest() override { fScene->Close(); }

  // What was answered, or the problem.
  std::string Run(const char* inScript) {
    ScriptPerson person("s", "folder");
    AskingListener listener(person, {&fArm});
    fForm->SetListener(&listener);
    std::string answer;
    const std::string problem = qlx::test::ProblemOf([&] {
      for (const ScriptStep& step : ParseScript("s", inScript)) {
        answer += person.UseForm(*fForm, step) ? "" : "no step ";
      }
    });
    fForm->SetListener(nullptr);
    return problem.empty() ? answer + listener.fAnswers : problem;
  }

  Diagnostics fDiagnostics;
  TMCCountedPtr<Scene> fScene = MakeHosted<Scene>(fDiagnostics);
  Element& fArm = fScene->AddElement(fScene->GetRootElement(), "Arm");
  TMCCountedPtr<Form> fForm = MakeForm(
      Describe(ControlKind::kGroup, 0, "",
               {Describe(ControlKind::kButton, "dlog"_id, "Dialog"), Describe(ControlKind::kButton, "pick"_id, "Pick"),
                Describe(ControlKind::kButton, "file"_id, "File"), Describe(ControlKind::kButton, "alrt"_id, "Alert"),
                Describe(ControlKind::kCheckBox, "chck"_id, "Check")}));
};

TEST_F(ScriptPersonTest, AnswersWhatIsAskedOrSaysWhichStepIsWrong) {
  struct Row {
    const char* fLabel;
    const char* fScript;
    const char* fAnswer;
  };
  const Row rows[] = {
      {"nothing is asked", "set chck on\nfly", "no step "},
      {"OK", "press dlog {\nset numb 4\nok\n}", "OK "},
      {"cancel", "press dlog {\ncancel\n}", "cancelled "},
      {"a dialog's button asks", "press dlog {\npress pick {\npick Arm\n}\nok\n}", "Arm OK "},
      {"an element", "press pick {\npick Arm\n}", "Arm "},
      {"no element", "press pick {\ncancel\n}", "none "},
      {"a file beside the script", "press file {\nfile a.txt\n}", "folder/a.txt "},
      {"no file", "press file {\ncancel\n}", "none "},
      {"an alert, by text", "press alrt {\nanswer \"Go on\"\n}", "2 "},
      {"an alert, by number", "press alrt {\nanswer 1\n}", "1 "},

      {"no block", "press dlog",
       "s, line 1: \"press dlog\" opens the dialog \"Form\": answer in a block, { ... }, with what to do there, and ok "
       "or cancel at the end"},
      {"no OK", "press dlog {\nset numb 4\n}",
       "s, line 1: \"press dlog\" opens the dialog \"Form\": answer in its block with what to do there, and ok or "
       "cancel at the end"},
      {"too many answers", "press pick {\npick Arm\nok\n}",
       "s, line 3: nothing asks for \"ok\": \"press pick\" in line 1 asked no more"},
      {"nothing is asked for answers", "press chck {\nok\n}",
       "s, line 2: nothing asks for \"ok\": \"press chck\" in line 1 asked nothing"},
      {"a wrong name inside", "press dlog {\npress pick {\npick Amr\n}\nok\n}",
       "s, line 3: there is no element \"Amr\" to pick; the closest is \"Arm\""},
      {"a wrong control inside", "press dlog {\nset colour 1\nok\n}",
       "s, line 2: \"Form\": there is no control \"colour\"; it has \"pick\", \"Pick\", \"numb\", \"N\""},
      {"a wrong value", "\nset chck maybe", "s, line 2: chck (\"Check\"): \"maybe\" is neither on nor off"},
      {"an element for a file", "press file {\npick Arm\n}",
       "s, line 2: \"pick Arm\" is no answer to what asks for a file to save: that is file PATH or cancel"},
      {"a file for an element", "press pick {\nfile a\n}",
       "s, line 2: \"file a\" is no answer to what asks for an element (\"Title\", \"Prompt\"): that is pick ELEMENT "
       "or cancel"},
      {"OK for an alert", "press alrt {\nok\n}",
       "s, line 2: \"ok\" is no answer to the alert \"It is damaged\": that is answer BUTTON, of \"Stop\", \"Go on\""},
      {"an alert nobody expects", "press alrt",
       "s, line 1: \"press alrt\" shows an alert: It is damaged: answer in a block, { ... }, with answer BUTTON"},
      {"no such button", "press alrt {\nanswer 3\n}",
       "s, line 2: the alert \"It is damaged\" has no button \"3\"; it has \"Stop\", \"Go on\""},
      {"nothing for a dialog", "press dlog {\nfly away\n}",
       "s, line 2: \"fly away\" is nothing to do in the dialog \"Form\": that is set, press, choose, open, fold, ok or "
       "cancel"},
      {"a word is missing", "set chck",
       "s, line 1: \"set chck\" is not complete or says too much; it is written: set CONTROL VALUE"},
      {"a word too many", "press dlog {\nok now\n}",
       "s, line 2: \"ok now\" is not complete or says too much; it is written: ok"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Run(row.fScript), row.fAnswer) << row.fLabel;
  }
}

}  // namespace
}  // namespace qlx::host::test
