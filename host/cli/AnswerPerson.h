// The person of a command line: answers what a command asks from a list, in its order.
//
//   ID=VALUE   sets a control of the dialog that is open, or chooses one of its rows; a label may stand for the id
//   ID         presses a button
//   ok cancel  closes the dialog; behind the last answer that is ok
//   pick=NAME  an element, where one is asked for; or cancel
//   file=PATH  a file; or cancel
//   button=TEXT  of an alert, or its number from 1; an alert without an answer is a warning, and gets its default
#pragma once

#include <string>
#include <vector>

#include "ui/Person.h"

namespace qlx::host {

// Every problem is a `UserError` at the answer that it is of.
class AnswerPerson final : public Person {
 public:
  AnswerPerson(std::vector<std::string> inAnswers, Diagnostics& inDiagnostics)
      : fAnswers(std::move(inAnswers)), fDiagnostics(inDiagnostics) {}
  // Refuses answers that nothing asked for.
  void CheckThatAllWereAsked() const;

  // Person
  bool RunDialog(Form& ioDialog) override;
  Element* ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                         const std::vector<Element*>& inCandidates) override;
  std::optional<std::string> ChooseFile(FileChoice inChoice) override;
  int32 AnswerAlert(const Alert& inAlert) override;

 private:
  class Refused;
  bool TakeWord(const char* inWord);
  std::optional<std::string> Take(const std::string& inName);
  [[noreturn]] void Lack(const std::string& inAsked, const char* inAnswers) const;

  std::vector<std::string> fAnswers;
  std::size_t fNext = 0;
  Diagnostics& fDiagnostics;
};

}  // namespace qlx::host
