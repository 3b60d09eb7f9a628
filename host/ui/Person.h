// The person behind the user interface: whoever answers what a dialog, a chooser or an alert asks.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Form.h"

namespace qlx::host {

class Diagnostics;
class Element;

// A message with one to three buttons.
struct Alert {
  std::string fText;
  std::vector<std::string> fButtons;
  int32 fDefault = 1;  // the button that Enter uses, from 1
};

enum class FileChoice : uint8 { kOpen, kSave };

// Every operation ends when the person has answered. What one throws ends what the plug-in is doing as a person who
// cancels does, and then reaches whoever made the plug-in do it.
class Person {
 public:
  virtual ~Person() = default;

  // A dialog is open. The person works on its controls as `Hand` does, and closes it: true for OK.
  virtual bool RunDialog(Form& ioDialog) = 0;
  // One of the candidates, or null.
  virtual Element* ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                                 const std::vector<Element*>& inCandidates) = 0;
  // A UTF-8 path, or nothing.
  virtual std::optional<std::string> ChooseFile(FileChoice inChoice) = 0;
  // The button, from 1.
  virtual int32 AnswerAlert(const Alert& inAlert) = 0;
};

// Cancels everything; alerts go to the diagnostics.
class CancellingPerson : public Person {
 public:
  explicit CancellingPerson(Diagnostics& inDiagnostics) : fDiagnostics(inDiagnostics) {}
  bool RunDialog(Form& ioDialog) override;
  Element* ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                         const std::vector<Element*>& inCandidates) override;
  std::optional<std::string> ChooseFile(FileChoice inChoice) override;
  int32 AnswerAlert(const Alert& inAlert) override;

 private:
  Diagnostics& fDiagnostics;
};

}  // namespace qlx::host
