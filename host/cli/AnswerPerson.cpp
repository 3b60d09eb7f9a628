#include "AnswerPerson.h"

#include <fmt/format.h>

#include "model/ClosestNames.h"
#include "model/Diagnostics.h"
#include "model/Element.h"
#include "ui/Hand.h"

namespace qlx::host {

class AnswerPerson::Refused final : public UserError {
 public:
  Refused(const std::string& inAnswer, const std::string& inProblem) : UserError("--answer " + inAnswer, inProblem) {}
};

bool AnswerPerson::TakeWord(const char* inWord) {
  const bool isNext = fNext < fAnswers.size() && fAnswers[fNext] == inWord;
  fNext += isNext ? 1 : 0;
  return isNext;
}

// The value of the next answer, where that has the name.
std::optional<std::string> AnswerPerson::Take(const std::string& inName) {
  if (fNext == fAnswers.size() || fAnswers[fNext].rfind(inName + "=", 0) != 0) {
    return std::nullopt;
  }
  return fAnswers[fNext++].substr(inName.size() + 1);
}

void AnswerPerson::Lack(const std::string& inAsked, const char* inAnswers) const {
  if (fNext < fAnswers.size()) {
    throw Refused(fAnswers[fNext], fmt::format("is no answer to what {}: that is {}", inAsked, inAnswers));
  }
  throw UserError("--answer", fmt::format("the command {}: answer with {}", inAsked, inAnswers));
}

void AnswerPerson::CheckThatAllWereAsked() const {
  if (fNext < fAnswers.size()) {
    throw Refused(fAnswers[fNext], "nothing asks for it");
  }
}

bool AnswerPerson::RunDialog(Form& ioDialog) {
  while (fNext < fAnswers.size()) {
    if (TakeWord("ok")) {
      return true;
    }
    if (TakeWord("cancel")) {
      return false;
    }
    const std::string answer = fAnswers[fNext++];
    const std::size_t equals = answer.find('=');
    try {
      const Hand hand(ioDialog);
      if (equals == std::string::npos) {
        hand.Press(answer);
      } else {
        hand.Set(answer.substr(0, equals), answer.substr(equals + 1));
      }
    } catch (const Refused&) {
      throw;
    } catch (const UserError& problem) {
      throw Refused(answer, problem.what());
    }
  }
  return true;
}

Element* AnswerPerson::ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                                     const std::vector<Element*>& inCandidates) {
  if (TakeWord("cancel")) {
    return nullptr;
  }
  const std::optional<std::string> name = Take("pick");
  if (!name) {
    Lack(fmt::format("asks for an element (\"{}\", \"{}\")", inTitle, inPrompt), "pick=NAME or cancel");
  }
  std::vector<std::string> names;
  for (Element* const candidate : inCandidates) {
    names.push_back(candidate->GetNameText());
    if (names.back() == *name) {
      return candidate;
    }
  }
  throw Refused("pick=" + *name, "there is no such element" + ClosestText(*name, names));
}

std::optional<std::string> AnswerPerson::ChooseFile(FileChoice inChoice) {
  if (TakeWord("cancel")) {
    return std::nullopt;
  }
  std::optional<std::string> path = Take("file");
  if (!path) {
    Lack(inChoice == FileChoice::kOpen ? "asks for a file to open" : "asks for a file to save", "file=PATH or cancel");
  }
  return path;
}

int32 AnswerPerson::AnswerAlert(const Alert& inAlert) {
  const std::optional<std::string> button = Take("button");
  if (!button) {
    fDiagnostics.Warn(inAlert.fText);
    return inAlert.fDefault;
  }
  for (std::size_t i = 0; i < inAlert.fButtons.size(); ++i) {
    if (*button == inAlert.fButtons[i] || *button == std::to_string(i + 1)) {
      return static_cast<int32>(i + 1);
    }
  }
  throw Refused("button=" + *button, fmt::format("the alert \"{}\" has no such button", inAlert.fText) +
                                         ClosestText(*button, inAlert.fButtons));
}

}  // namespace qlx::host
