#include "LinkMaker.h"

#include <fmt/format.h>

#include "PropertyRows.h"
#include "model/IDText.h"
#include "services/Host.h"
#include "services/UserInterface.h"

namespace qlx::host {

LinkMaker::LinkMaker(Host& inHost, PluginModifier& inLink)
    : CancellingPerson(inHost.GetDiagnostics()), fHost(inHost), fPanel(inHost, inLink), fHand(fPanel.GetForm()) {
  fHost.GetUser().SetPerson(this);
}

LinkMaker::~LinkMaker() {
  fHost.GetUser().SetPerson(nullptr);
}

// A person turns to the page that a control is on.
void LinkMaker::ShowPageOf(const char* inControl) {
  for (const Part* part = &fHand.Find(inControl); part != nullptr; part = part->GetParent()) {
    const ControlDescription& description = part->GetDescription();
    if (part->GetKind() == ControlKind::kPane) {
      fHand.Choose(TextFromID(description.fPaneList), fmt::format("#{}", description.fPaneRow));
    }
  }
}

void LinkMaker::Do(const std::string& inOption, const char* inControl, const std::function<void()>& inAction) {
  try {
    ShowPageOf(inControl);
    inAction();
  } catch (const UserError& error) {
    throw UserError(inOption, error.what());
  }
}

void LinkMaker::Set(const std::string& inOption, const char* inControl, const std::string& inValue) {
  Do(inOption, inControl, [&] { fHand.Set(inControl, inValue); });
}

void LinkMaker::Press(const std::string& inOption, const char* inControl) {
  fHasAsked = false;
  Do(inOption, inControl, [&] { fHand.Press(inControl); });
}

void LinkMaker::PickElement(const std::string& inOption, const char* inControl, Element& inElement) {
  fElement = &inElement;
  Press(inOption, inControl);
  fElement = nullptr;
}

void LinkMaker::PickValue(const std::string& inOption, const char* inControl, const std::string& inPath) {
  fUseDialog = [&](Form& dialog) {
    const auto* const tree = dynamic_cast<const TreeControl*>(dialog.Find("plst"_id));
    if (tree == nullptr) {
      throw UserError(dialog.GetLabel(), "this dialog has no tree of values");
    }
    Hand(dialog).Choose("plst", RowOfPath(*tree, inPath, dialog.GetLabel()));
  };
  Press(inOption, inControl);
  fUseDialog = nullptr;
  if (!fHasAsked) {
    throw UserError(inOption, "there are no values to choose from");
  }
}

void LinkMaker::FillDialog(const std::string& inOption, const char* inControl, const std::vector<Entry>& inEntries) {
  fUseDialog = [&](Form& dialog) {
    const Hand hand(dialog);
    for (const Entry& entry : inEntries) {
      if (entry.fValue.empty()) {
        hand.Press(entry.fControl);
      } else {
        hand.Set(entry.fControl, entry.fValue);
      }
    }
  };
  Press(inOption, inControl);
  fUseDialog = nullptr;
}

bool LinkMaker::RunDialog(Form& ioDialog) {
  fHasAsked = true;
  if (fUseDialog) {
    fUseDialog(ioDialog);
  }
  return static_cast<bool>(fUseDialog);
}

Element* LinkMaker::ChooseElement(const std::string& /*inTitle*/, const std::string& /*inPrompt*/,
                                  const std::vector<Element*>& /*inCandidates*/) {
  return fElement;
}

}  // namespace qlx::host
