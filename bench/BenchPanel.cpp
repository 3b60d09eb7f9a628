// Panels: what it costs to show a modifier's block again, an edit on the way there and back, and the list of values of
// a whole scene.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <string>

#include "model/Scene.h"
#include "services/Host.h"
#include "services/ModifierPanel.h"
#include "services/UserInterface.h"
#include "ui/Hand.h"

namespace qlx::bench {

namespace {

// Opens the dialog of values and presses OK with nothing chosen.
class AgreeingPerson final : public host::CancellingPerson {
 public:
  using CancellingPerson::CancellingPerson;
  bool RunDialog(host::Form& /*ioDialog*/) override { return true; }
};

// A scene with a link on its last element, and the link's panel.
struct PanelStage {
  explicit PanelStage(int inElements) {
    fHost.LoadPlugin(QLX_PLUGIN_FILE);
    fHost.GetUser().SetPerson(&fPerson);
    host::Element* element = &fScene->AddElement(fScene->GetRootElement(), "E0");
    for (int i = 1; i < inElements; ++i) {
      element = &fScene->AddElement(fScene->GetRootElement(), fmt::format("E{}", i));
    }
    fLink = fHost.CreateModifier("fQLX"_id);
    element->AddModifier(*fLink, 0);
    fPanel = std::make_unique<host::ModifierPanel>(fHost, *fLink);
  }
  ~PanelStage() {
    fPanel.reset();
    fLink.Clear();
    fHost.GetUser().SetPerson(nullptr);
    fScene->Close();
  }

  host::Diagnostics fDiagnostics;
  host::Host fHost{fDiagnostics};
  AgreeingPerson fPerson{fDiagnostics};
  TMCCountedPtr<host::Scene> fScene = host::MakeHosted<host::Scene>(fDiagnostics);
  TMCCountedPtr<host::PluginModifier> fLink;
  std::unique_ptr<host::ModifierPanel> fPanel;
};

void RefreshPanel(benchmark::State& ioState) {
  const PanelStage stage(1);
  for (auto _ : ioState) {
    stage.fPanel->Refresh();
  }
}
BENCHMARK(RefreshPanel);

void EditInPanel(benchmark::State& ioState) {
  const PanelStage stage(1);
  const host::Hand hand(stage.fPanel->GetForm());
  bool isOn = false;
  for (auto _ : ioState) {
    hand.Set("attr", (isOn = !isOn) ? "on" : "off");
  }
}
BENCHMARK(EditInPanel);

void ListAllValues(benchmark::State& ioState) {
  const PanelStage stage(static_cast<int>(ioState.range(0)));
  const host::ParameterField& all = *stage.fLink->GetParameterMap()->Find("fListAllProperties");
  stage.fLink->SetField(all, true);
  stage.fPanel->Refresh();
  const host::Hand hand(stage.fPanel->GetForm());
  for (auto _ : ioState) {
    hand.Press("slsp");
  }
}
BENCHMARK(ListAllValues)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace qlx::bench
