// Makes a link as a person does: with the buttons and fields of its panel, and by answering its dialogs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "services/ModifierPanel.h"
#include "ui/Hand.h"
#include "ui/Person.h"

namespace qlx::host {

class LinkMaker final : private CancellingPerson {
 public:
  // Opens the panel of the modifier; the host asks this until it ends.
  LinkMaker(Host& inHost, PluginModifier& inLink);
  ~LinkMaker() override;

  // What is wrong is a `UserError` that begins with `inOption`, which asked for it.
  void Set(const std::string& inOption, const char* inControl, const std::string& inValue);
  void Press(const std::string& inOption, const char* inControl);
  // Presses a button and answers with the element of that name.
  void PickElement(const std::string& inOption, const char* inControl, Element& inElement);
  // Presses a button and answers the tree of values with the row of that path or label.
  void PickValue(const std::string& inOption, const char* inControl, const std::string& inPath);

  struct Entry {
    const char* fControl;
    std::string fValue;  // empty: press it
  };
  // Presses a button, fills in the dialog and answers OK.
  void FillDialog(const std::string& inOption, const char* inControl, const std::vector<Entry>& inEntries);

 private:
  void ShowPageOf(const char* inControl);
  void Do(const std::string& inOption, const char* inControl, const std::function<void()>& inAction);

  bool RunDialog(Form& ioDialog) override;
  Element* ChooseElement(const std::string& inTitle, const std::string& inPrompt,
                         const std::vector<Element*>& inCandidates) override;

  Host& fHost;
  ModifierPanel fPanel;
  Hand fHand;
  Element* fElement = nullptr;            // the answer to a chooser
  std::function<void(Form&)> fUseDialog;  // ... and to a dialog
  bool fHasAsked = false;
};

}  // namespace qlx::host
