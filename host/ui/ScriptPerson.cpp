#include "ScriptPerson.h"

#include <fmt/format.h>

#include <iterator>

#include "Hand.h"
#include "model/ClosestNames.h"
#include "model/Element.h"

namespace qlx::host {

namespace {

struct FormAction {
  std::string_view fWord;
  std::size_t fCount;
  const char* fForm;
  void (*fDo)(const Hand& inHand, const std::vector<std::string>& inWords);
};

using Words = std::vector<std::string>;

constexpr FormAction kFormActions[] = {
    {"set", 3, "set CONTROL VALUE", [](const Hand& hand, const Words& words) { hand.Set(words[1], words[2]); }},
    {"press", 2, "press CONTROL", [](const Hand& hand, const Words& words) { hand.Press(words[1]); }},
    {"choose", 3, "choose CONTROL ROW", [](const Hand& hand, const Words& words) { hand.Choose(words[1], words[2]); }},
    {"open", 3, "open CONTROL ROW",
     [](const Hand& hand, const Words& words) { hand.Expand(words[1], words[2], true); }},
    {"fold", 3, "fold CONTROL ROW",
     [](const Hand& hand, const Words& words) { hand.Expand(words[1], words[2], false); }},
};

const FormAction* FindFormAction(const std::string& inWord) {
  for (const FormAction& action : kFormActions) {
    if (action.fWord == inWord) {
      return &action;
    }
  }
  return nullptr;
}

bool IsCancel(const ScriptStep& inStep) {
  return inStep.fWords.size() == 1 && inStep.fWords[0] == "cancel";
}

}  // namespace

void ScriptPerson::Fail(const ScriptStep& inStep, const std::string& inProblem) const {
  throw ScriptError(fScript, inStep.fLine, inProblem);
}

void ScriptPerson::NeedWords(const ScriptStep& inStep, std::size_t inCount, const char* inForm) const {
  if (inStep.fWords.size() != inCount) {
    Fail(inStep, fmt::format("\"{}\" is not complete or says too much; it is written: {}", TextOfStep(inStep), inForm));
  }
}

void ScriptPerson::Perform(const ScriptStep& inStep, const std::function<void()>& inDo) {
  fFrames.push_back({&inStep, 0});
  const std::size_t depth = fFrames.size();
  try {
    inDo();
  } catch (const ScriptError&) {
    fFrames.resize(depth - 1);
    throw;
  } catch (const UserError& problem) {
    fFrames.resize(depth - 1);
    Fail(inStep, problem.what());
  }
  const std::size_t next = fFrames.back().fNext;
  fFrames.pop_back();
  if (next < inStep.fBlock.size()) {
    const ScriptStep& left = inStep.fBlock[next];
    Fail(left, fmt::format("nothing asks for \"{}\": \"{}\" in line {} asked {}", TextOfStep(left), TextOfStep(inStep),
                           inStep.fLine, next == 0 ? "nothing" : "no more"));
  }
}

bool ScriptPerson::IsFormStep(const ScriptStep& inStep) {
  return FindFormAction(inStep.fWords.front()) != nullptr;
}

bool ScriptPerson::UseForm(Form& ioForm, const ScriptStep& inStep) {
  const FormAction* const action = FindFormAction(inStep.fWords.front());
  if (!action) {
    return false;
  }
  NeedWords(inStep, action->fCount, action->fForm);
  Perform(inStep, [&] { action->fDo(Hand(ioForm), inStep.fWords); });
  return true;
}

const ScriptStep& ScriptPerson::NextAnswer(const std::string& inAsked, const char* inAnswers) {
  if (fFrames.empty()) {
    throw UserError(fScript, inAsked + " and no step of the script answers");
  }
  Frame& frame = fFrames.back();
  if (frame.fNext == frame.fStep->fBlock.size()) {
    Fail(*frame.fStep, fmt::format("\"{}\" {}: answer in {} with {}", TextOfStep(*frame.fStep), inAsked,
                                   frame.fStep->fHasBlock ? "its block" : "a block, { ... },", inAnswers));
  }
  return frame.fStep->fBlock[frame.fNext++];
}

bool ScriptPerson::RunDialog(Form& ioDialog) {
  const std::string asked = fmt::format("opens the dialog \"{}\"", ioDialog.GetLabel());
  for (;;) {
    const ScriptStep& step = NextAnswer(asked, "what to do there, and ok or cancel at the end");
    const bool isOK = step.fWords.front() == "ok";
    if (isOK || step.fWords.front() == "cancel") {
      NeedWords(step, 1, isOK ? "ok" : "cancel");
      return isOK;
    }
    if (!UseForm(ioDialog, step)) {
      Fail(step,
           fmt::format("\"{}\" is nothing to do in the dialog \"{}\": that is set, press, choose, open, fold, ok or "
                       "cancel",
                       TextOfStep(step), ioDialog.GetLabel()));
    }
  }
}

Element* ScriptPerson::ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                                     const std::vector<Element*>& inCandidates) {
  const std::string asked = fmt::format("asks for an element (\"{}\", \"{}\")", inTitle, inPrompt);
  const ScriptStep& step = NextAnswer(asked, "pick ELEMENT or cancel");
  if (IsCancel(step)) {
    return nullptr;
  }
  if (step.fWords.front() != "pick") {
    Fail(step, fmt::format("\"{}\" is no answer to what {}: that is pick ELEMENT or cancel", TextOfStep(step), asked));
  }
  NeedWords(step, 2, "pick ELEMENT");
  std::vector<std::string> names;
  for (Element* candidate : inCandidates) {
    names.push_back(candidate->GetNameText());
    if (names.back() == step.fWords[1]) {
      return candidate;
    }
  }
  Fail(step, fmt::format("there is no element \"{}\" to pick{}", step.fWords[1], ClosestText(step.fWords[1], names)));
}

