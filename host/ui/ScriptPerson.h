// The person of a script: uses a form as the steps say, and answers from the blocks behind them.
//
// On a form:      set CONTROL VALUE, press CONTROL, choose CONTROL ROW, open CONTROL ROW, fold CONTROL ROW
// In a dialog:    the same, and ok or cancel at the end
// A chooser:      pick ELEMENT, or cancel
// A file:         file PATH, or cancel; a path that is not absolute begins at the script's folder
// An alert:       answer BUTTON, by its text or its number from 1
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "Person.h"
#include "Script.h"

namespace qlx::host {

// Every problem is a `ScriptError` at the step that it is of. What is asked and not answered is one, and so is an
// answer that nothing asks for.
class ScriptPerson final : public Person {
 public:
  // `inScript` is the script's name in messages.
  ScriptPerson(std::string inScript, std::filesystem::path inFolder)
      : fScript(std::move(inScript)), fFolder(std::move(inFolder)) {}

  // Does something on behalf of a step, whose block answers what is asked meanwhile.
  void Perform(const ScriptStep& inStep, const std::function<void()>& inDo);
  static bool IsFormStep(const ScriptStep& inStep);
  // Uses the form as the step says. False, with nothing done, for a step that is none on a form.
  bool UseForm(Form& ioForm, const ScriptStep& inStep);
  // Throws unless so many words stand there; `inForm` is how the step is written.
  void NeedWords(const ScriptStep& inStep, std::size_t inCount, const char* inForm) const;
  [[noreturn]] void Fail(const ScriptStep& inStep, const std::string& inProblem) const;

  // Person
  bool RunDialog(Form& ioDialog) override;
  Element* ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                         const std::vector<Element*>& inCandidates) override;
  std::optional<std::string> ChooseFile(FileChoice inChoice) override;
  int32 AnswerAlert(const Alert& inAlert) override;

 private:
  struct Frame {
    const ScriptStep* fStep;
    std::size_t fNext;
  };
  const ScriptStep& NextAnswer(const std::string& inAsked, const char* inAnswers);

  std::string fScript;
  std::filesystem::path fFolder;
  std::vector<Frame> fFrames;
};

}  // namespace qlx::host
