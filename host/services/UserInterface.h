// What the services of the user interface share: the person, and the scene that is worked on.
#pragma once

#include <exception>
#include <vector>

#include "ui/Person.h"

namespace qlx::host {

class ModalDialog;
class Scene;

class UserInterface {
 public:
  explicit UserInterface(Diagnostics& inDiagnostics) : fDiagnostics(inDiagnostics), fNobody(inDiagnostics) {}
  ~UserInterface() { CloseDialogs(); }
  UserInterface(const UserInterface&) = delete;
  UserInterface& operator=(const UserInterface&) = delete;

  Diagnostics& GetDiagnostics() const { return fDiagnostics; }
  // Null: the one who cancels. A person is taken back before it ends.
  void SetPerson(Person* inPerson) { fPerson = inPerson; }
  // Whose elements a person can choose from; null for none. A scene is taken back before it closes.
  void SetScene(Scene* inScene) { fScene = inScene; }
  Scene* GetScene() const { return fScene; }

  // Asks the person, on behalf of the plug-in: `inAsk(person)` answers. What it throws must not pass through the
  // plug-in: it waits for `ThrowProblem`, the answer is `inCancelled`, and so is every further one until then.
  template <class Answer, class Ask>
  Answer AskPerson(Answer inCancelled, const Ask& inAsk) {
    if (fProblem) {
      return inCancelled;
    }
    try {
      return inAsk(fPerson ? *fPerson : fNobody);
    } catch (...) {
      fProblem = std::current_exception();
      return inCancelled;
    }
  }
  // Throws what waits, once. To be called when the plug-in has returned.
  void ThrowProblem();

  // Resource files that components made current, innermost last.
  struct Context {
    uint32 fToken;
    bool fHasForms;  // the file is that of the plug-in
  };
  std::vector<Context> fContexts;

  // Open dialogs, for those that a component forgets to close.
  void DialogOpened(ModalDialog& inDialog) { fDialogs.push_back(&inDialog); }
  void DialogClosed(const ModalDialog& inDialog);
  void CloseDialogs();

 private:
  Diagnostics& fDiagnostics;
  CancellingPerson fNobody;
  Person* fPerson = nullptr;
  Scene* fScene = nullptr;
  std::exception_ptr fProblem;
  std::vector<ModalDialog*> fDialogs;
};

// What a row's item of the plug-in answers; false when it fails.
bool AskIfSelectable(IMFHierarchyItem& inItem);

}  // namespace qlx::host
