#include "EditScript.h"

#include <fmt/format.h>

#include "CommandChoice.h"
#include "ModifierChoice.h"
#include "Session.h"
#include "model/ClosestNames.h"
#include "services/Host.h"
#include "services/UserInterface.h"

namespace qlx::host {

namespace {

constexpr const char* kElement = "the element";
constexpr const char* kModifier = "the modifier";

}  // namespace

struct EditScript::Action {
  const char* fWord;
  std::size_t fCount;        // of words; 0: any
  std::size_t fPreposition;  // where "to" or "of" stands; 0: nowhere
  const char* fForm;
  void (EditScript::*fDo)(const ScriptStep& inStep);
};

const EditScript::Action* EditScript::FindAction(const std::string& inWord) {
  static constexpr Action kActions[] = {
      {"add", 4, 2, "add qlx|pin|slider to ELEMENT", &EditScript::AddOne},
      {"remove", 4, 2, "remove NUMBER of ELEMENT", &EditScript::RemoveOne},
      {"turn", 5, 2, "turn NUMBER of ELEMENT on|off", &EditScript::Turn},
      {"panel", 4, 2, "panel NUMBER of ELEMENT", &EditScript::OpenPanel},
      {"reset", 1, 0, "reset", &EditScript::Reset},
      {"frame", 2, 0, "frame NUMBER", &EditScript::GoToFrame},
      {"select", 0, 0, "select NAME...", &EditScript::SelectThem},
      {"keys", 0, 0, "keys all|none or keys FRAME FRAME", &EditScript::SelectKeysOfThem},
      {"do", 2, 0, "do COMMAND", &EditScript::DoCommand},
      {"undo", 1, 0, "undo", &EditScript::Undo},
      {"redo", 1, 0, "redo", &EditScript::Redo},
  };
  for (const Action& action : kActions) {
    if (inWord == action.fWord) {
      return &action;
    }
  }
  return nullptr;
}

EditScript::EditScript(Host& inHost, Scene& inScene, const std::string& inName, const std::filesystem::path& inFolder)
    : fHost(inHost), fScene(inScene), fPerson(inName, inFolder), fHistory(inScene) {
  fHost.GetUser().SetPerson(&fPerson);
}

EditScript::~EditScript() {
  fPanel.reset();
  fHost.GetUser().SetPerson(nullptr);
}

void EditScript::Run(const std::vector<ScriptStep>& inSteps) {
  for (const ScriptStep& step : inSteps) {
    const std::string& word = step.fWords.front();
    if (word == "undo" || word == "redo") {
      RunStep(step);
      continue;
    }
    fHistory.BeginStep(TextOfStep(step));
    RunStep(step);
    fHistory.EndStep();
  }
}

void EditScript::RunStep(const ScriptStep& inStep) {
  const std::vector<std::string>& words = inStep.fWords;
  if (const Action* const action = FindAction(words.front())) {
    if (action->fCount != 0) {
      fPerson.NeedWords(inStep, action->fCount, action->fForm);
    }
    const char* const preposition = words.front() == "add" ? "to" : "of";
    if (action->fPreposition != 0 && words[action->fPreposition] != preposition) {
      fPerson.Fail(inStep, fmt::format("\"{}\" lacks its \"{}\"; it is written: {}", TextOfStep(inStep), preposition,
                                       action->fForm));
    }
    fPerson.Perform(inStep, [&] { (this->*action->fDo)(inStep); });
    return;
  }
  if (!ScriptPerson::IsFormStep(inStep)) {
    const std::string closest =
        ClosestText(words.front(), {"add", "remove", "turn", "panel", "reset", "frame", "select", "keys", "do", "undo",
                                    "redo", "set", "press", "choose", "open", "fold"});
    fPerson.Fail(inStep, fmt::format("there is no action \"{}\"{}", words.front(), closest));
  }
  if (!fPanel) {
    fPerson.Fail(inStep, fmt::format("\"{}\" needs an open panel: panel NUMBER of ELEMENT", TextOfStep(inStep)));
  }
  fPerson.UseForm(fPanel->GetForm(), inStep);
}

uint32 EditScript::NumberOf(const ScriptStep& inStep, const std::string& inWord) const {
  const std::optional<PartValue> number = Convert(PartValue(inWord), "in32"_id);
  if (!number || std::get<int32>(*number) < 0) {
    fPerson.Fail(inStep, fmt::format("\"{}\" is no number, from 0", inWord));
  }
  return static_cast<uint32>(std::get<int32>(*number));
}

PluginModifier& EditScript::FindModifier(const ScriptStep& inStep) {
  const uint32 number = NumberOf(inStep, inStep.fWords[1]);
  return NeedModifier(NeedElement(fScene, inStep.fWords[3], kElement), number, kModifier);
}

void EditScript::AddOne(const ScriptStep& inStep) {
  AddModifierTo(fHost, NeedElement(fScene, inStep.fWords[3], kElement), inStep.fWords[1], kModifier);
}

void EditScript::RemoveOne(const ScriptStep& inStep) {
  const PluginModifier& modifier = FindModifier(inStep);
  if (fPanel && &fPanel->GetModifier() == &modifier) {
    fPanel.reset();
  }
  modifier.GetElement()->RemoveModifier(NumberOf(inStep, inStep.fWords[1]));
}

void EditScript::Turn(const ScriptStep& inStep) {
  const std::string& state = inStep.fWords[4];
  if (state != "on" && state != "off") {
    fPerson.Fail(inStep, fmt::format("\"{}\" is neither on nor off", state));
  }
  FindModifier(inStep).SetEnabled(state == "on");
}

void EditScript::OpenPanel(const ScriptStep& inStep) {
  fPanel = std::make_unique<ModifierPanel>(fHost, FindModifier(inStep));
}

void EditScript::Reset(const ScriptStep& inStep) {
  if (!fPanel) {
    fPerson.Fail(inStep, "\"reset\" needs an open panel: panel NUMBER of ELEMENT");
  }
  fPanel->GetModifier().Reset();
  fPanel->Refresh();
}

void EditScript::GoToFrame(const ScriptStep& inStep) {
  const uint32 number = NumberOf(inStep, inStep.fWords[1]);
  fScene.Evaluate(TimeOfFrame(fScene, static_cast<int32>(number), "the frame"));
}

// Nothing, without a name.
void EditScript::SelectThem(const ScriptStep& inStep) {
  SelectElements(fScene, std::span(inStep.fWords).subspan(1), kElement);
}

void EditScript::SelectKeysOfThem(const ScriptStep& inStep) {
  SelectKeysOf(fScene, std::span(inStep.fWords).subspan(1), "the keys");
}

void EditScript::DoCommand(const ScriptStep& inStep) {
  SceneCommand(fHost, fScene, NeedCommand(fHost, inStep.fWords[1], "the command")).Run();
  ShowPanelAnew();
}

// The panel goes with its modifier, and shows what is in force now.
void EditScript::ShowPanelAnew() {
  if (fPanel && !fPanel->GetModifier().GetElement()) {
    fPanel.reset();
  }
  if (fPanel) {
    fPanel->Refresh();
  }
}

void EditScript::Undo(const ScriptStep& inStep) {
  if (!fHistory.Undo()) {
    fPerson.Fail(inStep, "there is nothing to take back");
  }
  ShowPanelAnew();
}

void EditScript::Redo(const ScriptStep& inStep) {
  if (!fHistory.Redo()) {
    fPerson.Fail(inStep, "there is nothing to bring again");
  }
  ShowPanelAnew();
}

}  // namespace qlx::host