std::optional<std::string> ScriptPerson::ChooseFile(FileChoice inChoice) {
  const char* const asked = inChoice == FileChoice::kOpen ? "asks for a file to open" : "asks for a file to save";
  const ScriptStep& step = NextAnswer(asked, "file PATH or cancel");
  if (IsCancel(step)) {
    return std::nullopt;
  }
  if (step.fWords.front() != "file") {
    Fail(step, fmt::format("\"{}\" is no answer to what {}: that is file PATH or cancel", TextOfStep(step), asked));
  }
  NeedWords(step, 2, "file PATH");
  const std::u8string path(step.fWords[1].begin(), step.fWords[1].end());
  const std::u8string whole = (fFolder / std::filesystem::path(path)).u8string();
  return std::string(whole.begin(), whole.end());
}

int32 ScriptPerson::AnswerAlert(const Alert& inAlert) {
  std::string buttons;
  for (const std::string& button : inAlert.fButtons) {
    buttons += fmt::format("{}\"{}\"", buttons.empty() ? "" : ", ", button);
  }
  const ScriptStep& step = NextAnswer(fmt::format("shows an alert: {}", inAlert.fText), "answer BUTTON");
  if (step.fWords.front() != "answer" || step.fWords.size() != 2) {
    Fail(step, fmt::format("\"{}\" is no answer to the alert \"{}\": that is answer BUTTON, of {}", TextOfStep(step),
                           inAlert.fText, buttons));
  }
  for (std::size_t i = 0; i < inAlert.fButtons.size(); ++i) {
    if (step.fWords[1] == inAlert.fButtons[i] || step.fWords[1] == std::to_string(i + 1)) {
      return static_cast<int32>(i + 1);
    }
  }
  Fail(step, fmt::format("the alert \"{}\" has no button \"{}\"; it has {}", inAlert.fText, step.fWords[1], buttons));
}

}  // namespace qlx::host
